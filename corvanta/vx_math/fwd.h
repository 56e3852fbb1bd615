#pragma once

/// Vectors, matrices, quaternions and boxes in single precision.
/// Units: row vectors (a point stands left of its matrix, `a * b` applies `a` first), right-handed.
namespace VX_Math {

class Box3;
class Line;
class Matrix;
class MatrixStack;
class Plane;
class Quaternion;
class Vec2;
class Vec3;
struct TransformInfo;

}  // namespace VX_Math

namespace corvanta {

namespace VX_Math = ::VX_Math;

}  // namespace corvanta
