#include "corvanta/data/operators/projector/detail/vertex_passes.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "corvanta/data/operators/projector/detail/formulas.h"
#include "corvanta/data/operators/projector/detail/tangent_frame.h"
#include "corvanta/data/operators/projector/detail/vector_clones.h"

namespace corvanta::data::operators::projector::detail {

namespace {

using structs::UVW;
using structs::XYZ;
using VX_Math::Matrix;
using VX_Math::Vec3;

struct Vectors {
  float x[kBlock];
  float y[kBlock];
  float z[kBlock];

  CORVANTA_INTO_CLONES Vec3 operator[](std::size_t i) const { return {x[i], y[i], z[i]}; }
  CORVANTA_INTO_CLONES void Set(std::size_t i, Vec3 const& v) {
    x[i] = v.x;
    y[i] = v.y;
    z[i] = v.z;
  }
};

/// One component of a direction times a matrix, added up as MultDirMatrix does.
CORVANTA_INTO_CLONES float Multiply(float const* v, Matrix const& m, int column) {
  return v[0] * m(0, column) + v[1] * m(1, column) + v[2] * m(2, column);
}

CORVANTA_INTO_CLONES void TransformPoints(NVertices const& vertices, Vectors& points) {
  Matrix const& m = vertices.toProjector;
  for (std::size_t i = 0; i != kBlock; ++i) {
    float const* const p = vertices.coords + 3 * i;
    float const w = Multiply(p, m, 3) + m(3, 3);
    points.x[i] = (Multiply(p, m, 0) + m(3, 0)) / w;
    points.y[i] = (Multiply(p, m, 1) + m(3, 1)) / w;
    points.z[i] = (Multiply(p, m, 2) + m(3, 2)) / w;
  }
}

/// Gives a vector the length 1, and notes where Vec3::Normalize may go another way than by the
/// plain square.
struct NormalizeQuickly {
  std::int32_t& isOutside;

