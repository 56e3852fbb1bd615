#include <algorithm>
#include <functional>

#include "corvanta/data/domain/material/texture_mapping/NUVWMapping.h"
#include "corvanta/data/internal/built_in_images.h"
#include "tests/out_of_memory/failing_allocations.h"
#include "tests/render/world.h"

namespace corvanta::render_tests {
namespace {

using data::domain::material::texture_mapping::NUVWMapping;
using data::domain::material::texture_mapping::NUVWMappingType;

/// What is uploaded once more after a change.
class UploadsTest : public World {
 protected:
  void SetUp() override {
    World::SetUp();
    if (IsSkipped()) return;
    m_group = AddGroup(*m_root);
    m_model = AddBall(*m_group, 0, 0, 0);
    m_material = m_document.GetMaterials().CreateNode(NNodeID());
    m_texture = m_document.GetTextures().CreateNode(NNodeID());
    m_image = m_document.GetImages().CreateNode(NNodeID());
    m_image->SetImageLocator(data::internal::GetDefaultFloorImage());
    m_texture->SetImage(m_image);
    boost::intrusive_ptr<NUVWMapping> const mapping(new NUVWMapping(NUVWMappingType(1)));
    m_material->AddTexture(m_texture, *mapping, 0);
    m_model->SetMaterial(m_material);
    AddBall(*m_root, 3, 0, 0);
    m_before = Draw();
  }

  renderer::NUploads Draw() {
    DrawNumbers();
    return m_renderer->GetUploads();
  }

  void ExpectMore(std::size_t meshes, std::size_t coords, std::size_t textures) {
    renderer::NUploads const now = Draw();
    EXPECT_EQ(now.meshes - m_before.meshes, meshes);
    EXPECT_EQ(now.coords - m_before.coords, coords);
    EXPECT_EQ(now.textures - m_before.textures, textures);
    m_before = now;
  }

  Group m_group;
  Model m_model;
  boost::intrusive_ptr<data::domain::material::NMaterialNode> m_material;
  boost::intrusive_ptr<data::domain::texture::NTextureNode> m_texture;
  boost::intrusive_ptr<data::domain::image::NImageNode> m_image;
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
  boost::intrusive_ptr<item::NSceneGraphItemNode> const kept = m_model;
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

TEST_F(UploadsTest, WhatFailsIsTakenOverByTheNextUpdate) {
  auto const& surface = *m_ball->GetSurfaces().begin();
  std::function<void()> const changes[] = {
      [&] { m_material->SetTransparency(0.5); },
      [&] {
        surface->Assign({0, 0, 0, 1, 0, 0, 0, 1, 0}, {0, 0, 1, 0, 0, 1, 0, 0, 1}, {0, 1, 2}, {});
      },
      [&] { m_group->SetIsVisibleFlag(false); },
  };
  for (auto const& change : changes) {
    change();
    int const failures = out_of_memory::FailEverywhere(
        [&] { m_renderer->Update(*m_scene); },
        [&] { EXPECT_TRUE(m_renderer->GetItems().empty() || m_renderer->GetItems().size() == 2); });
    EXPECT_GT(failures, 0);
    auto const numbers = DrawNumbers();
    auto const picture = DrawPicture();
    m_renderer = std::make_unique<renderer::NRenderer>(*m_context, m_document.GetEvents());
    EXPECT_EQ(DrawNumbers(), numbers);
    auto const anew = DrawPicture();
    EXPECT_TRUE(std::equal(anew.GetRow(0), anew.GetRow(kHeight), picture.GetRow(0)));
  }
}

TEST_F(UploadsTest, BrokenTrianglesDrawNothingAndHarmNothingElse) {
  float const inf = std::numeric_limits<float>::infinity();
  float const nan = std::numeric_limits<float>::quiet_NaN();
  auto const before = DrawNumbers();
  auto const broken = Add<item::NSceneGraphModelNode>(m_root.get());
  broken->SetGeometryNode(CreateGeometry({nan, 0, 0, 9, 0, 0, 0, 9, 0, 5, inf, 5},
                                         std::vector<float>(12, nan),
                                         {0, 1, 2, 1, 2, 3, 1, 2, 77}));
  auto const flat = AddBall(*m_root, 0, 0, 1);
  flat->SetScaleX(nan);
  m_renderer->Update(*m_scene);
  VX_Math::Box3 const box = m_renderer->GetBox();
  EXPECT_TRUE(box.max.x - box.min.x < 20.0f);
  auto const [near, far] = item::GetClipDistances(GetCamera(), box);
  NTarget const target(*m_context, kWidth, kHeight, NTarget::NTK_NUMBERS);
  m_renderer->DrawNumbers(*m_scene, renderer::GetViewpoint(GetCamera(), 4.0 / 3, {near, far}),
                          target, {0, 0, kWidth, kHeight});
  EXPECT_EQ(target.ReadNumbers(), before);
}

}  // namespace
}  // namespace corvanta::render_tests
