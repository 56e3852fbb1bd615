#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <vector>

#include "corvanta/data/document/NDocument.h"
#include "corvanta/data/domain/geometry/NPolygonSurface.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphGroupNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphReferenceNode.h"
#include "corvanta/data/domain/scenegraph/item/view.h"
#include "corvanta/renderer/NContext.h"
#include "corvanta/renderer/NRenderError.h"
#include "corvanta/renderer/NRenderer.h"
#include "tests/support/ball.h"

namespace corvanta::render_tests {

namespace item = data::domain::scenegraph::item;
using core::node::NNodeID;
using core::node::NNodeReference;
using renderer::NCameraPath;
using renderer::NDrawItem;
using renderer::NTarget;
using renderer::NViewpoint;
using Group = boost::intrusive_ptr<item::NSceneGraphGroupNode>;
using Model = boost::intrusive_ptr<item::NSceneGraphModelNode>;
using Geometry = boost::intrusive_ptr<data::domain::geometry::NGeometryNode>;
using Tree = boost::intrusive_ptr<data::domain::scenegraph::tree::NSceneGraphTreeNode>;

using Color = std::array<int, 3>;

/// The byte of a value of linear light.
inline int Encode(double linear) {
  double const value =
      linear <= 0.0031308 ? 12.92 * linear : 1.055 * std::pow(linear, 1 / 2.4) - 0.055;
  return static_cast<int>(std::lround(255 * std::clamp(value, 0.0, 1.0)));
}

/// The linear light of a byte.
inline double Decode(int byte) {
  double const value = byte / 255.0;
  return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

/// Filtering spreads a little of each pixel of a texture.
inline void ExpectColor(Color const& color, Color const& expected, int tolerance = 16) {
  for (std::size_t c = 0; c != 3; ++c) EXPECT_NEAR(color[c], expected[c], tolerance) << c;
}

inline void SetColor(core::attribute::NAttributeHost& host, std::wstring const& name, double r,
                     double g, double b) {
  host.QueryAttribute(name + L".r")->SetValue(r, true);
  host.QueryAttribute(name + L".g")->SetValue(g, true);
  host.QueryAttribute(name + L".b")->SetValue(b, true);
}

/// A document with a scene whose tree has a group as its root, a camera below it, and a renderer.
/// A test on a machine that can't draw is skipped.
class World : public testing::Test {
 protected:
  static constexpr unsigned kWidth = 160, kHeight = 120;

  void SetUp() override {
    try {
      m_context = std::make_unique<renderer::NContext>();
    } catch (renderer::NRenderError const& error) {
      GTEST_SKIP() << error.what();
    }
    m_renderer = std::make_unique<renderer::NRenderer>(*m_context, m_document.GetEvents());
    m_root = Add<item::NSceneGraphGroupNode>(nullptr);
    m_tree = CreateTree(*m_root);
    m_scene = m_document.GetScenes().CreateNode(NNodeID());
    m_scene->SetSceneGraph(m_tree);
    m_camera = Add<item::NSceneGraphCameraNode>(m_root.get());
    m_lens = m_document.GetCameras().CreateNode(NNodeID());
    m_lens->SetVerticalViewAngle(40);
    m_camera->SetCameraNode(m_lens);
    m_camera->SetTranslationZ(12);
    m_ball = CreateBall();
  }

  template <class Kind>
  boost::intrusive_ptr<Kind> Add(item::NSceneGraphItemNode* parent) {
    auto const node = m_document.GetItems().CreateNode<Kind>(NNodeID());
    if (parent != nullptr) parent->AddChild(*node);
    return node;
  }

  /// A ball of radius 1 at (x, y, z), squeezed so that it doesn't look alike from all sides.
  Model AddBall(item::NSceneGraphItemNode& parent, double x, double y, double z, double size = 1) {
    auto const model = Add<item::NSceneGraphModelNode>(&parent);
    model->SetGeometryNode(m_ball);
    model->SetTranslationX(x);
    model->SetTranslationY(y);
    model->SetTranslationZ(z);
    model->SetScaleX(size);
    model->SetScaleY(size * 0.7);
    model->SetScaleZ(size * 0.9);
    model->SetRotationZ(20 * x + 10);
    return model;
  }

  Group AddGroup(item::NSceneGraphItemNode& parent) {
    return Add<item::NSceneGraphGroupNode>(&parent);
  }

  Tree CreateTree(item::NSceneGraphItemNode& root) {
    auto const tree = m_document.GetTrees().CreateNode(NNodeID());
    tree->SetRoot(NNodeReference<item::NSceneGraphItemNode>(root));
    return tree;
  }

  auto Show(Tree const& tree, item::NSceneGraphItemNode& parent) {
    auto const reference = Add<item::NSceneGraphReferenceNode>(&parent);
    reference->SetSceneGraph(tree);
    return reference;
  }

  Geometry CreateGeometry(std::vector<float> const& coords, std::vector<float> const& normals,
                          std::vector<unsigned> const& indices) {
    auto const geometry = m_document.GetGeometries().CreateNode(NNodeID());
    boost::intrusive_ptr<data::domain::geometry::NSurface> const surface(
        new data::domain::geometry::NPolygonSurface);
    surface->Assign(coords, normals, indices, {});
    geometry->AddSurface(*surface);
    return geometry;
  }

  Geometry CreateBall() {
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

  /// The pixel where a point of the plane z = 0 is seen.
  std::size_t IndexOf(float x, float y) const {
    VX_Math::Vec3 position(x, y, 0);
    GetViewpoint().GetViewProjection().MultVecMatrix(position, position);
    auto const column = static_cast<std::size_t>((position.x + 1) / 2 * kWidth);
    auto const row = static_cast<std::size_t>((1 - position.y) / 2 * kHeight);
    return row * kWidth + column;
  }
  Color At(renderer::NPixels const& picture, float x, float y) const {
    unsigned char const* const pixel = picture.GetRow(0) + 3 * IndexOf(x, y);
    return {pixel[0], pixel[1], pixel[2]};
  }
  Color GetMiddle() {
    auto const picture = DrawPicture();
    unsigned char const* const pixel = picture.GetRow(kHeight / 2) + 3 * (kWidth / 2);
    return {pixel[0], pixel[1], pixel[2]};
  }

  data::document::NDocument m_document;
  std::unique_ptr<renderer::NContext> m_context;
  std::unique_ptr<renderer::NRenderer> m_renderer;
  Group m_root;
  Tree m_tree;
  boost::intrusive_ptr<data::domain::scene::NSceneNode> m_scene;
  boost::intrusive_ptr<item::NSceneGraphCameraNode> m_camera;
  boost::intrusive_ptr<data::domain::camera::NCameraNode> m_lens;
  Geometry m_ball;
};

}  // namespace corvanta::render_tests
