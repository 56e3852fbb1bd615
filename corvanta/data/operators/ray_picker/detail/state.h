#pragma once

#include <limits>

#include "corvanta/data/domain/scenegraph/detail/NChildIndex.h"
#include "corvanta/data/domain/scenegraph/detail/NWalkBounds.h"
#include "corvanta/data/domain/scenegraph/detail/culling_bound.h"
#include "corvanta/data/operators/ray_picker/NRayPicker.h"

namespace corvanta::data::operators::ray_picker {

struct NRayPicker::State {
  State();
  State(State const&) = delete;
  State& operator=(State const&) = delete;
  ~State();

  /// What is left to do of a walk, the next last. A stack of our own, so that depth costs no stack.
  /// A run of the list of active rays, and what that list is cut back to after the last step for
  /// them.
  struct Rays {
    static constexpr std::size_t kShared = ~std::size_t{0};  // cut: to what it is at that step
    std::size_t first, end, cut;
  };
  struct Step {
    enum Kind : unsigned char { kVisit, kVisitTree, kLeave, kLeaveModel, kLeaveTree, kLeaveShown };
    Kind kind;
    Rays rays;
    // Held, since reading a tree may reach listeners, which may edit what is walked.
    boost::intrusive_ptr<domain::NNode const> node;
  };

  struct Record : PickRecord {
    std::uint64_t place;  // in the order of the walk
    std::uint32_t ray;
  };
  struct Ray {
    VX_Math::Line line{};
    VX_Math::Vec3 start{}, end{};
    double planeDistance = std::numeric_limits<float>::max();

    static Ray Along(VX_Math::Line const& line) {
      return {line, line.GetOrigin(),
              line.GetOrigin() + line.GetDirection() * std::numeric_limits<float>::max()};
    }
  };
  /// A ray in the frame of the item that is being entered, whose box it meets.
  struct LocalRay {
    std::uint32_t ray;
    VX_Math::Vec3 origin, direction;
    double distance;
  };
  /// A child that a ray may meet.
  struct Met {
    domain::scenegraph::detail::NChildIndex::Child child;
    std::uint32_t ray;
  };

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
  double planeDistance = std::numeric_limits<float>::max();  // of the ray under test
  bool isAhead = false;                                      // only hits ahead of the origin count
  VX_Math::Vec3 planeHit{};

  std::vector<Step> steps{};
  std::vector<Ray> rays{};
  // The numbers of the rays that the steps are for, those of the next step last.
  std::vector<std::uint32_t> active{};
  Rays current{};  // of the step that is being taken
  // Of the item being entered:
  VX_Math::Matrix inverse{};
  std::vector<LocalRay> local{};
  std::vector<domain::scenegraph::detail::NCullingBound> bounds{};  // one a local ray
  std::vector<domain::scenegraph::detail::NChildIndex::Child> children{};
  std::vector<Met> met{};
  std::size_t pushed = 0;  // of the stack of matrices
  std::uint64_t nextPlace = 0;
  domain::scenegraph::detail::NWalkBounds budget{};
  // The control transform of the stored tree, then one a check point.
  std::vector<VX_Math::Matrix> controls{VX_Math::Matrix()};
  bool isWalking = false;

 private:
  struct Spare;
};

}  // namespace corvanta::data::operators::ray_picker
