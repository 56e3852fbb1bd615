#pragma once

#include <boost/intrusive_ptr.hpp>

#include "corvanta/data/domain/geometry/NPolygonSurface.h"
#include "corvanta/export.h"
#include "corvanta/importer/neutral/NSceneView.h"

namespace corvanta::importer {

/// Where the importer puts the set `channel` of a file's texture coordinates. A mesh with one set
/// stores it under id 1, which every mapping looks up first; one with several stores set k under
/// k + 2 and none under 1, so that the mapping of each texture finds its own.
constexpr unsigned GetMappingId(unsigned channel) { return channel + 2; }

/// The triangles of `mesh` as a surface: vertices that are alike in all they have are one, and
/// every normal has length 1. One that is missing, has no length or isn't finite is worked out from
/// the triangles that meet there. Points and lines are left out.
/// Fails: null without triangles.
CORVANTA_API boost::intrusive_ptr<data::domain::geometry::NSurface> CreateSurface(
    neutral::NSceneView const& scene, neutral::NMesh const& mesh);

}  // namespace corvanta::importer
