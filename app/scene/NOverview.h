#pragma once

#include <boost/intrusive_ptr.hpp>

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
  /// Moves the camera along the preset's line of sight so that it sees the whole of `box`, and no
  /// farther.
  void Frame(VX_Math::Box3 const& box);
  /// The same for what is in the tree now.
  /// Cost: linear in the items.
  void FrameAll();
  /// What FrameAll found last.
  VX_Math::Box3 const& GetBox() const { return m_box; }
  /// Whether a box that isn't finite has left the camera nowhere.
  bool IsLost() const;
  /// Makes all that is framed seen at that aspect.
  /// Units: width by height.
  void FitAspect(double aspect) const;
  /// The direction in which the camera is placed to look, of length 1.
  VX_Math::Vec3 const& GetSight() const { return m_sight; }
  /// Where the camera stands, global.
  VX_Math::Vec3 GetEye() const;
  /// Units: `aspect` is width by height.
  VX_Math::Matrix GetViewProjection(double aspect) const;

 private:
  Tree m_tree;
  boost::intrusive_ptr<data::domain::scene::NSceneNode> m_scene;
  boost::intrusive_ptr<data::domain::camera::NCameraNode> m_lens;
  Camera m_camera;
  VX_Math::Vec3 m_sight;
  VX_Math::Box3 m_box;
};

}  // namespace corvanta::app
