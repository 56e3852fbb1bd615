#include "corvanta/data/internal/detail/primitives/primitive.h"

#include "corvanta/data/internal/detail/primitives/meshes.h"

namespace corvanta::data::internal::detail {

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
