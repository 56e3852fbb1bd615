#pragma once

#include <assimp/scene.h>

#include <cstddef>
#include <nlohmann/json.hpp>
#include <string>
#include <unordered_map>
#include <vector>

/// What Assimp's scene of a glTF 2 file hides, and the file's own text tells.
namespace corvanta::importer::reader {

/// Fails: throws NImportError for a file whose nodes, each as often as others list it, would be
/// more than neutral::kMostItems. A file that isn't sound otherwise passes.
/// Cost: linear in the file's nodes and what they list.
void CheckItemCount(nlohmann::json const& root);

/// The scene's nodes in the order of the file's; null where the scene doesn't show one.
using NGltfNodes = std::vector<aiNode const*>;

/// The name that Assimp gives the node of that number.
std::string GetNodeName(nlohmann::json const& node, std::size_t number);
/// Fails: throws std::exception if `scene` wasn't made of that file.
NGltfNodes MatchNodes(nlohmann::json const& root, aiScene const& scene);

/// The numbers of lights and cameras that a node shares with another, after which alone Assimp
/// names them.
struct NSharedContent {
  std::unordered_map<aiNode const*, unsigned> lights;
  std::unordered_map<aiNode const*, unsigned> cameras;
};

/// Fails: throws std::exception for a file whose nodes aren't glTF.
NSharedContent FindShared(nlohmann::json const& root, NGltfNodes const& nodes,
                          aiScene const& scene);

}  // namespace corvanta::importer::reader
