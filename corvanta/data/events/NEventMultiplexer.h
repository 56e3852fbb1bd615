#pragma once

#include <memory>

#include "corvanta/core/observer/NObservable.h"
#include "corvanta/data/domain/geometry/NGeometryChangeListener.h"
#include "corvanta/data/events/NEventListener.h"
#include "corvanta/data/events/attribute_change/NListener.h"
#include "corvanta/data/events/environment/NListener.h"
#include "corvanta/data/events/environment_map_change/NListener.h"
#include "corvanta/data/events/light_env/NListener.h"
#include "corvanta/data/events/material/NListener.h"
#include "corvanta/data/events/scene/NListener.h"
#include "corvanta/data/events/scene_graph_hierarchy/NListener.h"
#include "corvanta/data/events/scene_graph_model/NListener.h"
#include "corvanta/data/events/scene_graph_tree/NListener.h"
#include "corvanta/data/events/scene_graph_tree_host/NListener.h"
#include "corvanta/data/events/texture/NListener.h"

namespace corvanta::data::events {

namespace attribute_change {
class NMultiplexer;
}
namespace environment {
class NMultiplexer;
}
namespace environment_map_change {
class NMultiplexer;
}
namespace geometry_change {
class NMultiplexer;
}
namespace material {
class NMultiplexer;
}
namespace scene {
class NMultiplexer;
}
namespace scene_graph_model {
class NMultiplexer;
}
namespace scene_graph_hierarchy {
class NMultiplexer;
}
namespace scene_graph_tree {
class NMultiplexer;
}
namespace scene_graph_tree_host {
class NMultiplexer;
}
namespace texture {
class NMultiplexer;
}
namespace light_env {
class NMultiplexer;
}

/// The one object of an event system: makes the twelve multiplexers of the event kinds, hands them
/// out to whoever builds domains, is notified of them all, and passes everything on to its
/// NEventListeners.
///
/// It may end before the domains and nodes do: they hold the multiplexers. Rules: docs/events.md.
class CORVANTA_API NEventMultiplexer final
    : public attribute_change::NListener,
      public environment::NListener,
      public environment_map_change::NListener,
      public domain::geometry::NGeometryChangeListener,
      public material::NListener,
      public scene::NListener,
      public scene_graph_model::NListener,
      public scene_graph_tree::NListener,
      public scene_graph_hierarchy::NListener,
      public scene_graph_tree_host::NListener,
      public texture::NListener,
      public light_env::NListener,
      public core::observer::NObservable<NEventMultiplexer, NEventListener> {
 public:
  NEventMultiplexer();

  attribute_change::NMultiplexer& GetAttributeChangeEventMultiplexer() const;
  environment::NMultiplexer& GetEnvironmentEventMultiplexer() const;
  environment_map_change::NMultiplexer& GetEnvironmentMapChangeEventMultiplexer() const;
  geometry_change::NMultiplexer& GetGeometryChangeEventMultiplexer() const;
  material::NMultiplexer& GetMaterialEventMultiplexer() const;
  scene::NMultiplexer& GetSceneEventMultiplexer() const;
  scene_graph_model::NMultiplexer& GetSceneGraphModelEventMultiplexer() const;
  scene_graph_hierarchy::NMultiplexer& GetSceneGraphHierarchyEventMultiplexer() const;
  scene_graph_tree::NMultiplexer& GetSceneGraphTreeEventMultiplexer() const;
  scene_graph_tree_host::NMultiplexer& GetSceneGraphTreeHostEventMultiplexer() const;
  texture::NMultiplexer& GetTextureEventMultiplexer() const;
  light_env::NMultiplexer& GetLightEnvEventMultiplexer() const;

  /// Stops hearing the twelve; whoever registered with them directly goes on hearing. Nothing is
  /// kept for later. Not to be called from within a handler of an NEventListener.
  void Detach();
  /// Is notified of them again.
  void Reattach();

 private:
  struct Multiplexers;

  ~NEventMultiplexer() override;

  void OnAttributeChangeImpl(core::attribute::NAttributeHost& host,
                             core::attribute::NAttribute const& attribute) override {
    NotifyObservers(
        [&](NEventListener& listener) { listener.SignalAttributeChange(host, attribute); });
  }
  void OnFloorImageChange(domain::environment::NEnvironmentNode const& environment) override {
    NotifyObservers(
        [&](NEventListener& listener) { listener.SignalFloorImageChange(environment); });
  }
  void OnFloorGeometryChange(domain::environment::NEnvironmentNode const& environment) override {
    NotifyObservers(
        [&](NEventListener& listener) { listener.SignalFloorGeometryChange(environment); });
  }
  void OnAddLightEnv(domain::environment::NEnvironmentNode const& environment,
                     domain::light_env::NLightEnvNode const& lightEnv) override {
    NotifyObservers(
        [&](NEventListener& listener) { listener.SignalAddLightEnv(environment, lightEnv); });
  }
  void OnRemoveLightEnv(domain::environment::NEnvironmentNode const& environment,
                        domain::light_env::NLightEnvNode const& lightEnv) override {
    NotifyObservers(
        [&](NEventListener& listener) { listener.SignalRemoveLightEnv(environment, lightEnv); });
  }
  void OnImageChange(domain::material::NMaterialNode const& material) override {
    NotifyObservers(
        [&](NEventListener& listener) { listener.SignalEnvironmentMapImageChange(material); });
  }
  void OnImageChange(domain::environment::NEnvironmentNode const& environment) override {
    NotifyObservers(
        [&](NEventListener& listener) { listener.SignalEnvironmentMapImageChange(environment); });
  }
  void OnImageTypeChange(domain::material::NMaterialNode const& material) override {
    NotifyObservers(
        [&](NEventListener& listener) { listener.SignalEnvironmentMapImageTypeChange(material); });
  }
  void OnImageTypeChange(domain::environment::NEnvironmentNode const& environment) override {
    NotifyObservers([&](NEventListener& listener) {
      listener.SignalEnvironmentMapImageTypeChange(environment);
    });
  }
  void OnGeometryChange(
      domain::scenegraph::item::NSceneGraphModelNode const& model,
      boost::intrusive_ptr<domain::geometry::NGeometryNode> const& oldGeometry) override {
    NotifyObservers(
        [&](NEventListener& listener) { listener.SignalGeometryChange(model, oldGeometry); });
  }
  void OnGeometryChangeImpl(domain::geometry::NGeometryNode const& geometry,
                            domain::geometry::NSurface const& surface,
                            domain::geometry::NGeometryChangeType type) override {
    NotifyObservers(
        [&](NEventListener& listener) { listener.SignalGeometryChange(geometry, surface, type); });
  }
  void OnAddTexture(domain::material::NMaterialNode const& material, unsigned int index) override {
    NotifyObservers([&](NEventListener& listener) { listener.SignalAddTexture(material, index); });
  }
  void OnRemoveTexture(
      domain::material::NMaterialNode const& material,
      boost::intrusive_ptr<domain::texture::NTextureNode> const& texture,
      boost::intrusive_ptr<domain::material::texture_mapping::NTextureMapping> const& mapping)
      override {
    NotifyObservers([&](NEventListener& listener) {
      listener.SignalRemoveTexture(material, texture, mapping);
    });
  }
  void OnSetBrdfTextureLocator(domain::material::NMaterialNode const& material,
                               core::locator::NLocator const& locator) override {
    NotifyObservers(
        [&](NEventListener& listener) { listener.SignalSetBrdfTextureLocator(material, locator); });
  }
  void OnMaterialChange(
      domain::scenegraph::item::NSceneGraphModelNode const& model,
      boost::intrusive_ptr<domain::material::NMaterialNode> const& oldMaterial) override {
    NotifyObservers(
        [&](NEventListener& listener) { listener.SignalMaterialChange(model, oldMaterial); });
  }
  void OnAddChild(domain::scenegraph::item::NSceneGraphItemNode const& parent,
                  domain::scenegraph::item::NSceneGraphItemNode const& child) override {
    NotifyObservers([&](NEventListener& listener) { listener.SignalAddChild(parent, child); });
  }
  void OnRemoveChild(domain::scenegraph::item::NSceneGraphItemNode const& parent,
                     domain::scenegraph::item::NSceneGraphItemNode const& child) override {
    NotifyObservers([&](NEventListener& listener) { listener.SignalRemoveChild(parent, child); });
  }
  void OnSceneGraphTreeChange(
      domain::scenegraph::tree::NSceneGraphTreeHost const& host,
      boost::intrusive_ptr<domain::scenegraph::tree::NSceneGraphTreeNode> const& oldTree) override {
    NotifyObservers(
        [&](NEventListener& listener) { listener.SignalSceneGraphTreeChange(host, oldTree); });
  }
  void OnRootChange(
      domain::scenegraph::tree::NSceneGraphTreeNode const& tree,
      boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphItemNode> const& oldRoot) override {
    NotifyObservers(
        [&](NEventListener& listener) { listener.SignalSceneGraphTreeRootChange(tree, oldRoot); });
  }
  void OnSceneGraphTreeRootChange(
      domain::scenegraph::tree::NSceneGraphTreeHost const& host,
      domain::scenegraph::tree::NSceneGraphTreeNode const& tree,
      boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphItemNode> const& oldRoot) override {
    NotifyObservers([&](NEventListener& listener) {
      listener.SignalSceneGraphTreeRootChange(host, tree, oldRoot);
    });
  }
  void OnTextureImageChange(domain::texture::NTextureNode const& texture) override {
    NotifyObservers([&](NEventListener& listener) { listener.SignalTextureImageChange(texture); });
  }
  void OnEnvironmentChange(
      domain::scene::NSceneNode const& scene,
      boost::intrusive_ptr<domain::environment::NEnvironmentNode> const& oldEnvironment) override {
    NotifyObservers(
        [&](NEventListener& listener) { listener.SignalEnvironmentChange(scene, oldEnvironment); });
  }
  void OnLampChange(domain::light_env::NLightEnvNode const& lightEnv,
                    domain::light_env::NLamp const& lamp, light_env::NLampEventType type) override {
    NotifyObservers(
        [&](NEventListener& listener) { listener.SignalLampChange(lightEnv, lamp, type); });
  }

  std::unique_ptr<Multiplexers> const m_multiplexers;
};

}  // namespace corvanta::data::events
