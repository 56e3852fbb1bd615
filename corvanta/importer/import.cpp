#include "corvanta/importer/import.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <iterator>
#include <set>

#include "corvanta/core/domain/NDomainBase.h"
#include "corvanta/core/text/convert.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"
#include "corvanta/importer/NHierarchy.h"
#include "corvanta/importer/NImportTarget.h"
#include "corvanta/importer/NMaterials.h"
#include "corvanta/importer/NPictures.h"
#include "corvanta/importer/NVertexColors.h"
#include "corvanta/importer/animation/NAnimations.h"
#include "corvanta/importer/neutral/NSceneView.h"
#include "corvanta/importer/process/NReadModel.h"

namespace corvanta::importer {

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

NImportedModel ImportModel(data::document::NDocument& document, std::string const& file,
                           NImportOptions const& options) {
  std::filesystem::path const path(file);
  auto const start = Clock::now();
  NReadModel const read(path, GetImportLimits());
  neutral::NSceneView const scene(read.GetBlock());
  auto const isRead = Clock::now();

  NImportTarget target(document);
  NVertexColors const colors(scene);
  NPictures pictures(target, scene, colors, path.parent_path());
  NMaterials materials(target, scene, pictures);
  NHierarchy hierarchy(target, scene, materials, colors, options.crease);
  NImportedModel result;
  result.file = file;
  result.files = read.GetFiles();
  result.tree = target.Create(document.GetTrees());
  result.tree->SetName(core::text::ToWide(path.stem().string()));
  // Cameras are aimed by where their items stand in the scene.
  NUpAxis const up = options.up.value_or(scene.GetUp());
  result.tree->SetUnit(options.unit.value_or(scene.GetUnit()));
  if (up == NUA_Z) {
    result.tree->SetCoordConversion(data::domain::scenegraph::tree::CCV_ZUP_TO_YUP);
  }
  NEffort effort;
  hierarchy.Build(*result.tree, effort, up == NUA_X);
  NAnimations const animations(target, scene, hierarchy, *result.tree, effort);
  for (auto const& [number, camera] : hierarchy.GetCameras()) result.cameras.push_back(camera);
  result.animations = animations.GetNodes();
  result.deformer = hierarchy.GetDeformations().GetDeformer();
  result.variants = hierarchy.GetVariants().GetNames();
  result.switches = hierarchy.GetVariants().GetSwitches();
  auto const isBuilt = Clock::now();

  std::vector<std::string> readNotes;
  for (neutral::NText const& note : scene.Get<neutral::NText>()) {
    readNotes.push_back(scene.GetString(note));
  }
  Append(result.notes, readNotes);
  Append(result.notes, pictures.GetNotes());
  Append(result.notes, materials.GetNotes());
  Append(result.notes, colors.GetNotes());
  Append(result.notes, hierarchy.GetNotes());
  Append(result.notes, animations.GetNotes());
  result.readMilliseconds = Milliseconds(start, isRead);
  target.Keep();
  result.buildMilliseconds = Milliseconds(isRead, isBuilt);
  return result;
}

bool ChooseVariant(NImportedModel const& model, std::string const& name) {
  auto const found = std::find(model.variants.begin(), model.variants.end(), name);
  if (found == model.variants.end()) return false;
  for (auto const& choice : model.switches) {
    auto const material = std::next(choice->GetMaterials().begin(), found - model.variants.begin());
    for (auto const& reference : choice->GetModels()) {
      if (auto const node = reference.Get()) node->SetMaterial(*material);
    }
  }
  return true;
}

NImportTarget::~NImportTarget() {
  for (; !m_nodes.empty(); m_nodes.pop_back()) {
    auto* const node = m_nodes.back().get();
    if (node != nullptr && node->GetDomain() != nullptr) node->GetDomain()->RemoveNode(*node);
  }
}

void NImportTarget::Keep() {
  if (m_archive) m_document.Keep(std::move(m_archive));
  m_nodes.clear();
}

}  // namespace corvanta::importer