  CORVANTA_INTO_CLONES void operator()(Vec3& v) const {
    float const square = v.Dot(v);
    isOutside |= !(square >= 1e-30f) | !(square <= 3e38f);
    float const length = std::sqrt(square);
    v = {v.x / length, v.y / length, v.z / length};
  }
};

CORVANTA_INTO_CLONES Vec3 TransformDirection(float const* v, Matrix const& m,
                                             NormalizeQuickly const& normalize) {
  Vec3 out(Multiply(v, m, 0), Multiply(v, m, 1), Multiply(v, m, 2));
  normalize(out);
  return out;
}

CORVANTA_INTO_CLONES bool TransformNormals(NVertices const& vertices, Vectors& normals) {
  std::int32_t isOutside = 0;
  for (std::size_t i = 0; i != kBlock; ++i) {
    normals.Set(
        i, TransformDirection(vertices.normals + 3 * i, vertices.normalToProjector, {isOutside}));
  }
  return isOutside == 0;
}

/// The frame of each point and normal, `getFrame(point, normal, normalize)`, back in the model.
template <class GetFrame>
CORVANTA_INTO_CLONES bool ComputeFramesOf(NVertices const& vertices, Matrix const& toModel,
                                          XYZ* tangents, XYZ* binormals, GetFrame const& getFrame) {
  Vectors points;
  Vectors normals;
  Vectors t;
  Vectors b;
  TransformPoints(vertices, points);
  bool const areNormal = TransformNormals(vertices, normals);
  std::int32_t isOutside = 0;
  for (std::size_t i = 0; i != kBlock; ++i) {
    NormalizeQuickly const normalize{isOutside};
    NTangentFrame const frame = getFrame(points[i], normals[i], normalize);
    t.Set(i, TransformDirection(&frame.tangent.x, toModel, normalize));
    b.Set(i, TransformDirection(&frame.binormal.x, toModel, normalize));
  }
  for (std::size_t i = 0; i != kBlock; ++i) {
    tangents[i] = {t.x[i], t.y[i], t.z[i]};
    binormals[i] = {b.x[i], b.y[i], b.z[i]};
  }
  return areNormal & (isOutside == 0);
}

/// The arc tangent of y / x in the right quadrant, but for 2^-44 of its value.
/// The coefficients are those of the minimax polynomial of atan(t) / t over t * t, by Remez, for
/// |t| up to tan(pi / 8); beyond, pi / 4 and the arc tangent of (t - 1) / (t + 1) add up to it.
/// Fails: NaN where y / x isn't a number, also for (0, 0).
CORVANTA_INTO_CLONES double ApproximateAngle(double y, double x) {
  constexpr double kPi = 3.14159265358979323846;
  double const absX = std::fabs(x);
  double const absY = std::fabs(y);
  bool const isSteep = absY > absX;
  double const larger = isSteep ? absY : absX;
  double const smaller = isSteep ? absX : absY;
  bool const isBeyond = smaller > larger * 0.41421356237309503;
  double const t = (smaller - (isBeyond ? larger : 0.0)) / (larger + (isBeyond ? smaller : 0.0));
  double const s = t * t;
  double const s2 = s * s;
  double const s4 = s2 * s2;
  double const low = (0x1.fffffffffff19p-1 + s * -0x1.55555554e9d64p-2) +
                     s2 * (0x1.999999156c9f5p-3 + s * -0x1.249229c3edce8p-3);
  double const high = (0x1.c714f26206a1dp-4 + s * -0x1.73db4644ded55p-4) +
                      s2 * (0x1.35d907e62e624p-4 + s * -0x1.e183cf50242acp-5);
  double const polynomial = low + s4 * (high + s4 * 0x1.f72c9fc1bd4f6p-6);
  double const octant = t * polynomial + (isBeyond ? kPi / 4 : 0.0);
  double const quadrant = isSteep ? kPi / 2 - octant : octant;
  double const half = x < 0.0 ? kPi - quadrant : quadrant;
  return std::copysign(half, y);
}

/// GetAngle of each pair.
/// Fails: false where the approximation lies so near to the middle between two floats that the arc
/// tangent itself may round to the other.
CORVANTA_INTO_CLONES bool GetAngles(float const* y, float const* x, float* angles) {
  constexpr double kMargin = 0x1p-42;
  std::int32_t isUncertain = 0;
  for (std::size_t i = 0; i != kBlock; ++i) {
    double const angle = ApproximateAngle(static_cast<double>(y[i]), static_cast<double>(x[i]));
    float const low = static_cast<float>(angle * (1.0 - kMargin));
    float const high = static_cast<float>(angle * (1.0 + kMargin));
    angles[i] = low;
    isUncertain |= low != high;
  }
  return isUncertain == 0;
}

/// The angles around the axis y.
CORVANTA_INTO_CLONES bool GetAnglesAround(Vectors const& points, float* angles) {
  float negativeX[kBlock];
  for (std::size_t i = 0; i != kBlock; ++i) negativeX[i] = -points.x[i];
  return GetAngles(negativeX, points.z, angles);
}

}  // namespace

CORVANTA_VECTOR_CLONES bool ProjectPlaneBlock(NVertices const& vertices, UVW* coords) {
  Vectors points;
  TransformPoints(vertices, points);
  for (std::size_t i = 0; i != kBlock; ++i) coords[i] = ProjectOntoPlane(points[i]);
  return true;
}

CORVANTA_VECTOR_CLONES bool ProjectCylinderBlock(NVertices const& vertices, UVW* coords) {
  Vectors points;
  float around[kBlock];
  TransformPoints(vertices, points);
  bool const isCertain = GetAnglesAround(points, around);
  for (std::size_t i = 0; i != kBlock; ++i) {
    coords[i] = ProjectOntoCylinder(points[i], around[i]);
  }
  return isCertain;
}

CORVANTA_VECTOR_CLONES bool ProjectSphereBlock(NVertices const& vertices, UVW* coords) {
  Vectors points;
  float radii[kBlock];
  float around[kBlock];
  float down[kBlock];
  TransformPoints(vertices, points);
  for (std::size_t i = 0; i != kBlock; ++i) radii[i] = GetLength(points.x[i], points.z[i]);
  bool const isCertain = GetAnglesAround(points, around) & GetAngles(radii, points.y, down);
  for (std::size_t i = 0; i != kBlock; ++i) {
    coords[i] = ProjectOntoSphere(points[i], around[i], down[i]);
  }
  return isCertain;
}

CORVANTA_VECTOR_CLONES bool ProjectTriplanarBlock(NVertices const& vertices, UVW* coords) {
  Vectors points;
  Vectors normals;
  TransformPoints(vertices, points);
  bool const isCertain = TransformNormals(vertices, normals);
  for (std::size_t i = 0; i != kBlock; ++i) coords[i] = ProjectByTriplanar(points[i], normals[i]);
  return isCertain;
}

CORVANTA_VECTOR_CLONES bool ProjectBoxBlock(NVertices const& vertices, UVW* coords) {
  Vectors points;
  Vectors normals;
  TransformPoints(vertices, points);
  bool const isCertain = TransformNormals(vertices, normals);
  for (std::size_t i = 0; i != kBlock; ++i) coords[i] = ProjectByBox(points[i], normals[i]);
  return isCertain;
}

CORVANTA_VECTOR_CLONES bool ComputePlaneFrames(NVertices const& vertices, Matrix const& toModel,
                                               XYZ* tangents, XYZ* binormals) {
  return ComputeFramesOf(vertices, toModel, tangents, binormals,
                         [](Vec3 const&, Vec3 const& n, auto const& normalize) {
                           return GetPlaneFrame(n, normalize);
                         });
}

CORVANTA_VECTOR_CLONES bool ComputeRoundFrames(NVertices const& vertices, Matrix const& toModel,
                                               XYZ* tangents, XYZ* binormals) {
  return ComputeFramesOf(vertices, toModel, tangents, binormals,
                         [](Vec3 const& p, Vec3 const& n, auto const& normalize) {
                           return GetRoundFrame(p.x, p.z, n, normalize);
                         });
}

CORVANTA_VECTOR_CLONES bool ComputeTriplanarFrames(NVertices const& vertices, Matrix const& toModel,
                                                   XYZ* tangents, XYZ* binormals) {
  return ComputeFramesOf(vertices, toModel, tangents, binormals,
                         [](Vec3 const&, Vec3 const& n, auto const& normalize) {
                           return GetTriplanarFrame(n, normalize);
                         });
}

CORVANTA_VECTOR_CLONES bool ComputeBoxFrames(NVertices const& vertices, Matrix const& toModel,
                                             XYZ* tangents, XYZ* binormals) {
  return ComputeFramesOf(
      vertices, toModel, tangents, binormals,
      [](Vec3 const&, Vec3 const& n, auto const& normalize) { return GetBoxFrame(n, normalize); });
}

namespace {

template <class Run>
void ForEachBlock(NVertices const& vertices, Run const& call) {
  NVertices run = vertices;
  for (std::size_t i = 0; i < vertices.count; i += kBlock) {
    run.count = std::min(kBlock, vertices.count - i);
    run.coords = vertices.coords + 3 * i;
    run.normals = vertices.normals + 3 * i;
    call(run, i);
  }
}

}  // namespace

void ProjectInBlocks(NProjector const& projector, ProjectBlock& block, NVertices const& vertices,
                     UVW* coords) {
  ForEachBlock(vertices, [&](NVertices const& run, std::size_t first) {
    if (run.count != kBlock || !block(run, coords + first)) {
      projector.NProjector::ProjectVertices(run, coords + first);
    }
  });
}

void ComputeFramesInBlocks(NProjector const& projector, ComputeFrames& block,
                           NVertices const& vertices, Matrix const& toModel, XYZ* tangents,
                           XYZ* binormals) {
  ForEachBlock(vertices, [&](NVertices const& run, std::size_t first) {
    if (run.count != kBlock || !block(run, toModel, tangents + first, binormals + first)) {
      projector.NProjector::ComputeTangentFrames(run, toModel, tangents + first, binormals + first);
    }
  });
}

}  // namespace corvanta::data::operators::projector::detail
