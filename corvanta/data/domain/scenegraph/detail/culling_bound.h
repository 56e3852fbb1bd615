#pragma once

#include "corvanta/data/domain/scenegraph/detail/NBoxHierarchy.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphItemNode.h"
#include "corvanta/vx_math/Box3.h"
#include "corvanta/vx_math/Matrix.h"
#include "corvanta/vx_math/Vec3.h"

namespace corvanta::data::domain::scenegraph::detail {

/// How much a matrix magnifies the errors of what goes through it and back: the ratio of the
/// longest of the upper three rows to the shortest.
/// Fails: 0 where that says little, for rows far from right angles or from length 1, or not finite.
float GetConditionNumber(VX_Math::Matrix const& m) noexcept;
/// At least the largest coordinate of `box` and of the translation of `m`.
float GetExtent(VX_Math::Box3 const& box, VX_Math::Matrix const& m) noexcept;

/// A ray in the frame of an item, for sparing it the children that it can't meet: tested by the
/// children's boxes in that frame, grown by far more than all rounding on the way, and before a
/// child's matrix is inverted. It never rejects a child whose own box the ray would be found to
/// meet.
class NCullingBound {
 public:
  /// Units: `matrix` is the item's global matrix and `inverse` its inverse; the ray is given global
  /// and in the item's frame.
  NCullingBound(VX_Math::Matrix const& matrix, VX_Math::Matrix const& inverse,
                VX_Math::Vec3 const& globalOrigin, VX_Math::Vec3 const& origin,
                VX_Math::Vec3 const& direction) noexcept;

  /// Requires: the item's box is clean.
  bool MayMeet(item::NSceneGraphItemNode const& child) const noexcept;

  /// Whether there are children that it could spare the ray.
  bool CanSpare() const noexcept { return m_conditionNumber > 0; }
  /// The ray for children's boxes with their condition number times their extent as their reach.
  NBoxHierarchy::Ray GetRay(float greatestConditionNumber) const noexcept;

 private:
  VX_Math::Vec3 m_origin;
  VX_Math::Vec3 m_inverse;  // of the direction, a component each
  float m_conditionNumber;  // of the item's global matrix; 0: everything may be met
  float m_extent;           // the largest number that went into the ray
};

}  // namespace corvanta::data::domain::scenegraph::detail
