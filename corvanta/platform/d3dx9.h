#pragma once

#include "corvanta/export.h"
#include "corvanta/vx_math/Matrix.h"
#include "corvanta/vx_math/Quaternion.h"
#include "corvanta/vx_math/Vec3.h"

/// The matrix and quaternion functions of d3dx9, from their public documentation. All are computed
/// in double and rounded at the end.
/// Units: row vectors, right-handed.
namespace corvanta::platform {

/// The perspective projection of the frustum through the rectangle at the distance `nearZ`.
/// Depth goes from 0 at `nearZ` to 1 at `farZ`.
/// Fails: a rectangle without area, or no depth, gives a matrix that isn't finite.
CORVANTA_API VX_Math::Matrix MatrixPerspectiveOffCenterRH(float left, float right, float bottom,
                                                          float top, float nearZ,
                                                          float farZ) noexcept;

/// The parallel projection of a box along the axes.
/// Depth goes from 0 at `nearZ` to 1 at `farZ`.
/// Fails: a box without volume gives a matrix that isn't finite.
CORVANTA_API VX_Math::Matrix MatrixOrthoOffCenterRH(float left, float right, float bottom,
                                                    float top, float nearZ, float farZ) noexcept;

/// The view from `eye` towards `at`, which comes to lie on the negative z axis, with `up` upwards.
CORVANTA_API VX_Math::Matrix MatrixLookAtRH(VX_Math::Vec3 const& eye, VX_Math::Vec3 const& at,
                                            VX_Math::Vec3 const& up) noexcept;

/// The control points of a squad from `q1` (at 0) to `q2` (at 1); `q0` and `q3` are the keys before
/// and after. `c` is `q2`, with the sign that is nearer to `q1`. The results may be among the keys.
///
/// Requires: the keys have the length 1.
CORVANTA_API void QuaternionSquadSetup(VX_Math::Quaternion& a, VX_Math::Quaternion& b,
                                       VX_Math::Quaternion& c, VX_Math::Quaternion const& q0,
                                       VX_Math::Quaternion const& q1, VX_Math::Quaternion const& q2,
                                       VX_Math::Quaternion const& q3) noexcept;

}  // namespace corvanta::platform
