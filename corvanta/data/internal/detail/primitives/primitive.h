#pragma once

#include <boost/intrusive_ptr.hpp>

#include "corvanta/data/domain/geometry/NSurface.h"
#include "corvanta/export.h"

namespace corvanta::data::internal::detail {

/// The built-in meshes, in the order of their readers.
enum NPrimitive : int {
  NP_PLANE,
  NP_CUBE,
  NP_INWARD_CUBE,
  NP_CUBE_FLOOR,
  NP_SPHERE,
  NP_INWARD_SPHERE,
  NP_SPHERE_FLOOR,
  NP_ARROW,
  NP_RING,
  NP_MACE,
  NP_CONE,
  NP_INWARD_DOME,
  NP_MAP_PLANAR,
  NP_MAP_CYLINDER,
  NP_MAP_RIBBON,
  NP_CAMERA_OBJECT,
  NP_ROD,
  NP_COUNT,
};

/// The one surface of `primitive` in this process, made at the first call.
/// Requires: one thread at a time.
CORVANTA_API boost::intrusive_ptr<domain::geometry::NSurface> GetPrimitiveSurface(
    NPrimitive primitive);

}  // namespace corvanta::data::internal::detail
