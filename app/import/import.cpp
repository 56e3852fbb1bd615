#include "app/import/import.h"

#include <boost/algorithm/string/case_conv.hpp>
#include <chrono>
#include <exception>
#include <filesystem>
#include <memory>

#include "app/import/NAnimations.h"
#include "app/import/NGltfAnimations.h"
#include "app/import/NHierarchy.h"
#include "app/import/NImportError.h"
#include "app/import/NMaterials.h"
#include "app/import/NModelFile.h"
#include "app/import/NPictures.h"
#include "corvanta/core/text/convert.h"

namespace corvanta::app {

namespace {

using Clock = std::chrono::steady_clock;

double Milliseconds(Clock::time_point from, Clock::time_point to) {
  return std::chrono::duration<double, std::milli>(to - from).count();
}

void Append(std::vector<std::string>& notes, std::vector<std::string> const& more) {
  notes.insert(notes.end(), more.begin(), more.end());
}

// Null, with a note if that changes what is played, where Assimp's animations have to do.
std::unique_ptr<NGltfAnimations> ReadGltf(std::filesystem::path const& path, aiScene const& scene,
                                          std::vector<std::string>& notes) {
  std::string extension = path.extension().string();
  boost::algorithm::to_lower(extension);
  if (scene.mNumAnimations == 0 || (extension != ".gltf" && extension != ".glb")) return nullptr;
  try {
    return std::make_unique<NGltfAnimations>(path, scene);
  } catch (std::exception const& error) {
    notes.push_back(std::string("animations are played as if all their keys were linear: ") +
                    error.what());
    return nullptr;
  }
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
  hierarchy.Build(*result.tree);
  auto const gltf = ReadGltf(path, model.GetScene(), result.notes);
  NAnimations const animations(document, model.GetScene(), hierarchy, *result.tree, gltf.get());
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
