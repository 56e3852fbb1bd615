#include "corvanta/data/animation/detail/discrete_players.h"

#include <iterator>
#include <set>

#include "corvanta/data/domain/scene/NSceneNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"

namespace corvanta::data::animation::detail {

using domain::environment::NEnvironmentNode;
using domain::material::NMaterialNode;
using domain::scenegraph::item::NSceneGraphModelNode;

namespace {

using Models = std::vector<boost::intrusive_ptr<NSceneGraphModelNode>>;

/// Appends the models that are there. Listeners of what is done with them may change the set.
void Append(std::set<core::node::NNodeReference<NSceneGraphModelNode>> const& references,
            Models& models) {
  for (auto const& reference : references) {
    if (auto model = reference.Get()) models.push_back(std::move(model));
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

void MaterialTrack::Play(Step const& step) const {
  for (auto const& [chooser, material] : m_choices.GetCrossed(step)) {
    Models models;
    Append(chooser->GetModels(), models);
    for (auto const& model : models) model->SetMaterial(material);
  }
}

void ModelTrack::Add(double time, boost::intrusive_ptr<switches::NModelSwitch> const& chooser,
                     unsigned int index) {
  if (!chooser || index >= chooser->GetModelSets().size()) return;
  auto const& set = *std::next(chooser->GetModelSets().begin(), index);
  if (set) m_choices.Add(time, {chooser, set});
}

void ModelTrack::Play(Step const& step) const {
  for (auto const& [chooser, shownSet] : m_choices.GetCrossed(step)) {
    Models hidden;
    Models shown;
    for (auto const& set : chooser->GetModelSets()) Append(set->GetNodes(), hidden);
    Append(shownSet->GetNodes(), shown);
    for (auto const& model : hidden) model->SetIsVisibleFlag(false);
    for (auto const& model : shown) model->SetIsVisibleFlag(true);
  }
}

void EnvironmentTrack::Add(double time, boost::intrusive_ptr<NEnvironmentNode> const& environment) {
  if (environment) m_environments.Add(time, environment);
}

void EnvironmentTrack::Play(NAnimationEngineArgs const& args, Step const& step) const {
  auto const crossed = m_environments.GetCrossed(step);
  if (crossed.empty()) return;
  NAnimationEngineArgs::Scenes scenes;
  args.GetScenes(scenes);
  for (auto const& scene : scenes) {
    if (scene) scene->SetEnvironment(crossed.back());
  }
}

}  // namespace corvanta::data::animation::detail
