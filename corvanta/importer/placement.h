#pragma once

#include <array>
#include <string_view>

#include "corvanta/core/name/NNamedObject.h"
#include "corvanta/importer/neutral/scene.h"
#include "corvanta/vx_math/Matrix.h"
#include "corvanta/vx_math/Vec3.h"

namespace corvanta::importer {

inline VX_Math::Vec3 ToVec3(neutral::NTriple const& v) { return {v[0], v[1], v[2]}; }
VX_Math::Matrix ToMatrix(std::array<float, 16> const& m);

/// Gives `object` the name that a file has for it, if there is one.
void SetName(core::name::NNamedObject& object, std::string_view name);

/// Where a light or a camera is in the frame of its node. A light shines along -z of its item;
/// a camera's item only carries its position.
VX_Math::Matrix GetPlace(neutral::NLight const& light);
VX_Math::Matrix GetPlace(neutral::NCamera const& camera);

/// Whether two transforms are the same but for rounding.
bool IsSameTransform(VX_Math::Matrix const& a, VX_Math::Matrix const& b);

}  // namespace corvanta::importer
