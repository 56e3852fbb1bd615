#include <array>
#include <cmath>
#include <map>
#include <set>

#include "corvanta/data/domain/light_env/NLamp.h"
#include "corvanta/data/domain/light_env/NLightEnvNode.h"
#include "corvanta/data/domain/material/NMaterialOptions.h"
#include "corvanta/data/domain/material/texture_mapping/NProjectionMapping.h"
#include "corvanta/data/domain/material/texture_mapping/NUVWMapping.h"
#include "corvanta/data/domain/texture/NTextureUse.h"
#include "tests/render/world.h"
#include "tests/support/temporary_files.h"

namespace corvanta::render_tests {
namespace {

namespace light_env = data::domain::light_env;
namespace texture = data::domain::texture;
namespace texture_mapping = data::domain::material::texture_mapping;

/// A white wall from -4 to 4 in x and y at z = 0, with texture coordinates from 0 to 1, in a black
/// environment. The camera at z = 12 sees 8.7 units of its height.
class PictureTest : public World {
 protected:
  void SetUp() override {
    World::SetUp();
    if (IsSkipped()) return;
    m_environment = m_document.GetEnvironments().CreateNode(NNodeID());
    SetColor(*m_environment, L"color", 0, 0, 0);
    m_scene->SetEnvironment(m_environment);
    m_lamps = m_document.GetLightEnvs().CreateNode(NNodeID());
    m_environment->AddLightEnv(m_lamps);
    m_material = m_document.GetMaterials().CreateNode(NNodeID());
    SetColor(*m_material, L"diffuse", 1, 1, 1);
    m_wall = Add<item::NSceneGraphModelNode>(m_root.get());
    m_wall->SetMaterial(m_material);
    auto const geometry = m_document.GetGeometries().CreateNode(NNodeID());
    boost::intrusive_ptr<data::domain::geometry::NSurface> const surface(
        new data::domain::geometry::NPolygonSurface);
    float const coords[] = {-4, -4, 0, 4, -4, 0, 4, 4, 0, -4, 4, 0};
    float const normals[] = {0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1};
    float const uvs[] = {0, 0, 1, 0, 1, 1, 0, 1};
    unsigned long const indices[] = {0, 1, 2, 0, 2, 3};
    surface->Assign(coords, normals, 4, indices, 6, uvs);
    geometry->AddSurface(*surface);
    m_wall->SetGeometryNode(geometry);
  }

  boost::intrusive_ptr<light_env::NLamp> AddLamp(std::wstring const& type, double x, double y,
                                                 double z) {
    auto const lamp = m_lamps->CreateLamp(type);
    lamp->SetType(type);
    lamp->SetPositionX(x);
    lamp->SetPositionY(y);
    lamp->SetPositionZ(z);
    lamp->SetDirectionX(0);
    lamp->SetDirectionY(0);
    lamp->SetDirectionZ(-1);
    return lamp;
  }

  /// An image from the pixels of a PPM file.
  boost::intrusive_ptr<data::domain::image::NImageNode> CreateImage(unsigned width, unsigned height,
                                                                    std::string const& pixels) {
    auto const path = m_files.Write(
        "picture" + std::to_string(m_imageCount++) + ".ppm",
        "P6 " + std::to_string(width) + ' ' + std::to_string(height) + " 255\n" + pixels);
    auto const image = m_document.GetImages().CreateNode(NNodeID());
    image->SetImageLocator(core::locator::NLocator(core::uri::NUri::CreateFileUri(path)));
    return image;
  }

