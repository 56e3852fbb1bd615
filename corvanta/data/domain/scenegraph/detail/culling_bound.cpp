#include "corvanta/data/domain/scenegraph/detail/culling_bound.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "corvanta/data/domain/scenegraph/detail/item_access.h"
#include "corvanta/data/domain/scenegraph/item/detail/block.h"

namespace corvanta::data::domain::scenegraph::detail {

using VX_Math::Box3;
using VX_Math::Matrix;
using VX_Math::Vec3;

namespace {

/// Some sixty roundings of a float; a coordinate goes through fewer.
constexpr float kRounding = 4e-6f;
/// A little more, so that a hierarchy of boxes rejects nothing that is met here.
constexpr float kHierarchyRounding = 4.1e-6f;

float Largest(Vec3 const& v) noexcept {
  return std::max({std::abs(v.x), std::abs(v.y), std::abs(v.z)});
}

}  // namespace

float GetConditionNumber(Matrix const& m) noexcept {
  Vec3 const rows[3] = {
      {m(0, 0), m(0, 1), m(0, 2)}, {m(1, 0), m(1, 1), m(1, 2)}, {m(2, 0), m(2, 1), m(2, 2)}};
  float const squares[3] = {rows[0].Dot(rows[0]), rows[1].Dot(rows[1]), rows[2].Dot(rows[2])};
  float const least = std::min({squares[0], squares[1], squares[2]});
  float const greatest = std::max({squares[0], squares[1], squares[2]});
  if (!(least > 1e-12f && greatest < 1e12f && greatest < 1e4f * least)) return 0;
  for (int i = 0; i != 3; ++i) {
    float const cosine = rows[i].Dot(rows[(i + 1) % 3]);
    if (!(cosine * cosine <= 1e-4f * squares[i] * squares[(i + 1) % 3])) return 0;
  }
  return std::sqrt(greatest / least);
}

float GetExtent(Box3 const& box, Matrix const& m) noexcept {
  return Largest(box.min) + Largest(box.max) + Largest({m(3, 0), m(3, 1), m(3, 2)});
}

NCullingBound::NCullingBound(Matrix const& matrix, Matrix const& inverse, Vec3 const& globalOrigin,
                             Vec3 const& origin, Vec3 const& direction) noexcept
    : m_origin(origin),
      m_inverse(1 / direction.x, 1 / direction.y, 1 / direction.z),
      m_conditionNumber(GetConditionNumber(matrix)) {
  float norm = 0;
  for (int column = 0; column != 3; ++column) {
    norm = std::max(norm, std::abs(inverse(0, column)) + std::abs(inverse(1, column)) +
                              std::abs(inverse(2, column)));
  }
  m_extent = norm * Largest(globalOrigin) + Largest({inverse(3, 0), inverse(3, 1), inverse(3, 2)}) +
             Largest(origin);
}

NBoxHierarchy::Ray NCullingBound::GetRay(float greatestConditionNumber) const noexcept {
  float const scale = kHierarchyRounding * m_conditionNumber;
  return {m_origin, m_inverse, scale * greatestConditionNumber * m_extent, scale};
}

bool NCullingBound::MayMeet(item::NSceneGraphItemNode const& child) const noexcept {
  auto const& block = NItemAccess::GetBlock(child);
  // The culling box is relative to the parent, also where a silent write has since made the
  // item absolute.
  if (block.AN_TRANSFORM_IS_ABSOLUTE.Get()) return true;
  auto const& cullingBox = block.cullingBox;
  float const conditionNumber = m_conditionNumber * cullingBox.conditionNumber;
  if (!(conditionNumber > 0)) return true;
  Box3 const& box = cullingBox.box;
  float const extent = m_extent + cullingBox.extent;
  float const margin = kRounding * conditionNumber * extent;
  float enter = -std::numeric_limits<float>::infinity();
  float leave = std::numeric_limits<float>::infinity();
  for (int axis = 0; axis != 3; ++axis) {
    float const t1 = (box.min[axis] - margin - m_origin[axis]) * m_inverse[axis];
    float const t2 = (box.max[axis] + margin - m_origin[axis]) * m_inverse[axis];
    float const near = t1 > t2 ? t2 : t1;
    float const far = t1 > t2 ? t1 : t2;
    // What isn't a number narrows nothing.
    if (near > enter) enter = near;
    if (far < leave) leave = far;
  }
  return !(enter > leave || leave < 0);
}

}  // namespace corvanta::data::domain::scenegraph::detail
