#include <array>
#include <cmath>

#include "corvanta/data/domain/light_env/NLamp.h"
#include "corvanta/data/domain/light_env/NLightEnvNode.h"
#include "tests/render/world.h"

namespace corvanta::render_tests {
namespace {

/// What an environment does to a picture: of a white wall from -4 to 4 in x and y at z = 0, which a
/// lamp lights along its normal. The camera at z = 12 sees 8.7 units of its height.
class EffectTest : public World {
 protected:
  void SetUp() override {
    World::SetUp();
    if (IsSkipped()) return;
    m_environment = m_document.GetEnvironments().CreateNode(NNodeID());
    SetColor(*m_environment, L"color", 0, 0, 0);
    m_scene->SetEnvironment(m_environment);
    m_lamps = m_document.GetLightEnvs().CreateNode(NNodeID());
    m_environment->AddLightEnv(m_lamps);
    auto const lamp = m_lamps->CreateLamp(data::domain::light_env::LAMP_TYPE_DIRECTIONAL);
    lamp->SetDirectionX(0);
    lamp->SetDirectionY(0);
    lamp->SetDirectionZ(-1);
    m_material = m_document.GetMaterials().CreateNode(NNodeID());
    SetColor(*m_material, L"diffuse", 1, 1, 1);
    m_wall = Add<item::NSceneGraphModelNode>(m_root.get());
    m_wall->SetMaterial(m_material);
    m_wall->SetGeometryNode(CreateGeometry({-4, -4, 0, 4, -4, 0, 4, 4, 0, -4, 4, 0},
                                           {0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1},
                                           {0, 1, 2, 0, 2, 3}));
  }

  int GreyAt(renderer::NPixels const& picture, float x, float y) const {
    return picture.GetRow(0)[3 * IndexOf(x, y)];
  }

  boost::intrusive_ptr<data::domain::environment::NEnvironmentNode> m_environment;
  boost::intrusive_ptr<data::domain::light_env::NLightEnvNode> m_lamps;
  boost::intrusive_ptr<data::domain::material::NMaterialNode> m_material;
  Model m_wall;
};

TEST_F(EffectTest, AStarGlaresAlongItsDiagonals) {
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

TEST_F(EffectTest, AutomaticExposureMakesTheMiddleGrey) {
  m_environment->SetHdrBloom(0);
  m_environment->SetAutoExposureIsEnabledFlag(true);
  for (double const strength : {0.01, 1.0, 40.0}) {
    SCOPED_TRACE(strength);
    m_lamps->SetLampsCoefficient(strength);
    EXPECT_NEAR(GreyAt(DrawPicture(), 0, 0), Encode(0.18), 1);
  }
  m_environment->SetRelativeExposure(1);
  EXPECT_NEAR(GreyAt(DrawPicture(), 0, 0), Encode(0.36), 1);
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

TEST_F(EffectTest, DiffuseLightHasAWeightOfItsOwn) {
  SetColor(*m_material, L"diffuse", 0.5, 0.5, 0.5);
  SetColor(*m_material, L"emissive", 0.1, 0.1, 0.1);
  m_environment->SetHdrDiffuse(0.5);
  EXPECT_NEAR(GreyAt(DrawPicture(), 0, 0), Encode(0.1 + 0.25), 1);
}

/// A floor before the wall's lower half, at right angles.
TEST_F(EffectTest, CornersAreOccluded) {
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

TEST_F(EffectTest, WithoutABackgroundAPictureIsTransparent) {
  SetColor(*m_environment, L"color", 0, 0, 1);
  m_wall->SetScaleX(0.5);
  m_renderer->SetHasBackgroundFlag(false);
  auto const get = [this](float x) {
    NTarget const target(*m_context, kWidth, kHeight, NTarget::NTK_PICTURE);
    m_renderer->DrawPicture(*m_scene, GetViewpoint(), target, {0, 0, kWidth, kHeight});
    auto const picture = target.ReadTransparentPicture();
    std::size_t const pixel = IndexOf(x, 0);
    unsigned char const* const color = picture.GetRow(0) + 3 * pixel;
    return std::array{int{color[0]}, int{color[2]}, int{picture.GetOpacities()[pixel]}};
  };
  EXPECT_EQ(get(0), (std::array{255, 255, 255}));
  EXPECT_EQ(get(3), (std::array{0, 0, 0}));
  // Its colour isn't darkened by how little covers it.
  m_material->SetTransparency(0.25);
  EXPECT_NEAR(get(0)[2], 64, 1);
  EXPECT_NEAR(get(0)[0], 255, 1);
}

}  // namespace
}  // namespace corvanta::render_tests
