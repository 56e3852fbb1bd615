#pragma once

#include <boost/intrusive_ptr.hpp>
#include <vector>

#include "corvanta/data/domain/geometry/NSurface.h"
#include "corvanta/data/structs/UVW.h"
#include "corvanta/vx_math/Vec3.h"

namespace corvanta::data::internal::detail {

/// Into how many parts the round meshes are divided around their axis.
inline constexpr unsigned int kSegments = 32;

/// A vertex of a built-in mesh. Most meshes leave the texture coordinate out.
struct NVertex {
  VX_Math::Vec3 position;
  VX_Math::Vec3 normal;
  structs::UVW uvw{0, 0, 0};
};

/// The arrays of a built-in mesh while it is being made.
class NMesh {
 public:
  void AddVertex(VX_Math::Vec3 const& position, VX_Math::Vec3 const& normal);
  /// Of vertices that are or will be there.
  void AddTriangle(unsigned int a, unsigned int b, unsigned int c);
  /// With three vertices of its own.
  void AddTriangle(NVertex const& a, NVertex const& b, NVertex const& c);

  /// The texture coordinates become the set under NUVWID_PRIMITIVE.
  boost::intrusive_ptr<domain::geometry::NSurface> MakeSurfaceWithUVWs() const;
  boost::intrusive_ptr<domain::geometry::NSurface> MakeSurface() const;

 private:
  unsigned int AddVertex(NVertex const& vertex);

  std::vector<float> m_coords;
  std::vector<float> m_normals;
  std::vector<unsigned int> m_indices;
  domain::geometry::NSurface::UVWs m_uvws;
};

/// Sine and cosine in single precision.
struct NTurn {
  float sin;
  float cos;
};

/// Of pi * `numerator` / `denominator`. The angle is rounded to single precision before, and the
/// values after.
NTurn HalfTurns(unsigned int numerator, unsigned int denominator);
/// Of the `index`-th of `count` steps round a circle; the step after the last is the first again.
NTurn CircleStep(unsigned int index, unsigned int count);

}  // namespace corvanta::data::internal::detail
