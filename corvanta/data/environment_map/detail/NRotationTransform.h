#pragma once

#include <array>

#include "corvanta/core/attribute/NAttributeHost.h"
#include "corvanta/data/environment_map/NEnvironmentMapTransform.h"

namespace corvanta::data::environment_map::detail {

/// Turns an environment map by three attributes of its owner, as they are when it is asked.
/// Units: degrees, about x, then y, then z.
class NRotationTransform final : public NEnvironmentMapTransform {
 public:
  /// Requires: `owner` has the three attributes.
  NRotationTransform(core::attribute::NAttributeHost const& owner, wchar_t const* x,
                     wchar_t const* y, wchar_t const* z);

  /// For the owner's end, which the map may outlive: the identity from then on.
  void ClearOwner() noexcept { m_angles.fill(nullptr); }

 private:
  VX_Math::Matrix GetTransformImpl() const override;

  std::array<core::attribute::NAttribute const*, 3> m_angles;
};

}  // namespace corvanta::data::environment_map::detail
