#pragma once

#include <assimp/scene.h>

#include <string>

namespace corvanta::importer::reader {

/// How many corners a face may have: the time to cut one into triangles grows with their square.
inline constexpr unsigned kMostCorners = 50'000;

/// Fails: throws NImportError for a scene without a root node, with something that isn't there
/// where a count says so, an array shorter than its count, more items than neutral::kMostItems, a
/// mesh with an index that names no vertex, a face of too many corners, a coordinate or a transform
/// that isn't finite, and a model without any face. One that has no mesh at all passes if it has
/// something else: a hierarchy, lights or cameras.
/// Cost: linear in the scene; no recursion.
void CheckScene(aiScene const& scene);

/// Whether a message of the reader tells of an index that is out of range.
bool IsAboutIndices(std::string const& message);

}  // namespace corvanta::importer::reader
