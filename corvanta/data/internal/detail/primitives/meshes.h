#pragma once

#include <boost/intrusive_ptr.hpp>

#include "corvanta/data/domain/geometry/NSurface.h"

/// The seventeen built-in meshes, each a new surface.
///
/// In an expanded mesh every triangle has its own three vertices; in an indexed one they are
/// shared. "Along" means that the triangles turn anticlockwise as seen from where the normals
/// point, "against" clockwise. Normals have the length 1, unless said otherwise.
namespace corvanta::data::internal::detail {

using SurfacePointer = boost::intrusive_ptr<domain::geometry::NSurface>;

/// The square from -1 to 1 in the plane x = 0, seen from -x. Expanded, along, with UVWs.
SurfacePointer MakePlane();
/// The cube from -1 to 1. Expanded, along.
SurfacePointer MakeCube();
/// The same seen from inside. Normals are the negated positions, of length sqrt(3). Expanded,
/// along.
SurfacePointer MakeInwardCube();
/// A grid of 30 x 30 cells from -1 to 1 in the plane y = 0. Expanded, against.
SurfacePointer MakeCubeFloor();

/// The unit sphere of 32 segments and 16 stacks. Expanded, along, with UVWs.
SurfacePointer MakeSphere();
/// The same grid seen from inside. Expanded, along.
SurfacePointer MakeInwardSphere();
/// The unit disc in the plane y = 0. Expanded, against.
SurfacePointer MakeSphereFloor();
/// The upper half of the unit sphere over a flat floor, seen from inside. Its normals point at (0,
/// 0.15, 0), those of the floor as if it bulged downwards to a sphere. Expanded, along.
SurfacePointer MakeInwardDome();

/// From the origin along x, of length 1. Indexed, along.
SurfacePointer MakeRod();
/// The tip at the origin, the open base of radius 1 at x = 1. Indexed, along.
SurfacePointer MakeCone();
/// From the origin along x, of length 1.2. Indexed.
SurfacePointer MakeArrow();
/// From the origin along x, with a box at its end whose normals have the length sqrt(0.03) and
/// whose triangles turn against them. Indexed.
SurfacePointer MakeMace();
/// A torus about the x axis, of radius 1, with a tube of radius 0.02. The winding changes from
/// triangle to triangle. Indexed.
SurfacePointer MakeRing();

/// A square frame in the plane y = 0. Indexed, against.
SurfacePointer MakeMapPlanar();
/// The two rims of a cylinder about the y axis, joined by ribs. Indexed.
SurfacePointer MakeMapCylinder();
/// A band about the y axis. Indexed, along.
SurfacePointer MakeMapRibbon();
/// A box with a funnel towards -z. Normals aren't of length 1; the box's triangles turn against
/// them. Indexed.
SurfacePointer MakeCameraObject();

}  // namespace corvanta::data::internal::detail
