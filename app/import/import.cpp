#include "app/import/import.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <filesystem>
#include <memory>

#include "app/import/NAnimations.h"
#include "app/import/NGltfAnimations.h"
#include "app/import/NGltfFile.h"
#include "app/import/NHierarchy.h"
#include "app/import/NImportError.h"
#include "app/import/NMaterials.h"
#include "app/import/NModelFile.h"
#include "app/import/NPictures.h"
#include "app/import/gltf_nodes.h"
#include "corvanta/core/text/convert.h"

namespace corvanta::app {

namespace {

using Clock = std::chrono::steady_clock;

double Milliseconds(Clock::time_point from, Clock::time_point to) {
  return std::chrono::duration<double, std::milli>(to - from).count();
}

void Append(std::vector<std::string>& notes, std::vector<std::string> const& more) {
  for (std::string const& note : more) {
    if (std::find(notes.begin(), notes.end(), note) == notes.end()) notes.push_back(note);
  }
}

// A glTF file beside what Assimp makes of it.
struct Gltf {
  NGltfFile& file;
  NGltfNodes nodes{};
  NSharedContent shared{};
};

// Null where Assimp's scene has to do. A failure gives a note if it changes what is played.
template <class Read>
auto TryGltf(aiScene const& scene, std::vector<std::string>& notes, Read const& read)
    -> decltype(read()) {
  try {
    return read();
  } catch (std::exception const& error) {
    if (scene.mNumAnimations != 0) {
      notes.push_back(std::string("animations are played as if all their keys were linear: ") +
                      error.what());
    }
    return nullptr;
  }
}

std::unique_ptr<Gltf> ReadGltf(NModelFile const& model, std::vector<std::string>& notes) {
  aiScene const& scene = model.GetScene();
  if (scene.mNumAnimations + scene.mNumCameras + scene.mNumLights == 0) return nullptr;
  return TryGltf(scene, notes, [&]() -> std::unique_ptr<Gltf> {
    NGltfFile* const file = model.GetGltf();
    if (file == nullptr) return nullptr;
    auto gltf = std::make_unique<Gltf>(Gltf{*file});
    gltf->nodes = MatchNodes(gltf->file.GetRoot(), scene);
    gltf->shared = FindShared(gltf->file.GetRoot(), gltf->nodes, scene);
    return gltf;
  });
}

}  // namespace

NImportedModel ImportModel(NDocument& document, std::string const& file) {
  std::filesystem::path const path(file);
  auto const start = Clock::now();
  NModelFile const model(path);
  auto const isRead = Clock::now();

  NPictures pictures(document, model.GetScene(), path.parent_path());
  NMaterials materials(document, model.GetScene(), pictures);
  NHierarchy hierarchy(document, model.GetScene(), materials);
  NImportedModel result;
  result.file = file;
  result.tree = document.GetTrees().CreateNode(core::node::NNodeID());
  result.tree->SetName(core::text::ToWide(path.stem().string()));
  aiScene const& scene = model.GetScene();
  auto const gltf = ReadGltf(model, result.notes);
  std::unique_ptr<NGltfAnimations> samplers;
  if (gltf) {
    hierarchy.Share(gltf->shared);
    samplers = TryGltf(scene, result.notes, [&]() -> std::unique_ptr<NGltfAnimations> {
      if (scene.mNumAnimations == 0) return nullptr;
      return std::make_unique<NGltfAnimations>(gltf->file, gltf->nodes, scene);
    });
  }
  hierarchy.Build(*result.tree);
  NAnimations const animations(document, scene, hierarchy, *result.tree, samplers.get());
  for (auto const& [number, camera] : hierarchy.GetCameras()) result.cameras.push_back(camera);
  result.animations = animations.GetNodes();
  auto const isBuilt = Clock::now();

  Append(result.notes, model.GetNotes());
  Append(result.notes, pictures.GetNotes());
  Append(result.notes, hierarchy.GetNotes());
  Append(result.notes, animations.GetNotes());
  result.readMilliseconds = Milliseconds(start, isRead);
  result.buildMilliseconds = Milliseconds(isRead, isBuilt);
  return result;
}

}  // namespace corvanta::app
