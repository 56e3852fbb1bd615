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

void NEventMultiplexer::OnAttributeChangeImpl(core::attribute::NAttributeHost& host,
                                              core::attribute::NAttribute const& attribute) {
  NotifyObservers(
      [&](NEventListener& listener) { listener.SignalAttributeChange(host, attribute); });
}

void NEventMultiplexer::OnFloorImageChange(
    domain::environment::NEnvironmentNode const& environment) {
  NotifyObservers([&](NEventListener& listener) { listener.SignalFloorImageChange(environment); });
}

void NEventMultiplexer::OnFloorGeometryChange(
    domain::environment::NEnvironmentNode const& environment) {
  NotifyObservers(
      [&](NEventListener& listener) { listener.SignalFloorGeometryChange(environment); });
}

void NEventMultiplexer::OnAddLightEnv(domain::environment::NEnvironmentNode const& environment,
                                      domain::light_env::NLightEnvNode const& lightEnv) {
  NotifyObservers(
      [&](NEventListener& listener) { listener.SignalAddLightEnv(environment, lightEnv); });
}

void NEventMultiplexer::OnRemoveLightEnv(domain::environment::NEnvironmentNode const& environment,
                                         domain::light_env::NLightEnvNode const& lightEnv) {
  NotifyObservers(
      [&](NEventListener& listener) { listener.SignalRemoveLightEnv(environment, lightEnv); });
}

void NEventMultiplexer::OnImageChange(domain::material::NMaterialNode const& material) {
  NotifyObservers(
      [&](NEventListener& listener) { listener.SignalEnvironmentMapImageChange(material); });
}

void NEventMultiplexer::OnImageChange(domain::environment::NEnvironmentNode const& environment) {
  NotifyObservers(
      [&](NEventListener& listener) { listener.SignalEnvironmentMapImageChange(environment); });
}

void NEventMultiplexer::OnImageTypeChange(domain::material::NMaterialNode const& material) {
  NotifyObservers(
      [&](NEventListener& listener) { listener.SignalEnvironmentMapImageTypeChange(material); });
}

void NEventMultiplexer::OnImageTypeChange(
    domain::environment::NEnvironmentNode const& environment) {
  NotifyObservers(
      [&](NEventListener& listener) { listener.SignalEnvironmentMapImageTypeChange(environment); });
}

void NEventMultiplexer::OnGeometryChange(
    domain::scenegraph::item::NSceneGraphModelNode const& model,
    boost::intrusive_ptr<domain::geometry::NGeometryNode> const& oldGeometry) {
  NotifyObservers(
      [&](NEventListener& listener) { listener.SignalGeometryChange(model, oldGeometry); });
}

void NEventMultiplexer::OnGeometryChangeImpl(domain::geometry::NGeometryNode const& geometry,
                                             domain::geometry::NSurface const& surface,
                                             domain::geometry::NGeometryChangeType type) {
  NotifyObservers(
      [&](NEventListener& listener) { listener.SignalGeometryChange(geometry, surface, type); });
}

void NEventMultiplexer::OnAddTexture(domain::material::NMaterialNode const& material,
                                     unsigned int index) {
  NotifyObservers([&](NEventListener& listener) { listener.SignalAddTexture(material, index); });
}

void NEventMultiplexer::OnRemoveTexture(
    domain::material::NMaterialNode const& material,
    boost::intrusive_ptr<domain::texture::NTextureNode> const& texture,
    boost::intrusive_ptr<domain::material::texture_mapping::NTextureMapping> const& mapping) {
  NotifyObservers(
      [&](NEventListener& listener) { listener.SignalRemoveTexture(material, texture, mapping); });
}

void NEventMultiplexer::OnSetBrdfTextureLocator(domain::material::NMaterialNode const& material,
                                                core::locator::NLocator const& locator) {
  NotifyObservers(
      [&](NEventListener& listener) { listener.SignalSetBrdfTextureLocator(material, locator); });
}

void NEventMultiplexer::OnMaterialChange(
    domain::scenegraph::item::NSceneGraphModelNode const& model,
    boost::intrusive_ptr<domain::material::NMaterialNode> const& oldMaterial) {
  NotifyObservers(
      [&](NEventListener& listener) { listener.SignalMaterialChange(model, oldMaterial); });
}

void NEventMultiplexer::OnAddChild(domain::scenegraph::item::NSceneGraphItemNode const& parent,
                                   domain::scenegraph::item::NSceneGraphItemNode const& child) {
  NotifyObservers([&](NEventListener& listener) { listener.SignalAddChild(parent, child); });
}

void NEventMultiplexer::OnRemoveChild(domain::scenegraph::item::NSceneGraphItemNode const& parent,
                                      domain::scenegraph::item::NSceneGraphItemNode const& child) {
  NotifyObservers([&](NEventListener& listener) { listener.SignalRemoveChild(parent, child); });
}

void NEventMultiplexer::OnSceneGraphTreeChange(
    domain::scenegraph::tree::NSceneGraphTreeHost const& host,
    boost::intrusive_ptr<domain::scenegraph::tree::NSceneGraphTreeNode> const& oldTree) {
  NotifyObservers(
      [&](NEventListener& listener) { listener.SignalSceneGraphTreeChange(host, oldTree); });
}

void NEventMultiplexer::OnRootChange(
    domain::scenegraph::tree::NSceneGraphTreeNode const& tree,
    boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphItemNode> const& oldRoot) {
  NotifyObservers(
      [&](NEventListener& listener) { listener.SignalSceneGraphTreeRootChange(tree, oldRoot); });
}

void NEventMultiplexer::OnSceneGraphTreeRootChange(
    domain::scenegraph::tree::NSceneGraphTreeHost const& host,
    domain::scenegraph::tree::NSceneGraphTreeNode const& tree,
    boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphItemNode> const& oldRoot) {
  NotifyObservers([&](NEventListener& listener) {
    listener.SignalSceneGraphTreeRootChange(host, tree, oldRoot);
  });
}

void NEventMultiplexer::OnTextureImageChange(domain::texture::NTextureNode const& texture) {
  NotifyObservers([&](NEventListener& listener) { listener.SignalTextureImageChange(texture); });
}

void NEventMultiplexer::OnEnvironmentChange(
    domain::scene::NSceneNode const& scene,
    boost::intrusive_ptr<domain::environment::NEnvironmentNode> const& oldEnvironment) {
  NotifyObservers(
      [&](NEventListener& listener) { listener.SignalEnvironmentChange(scene, oldEnvironment); });
}

void NEventMultiplexer::OnLampChange(domain::light_env::NLightEnvNode const& lightEnv,
                                     domain::light_env::NLamp const& lamp,
                                     light_env::NLampEventType type) {
  NotifyObservers(
      [&](NEventListener& listener) { listener.SignalLampChange(lightEnv, lamp, type); });
}

}  // namespace corvanta::data::events
