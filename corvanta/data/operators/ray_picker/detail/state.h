#pragma once

#include <limits>

#include "corvanta/data/operators/ray_picker/NRayPicker.h"

namespace corvanta::data::operators::ray_picker {

struct NRayPicker::State {
  /// What is left to do of a walk, the next last. A stack of our own, so that depth costs no stack.
  struct Step {
    enum Kind : unsigned char { kVisit, kLeave, kLeaveModel, kLeaveTree, kLeaveShown };
    Kind kind;
    // Held, since reading a tree may reach listeners, which may edit what is walked.
    boost::intrusive_ptr<domain::NNode const> node;
  };

  VX_Math::Line ray{};
  VX_Math::MatrixStack stack{};
  std::vector<PickRecord> records{};
  std::vector<boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphModelNode const>>
      models{};  // keeps what the records point to
  boost::intrusive_ptr<domain::scenegraph::tree::NSceneGraphTreeNode> tree{};
  decltype(PickRecord::checkPoints) checkPoints{};
  bool isInArea = false;
  bool isFromPlane = false;
  VX_Math::Vec2 clip{};
  VX_Math::Box3 space{};
  VX_Math::Plane plane{};
  double planeDistance = std::numeric_limits<float>::max();
  VX_Math::Vec3 rayStart{}, rayEnd{};
  VX_Math::Vec3 planeHit{};

  std::vector<Step> steps{};
  std::vector<domain::scenegraph::tree::NSceneGraphTreeNode const*> trees{};  // that it stands in
  std::vector<VX_Math::Matrix> controls{
      VX_Math::Matrix()};  // of the stored tree, then a check point
  bool isWalking = false;
};

}  // namespace corvanta::data::operators::ray_picker
