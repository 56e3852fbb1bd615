#pragma once

#include <boost/intrusive_ptr.hpp>

#include "corvanta/data/domain/geometry/NGeometryNode.h"

namespace corvanta::renderer {

/// The floor of an environment as it is drawn: a copy of `geometry` in no domain, whose surfaces
/// all have texture coordinates. One without any gets those of a plane, which repeat the picture
/// ten times across.
boost::intrusive_ptr<data::domain::geometry::NGeometryNode> MakeFloorGeometry(
    data::domain::geometry::NGeometryNode const& geometry);

}  // namespace corvanta::renderer
