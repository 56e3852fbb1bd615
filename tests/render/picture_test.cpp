#include "tests/image/picture_files.h"
#include "tests/render/world.h"
#include "tests/support/temporary_files.h"

namespace corvanta::render_tests {
namespace {

namespace light_env = data::domain::light_env;
using data::domain::texture::NTextureUse;
namespace texture_mapping = data::domain::material::texture_mapping;
using Color = std::array<int, 3>;

/// The byte of a value of linear light.
int Encode(double linear) {
  double const value =
      linear <= 0.0031308 ? 12.92 * linear : 1.055 * std::pow(linear, 1 / 2.4) - 0.055;
  return static_cast<int>(std::lround(255 * std::clamp(value, 0.0, 1.0)));
}

/// Filtering spreads a little of each pixel of a texture.
void ExpectColor(Color const& color, Color const& expected) {
  for (std::size_t c = 0; c != 3; ++c) EXPECT_NEAR(color[c], expected[c], 16);
}

/// A white wall from -4 to 4 in x and y at z = 0, with texture coordinates from 0 to 1, in a black
/// environment. The camera at z = 12 sees 8.7 units of its height.
class PictureTest : public World {
 protected:
  PictureTest() {
    SetColor(*m_environment, L"color", 0, 0, 0);
    m_scene->SetEnvironment(m_environment);
    m_environment->AddLightEnv(m_lamps);
    SetColor(*m_material, L"diffuse", 1, 1, 1);
    m_wall->SetMaterial(m_material);
    m_wall->SetGeometryNode(CreateGeometry(
        {-4, -4, 0, 4, -4, 0, 4, 4, 0, -4, 4, 0}, {0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1},
        {0, 1, 2, 0, 2, 3},
        {{texture_mapping::NUVWID_FLAT, {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}}}));
  }

  static void SetColor(NAttributeHost& host, std::wstring const& name, double r, double g,
                       double b) {
    host.QueryAttribute(name + L".r")->SetValue(r, true);
    host.QueryAttribute(name + L".g")->SetValue(g, true);
    host.QueryAttribute(name + L".b")->SetValue(b, true);
  }

  static void SetDirection(NLamp& lamp, double x, double y, double z) {
    lamp.SetDirectionX(x);
    lamp.SetDirectionY(y);
    lamp.SetDirectionZ(z);
  }
  Pointer<NLamp> AddLamp(std::wstring const& type, double x, double y, double z) {
    auto const lamp = m_lamps->CreateLamp(type);
    lamp->SetType(type);
    lamp->SetPositionX(x);
    lamp->SetPositionY(y);
    lamp->SetPositionZ(z);
    SetDirection(*lamp, 0, 0, -1);
    return lamp;
  }

  /// An image from the pixels of a PPM file.
  Pointer<NImageNode> CreateImage(unsigned width, unsigned height, std::string const& pixels) {
    auto const path = m_files.Write(
        "picture" + std::to_string(m_imageCount++) + ".ppm",
        "P6 " + std::to_string(width) + ' ' + std::to_string(height) + " 255\n" + pixels);
    auto const image = images->CreateNode();
    image->SetImageLocator(NUri::CreateFileUri(path));
    return image;
  }

  /// A texture of the wall's material from the pixels of a PPM file.
  void AddTexture(NTextureUse use, unsigned width, unsigned height, std::string const& pixels,
                  NTextureMapping* mapping = nullptr) {
    auto const texture = textures->CreateNode();
    texture->SetType(static_cast<data::domain::texture::NTextureType>(use));
    texture->SetImage(CreateImage(width, height, pixels));
    Pointer<NTextureMapping> const used(
        mapping ? mapping : new NUVWMapping(texture_mapping::NUVWMappingType(1)));
    m_material->AddTexture(texture, *used, 0);
  }

  static Color GetPixel(renderer::NPixels const& picture, unsigned x, unsigned y) {
    unsigned char const* const pixel = picture.GetRow(y) + 3 * x;
    return {pixel[0], pixel[1], pixel[2]};
  }
  /// The pixel where a point is seen, by default one of the wall.
  Color At(renderer::NPixels const& picture, float x, float y, float z = 0) const {
    Vec3 position(x, y, z);
    GetViewpoint().GetViewProjection().MultVecMatrix(position, position);
    return GetPixel(picture, static_cast<unsigned>((position.x + 1) / 2 * kWidth),
                    static_cast<unsigned>((1 - position.y) / 2 * kHeight));
  }
  int GreyAt(renderer::NPixels const& picture, float x, float y) const {
    return At(picture, x, y)[0];
  }