  /// A cube map of one pixel a face.
  /// Units: each face is 0xAARRGGBB, in the order +x, -x, +y, -y, +z, -z.
  boost::intrusive_ptr<data::domain::image::NImageNode> CreateCube(
      std::array<std::uint32_t, 6> const& faces) {
    std::string dds = "DDS ";
    auto const word = [&dds](std::uint32_t value) {
      for (int i = 0; i != 4; ++i) dds += static_cast<char>(value >> 8 * i);
    };
    for (std::uint32_t const value : {124u, 0x1007u, 1u, 1u, 4u, 0u, 0u}) word(value);
    for (int i = 0; i != 11; ++i) word(0);
    for (std::uint32_t const value : {32u, 0x41u, 0u, 32u, 0xFF0000u, 0xFF00u, 0xFFu, 0xFF000000u,
                                      0x1008u, 0xFE00u, 0u, 0u, 0u}) {
      word(value);
    }
    for (std::uint32_t const value : faces) word(value);
    auto const image = m_document.GetImages().CreateNode(NNodeID());
    image->SetImageLocator(
        core::locator::NLocator(core::uri::NUri::CreateFileUri(m_files.Write("cube.dds", dds))));
    return image;
  }

  /// A texture of the wall's material from the pixels of a PPM file.
  void AddTexture(texture::NTextureUse use, unsigned width, unsigned height,
                  std::string const& pixels, texture_mapping::NTextureMapping* mapping = nullptr) {
    auto const texture = m_document.GetTextures().CreateNode(NNodeID());
    texture->SetType(static_cast<data::domain::texture::NTextureType>(use));
    texture->SetImage(CreateImage(width, height, pixels));
    boost::intrusive_ptr<texture_mapping::NTextureMapping> const used(
        mapping != nullptr ? mapping
                           : new texture_mapping::NUVWMapping(texture_mapping::NUVWMappingType(1)));
    m_material->AddTexture(texture, *used, 0);
  }

  int GreyAt(renderer::NPixels const& picture, float x, float y) const {
    return At(picture, x, y)[0];
  }

