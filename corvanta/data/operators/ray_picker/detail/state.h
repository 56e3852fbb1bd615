#pragma once

#include <limits>

#include "corvanta/data/domain/scenegraph/detail/NChildIndex.h"
#include "corvanta/data/domain/scenegraph/detail/NWalkBounds.h"
#include "corvanta/data/operators/ray_picker/NRayPicker.h"

namespace corvanta::data::operators::ray_picker {

struct NRayPicker::State {
  State();
  State(State const&) = delete;
  State& operator=(State const&) = delete;
  ~State();

  /// What is left to do of a walk, the next last. A stack of our own, so that depth costs no stack.
  struct Step {
    enum Kind : unsigned char { kVisit, kLeave, kLeaveModel, kLeaveTree, kLeaveShown };
    Kind kind;
    // Held, since reading a tree may reach listeners, which may edit what is walked.
    boost::intrusive_ptr<domain::NNode const> node;
  };

  struct Record : PickRecord {
    std::uint64_t place;  // in the order of the walk
  };

  VX_Math::Line ray{};
  VX_Math::MatrixStack stack{};
  std::vector<Record> records{};
  std::vector<boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphModelNode const>>
      models{};  // keeps what the records point to
  boost::intrusive_ptr<domain::scenegraph::tree::NSceneGraphTreeNode> tree{};
  domain::scenegraph::NCheckPoints checkPoints{};
  bool isInArea = false;
  bool isFromPlane = false;
  VX_Math::Vec2 clip{};
  VX_Math::Box3 space{};
  VX_Math::Plane plane{};
  double planeDistance = std::numeric_limits<float>::max();
  VX_Math::Vec3 rayStart{}, rayEnd{};
  VX_Math::Vec3 planeHit{};

  std::vector<Step> steps{};
  std::vector<domain::scenegraph::detail::NChildIndex::Child> met{};  // of the item being entered
  std::size_t pushed = 0;                                             // of the stack of matrices
  std::uint64_t nextPlace = 0;
  domain::scenegraph::detail::NWalkBounds bounds{};
  // The control transform of the stored tree, then one a check point.
  std::vector<VX_Math::Matrix> controls{VX_Math::Matrix()};
  bool isWalking = false;

 private:
  struct Spare;
};

}  // namespace corvanta::data::operators::ray_picker
