#pragma once

#include <fcntl.h>

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "corvanta/importer/NHierarchy.h"
#include "corvanta/importer/neutral/NSceneView.h"
#include "corvanta/importer/neutral/NSceneWriter.h"
#include "corvanta/importer/reader/NFileOpener.h"

namespace corvanta::app_tests {

namespace neutral = importer::neutral;

/// Opens what there is.
class PlainOpener : public importer::reader::NFileOpener {
 public:
  int Open(std::string const& path) override { return open(path.c_str(), O_RDONLY | O_CLOEXEC); }
};

/// The block of a scene.
inline std::vector<std::uint64_t> MakeBlock(neutral::NSceneWriter const& writer) {
  std::vector<std::uint64_t> block(writer.GetSize() / 8);
  writer.Write(reinterpret_cast<std::byte*>(block.data()));
  return block;
}

inline void AddNode(neutral::NSceneWriter& writer, std::string const& name,
                    std::uint64_t childCount = 0) {
  neutral::NNode node{};
  node.name = writer.AddText(name);
  for (std::size_t i = 0; i < 16; i += 5) node.transform[i] = 1.0f;
  node.childCount = childCount;
  writer.Get<neutral::NNode>().push_back(node);
}

/// What is built of a scene; Build is still to be called.
struct Built {
  explicit Built(neutral::NSceneWriter const& writer) : block(MakeBlock(writer)) {}

  std::vector<std::uint64_t> const block;
  neutral::NSceneView const scene{std::as_bytes(std::span(block))};
  data::document::NDocument document{};
  importer::NImportTarget target{document};
  importer::NEffort effort{};
  importer::NVertexColors colors{scene};
  importer::NPictures pictures{target, scene, colors, "."};
  importer::NMaterials materials{target, scene, pictures};
  importer::NHierarchy hierarchy{target, scene, materials, colors};
  boost::intrusive_ptr<data::domain::scenegraph::tree::NSceneGraphTreeNode> const tree =
      document.GetTrees().CreateNode(core::node::NNodeID());
};

}  // namespace corvanta::app_tests
