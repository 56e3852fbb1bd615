#include "corvanta/data/animation/detail/discrete_players.h"

#include <iterator>
#include <set>
#include <utility>

#include "corvanta/data/domain/scene/NSceneNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"

namespace corvanta::data::animation::detail {

using domain::environment::NEnvironmentNode;
using domain::material::NMaterialNode;
using domain::scenegraph::item::NSceneGraphModelNode;

namespace {

/// Calls `call` with the models that are there.
template <class Call>
void ForEach(std::set<core::node::NNodeReference<NSceneGraphModelNode>> const& references,
             Call const& call) {
  for (auto const& reference : references) {
    if (auto model = reference.Get()) call(std::move(model));
  }
}

}  // namespace

void MaterialTrack::Add(double time, boost::intrusive_ptr<switches::NMaterialSwitch> const& chooser,
                        unsigned int index) {
  if (!chooser || index >= chooser->GetMaterials().size()) return;
  boost::intrusive_ptr<NMaterialNode> const material =
      std::next(chooser->GetMaterials().begin(), index)->Get();
  if (material) m_choices.Add(time, {chooser, material});
}

std::vector<MaterialTrack::Change> MaterialTrack::Prepare(Step const& step) const {
  std::vector<Change> changes;
  for (auto const& [chooser, material] : m_choices.GetCrossed(step)) {
    domain::material::detail::MaterialReference const reference(*material);
    ForEach(chooser->GetModels(), [&](auto model) {
      auto use =
          std::make_unique<domain::material::detail::NUse>(model->GetDomainManager(), reference);
      changes.push_back({std::move(model), reference, std::move(use)});
    });
  }
  return changes;
}

void ModelTrack::Add(double time, boost::intrusive_ptr<switches::NModelSwitch> const& chooser,
                     unsigned int index) {
  if (!chooser || index >= chooser->GetModelSets().size()) return;
  auto const& set = *std::next(chooser->GetModelSets().begin(), index);
  if (set) m_choices.Add(time, {chooser, set});
}

std::vector<ModelTrack::Change> ModelTrack::Prepare(Step const& step) const {
  std::vector<Change> changes;
  for (auto const& [chooser, shownSet] : m_choices.GetCrossed(step)) {
    auto const add = [&](bool isVisible) {
      return [&, isVisible](auto model) { changes.push_back({std::move(model), isVisible}); };
    };
    for (auto const& set : chooser->GetModelSets()) ForEach(set->GetNodes(), add(false));
    ForEach(shownSet->GetNodes(), add(true));
  }
  return changes;
}

void EnvironmentTrack::Add(double time, boost::intrusive_ptr<NEnvironmentNode> const& environment) {
  if (environment) m_environments.Add(time, environment);
}

EnvironmentTrack::Change EnvironmentTrack::Prepare(NAnimationEngineArgs const& args,
                                                   Step const& step) const {
  Change change;
  auto const crossed = m_environments.GetCrossed(step);
  if (crossed.empty()) return change;
  args.GetScenes(change.scenes);
  change.environment = crossed.back();
  return change;
}

}  // namespace corvanta::data::animation::detail
