#include "corvanta/data/events/NEventMultiplexer.h"

#include "corvanta/data/events/attribute_change/NMultiplexer.h"
#include "corvanta/data/events/environment/NMultiplexer.h"
#include "corvanta/data/events/environment_map_change/NMultiplexer.h"
#include "corvanta/data/events/geometry_change/NMultiplexer.h"
#include "corvanta/data/events/light_env/NMultiplexer.h"
#include "corvanta/data/events/material/NMultiplexer.h"
#include "corvanta/data/events/scene/NMultiplexer.h"
#include "corvanta/data/events/scene_graph_hierarchy/NMultiplexer.h"
#include "corvanta/data/events/scene_graph_model/NMultiplexer.h"
#include "corvanta/data/events/scene_graph_tree/NMultiplexer.h"
#include "corvanta/data/events/scene_graph_tree_host/NMultiplexer.h"
#include "corvanta/data/events/texture/NMultiplexer.h"

namespace corvanta::data::events {

struct NEventMultiplexer::Multiplexers {
  boost::intrusive_ptr<attribute_change::NMultiplexer> attributeChange{
      new attribute_change::NMultiplexer};
  boost::intrusive_ptr<environment::NMultiplexer> environment{new environment::NMultiplexer};
  boost::intrusive_ptr<environment_map_change::NMultiplexer> environmentMapChange{
      new environment_map_change::NMultiplexer};
  boost::intrusive_ptr<geometry_change::NMultiplexer> geometryChange{
      new geometry_change::NMultiplexer};
  boost::intrusive_ptr<material::NMultiplexer> material{new material::NMultiplexer};
  boost::intrusive_ptr<scene::NMultiplexer> scene{new scene::NMultiplexer};
  boost::intrusive_ptr<scene_graph_model::NMultiplexer> sceneGraphModel{
      new scene_graph_model::NMultiplexer};
  boost::intrusive_ptr<scene_graph_hierarchy::NMultiplexer> sceneGraphHierarchy{
      new scene_graph_hierarchy::NMultiplexer};
  boost::intrusive_ptr<scene_graph_tree::NMultiplexer> sceneGraphTree{
      new scene_graph_tree::NMultiplexer};
  boost::intrusive_ptr<scene_graph_tree_host::NMultiplexer> sceneGraphTreeHost{
      new scene_graph_tree_host::NMultiplexer};
  boost::intrusive_ptr<texture::NMultiplexer> texture{new texture::NMultiplexer};
  boost::intrusive_ptr<light_env::NMultiplexer> lightEnv{new light_env::NMultiplexer};

  template <class F>
  void ForEachKind(F const& f) const {
    f(*attributeChange);
    f(*environment);
    f(*environmentMapChange);
    f(*geometryChange);
    f(*material);
    f(*scene);
    f(*sceneGraphModel);
    f(*sceneGraphHierarchy);
    f(*sceneGraphTree);
    f(*sceneGraphTreeHost);
    f(*texture);
    f(*lightEnv);
  }
};

NEventMultiplexer::NEventMultiplexer() : m_multiplexers(new Multiplexers) { Reattach(); }

NEventMultiplexer::~NEventMultiplexer() = default;

void NEventMultiplexer::Detach() {
  m_multiplexers->ForEachKind([this](auto& multiplexer) { multiplexer.RemoveObserver(*this); });
}

void NEventMultiplexer::Reattach() {
  m_multiplexers->ForEachKind([this](auto& multiplexer) { multiplexer.AddObserver(*this); });
}

attribute_change::NMultiplexer& NEventMultiplexer::GetAttributeChangeEventMultiplexer() const {
  return *m_multiplexers->attributeChange;
}

environment::NMultiplexer& NEventMultiplexer::GetEnvironmentEventMultiplexer() const {
  return *m_multiplexers->environment;
}

environment_map_change::NMultiplexer& NEventMultiplexer::GetEnvironmentMapChangeEventMultiplexer()
    const {
  return *m_multiplexers->environmentMapChange;
}

geometry_change::NMultiplexer& NEventMultiplexer::GetGeometryChangeEventMultiplexer() const {
  return *m_multiplexers->geometryChange;
}

material::NMultiplexer& NEventMultiplexer::GetMaterialEventMultiplexer() const {
  return *m_multiplexers->material;
}

scene::NMultiplexer& NEventMultiplexer::GetSceneEventMultiplexer() const {
  return *m_multiplexers->scene;
}

scene_graph_model::NMultiplexer& NEventMultiplexer::GetSceneGraphModelEventMultiplexer() const {
  return *m_multiplexers->sceneGraphModel;
}

scene_graph_hierarchy::NMultiplexer& NEventMultiplexer::GetSceneGraphHierarchyEventMultiplexer()
    const {
  return *m_multiplexers->sceneGraphHierarchy;
}

scene_graph_tree::NMultiplexer& NEventMultiplexer::GetSceneGraphTreeEventMultiplexer() const {
  return *m_multiplexers->sceneGraphTree;
}

scene_graph_tree_host::NMultiplexer& NEventMultiplexer::GetSceneGraphTreeHostEventMultiplexer()
    const {
  return *m_multiplexers->sceneGraphTreeHost;
}

texture::NMultiplexer& NEventMultiplexer::GetTextureEventMultiplexer() const {
  return *m_multiplexers->texture;
}

light_env::NMultiplexer& NEventMultiplexer::GetLightEnvEventMultiplexer() const {
  return *m_multiplexers->lightEnv;
}

}  // namespace corvanta::data::events
