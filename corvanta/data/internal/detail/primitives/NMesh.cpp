#include "corvanta/data/internal/detail/primitives/NMesh.h"

#include <cmath>

#include "corvanta/data/domain/geometry/NPolygonSurface.h"
#include "corvanta/data/internal/detail/primitives/meshes.h"
#include "corvanta/data/internal/detail/primitives/primitive.h"

namespace corvanta::data::internal::detail {

using domain::geometry::NPolygonSurface;
using domain::geometry::NSurface;
using domain::material::texture_mapping::NUVWID_PRIMITIVE;
using VX_Math::Vec3;

namespace {

constexpr float kPi = 3.1415927410125732f;

NTurn Turn(double numerator, double denominator) {
  double const angle = static_cast<float>(kPi * numerator / denominator);
  return {static_cast<float>(std::sin(angle)), static_cast<float>(std::cos(angle))};
}

void Append(std::vector<float>& floats, Vec3 const& v) {
  floats.insert(floats.end(), {v.x, v.y, v.z});
}

boost::intrusive_ptr<NSurface> Assign(std::vector<float> const& coords,
                                      std::vector<float> const& normals,
                                      std::vector<unsigned int> const& indices,
                                      NSurface::UVWsMap const& uvws) {
  boost::intrusive_ptr<NSurface> surface(new NPolygonSurface);
  surface->Assign(coords, normals, indices, uvws);
  return surface;
}

}  // namespace

unsigned int NMesh::AddVertex(NVertex const& vertex) {
  Append(m_coords, vertex.position);
  Append(m_normals, vertex.normal);
  m_uvws.push_back(vertex.uvw);
  return static_cast<unsigned int>(m_uvws.size() - 1);
}

void NMesh::AddVertex(Vec3 const& position, Vec3 const& normal) {
  AddVertex(NVertex{position, normal});
}

void NMesh::AddTriangle(unsigned int a, unsigned int b, unsigned int c) {
  m_indices.insert(m_indices.end(), {a, b, c});
}

void NMesh::AddTriangle(NVertex const& a, NVertex const& b, NVertex const& c) {
  for (NVertex const* const vertex : {&a, &b, &c}) m_indices.push_back(AddVertex(*vertex));
}

boost::intrusive_ptr<NSurface> NMesh::MakeSurfaceWithUVWs() const {
  return Assign(m_coords, m_normals, m_indices, {{NUVWID_PRIMITIVE, m_uvws}});
}

boost::intrusive_ptr<NSurface> NMesh::MakeSurface() const {
  return Assign(m_coords, m_normals, m_indices, {});
}

NTurn HalfTurns(unsigned int numerator, unsigned int denominator) {
  return Turn(numerator, denominator);
}

NTurn CircleStep(unsigned int index, unsigned int count) {
  return Turn(2.0 * (index % count), count);
}

namespace {

constexpr SurfacePointer (*kMakers[NP_COUNT])() = {
    MakePlane,        MakeCube,        MakeInwardCube, MakeCubeFloor,   MakeSphere,
    MakeInwardSphere, MakeSphereFloor, MakeArrow,      MakeRing,        MakeMace,
    MakeCone,         MakeInwardDome,  MakeMapPlanar,  MakeMapCylinder, MakeMapRibbon,
    MakeCameraObject, MakeRod,
};

}  // namespace

SurfacePointer GetPrimitiveSurface(NPrimitive primitive) {
  static SurfacePointer surfaces[NP_COUNT];
  SurfacePointer& surface = surfaces[primitive];
  if (!surface) surface = kMakers[primitive]();
  return surface;
}

}  // namespace corvanta::data::internal::detail
