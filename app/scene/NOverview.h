#pragma once

#include <array>
#include <boost/intrusive_ptr.hpp>
#include <optional>
#include <vector>

#include "corvanta/data/document/NDocument.h"
#include "corvanta/data/domain/camera/NCameraNode.h"
#include "corvanta/data/domain/scene/NSceneNode.h"
#include "corvanta/data/domain/scenegraph/NSceneGraphPath.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphCameraNode.h"
#include "corvanta/vx_math/Box3.h"

namespace corvanta::app {

/// A scene that shows a tree, with a camera in it that sees the whole from where the preset looks.
class NOverview {
 public:
  using Tree = boost::intrusive_ptr<data::domain::scenegraph::tree::NSceneGraphTreeNode>;

  /// Requires: `tree` has a root, below which the camera is put.
  NOverview(data::document::NDocument& document, Tree const& tree);

  using Camera = data::domain::scenegraph::NSceneGraphPath<
      data::domain::scenegraph::item::NSceneGraphCameraNode>;

  data::domain::scene::NSceneNode& GetScene() const { return *m_scene; }
  Camera const& GetCamera() const { return m_camera; }
  /// Puts the camera where it sees the whole of `box`, and no farther away, looking as the preset
  /// does.
  void Frame(VX_Math::Box3 const& box);
  /// The same for what is in the tree now.
  /// Cost: linear in the items and their vertices.
  void FrameAll();
  /// Turns the line of sight about the y axis, and frames again.
  /// Units: degrees.
  void Orbit(double angle);
  /// What FrameAll found last.
  VX_Math::Box3 const& GetBox() const { return m_box; }
  /// The height that the models stand on, as FrameAll found it; none where nothing is seen.
  std::optional<float> GetLowest() const { return m_lowest; }
  /// Whether a box that isn't finite has left the camera nowhere.
  bool IsLost() const;
  /// Puts the camera where all that is framed fills a picture of that aspect, but for a margin;
  /// leaves it where it is if somebody else has moved it since.
  /// Units: width by height.
  void FitAspect(double aspect) const;
  /// The direction in which the camera is placed to look, of length 1.
  VX_Math::Vec3 const& GetSight() const { return m_sight; }
  /// Where the camera stands for the aspect of the last FitAspect or GetViewProjection, global.
  VX_Math::Vec3 GetEye() const;
  /// Units: `aspect` is width by height.
  VX_Math::Matrix GetViewProjection(double aspect) const;

 private:
  /// To the right of the picture, up and ahead, of length 1 each.
  std::array<VX_Math::Vec3, 3> GetAxes() const;
  void Place() const;
  /// Where the camera item stands and what it looks at.
  std::array<double, 6> GetStand() const;

  Tree m_tree;
  boost::intrusive_ptr<data::domain::scene::NSceneNode> m_scene;
  boost::intrusive_ptr<data::domain::camera::NCameraNode> m_lens;
  Camera m_camera;
  VX_Math::Vec3 m_sight;
  VX_Math::Box3 m_box;
  std::optional<float> m_lowest;
  std::vector<VX_Math::Vec3> m_points;      // that are to be seen
  mutable double m_aspect = 1;              // that the camera stands for
  mutable std::array<double, 6> m_stand{};  // where it was put; elsewhere somebody else leads it
};

}  // namespace corvanta::app
