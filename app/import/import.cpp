#include "app/import/import.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <iterator>
#include <set>

#include "app/import/NAnimations.h"
#include "app/import/NHierarchy.h"
#include "app/import/NMaterials.h"
#include "app/import/NPictures.h"
#include "app/import/NReadModel.h"
#include "app/import/neutral/NSceneView.h"
#include "corvanta/core/text/convert.h"

namespace corvanta::app {

namespace {

using Clock = std::chrono::steady_clock;

double Milliseconds(Clock::time_point from, Clock::time_point to) {
  return std::chrono::duration<double, std::milli>(to - from).count();
}

// Each once.
void Append(std::vector<std::string>& notes, std::vector<std::string> const& more) {
  std::set<std::string> known(notes.begin(), notes.end());
  std::copy_if(more.begin(), more.end(), std::back_inserter(notes),
               [&known](std::string const& note) { return known.insert(note).second; });
}

}  // namespace

NImportedModel ImportModel(NDocument& document, std::string const& file) {
  std::filesystem::path const path(file);
  auto const start = Clock::now();
  NReadModel const read(path, GetImportLimits());
  neutral::NSceneView const scene(read.GetBlock());
  auto const isRead = Clock::now();

  NPictures pictures(document, scene, path.parent_path());
  NMaterials materials(document, scene, pictures);
  NHierarchy hierarchy(document, scene, materials);
  NImportedModel result;
  result.file = file;
  result.tree = document.GetTrees().CreateNode(core::node::NNodeID());
  result.tree->SetName(core::text::ToWide(path.stem().string()));
  hierarchy.Build(*result.tree);
  NAnimations const animations(document, scene, hierarchy, *result.tree);
  for (auto const& [number, camera] : hierarchy.GetCameras()) result.cameras.push_back(camera);
  result.animations = animations.GetNodes();
  auto const isBuilt = Clock::now();

  std::vector<std::string> readNotes;
  for (neutral::NText const& note : scene.Get<neutral::NText>()) {
    readNotes.push_back(scene.GetString(note));
  }
  Append(result.notes, readNotes);
  Append(result.notes, pictures.GetNotes());
  Append(result.notes, hierarchy.GetNotes());
  Append(result.notes, animations.GetNotes());
  result.readMilliseconds = Milliseconds(start, isRead);
  result.buildMilliseconds = Milliseconds(isRead, isBuilt);
  return result;
}

}  // namespace corvanta::app
