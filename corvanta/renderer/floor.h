#pragma once

#include <boost/intrusive_ptr.hpp>

#include "corvanta/data/domain/geometry/NGeometryNode.h"

namespace corvanta::renderer {

/// A floor as it is drawn: a copy of `geometry` in no domain, whose surfaces have texture
/// coordinates. A surface without any gets those of a plane, the picture ten times across.
boost::intrusive_ptr<data::domain::geometry::NGeometryNode> LayFloor(
    data::domain::geometry::NGeometryNode const& geometry);

}  // namespace corvanta::renderer
