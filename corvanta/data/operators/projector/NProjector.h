#pragma once

#include <cstddef>

#include "corvanta/data/structs/UVW.h"
#include "corvanta/data/structs/XYZ.h"
#include "corvanta/export.h"
#include "corvanta/vx_math/Matrix.h"

namespace corvanta::data::operators::projector {

/// The vertices of a mesh, and the matrices that take them into a projector's space.
struct NVertices {
  std::size_t count;
  float const* coords;                // three a vertex
  float const* normals;               // three a vertex
  VX_Math::Matrix toProjector;        // for coordinates
  VX_Math::Matrix normalToProjector;  // for normals, which get the length 1 afterwards
};

/// The mathematics of one method of projection, in the projector's own space: the unit box at the
/// origin. Has no state.
class CORVANTA_API NProjector {
 public:
  virtual ~NProjector();

  /// Whether u runs from 0 to 1 once around, so that a mesh needs a cut where both meet.
  virtual bool HasSeam() const;
  /// Units: a point and a normal of length 1 give texture coordinates.
  virtual void ProjectWithNormal(float x, float y, float z, float nx, float ny, float nz, float& u,
                                 float& v, float& w) const;
  /// For projectors that need no normal; the others leave u, v and w as they are.
  virtual void ProjectPoint(float x, float y, float z, float& u, float& v, float& w) const;
  /// The tangent frame of the coordinates: the tangent along growing u.
  virtual void ComputeTangentFrame(float x, float y, float z, float nx, float ny, float nz,
                                   float& tx, float& ty, float& tz, float& bx, float& by,
                                   float& bz) const = 0;
  /// ProjectWithNormal for each vertex, in order; `coords` has as many elements.
  virtual void ProjectVertices(NVertices const& vertices, structs::UVW* coords) const;
  /// ComputeTangentFrame for each vertex, in order, back through `toModel` and with length 1; both
  /// arrays have as many elements.
  virtual void ComputeTangentFrames(NVertices const& vertices, VX_Math::Matrix const& toModel,
                                    structs::XYZ* tangents, structs::XYZ* binormals) const;

 protected:
  NProjector() noexcept = default;
  NProjector(NProjector const&) noexcept = default;
  NProjector& operator=(NProjector const&) noexcept = default;
};

}  // namespace corvanta::data::operators::projector
