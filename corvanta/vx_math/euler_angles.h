#pragma once

#include "corvanta/export.h"
#include "corvanta/vx_math/Matrix.h"
#include "corvanta/vx_math/Quaternion.h"
#include "corvanta/vx_math/TransformInfo.h"
#include "corvanta/vx_math/Vec3.h"

namespace VX_Math {

/// The rotation by `angles.x` about x, then by `angles.y` about y, then by `angles.z` about z.
/// Units: degrees, or radians if `isRadians`.
CORVANTA_API Quaternion CreateQuaternion(Vec3 const& angles, bool isRadians) noexcept;

/// The angles about x, y and z by which `m` turns what it has scaled, as `CreateQuaternion` takes
/// them. The angle about y lies in -pi/2 to pi/2; at either end, the angle about z is 0. A
/// mirroring matrix counts as mirroring x before it turns; a row of zeros as perpendicular to the
/// others.
///
/// Units: radians.
CORVANTA_API Vec3 DecomposeToEulerAngles(Matrix const& m) noexcept;

/// Takes `m` apart into scale, rotation and translation, which make it when applied in this order.
/// The scale is the lengths of the rows, the first negative if `m` mirrors. Shear is lost.
///
/// Units: degrees.
CORVANTA_API void GetTransformInfo_Degree(Matrix const& m, TransformInfo& info) noexcept;

}  // namespace VX_Math