  support::TemporaryFiles m_files;
  Pointer<NEnvironmentNode> m_environment = environments->CreateNode();
  Pointer<NLightEnvNode> m_lamps = lightEnvs->CreateNode();
  Pointer<NMaterialNode> m_material = materials->CreateNode();
  Model m_wall = Add<NSceneGraphModelNode>(*m_root);
  int m_imageCount = 0;
};

/// With pictures of files, which have to be decoded.
class TextureTest : public PictureTest {
 protected:
  void SetUp() override {
    if (!pictures::kDecodes) GTEST_SKIP() << "pictures aren't decoded here";
    PictureTest::SetUp();
  }
};

TEST_F(PictureTest, DirectionalLampsLightByTheCosineAndAreGammaCorrect) {
  auto const lamp = AddLamp(light_env::LAMP_TYPE_DIRECTIONAL, 0, 0, 0);
  SetColor(*m_material, L"diffuse", 0.5, 0.25, 1);
  EXPECT_EQ(At(DrawPicture(), 1, 1), (Color{Encode(0.5), Encode(0.25), 255}));
  lamp->SetDirectionX(-std::sqrt(3));
  EXPECT_NEAR(At(DrawPicture(), 1, 1)[0], Encode(0.25), 1);
  auto const minus = AddLamp(light_env::LAMP_TYPE_DIRECTIONAL, 0, 0, 0);
  minus->SetEmitMinus(true);
  minus->SetColorR(0.25);
  EXPECT_NEAR(At(DrawPicture(), 1, 1)[0], Encode(0.125), 1);
  minus->SetEnabled(false);
  m_lamps->SetLampsCoefficient(0.5);
  EXPECT_NEAR(At(DrawPicture(), 1, 1)[0], Encode(0.125), 1);
  // From behind it lights the other side.
  lamp->SetDirectionZ(1);
  EXPECT_EQ(At(DrawPicture(), 1, 1)[0], 0);
}

TEST_F(PictureTest, PointLampsEndAtTheirRange) {
  auto const lamp = AddLamp(light_env::LAMP_TYPE_POINT, 0, 0, 2);
  EXPECT_NEAR(GreyAt(DrawPicture(), 0, 0), 255, 1);
  EXPECT_NEAR(GreyAt(DrawPicture(), 2, 0), Encode(std::sqrt(0.5)), 2);
  lamp->SetAttenuationRange(2.5);
  auto const picture = DrawPicture();
  EXPECT_GT(GreyAt(picture, 0, 0), 60);
  EXPECT_EQ(GreyAt(picture, 2, 0), 0);
  lamp->SetAttenuationType(light_env::NAttenuationType(1));
  EXPECT_NEAR(GreyAt(DrawPicture(), 0, 0), Encode(0.2), 3);
}

TEST_F(PictureTest, SpotLampsFadeBetweenSpreadAndFallOff) {
  auto const lamp = AddLamp(light_env::LAMP_TYPE_SPOT, 0, 0, 4);
  lamp->SetSpreadAngle(40);
  lamp->SetFalloffAngle(80);
  auto const picture = DrawPicture();
  float const inside = 4 * std::tan(0.3f), edge = 4 * std::tan(0.52f),
              outside = 4 * std::tan(0.72f);
  EXPECT_NEAR(GreyAt(picture, inside, 0), Encode(std::cos(0.3)), 2);
  EXPECT_GT(GreyAt(picture, edge, 0), 40);
  EXPECT_LT(GreyAt(picture, edge, 0), Encode(std::cos(0.52)) - 20);
  EXPECT_EQ(GreyAt(picture, outside, 0), 0);
}

TEST_F(PictureTest, MaterialsAddAmbientGlowAndAHighlight) {
  SetColor(*m_material, L"diffuse", 0, 0, 0);
  SetColor(*m_material, L"ambient", 1, 0, 0);
  SetColor(*m_material, L"emissive", 0, 0.25, 0);
  SetColor(*m_environment, L"ambientLight", 0.5, 1, 1);
  EXPECT_EQ(At(DrawPicture(), 1, 1), (Color{Encode(0.5), Encode(0.25), 0}));
  AddLamp(light_env::LAMP_TYPE_DIRECTIONAL, 0, 0, 0);
  SetColor(*m_material, L"specular", 0, 0, 1);
  m_material->SetPower(60);
  auto const picture = DrawPicture();
  EXPECT_GT(At(picture, 0, 0)[2], 240);
  // Half of the angle to the camera turns the halfway vector: cos(atan(4 / 12) / 2) ^ 60.
  EXPECT_NEAR(At(picture, 3.9f, 0)[2], Encode(std::pow(std::cos(std::atan(3.9 / 12) / 2), 60)), 4);
}

TEST_F(PictureTest, TransparentModelsLetTheSceneBehindThrough) {
  SetColor(*m_environment, L"color", 0, 0, 1);
  AddLamp(light_env::LAMP_TYPE_DIRECTIONAL, 0, 0, 0);
  SetColor(*m_material, L"diffuse", 1, 0, 0);
  m_material->SetTransparency(0.25);
  EXPECT_NEAR(At(DrawPicture(), 1, 1)[0], Encode(0.25), 1);
  EXPECT_NEAR(At(DrawPicture(), 1, 1)[2], Encode(0.75), 1);
}

TEST_F(TextureTest, ColourTexturesStandUpright) {
  AddLamp(light_env::LAMP_TYPE_DIRECTIONAL, 0, 0, 0);
  // Red and green above, blue and white below.
  AddTexture(data::domain::texture::NTU_COLOR, 2, 2,
             std::string("\xFF\0\0\0\xFF\0\0\0\xFF\xFF\xFF\xFF", 12));
  auto const picture = DrawPicture();
  ExpectColor(At(picture, -2, 2), Color{255, 0, 0});
  ExpectColor(At(picture, 2, 2), Color{0, 255, 0});
  ExpectColor(At(picture, -2, -2), Color{0, 0, 255});
  ExpectColor(At(picture, 2, -2), Color{255, 255, 255});
}

TEST_F(TextureTest, BumpsTurnTheNormalAlongTheTexture) {
  auto const lamp = AddLamp(light_env::LAMP_TYPE_DIRECTIONAL, 0, 0, 0);
  lamp->SetDirectionX(-1);
  // Normals turned by 45 degrees towards the lamp, and away from it.
  AddTexture(data::domain::texture::NTU_NORMAL, 2, 1, std::string("\xDA\x80\xDA\x26\x80\xDA", 6));
  auto const picture = DrawPicture();
  EXPECT_GT(GreyAt(picture, -2, 0), 250);
  EXPECT_LT(GreyAt(picture, 2, 0), 30);
  m_material->RemoveTexture(0);
  // Heights that rise to the right in the left half: it turns to the left, away from the lamp.
  std::string slope;
  for (int x = 0; x != 64; ++x) slope += std::string(3, static_cast<char>(x < 32 ? 8 * x : 0));
  AddTexture(data::domain::texture::NTU_HEIGHT, 64, 1, slope);
  auto const bumped = DrawPicture();
  EXPECT_LT(GreyAt(bumped, -2, 0), GreyAt(bumped, 2, 0) - 5);
}

TEST_F(TextureTest, ProjectedTexturesFollowTheProjection) {
  AddLamp(light_env::LAMP_TYPE_DIRECTIONAL, 0, 0, 0);
  auto const node = projections->CreateNode();
  // The plane's picture lies in x and z, seen from y; turned, it hangs on the wall.
  node->SetRotationX(90);
  node->SetScaleX(8);
  node->SetScaleY(8);
  node->SetScaleZ(8);
  NDrawItem::Path const path(*m_wall, *m_tree);
  node->AddModel(path);
  auto const mapping = New<NProjectionMapping>();
  mapping->AddProjectionData(path, *node);
  AddTexture(data::domain::texture::NTU_COLOR, 2, 1, std::string("\xFF\0\0\0\xFF\0", 6),
             mapping.get());
  auto const picture = DrawPicture();
  ExpectColor(At(picture, 2, 1), Color{255, 0, 0});
  ExpectColor(At(picture, -2, 1), Color{0, 255, 0});
  auto const before = m_renderer->GetUploads();
  node->SetOffsetU(0.5);
  ExpectColor(At(DrawPicture(), 2, 1), Color{0, 255, 0});
  EXPECT_EQ(m_renderer->GetUploads().meshes, before.meshes + 1);
}

TEST_F(PictureTest, WiresShowWhatIsBehindThem) {
  AddLamp(light_env::LAMP_TYPE_DIRECTIONAL, 0, 0, 0);
  m_wall->SetIsWiredFlag(true);
  auto const picture = DrawPicture();
  EXPECT_EQ(GreyAt(picture, 2, -1), 0);
  EXPECT_GT(GreyAt(picture, 2, 2), 60);  // the diagonal
}

TEST_F(PictureTest, BillboardsFaceTheCamera) {
  AddLamp(light_env::LAMP_TYPE_POINT, 0, 0, 12);
  m_wall->SetRotationY(90);
  EXPECT_EQ(GreyAt(DrawPicture(), 2, 1), 0);
  for (long const type : {1L, 2L}) {
    m_wall->SetBillboardType(item::NBillboardType(type));
    EXPECT_GT(GreyAt(DrawPicture(), 2, 1), 200);
  }
}

TEST_F(PictureTest, TheFloorIsSeenAndShadowsFallOnIt) {
  m_wall->SetIsVisibleFlag(false);
  AddBall(*m_root, 0, 1, 0);
  m_camera->SetTranslationY(9);
  auto const lamp = AddLamp(light_env::LAMP_TYPE_DIRECTIONAL, 0, 0, 0);
  SetDirection(*lamp, 1, -1, 0);
  m_environment->SetFloorGeometry(CreateGeometry({-9, 0, -9, 9, 0, -9, 9, 0, 9, -9, 0, 9},
                                                 {0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1, 0},
                                                 {0, 1, 2, 0, 2, 3}));
  m_environment->SetFloorHeight(-1);
  // The ball is two units above the floor, so its shadow is two to the right.
  auto const seen = [this](float x) { return At(DrawPicture(), x, -1)[0]; };
  EXPECT_EQ(seen(-2.5f), 0);
  m_environment->SetFloorIsVisibleFlag(true);
  int const lit = seen(-2.5f);
  EXPECT_GT(lit, 60);
  EXPECT_LT(seen(2), lit - 30);
  m_environment->SetFloorShowsShadowFlag(false);
  EXPECT_EQ(seen(2), lit);
}

TEST_F(TextureTest, ABackgroundPictureFillsTheView) {
  m_wall->SetIsVisibleFlag(false);
  // Red and green above, blue and white below, whatever the camera looks at.
  std::string const red("\xFF\0\0", 3), green("\0\xFF\0", 3), blue("\0\0\xFF", 3), white(3, '\xFF');
  std::string const top = red + red + green + green, bottom = blue + blue + white + white;
  m_environment->Set2DImage(CreateImage(4, 4, top + top + bottom + bottom));
  m_camera->SetInterestX(5);
  auto const picture = DrawPicture();
  ExpectColor(GetPixel(picture, kWidth / 4, kHeight / 4), {255, 0, 0});
  ExpectColor(GetPixel(picture, kWidth * 3 / 4, kHeight / 4), {0, 255, 0});
  ExpectColor(GetPixel(picture, kWidth / 4, kHeight * 3 / 4), {0, 0, 255});
  ExpectColor(GetPixel(picture, kWidth * 3 / 4, kHeight * 3 / 4), {255, 255, 255});
  m_environment->SetImageExposure(0.25);
  EXPECT_NEAR(GetPixel(DrawPicture(), kWidth / 4, kHeight / 4)[0], Encode(0.25), 4);
}

TEST_F(PictureTest, TheEnvironmentIsSeenInItsDirection) {
  m_wall->SetIsVisibleFlag(false);
  // Six faces of one colour each, in a cube map of one pixel a face.
  std::string dds = pictures::Dds(1, 1, 0xFE00);
  dds.resize(128);
  for (std::uint32_t const value :
       {0xFFFF0000u, 0xFF00FF00u, 0xFF0000FFu, 0xFFFFFF00u, 0xFFFF00FFu, 0xFF00FFFFu}) {
    dds += pictures::Little(value, 4);
  }
  auto const image = images->CreateNode();
  image->SetImageLocator(NUri::CreateFileUri(m_files.Write("cube.dds", dds)));
  m_environment->GetEnvironmentMap().SetImage(image);
  Color const faces[] = {{255, 0, 0},   {0, 255, 0},   {0, 0, 255},
                         {255, 255, 0}, {255, 0, 255}, {0, 255, 255}};
  m_camera->SetUpY(0.7);
  m_camera->SetUpX(0.7);
  for (int face = 0; face != 6; ++face) {
    double direction[3] = {0, 0, 0};
    direction[face / 2] = face % 2 == 0 ? 1 : -1;
    m_camera->SetInterestX(direction[0]);
    m_camera->SetInterestY(direction[1]);
    m_camera->SetInterestZ(12 + direction[2]);
    ExpectColor(GetPixel(DrawPicture(), kWidth / 2, kHeight / 2), faces[face]);
  }
  // Turned about y by a quarter, +z is where +x was.
  m_environment->SetEnvironmentMapRotationY(90);
  m_camera->SetInterestX(1);
  m_camera->SetInterestZ(12);
  ExpectColor(GetPixel(DrawPicture(), kWidth / 2, kHeight / 2), faces[4]);
}

}  // namespace
}  // namespace corvanta::render_tests
