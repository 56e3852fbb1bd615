#pragma once

#include <array>
#include <boost/intrusive_ptr.hpp>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "corvanta/data/domain/geometry/NPolygonSurface.h"
#include "corvanta/export.h"
#include "corvanta/importer/neutral/NSceneView.h"

namespace corvanta::importer {

/// Where the importer puts the set `channel` of a file's texture coordinates. A mesh with one set
/// stores it under id 1, which every mapping looks up first; one with several stores set k under
/// k + 2 and none under 1, so that the mapping of each texture finds its own.
constexpr unsigned GetMappingId(unsigned channel) { return channel + 2; }
/// Where it puts the coordinates of the vertex colours' picture; then no set is under id 1.
inline constexpr unsigned kColorsMappingId = GetMappingId(neutral::kMostUvSets);

/// The coordinates in the vertex colours' picture of a mesh's corner; see NVertexColors.
using NCornerColors = std::function<std::array<float, 2>(std::size_t corner)>;

/// The triangles of `mesh` as a surface: vertices that are alike in all they have are one, and
/// every normal has length 1. Lines and points are triangles with fewer than three corners.
///
/// One that is missing, has no length or isn't finite is worked out, as normals.h does it, and so
/// are those of a face that they contradict. Faces meet in a crease where they are turned by more
/// than `crease`; without it, all do in a mesh whose format wants flat faces, and in others those
/// that are turned by more than kUsualCrease.
///
/// With `vertices`, no two vertices of the mesh become one, nor any of a mesh that is faceted, and
/// it gets the mesh's vertex of each of the surface.
/// `getColor` is for meshes with vertex colours alone.
/// Units: degrees.
/// Fails: null without triangles.
CORVANTA_API boost::intrusive_ptr<data::domain::geometry::NSurface> CreateSurface(
    neutral::NSceneView const& scene, neutral::NMesh const& mesh,
    std::optional<double> crease = std::nullopt, std::vector<std::uint32_t>* vertices = nullptr,
    NCornerColors const& getColor = {});

inline constexpr double kUsualCrease = 60.0;

/// Whether all faces are flat because the mesh has no normals.
CORVANTA_API bool IsFaceted(neutral::NMesh const& mesh, std::optional<double> crease);

}  // namespace corvanta::importer