  support::TemporaryFiles m_files;
  boost::intrusive_ptr<data::domain::environment::NEnvironmentNode> m_environment;
  boost::intrusive_ptr<light_env::NLightEnvNode> m_lamps;
  boost::intrusive_ptr<data::domain::material::NMaterialNode> m_material;
  Model m_wall;
  int m_imageCount = 0;
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

TEST_F(PictureTest, EdgesAreSmoothAndNumbersAreNot) {
  AddLamp(light_env::LAMP_TYPE_DIRECTIONAL, 0, 0, 0);
  m_wall->SetRotationZ(10);
  m_wall->SetScaleX(0.5);
  m_wall->SetScaleY(0.5);
  auto const picture = DrawPicture();
  // A quarter, a half and three quarters of a pixel's samples.
  std::map<int, int> greys;
  for (unsigned i = 0; i != kWidth * kHeight; ++i) ++greys[picture.GetRow(0)[3 * i]];
  ASSERT_EQ(greys.size(), 5u);
  int quarter = 0;
  for (auto const& [grey, count] : greys) {
    EXPECT_NEAR(grey, Encode(0.25 * quarter++), 1);
    EXPECT_GT(count, 10);
  }
  auto const numbers = DrawNumbers();
  EXPECT_EQ(std::set<std::uint32_t>(numbers.begin(), numbers.end()).size(), 2u);
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

TEST_F(PictureTest, ColourTexturesStandUpright) {
#ifndef CORVANTA_WITH_FREEIMAGE
  GTEST_SKIP() << "pictures aren't decoded here";
#endif
  AddLamp(light_env::LAMP_TYPE_DIRECTIONAL, 0, 0, 0);
  // Red and green above, blue and white below.
  AddTexture(texture::NTU_COLOR, 2, 2, std::string("\xFF\0\0\0\xFF\0\0\0\xFF\xFF\xFF\xFF", 12));
  auto const picture = DrawPicture();
  ExpectColor(At(picture, -2, 2), Color{255, 0, 0});
  ExpectColor(At(picture, 2, 2), Color{0, 255, 0});
  ExpectColor(At(picture, -2, -2), Color{0, 0, 255});
  ExpectColor(At(picture, 2, -2), Color{255, 255, 255});
}

TEST_F(PictureTest, BumpsTurnTheNormalAlongTheTexture) {
#ifndef CORVANTA_WITH_FREEIMAGE
  GTEST_SKIP() << "pictures aren't decoded here";
#endif
  auto const lamp = AddLamp(light_env::LAMP_TYPE_DIRECTIONAL, 0, 0, 0);
  lamp->SetDirectionX(-1);
  // Normals turned by 45 degrees towards the lamp, and away from it.
  AddTexture(texture::NTU_NORMAL, 2, 1, std::string("\xDA\x80\xDA\x26\x80\xDA", 6));
  auto const picture = DrawPicture();
  EXPECT_GT(GreyAt(picture, -2, 0), 250);
  EXPECT_LT(GreyAt(picture, 2, 0), 30);
  m_material->RemoveTexture(0);
  // Heights that rise to the right in the left half: it turns to the left, away from the lamp.
  std::string slope;
  for (int x = 0; x != 64; ++x) slope += std::string(3, static_cast<char>(x < 32 ? 8 * x : 0));
  AddTexture(texture::NTU_HEIGHT, 64, 1, slope);
  auto const bumped = DrawPicture();
  EXPECT_LT(GreyAt(bumped, -2, 0), GreyAt(bumped, 2, 0) - 5);
}

TEST_F(PictureTest, ProjectedTexturesFollowTheProjection) {
#ifndef CORVANTA_WITH_FREEIMAGE
  GTEST_SKIP() << "pictures aren't decoded here";
#endif
  AddLamp(light_env::LAMP_TYPE_DIRECTIONAL, 0, 0, 0);
  auto const node = m_document.GetProjections().CreateNode(NNodeID());
  // The plane's picture lies in x and z, seen from y; turned, it hangs on the wall.
  node->SetRotationX(90);
  node->SetScaleX(8);
  node->SetScaleY(8);
  node->SetScaleZ(8);
  NDrawItem::Path const path(*m_wall, *m_tree);
  node->AddModel(path);
  boost::intrusive_ptr<texture_mapping::NProjectionMapping> const mapping(
      new texture_mapping::NProjectionMapping);
  mapping->AddProjectionData(path, *node);
  AddTexture(texture::NTU_COLOR, 2, 1, std::string("\xFF\0\0\0\xFF\0", 6), mapping.get());
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
  lamp->SetDirectionX(1);
  lamp->SetDirectionY(-1);
  lamp->SetDirectionZ(0);
  m_environment->SetFloorGeometry(CreateGeometry({-9, 0, -9, 9, 0, -9, 9, 0, 9, -9, 0, 9},
                                                 {0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1, 0},
                                                 {0, 1, 2, 0, 2, 3}));
  m_environment->SetFloorHeight(-1);
  // The ball is two units above the floor, so its shadow is two to the right.
  auto const seen = [this](float x) {
    VX_Math::Vec3 position(x, -1, 0);
    GetViewpoint().GetViewProjection().MultVecMatrix(position, position);
    auto const column = static_cast<unsigned>((position.x + 1) / 2 * kWidth);
    auto const row = static_cast<unsigned>((1 - position.y) / 2 * kHeight);
    return int{DrawPicture().GetRow(row)[3 * column]};
  };
  EXPECT_EQ(seen(-2.5f), 0);
  m_environment->SetFloorIsVisibleFlag(true);
  int const lit = seen(-2.5f);
  EXPECT_GT(lit, 60);
  EXPECT_LT(seen(2), lit - 30);
  // A soft shadow lets as much light through, but for its edge.
  lamp->SetShadowSoftness(0);
  int const dark = seen(2);
  std::set<int> sharp, soft;
  for (float x = 2; x < 5; x += 0.06f) sharp.insert(seen(x));
  lamp->SetShadowSoftness(2);
  EXPECT_NEAR(seen(2), dark, 1);
  EXPECT_EQ(seen(-2.5f), lit);
  for (float x = 2; x < 5; x += 0.06f) soft.insert(seen(x));
  EXPECT_LE(sharp.size(), 5u);
  EXPECT_GE(soft.size(), sharp.size() + 3);
  m_environment->SetFloorShowsShadowFlag(false);
  EXPECT_EQ(seen(2), lit);
}

TEST_F(PictureTest, WhatIsBrighterThanWhiteGlows) {
  AddLamp(light_env::LAMP_TYPE_DIRECTIONAL, 0, 0, 0);
  m_wall->SetScaleX(0.25);
  m_wall->SetScaleY(0.25);
  // White itself doesn't.
  EXPECT_EQ(GreyAt(DrawPicture(), 1.1f, 0), 0);
  m_lamps->SetLampsCoefficient(3);
  m_environment->SetHdrBloom(0);
  EXPECT_EQ(GreyAt(DrawPicture(), 1.1f, 0), 0);
  m_environment->SetHdrBloom(600);
  auto const picture = DrawPicture();
  // At the edge half of the light above white arrives, within a deviation of it 0.16.
  float const deviation = 0.02f * 2 * 12 * std::tan(0.34906585f);
  EXPECT_NEAR(GreyAt(picture, 1 + deviation, 0), Encode(2 * 0.159), 20);
  EXPECT_LT(GreyAt(picture, 1 + 4 * deviation, 0), 40);
  EXPECT_EQ(GreyAt(picture, 2.5f, 0), 0);
  // Exposure and tone mapping come first.
  m_environment->SetHdrExposure(-2);
  EXPECT_EQ(GreyAt(DrawPicture(), 1.1f, 0), 0);
  EXPECT_NEAR(GreyAt(DrawPicture(), 0, 0), Encode(0.75), 1);
}

TEST_F(PictureTest, AStarGlaresAlongItsDiagonals) {
  AddLamp(light_env::LAMP_TYPE_DIRECTIONAL, 0, 0, 0);
  m_wall->SetScaleX(0.05);
  m_wall->SetScaleY(0.05);
  m_lamps->SetLampsCoefficient(3);
  m_environment->SetHdrBloom(0);
  EXPECT_EQ(GreyAt(DrawPicture(), 0.5f, 0.5f), 0);
  m_environment->SetHdrStar(600);
  auto const picture = DrawPicture();
  for (float const side : {-1.0f, 1.0f}) {
    EXPECT_GT(GreyAt(picture, 0.5f, side * 0.5f), 40);
    EXPECT_NEAR(GreyAt(picture, 0.5f, side * 0.5f), GreyAt(picture, -0.5f, side * 0.5f), 12);
    EXPECT_LT(GreyAt(picture, 0.9f * side, 0), 10);
    EXPECT_LT(GreyAt(picture, 0, 0.9f * side), 10);
  }
  EXPECT_GT(GreyAt(picture, 0.5f, 0.5f), GreyAt(picture, 0.7f, 0.7f));
  EXPECT_EQ(GreyAt(picture, 1.4f, 1.4f), 0);
}

TEST_F(PictureTest, AutomaticExposureMakesTheMiddleGrey) {
  AddLamp(light_env::LAMP_TYPE_DIRECTIONAL, 0, 0, 0);
  m_environment->SetHdrBloom(0);
  m_environment->SetAutoExposureIsEnabledFlag(true);
  for (double const strength : {0.01, 1.0, 40.0}) {
    SCOPED_TRACE(strength);
    m_lamps->SetLampsCoefficient(strength);
    EXPECT_NEAR(GetMiddle()[0], Encode(0.18), 1);
  }
  m_environment->SetRelativeExposure(1);
  EXPECT_NEAR(GetMiddle()[0], Encode(0.36), 1);
  // The mean is that of the logarithms, of what is covered: half of it is 16 times as bright.
  auto const other = Add<item::NSceneGraphModelNode>(m_root.get());
  other->SetGeometryNode(m_wall->GetGeometryNode());
  other->SetMaterial(m_document.GetMaterials().CreateNode(NNodeID()));
  SetColor(*other->GetMaterialNode(), L"diffuse", 1 / 16.0, 1 / 16.0, 1 / 16.0);
  m_lens->SetProjectionType(data::domain::camera::NPT_ORTHOGRAPHIC);
  m_wall->SetTranslationX(-4);
  other->SetTranslationX(4);
  m_environment->SetRelativeExposure(0);
  auto const picture = DrawPicture();
  EXPECT_NEAR(GreyAt(picture, -1, 0), Encode(0.18 * 4), 2);
  EXPECT_NEAR(GreyAt(picture, 1, 0), Encode(0.18 / 4), 2);
}

TEST_F(PictureTest, DiffuseLightHasAWeightOfItsOwn) {
  AddLamp(light_env::LAMP_TYPE_DIRECTIONAL, 0, 0, 0);
  SetColor(*m_material, L"diffuse", 0.5, 0.5, 0.5);
  SetColor(*m_material, L"emissive", 0.1, 0.1, 0.1);
  m_environment->SetHdrDiffuse(0.5);
  EXPECT_NEAR(GetMiddle()[0], Encode(0.1 + 0.25), 1);
}

/// A floor before the wall's lower half, at right angles.
TEST_F(PictureTest, CornersAreOccluded) {
  AddLamp(light_env::LAMP_TYPE_DIRECTIONAL, 0, 0, 0);
  SetColor(*m_material, L"diffuse", 0.5, 0.5, 0.5);
  auto const floor = Add<item::NSceneGraphModelNode>(m_root.get());
  floor->SetGeometryNode(m_wall->GetGeometryNode());
  floor->SetMaterial(m_material);
  floor->SetRotationX(-90);
  floor->SetTranslationY(-1);
  floor->SetTranslationZ(4);
  // Of the diagonal, 14 units.
  m_environment->SetSSAORadius(0.08);
  m_environment->SetSSAODepthFalloff(1);
  auto const get = [this](double contrast) {
    m_environment->SetSSAOEnabled(contrast > 0);
    m_environment->SetSSAOContrast(contrast);
    auto const picture = DrawPicture();
    return std::array{GreyAt(picture, 1, -0.8f), GreyAt(picture, 1, -0.4f), GreyAt(picture, 1, 1)};
  };
  auto const plain = get(0), once = get(1), twice = get(2);
  EXPECT_EQ(plain, (std::array{Encode(0.5), Encode(0.5), Encode(0.5)}));
  // A plane hides nothing of itself, and a corner less with the distance.
  EXPECT_EQ(once[2], plain[2]);
  EXPECT_LT(once[0], once[1]);
  EXPECT_LT(once[1], plain[1]);
  // Less than half of what is around is hidden.
  EXPECT_GT(Decode(once[0]) / 0.5, 0.6);
  EXPECT_LT(Decode(once[0]) / 0.5, 0.9);
  EXPECT_NEAR(Decode(twice[0]) / 0.5, std::pow(Decode(once[0]) / 0.5, 2), 0.01);
}

TEST_F(PictureTest, WithoutABackgroundAPictureIsTransparent) {
  AddLamp(light_env::LAMP_TYPE_DIRECTIONAL, 0, 0, 0);
  SetColor(*m_environment, L"color", 0, 0, 1);
  m_wall->SetScaleX(0.5);
  m_renderer->SetHasBackgroundFlag(false);
  auto const get = [this](float x) {
    NTarget const target(*m_context, kWidth, kHeight, NTarget::NTK_PICTURE);
    m_renderer->DrawPicture(*m_scene, GetViewpoint(), target, {0, 0, kWidth, kHeight});
    auto const picture = target.ReadTransparentPicture();
    auto const color = At(picture, x, 0);
    return std::array{color[0], color[2], int{picture.GetOpacities()[IndexOf(x, 0)]}};
  };
  EXPECT_EQ(get(0), (std::array{255, 255, 255}));
  EXPECT_EQ(get(3), (std::array{0, 0, 0}));
  // Its colour isn't darkened by how little covers it.
  m_material->SetTransparency(0.25);
  EXPECT_NEAR(get(0)[2], 64, 1);
  EXPECT_NEAR(get(0)[0], 255, 1);
}

TEST_F(PictureTest, RoughSurfacesThrowLightBackWhereItComesFrom) {
  // With the lamp at the camera, cosine and sine times tangent are known in the middle.
  auto const lamp = AddLamp(light_env::LAMP_TYPE_DIRECTIONAL, 0, 0, 0);
  m_wall->SetRotationY(60);
  m_material->SetRoughness(0.5);
  double const square = 0.25, a = 1 - 0.5 * square / (square + 0.33),
               b = 0.45 * square / (square + 0.09);
  EXPECT_NEAR(GetMiddle()[0], Encode(0.5 * (a + b * std::sin(1.0471976) * std::tan(1.0471976))), 2);
  lamp->SetDirectionX(std::sqrt(3));
  lamp->SetDirectionZ(-1);
  m_wall->SetRotationY(0);
  EXPECT_NEAR(GetMiddle()[0], Encode(0.5 * a), 2);
}

TEST_F(PictureTest, HighlightsAreAsWideAsTheEccentricitySays) {
  AddLamp(light_env::LAMP_TYPE_DIRECTIONAL, 0, 0, 0);
  SetColor(*m_material, L"diffuse", 0, 0, 0);
  SetColor(*m_material, L"specular", 1, 1, 1);
  m_material->SetPower(60);
  m_material->SetEccentricity(0.6);
  double const cosine = std::cos(std::atan(3.9 / 12) / 2);
  EXPECT_NEAR(At(DrawPicture(), 3.9f, 0)[2], Encode(std::pow(cosine, 15)), 4);
}

TEST_F(PictureTest, AClearCoatAddsASharpHighlightAndTakesItsShareOfTheLight) {
  AddLamp(light_env::LAMP_TYPE_DIRECTIONAL, 0, 0, 0);
  SetColor(*m_material, L"diffuse", 0.2, 0.2, 0.2);
  int const before = At(DrawPicture(), 2, 0)[0];
  m_material->SetClearcoatIndex(3);  // a quarter is reflected along the normal
  auto const picture = DrawPicture();
  EXPECT_GT(At(picture, 0, 0)[0], 250);
  double const cosine = std::cos(std::atan(3.9 / 12) / 2);
  EXPECT_NEAR(At(picture, 3.9f, 0)[0], Encode(0.2 * 0.75 + 0.25 * 51 * std::pow(cosine, 400)), 4);
  m_material->SetClearcoatIndex(1);
  EXPECT_EQ(At(DrawPicture(), 2, 0)[0], before);
}

TEST_F(PictureTest, FlecksGlitterWhereTheyAreTiltedToTheLamp) {
  AddLamp(light_env::LAMP_TYPE_DIRECTIONAL, 0, 0, 0);
  SetColor(*m_material, L"diffuse", 0.1, 0.1, 0.1);
  SetColor(*m_material, L"fleck.specular", 0.8, 0.8, 0.8);
  m_material->SetFleckSize(20);
  m_material->SetFleckPerturbation(0.5);
  auto const getGreys = [this] {
    auto const picture = DrawPicture();
    std::set<int> greys;
    for (float x = -3.9f; x < 4; x += 0.1f) {
      for (float y = -3; y < 3; y += 0.5f) greys.insert(GreyAt(picture, x, y));
    }
    return greys;
  };
  auto const greys = getGreys();
  EXPECT_LE(*greys.begin(), Encode(0.12));
  EXPECT_GE(*greys.rbegin(), Encode(0.6));
  // Without a tilt they are as smooth as one highlight.
  m_material->SetFleckPerturbation(0);
  EXPECT_GT(*getGreys().begin(), Encode(0.12));
}

TEST_F(PictureTest, OneSidedModelsAreSeenFromTheFrontAlone) {
  AddLamp(light_env::LAMP_TYPE_POINT, 0, 0, 12);
  m_material->SetType(data::domain::material::NMaterialType(data::domain::material::NMO_ONE_SIDED));
  struct Row {
    double rotation, scale;
    bool isSeen;
  };
  for (Row const& row : {Row{0, 1, true}, Row{180, 1, false}, Row{0, -1, true}}) {
    m_wall->SetRotationY(row.rotation);
    m_wall->SetScaleX(row.scale);
    EXPECT_EQ(GreyAt(DrawPicture(), 1, 1) > 100, row.isSeen) << row.rotation << ' ' << row.scale;
  }
  m_wall->SetRotationY(180);
  m_wall->SetScaleX(1);
  // Picks hit both sides.
  EXPECT_EQ(DrawNumbers()[kHeight / 2 * kWidth + kWidth / 2], 1u);
}

TEST_F(PictureTest, OpacityTexturesBlendOrCutOff) {
#ifndef CORVANTA_WITH_FREEIMAGE
  GTEST_SKIP() << "pictures aren't decoded here";
#endif
  SetColor(*m_environment, L"color", 0, 0, 1);
  AddLamp(light_env::LAMP_TYPE_DIRECTIONAL, 0, 0, 0);
  SetColor(*m_material, L"diffuse", 1, 0, 0);
  // Opacities of 0.75 and 0.25.
  AddTexture(texture::NTU_OPACITY, 2, 1, std::string("\xBF\xBF\xBF\x40\x40\x40", 6));
  auto const blended = DrawPicture();
  ExpectColor(At(blended, -2, 0), {Encode(0.75), 0, Encode(0.25)});
  ExpectColor(At(blended, 2, 0), {Encode(0.25), 0, Encode(0.75)});
  auto const texture = m_material->GetTextures().begin()->first.Get();
  texture->SetOperationType(texture::NTextureOperationType(128));
  auto const cut = DrawPicture();
  EXPECT_EQ(At(cut, -2, 0), (Color{255, 0, 0}));
  EXPECT_EQ(At(cut, 2, 0), (Color{0, 0, 255}));
}

TEST_F(PictureTest, ABackgroundPictureFillsTheView) {
#ifndef CORVANTA_WITH_FREEIMAGE
  GTEST_SKIP() << "pictures aren't decoded here";
#endif
  m_wall->SetIsVisibleFlag(false);
  // Red and green above, blue and white below, whatever the camera looks at.
  std::string const red("\xFF\0\0", 3), green("\0\xFF\0", 3), blue("\0\0\xFF", 3), white(3, '\xFF');
  std::string const top = red + red + green + green, bottom = blue + blue + white + white;
  m_environment->Set2DImage(CreateImage(4, 4, top + top + bottom + bottom));
  m_camera->SetInterestX(5);
  auto const at = [](renderer::NPixels const& picture, unsigned x, unsigned y) {
    unsigned char const* const pixel = picture.GetRow(y) + 3 * x;
    return Color{pixel[0], pixel[1], pixel[2]};
  };
  auto const picture = DrawPicture();
  ExpectColor(at(picture, kWidth / 4, kHeight / 4), {255, 0, 0});
  ExpectColor(at(picture, kWidth * 3 / 4, kHeight / 4), {0, 255, 0});
  ExpectColor(at(picture, kWidth / 4, kHeight * 3 / 4), {0, 0, 255});
  ExpectColor(at(picture, kWidth * 3 / 4, kHeight * 3 / 4), {255, 255, 255});
  m_environment->SetImageExposure(0.25);
  EXPECT_NEAR(at(DrawPicture(), kWidth / 4, kHeight / 4)[0], Encode(0.25), 4);
}

TEST_F(PictureTest, TheEnvironmentIsSeenInItsDirection) {
  m_wall->SetIsVisibleFlag(false);
  m_environment->GetEnvironmentMap().SetImage(
      CreateCube({0xFFFF0000u, 0xFF00FF00u, 0xFF0000FFu, 0xFFFFFF00u, 0xFFFF00FFu, 0xFF00FFFFu}));
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
    ExpectColor(GetMiddle(), faces[face]);
  }
  // Turned about y by a quarter, +z is where +x was.
  m_environment->SetEnvironmentMapRotationY(90);
  m_camera->SetInterestX(1);
  m_camera->SetInterestZ(12);
  ExpectColor(GetMiddle(), faces[4]);
}

TEST_F(PictureTest, AnEnvironmentLightsASurfaceFromItsSide) {
  m_material->SetEnvironmentMapIsEnabledFlag(true);
  m_material->SetIblDiffuseCoeff(0.5);
  // The same light from everywhere is thrown back as it is.
  m_environment->GetEnvironmentMap().SetImage(
      CreateCube({0xFF808080u, 0xFF808080u, 0xFF808080u, 0xFF808080u, 0xFF808080u, 0xFF808080u}));
  double const grey = std::pow((128 / 255.0 + 0.055) / 1.055, 2.4);
  EXPECT_NEAR(GetMiddle()[0], Encode(0.5 * grey), 2);
  m_material->SetIblContrast(2);
  EXPECT_NEAR(GetMiddle()[0], Encode(0.5 * grey * grey / 0.18), 2);
  m_material->SetIblContrast(1);
  // Of the face opposite to it a wall sees more than half: 1/pi of the cosine over the face's solid
  // angle is 0.554, of each face beside it a quarter of the rest.
  m_environment->GetEnvironmentMap().SetImage(
      CreateCube({0xFF00FF00u, 0xFF000000u, 0xFF000000u, 0xFF000000u, 0xFFFF0000u, 0xFF0000FFu}));
  Color const color = GetMiddle();
  EXPECT_NEAR(color[0], Encode(0.5 * 0.554), 8);
  EXPECT_NEAR(color[1], Encode(0.5 * 0.446 / 4), 8);
  EXPECT_LT(color[2], 20);
}

TEST_F(PictureTest, ReflectionsFollowScaleBiasAndRollOff) {
  SetColor(*m_material, L"diffuse", 0, 0, 0);
  m_material->SetEnvironmentMapIsEnabledFlag(true);
  m_material->SetIblSpecularCoeff(1);
  m_material->SetRefractiveIndex(3);
  m_environment->GetEnvironmentMap().SetImage(
      CreateCube({0xFFFFFFFFu, 0xFFFFFFFFu, 0xFFFFFFFFu, 0xFFFFFFFFu, 0xFFFFFFFFu, 0xFFFFFFFFu}));
  EXPECT_NEAR(GetMiddle()[0], Encode(0.25), 2);
  m_material->SetBias(0.1);
  m_material->SetScale(2);
  EXPECT_NEAR(GetMiddle()[0], Encode(0.6), 2);
  m_material->SetBias(0);
  m_material->SetScale(1);
  m_material->SetBackRefractiveIndex(3);
  EXPECT_NEAR(GetMiddle()[0], 0, 4);
  // At 80 degrees: 0 along the normal, half of the default at a grazing angle.
  m_material->SetSpecularRollOff(0.35);
  m_wall->SetRotationY(80);
  EXPECT_NEAR(GetMiddle()[0], Encode(0.5 * std::pow(1 - std::cos(1.3962634), 5)), 4);
}

}  // namespace
}  // namespace corvanta::render_tests
