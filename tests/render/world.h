#pragma once

#include "corvanta/renderer/NContext.h"
#include "corvanta/renderer/NRenderError.h"
#include "corvanta/renderer/NRenderer.h"
#include "tests/support/ball.h"
#include "tests/support/world.h"

namespace corvanta::render_tests {

using renderer::NCameraPath;
using renderer::NDrawItem;
using renderer::NTarget;
using renderer::NViewpoint;
using Geometry = Pointer<NGeometryNode>;

/// A document with a scene whose tree has a group as its root, a camera below it, and a renderer.
/// A test on a machine that can't draw is skipped.
class World : public testing::Test, protected support::World {
 protected:
  static constexpr unsigned kWidth = 160, kHeight = 120;

  World() {
    try {
      m_context = std::make_unique<renderer::NContext>();
    } catch (renderer::NRenderError const& error) {
      m_fault = error.what();
      return;
    }
    m_renderer = std::make_unique<renderer::NRenderer>(*m_context, *events);
    m_scene->SetSceneGraph(m_tree);
    m_root->AddChild(*m_camera);
    m_lens->SetVerticalViewAngle(40);
    m_camera->SetCameraNode(m_lens);
    m_camera->SetTranslationZ(12);
  }
  void SetUp() override {
    if (!m_context) GTEST_SKIP() << m_fault;
  }

  template <class Kind = NSceneGraphGroupNode>
  Pointer<Kind> Add(NSceneGraphItemNode& parent) {
    auto const node = Make<Kind>();
    parent.AddChild(*node);
    return node;
  }

  /// A ball of radius 1 at (x, y, z), squeezed so that it doesn't look alike from all sides.
  Model AddBall(NSceneGraphItemNode& parent, double x, double y, double z, double size = 1) {
    auto const model = Add<NSceneGraphModelNode>(parent);
    model->SetGeometryNode(m_ball);
    Move(*model, x, y, z);
    model->SetScaleX(size);
    model->SetScaleY(size * 0.7);
    model->SetScaleZ(size * 0.9);
    model->SetRotationZ(20 * x + 10);
    return model;
  }

  auto Show(Tree const& tree, NSceneGraphItemNode& parent) {
    auto const reference = Add<NSceneGraphReferenceNode>(parent);
    reference->SetSceneGraph(tree);
    return reference;
  }

  Geometry CreateGeometry(std::vector<float> const& coords, std::vector<float> const& normals,
                          std::vector<unsigned> const& indices,
                          NSurface::UVWsMap const& uvws = {}) const {
    auto const geometry = geometries->CreateNode();
    auto const surface = New<NPolygonSurface>();
    surface->Assign(coords, normals, indices, uvws);
    geometry->AddSurface(*surface);
    return geometry;
  }

  Geometry CreateBall() const {
    support::Ball const ball(16, 10);
    return CreateGeometry(ball.coords, ball.coords, ball.indices);
  }

  NCameraPath GetCamera() const { return {*m_camera, *m_tree}; }

  NViewpoint GetViewpoint() const {
    auto const [near, far] = item::GetClipDistances(GetCamera(), *m_tree);
    return renderer::GetViewpoint(GetCamera(), static_cast<double>(kWidth) / kHeight, {near, far});
  }

  /// The numbers of a picture of the scene, rows from the top.
  std::vector<std::uint32_t> DrawNumbers() {
    NTarget const target(*m_context, kWidth, kHeight, NTarget::NTK_NUMBERS);
    m_renderer->DrawNumbers(*m_scene, GetViewpoint(), target, {0, 0, kWidth, kHeight});
    return target.ReadNumbers();
  }

  renderer::NPixels DrawPicture() {
    NTarget const target(*m_context, kWidth, kHeight, NTarget::NTK_PICTURE);
    m_renderer->DrawPicture(*m_scene, GetViewpoint(), target, {0, 0, kWidth, kHeight});
    return target.ReadPicture();
  }

  std::string m_fault;
  std::unique_ptr<renderer::NContext> m_context;
  std::unique_ptr<renderer::NRenderer> m_renderer;
  Group m_root = Make();
  Tree m_tree = MakeTree(m_root);
  Pointer<NSceneNode> m_scene = scenes->CreateNode();
  Camera m_camera = Make<NSceneGraphCameraNode>();
  Pointer<NCameraNode> m_lens = cameras->CreateNode();
  Geometry m_ball = CreateBall();
};

}  // namespace corvanta::render_tests
