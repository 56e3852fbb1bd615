#include "corvanta/data/environment_map/detail/NRotationTransform.h"

#include "corvanta/vx_math/euler_angles.h"

namespace corvanta::data::environment_map::detail {

NRotationTransform::NRotationTransform(core::attribute::NAttributeHost const& owner,
                                       wchar_t const* x, wchar_t const* y, wchar_t const* z)
    : m_angles{owner.QueryAttribute(x), owner.QueryAttribute(y), owner.QueryAttribute(z)} {}

VX_Math::Matrix NRotationTransform::GetTransformImpl() const {
  if (m_angles[0] == nullptr) return VX_Math::Matrix();
  VX_Math::Vec3 const angles(static_cast<float>(m_angles[0]->GetDouble()),
                             static_cast<float>(m_angles[1]->GetDouble()),
                             static_cast<float>(m_angles[2]->GetDouble()));
  return VX_Math::Matrix(VX_Math::CreateQuaternion(angles, false));
}

}  // namespace corvanta::data::environment_map::detail
