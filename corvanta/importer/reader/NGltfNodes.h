#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "corvanta/importer/reader/gltf_model.h"

namespace corvanta::importer::reader {

/// The tree of a glTF 2 file: its nodes, each as often as others list it.
class NGltfNodes {
 public:
  struct Place {
    int node;  // -1 for a root above several
    std::size_t childCount;
  };

  /// The nodes of the scene that the file names, or else of the first; without a scene, those that
  /// no other lists. More than one stand below a root of their own.
  /// Requires: `model` stays.
  /// A node that lists one above itself does so for nothing.
  /// Fails: throws NImportError for a file without nodes, one with a node that isn't there, and for
  /// more places than neutral::kMostItems.
  explicit NGltfNodes(tinygltf::Model const& model);

  /// Level by level, as the neutral form has them.
  std::vector<Place> const& GetPlaces() const { return m_places; }
  /// The first place of a node. Fails: neutral::kNone where the scene doesn't show it.
  std::uint32_t GetFirstPlace(std::size_t node) const { return m_first[node]; }
  /// Of cycles, in UTF-8.
  std::vector<std::string> GetNotes() const;

 private:
  std::vector<int> FindTops() const;
  void CutCycles(std::vector<int> const& tops);
  void Check(std::vector<int> const& tops) const;
  std::vector<int> const& GetChildren(int node) const {
    auto const mended = m_mended.find(node);
    return mended != m_mended.end() ? mended->second
                                    : m_model.nodes[static_cast<std::size_t>(node)].children;
  }

  tinygltf::Model const& m_model;
  std::vector<Place> m_places;
  std::vector<std::uint32_t> m_first;
  std::map<int, std::vector<int>> m_mended;  // children of nodes that list one above themselves
  std::size_t m_cutCount = 0;
};

/// A node's transform, for row vectors. Fails: throws NImportError if it isn't finite.
std::array<float, 16> GetTransform(tinygltf::Node const& node, std::size_t number);

}  // namespace corvanta::importer::reader
