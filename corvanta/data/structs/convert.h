#pragma once

#include "corvanta/data/structs/XYZ.h"
#include "corvanta/vx_math/Vec3.h"

namespace corvanta::data::structs {

constexpr VX_Math::Vec3 ToVec3(XYZ const& v) noexcept { return {v.x, v.y, v.z}; }
constexpr XYZ ToXYZ(VX_Math::Vec3 const& v) noexcept { return {v.x, v.y, v.z}; }

}  // namespace corvanta::data::structs
