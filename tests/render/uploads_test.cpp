#include "tests/render/world.h"

namespace corvanta::render_tests {
namespace {

using data::domain::material::texture_mapping::NUVWMappingType;

/// What is uploaded once more after a change.
class UploadsTest : public World {
 protected:
  void SetUp() override {
    World::SetUp();
    if (IsSkipped()) return;
    m_image->SetImageLocator(data::internal::GetDefaultFloorImage());
    m_texture->SetImage(m_image);
    m_material->AddTexture(m_texture, *New<NUVWMapping>(NUVWMappingType(1)), 0);
    m_model->SetMaterial(m_material);
    AddBall(*m_root, 3, 0, 0);
    m_before = Draw();
  }

  renderer::NUploads Draw() {
    DrawNumbers();
    return m_renderer->GetUploads();
  }

  void ExpectMore(std::size_t meshes, std::size_t coords, std::size_t pictures) {
    renderer::NUploads const now = Draw();
    EXPECT_EQ(now.meshes - m_before.meshes, meshes);
    EXPECT_EQ(now.coords - m_before.coords, coords);
    EXPECT_EQ(now.textures - m_before.textures, pictures);
    m_before = now;
  }

  Group m_group = Add(*m_root);
  Model m_model = AddBall(*m_group, 0, 0, 0);
  Pointer<NMaterialNode> m_material = materials->CreateNode();
  Pointer<NTextureNode> m_texture = textures->CreateNode();
  Pointer<NImageNode> m_image = images->CreateNode();
  renderer::NUploads m_before;
};

TEST_F(UploadsTest, TwoModelsShareOneMesh) {
  EXPECT_EQ(m_before.meshes, 1u);
  EXPECT_EQ(m_before.textures, 1u);
  ExpectMore(0, 0, 0);
}

TEST_F(UploadsTest, AMovedItemUploadsNothingAndIsSeenElsewhere) {
  auto const number = [this] { return m_renderer->GetItems().front().global(3, 0); };
  EXPECT_EQ(number(), 0.0f);
  m_group->SetTranslationX(1.5);
  ExpectMore(0, 0, 0);
  EXPECT_EQ(number(), 1.5f);
  m_tree->SetUnit(0.5);
  ExpectMore(0, 0, 0);
  EXPECT_EQ(number(), 0.75f);
}

TEST_F(UploadsTest, VisibilityAndPlaceInTheTreeUploadNothing) {
  m_group->SetIsVisibleFlag(false);
  ExpectMore(0, 0, 0);
  EXPECT_EQ(m_renderer->GetItems().size(), 1u);
  m_group->SetIsVisibleFlag(true);
  ExpectMore(0, 0, 0);
  Pointer<NSceneGraphItemNode> const kept = m_model;
  m_group->RemoveChild(*m_model);
  ExpectMore(0, 0, 0);
  m_root->AddChild(*m_model);
  ExpectMore(0, 0, 0);
  EXPECT_EQ(m_renderer->GetItems().size(), 2u);
}

TEST_F(UploadsTest, OnlyTheNamedThingIsUploadedAgain) {
  m_material->SetDiffuseR(0.7);
  ExpectMore(0, 0, 0);
  auto const& surface = *m_ball->GetSurfaces().begin();
  surface->Assign({0, 0, 0, 1, 0, 0, 0, 1, 0}, {0, 0, 1, 0, 0, 1, 0, 0, 1}, {0, 1, 2}, {});
  ExpectMore(1, 1, 0);
  m_image->SetImageLocator(data::internal::GetNotFoundImage());
  ExpectMore(0, 0, 1);
  m_model->SetGeometryNode(CreateBall());
  ExpectMore(1, 1, 0);
  m_material->SetEnvironmentMapIsEnabledFlag(true);
  ExpectMore(0, 0, 0);
  m_material->GetEnvironmentMap().SetImage(m_image);
  ExpectMore(0, 0, 1);  // the same picture, but as a cube
  m_material->GetEnvironmentMap().SetImageType(data::environment_map::NEMIT_RECTANGULAR);
  ExpectMore(0, 0, 0);
}

TEST_F(UploadsTest, WhatChangesWhileNoTreeIsShownIsUploadedWithTheNext) {
  auto const& surface = *m_ball->GetSurfaces().begin();
  m_scene->SetSceneGraph({});
  ExpectMore(0, 0, 0);
  EXPECT_TRUE(m_renderer->GetItems().empty());
  surface->Assign({0, 0, 0, 1, 0, 0, 0, 1, 0}, {0, 0, 1, 0, 0, 1, 0, 0, 1}, {0, 1, 2}, {});
  m_image->SetImageLocator(data::internal::GetNotFoundImage());
  ExpectMore(0, 0, 0);
  m_scene->SetSceneGraph(m_tree);
  ExpectMore(1, 1, 1);
  EXPECT_EQ(m_renderer->GetItems().size(), 2u);
}

TEST_F(UploadsTest, BrokenTrianglesDrawNothingAndHarmNothingElse) {
  float const inf = static_cast<float>(kInfinity), nan = static_cast<float>(kNaN);
  auto const before = DrawNumbers();
  auto const broken = Add<NSceneGraphModelNode>(*m_root);
  broken->SetGeometryNode(CreateGeometry({nan, 0, 0, 9, 0, 0, 0, 9, 0, 5, inf, 5},
                                         std::vector<float>(12, nan),
                                         {0, 1, 2, 1, 2, 3, 1, 2, 77}));
  auto const flat = AddBall(*m_root, 0, 0, 1);
  flat->SetScaleX(nan);
  m_renderer->Update(*m_scene);
  Box3 const box = m_renderer->GetBox();
  EXPECT_TRUE(box.max.x - box.min.x < 20.0f);
  auto const [near, far] = item::GetClipDistances(GetCamera(), box);
  NTarget const target(*m_context, kWidth, kHeight, NTarget::NTK_NUMBERS);
  m_renderer->DrawNumbers(*m_scene, renderer::GetViewpoint(GetCamera(), 4.0 / 3, {near, far}),
                          target, {0, 0, kWidth, kHeight});
  EXPECT_EQ(target.ReadNumbers(), before);
}

}  // namespace
}  // namespace corvanta::render_tests
