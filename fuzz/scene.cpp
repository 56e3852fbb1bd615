// Whatever a reading program leaves in the memory that it shares is refused, or makes a document
// whose surfaces name their own vertices; nothing is left behind.
#include <cstring>
#include <stdexcept>
#include <vector>

#include "corvanta/importer/NHierarchy.h"
#include "corvanta/importer/NImportError.h"
#include "corvanta/importer/NMaterials.h"
#include "corvanta/importer/NPictures.h"
#include "corvanta/importer/animation/NAnimations.h"
#include "corvanta/importer/neutral/NSceneView.h"
#include "fuzz/support.h"

namespace corvanta::fuzz {
namespace {

using namespace importer::neutral;

// What a view promises, looked at once more.
void CheckView(NSceneView const& scene) {
  std::size_t children = 0;
  for (NNode const& node : scene.Get<NNode>()) {
    static_cast<void>(scene.GetString(node.name));
    for (auto const number : scene.Get(node.meshes))
      Require(number < scene.Get<NMesh>().size(), "a node has its meshes");
    children += node.childCount;
  }
  Require(scene.Get<NNode>().size() == children + 1, "the nodes are one tree");
  for (NMesh const& mesh : scene.Get<NMesh>()) {
    for (auto const& triangle : scene.Get(mesh.triangles))
      for (auto const corner : triangle)
        Require(corner < mesh.positions.count, "a corner has its position");
    for (auto const& position : scene.Get(mesh.positions))
      Require(position[0] - position[0] == 0.0f, "a position is finite");
  }
}

void Build(NSceneView const& scene) {
  data::document::NDocument document;
  importer::NImportTarget target(document);
  importer::NEffort effort;
  importer::NVertexColors const colors(scene);
  importer::NPictures pictures(target, scene, colors, "/nowhere");
  importer::NMaterials materials(target, scene, pictures);
  importer::NHierarchy hierarchy(target, scene, materials, colors);
  auto const tree = document.GetTrees().CreateNode(core::node::NNodeID());
  hierarchy.Build(*tree, effort);
  importer::NAnimations const animations(target, scene, hierarchy, *tree, effort);
  Require(animations.GetNodes().size() == scene.Get<NAnimation>().size(),
          "each animation has a node");
  auto const& deformer = hierarchy.GetDeformations().GetDeformer();
  if (!deformer) return;
  for (auto const& animation : animations.GetNodes()) {
    animation->SetFrame(static_cast<double>(animation->GetEndFrame()));
    deformer->Update();
  }
}

}  // namespace
}  // namespace corvanta::fuzz

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace corvanta;
  static fuzz::Folder const folder;
  std::vector<std::uint64_t> words((size + 7) / 8);
  if (size != 0) std::memcpy(words.data(), data, size);
  try {
    importer::neutral::NSceneView const scene(std::as_bytes(std::span(words)).first(size));
    fuzz::CheckView(scene);
    fuzz::Build(scene);
  } catch (importer::NImportError const&) {
  }
  fuzz::Require(folder.CountFiles() == 0, "nothing is left");
  return 0;
}
