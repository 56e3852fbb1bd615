#pragma once

#include <boost/intrusive_ptr.hpp>

#include "corvanta/core/locator/fwd.h"
#include "corvanta/core/reference_countable/NReferenceCountableWithWeakReference.h"
#include "corvanta/data/domain/fwd.h"
#include "corvanta/data/domain/geometry/NGeometryChangeType.h"
#include "corvanta/data/events/light_env/NLampEventType.h"
#include "corvanta/export.h"

namespace corvanta::core::attribute {
class NAttribute;
class NAttributeHost;
}  // namespace corvanta::core::attribute

namespace corvanta::data::events {

/// Is notified of every change of the model: register once with an NEventMultiplexer and override
/// what matters.
///
/// Signals come inside the changing call, on its thread; the change is in place, and a signal of a
/// replacement carries the old value. Held weakly: hold it by `boost::intrusive_ptr`.
/// Rules: docs/events.md.
class CORVANTA_API NEventListener
    : public virtual core::reference_countable::NReferenceCountableWithWeakReference {
 public:
  void SignalAttributeChange(core::attribute::NAttributeHost& host,
                             core::attribute::NAttribute const& attribute) {
    OnAttributeChange(host, attribute);
  }
  void SignalFloorImageChange(domain::environment::NEnvironmentNode const& environment) {
    OnFloorImageChange(environment);
  }
  void SignalFloorGeometryChange(domain::environment::NEnvironmentNode const& environment) {
    OnFloorGeometryChange(environment);
  }
  void SignalAddLightEnv(domain::environment::NEnvironmentNode const& environment,
                         domain::light_env::NLightEnvNode const& lightEnv) {
    OnAddLightEnv(environment, lightEnv);
  }
  void SignalRemoveLightEnv(domain::environment::NEnvironmentNode const& environment,
                            domain::light_env::NLightEnvNode const& lightEnv) {
    OnRemoveLightEnv(environment, lightEnv);
  }
  void SignalEnvironmentMapImageChange(domain::material::NMaterialNode const& material) {
    OnEnvironmentMapImageChange(material);
  }
  void SignalEnvironmentMapImageChange(domain::environment::NEnvironmentNode const& environment) {
    OnEnvironmentMapImageChange(environment);
  }
  void SignalEnvironmentMapImageTypeChange(domain::material::NMaterialNode const& material) {
    OnEnvironmentMapImageTypeChange(material);
  }
  void SignalEnvironmentMapImageTypeChange(
      domain::environment::NEnvironmentNode const& environment) {
    OnEnvironmentMapImageTypeChange(environment);
  }
  void SignalGeometryChange(
      domain::scenegraph::item::NSceneGraphModelNode const& model,
      boost::intrusive_ptr<domain::geometry::NGeometryNode> const& oldGeometry) {
    OnGeometryChange(model, oldGeometry);
  }
  void SignalGeometryChange(domain::geometry::NGeometryNode const& geometry,
                            domain::geometry::NSurface const& surface,
                            domain::geometry::NGeometryChangeType type) {
    OnGeometryChange(geometry, surface, type);
  }
  void SignalAddTexture(domain::material::NMaterialNode const& material, unsigned int index) {
    OnAddTexture(material, index);
  }
  void SignalRemoveTexture(
      domain::material::NMaterialNode const& material,
      boost::intrusive_ptr<domain::texture::NTextureNode> const& texture,
      boost::intrusive_ptr<domain::material::texture_mapping::NTextureMapping> const& mapping) {
    OnRemoveTexture(material, texture, mapping);
  }
  void SignalSetBrdfTextureLocator(domain::material::NMaterialNode const& material,
                                   core::locator::NLocator const& locator) {
    OnSetBrdfTextureLocator(material, locator);
  }
  void SignalMaterialChange(
      domain::scenegraph::item::NSceneGraphModelNode const& model,
      boost::intrusive_ptr<domain::material::NMaterialNode> const& oldMaterial) {
    OnMaterialChange(model, oldMaterial);
  }
  void SignalAddChild(domain::scenegraph::item::NSceneGraphItemNode const& parent,
                      domain::scenegraph::item::NSceneGraphItemNode const& child) {
    OnAddChild(parent, child);
  }
  void SignalRemoveChild(domain::scenegraph::item::NSceneGraphItemNode const& parent,
                         domain::scenegraph::item::NSceneGraphItemNode const& child) {
    OnRemoveChild(parent, child);
  }
  void SignalSceneGraphTreeChange(
      domain::scenegraph::tree::NSceneGraphTreeHost const& host,
      boost::intrusive_ptr<domain::scenegraph::tree::NSceneGraphTreeNode> const& oldTree) {
    OnSceneGraphTreeChange(host, oldTree);
  }
  void SignalSceneGraphTreeRootChange(
      domain::scenegraph::tree::NSceneGraphTreeNode const& tree,
      boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphItemNode> const& oldRoot) {
    OnSceneGraphTreeRootChange(tree, oldRoot);
  }
  void SignalSceneGraphTreeRootChange(
      domain::scenegraph::tree::NSceneGraphTreeHost const& host,
      domain::scenegraph::tree::NSceneGraphTreeNode const& tree,
      boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphItemNode> const& oldRoot) {
    OnSceneGraphTreeRootChange(host, tree, oldRoot);
  }
  void SignalTextureImageChange(domain::texture::NTextureNode const& texture) {
    OnTextureImageChange(texture);
  }
  void SignalEnvironmentChange(
      domain::scene::NSceneNode const& scene,
      boost::intrusive_ptr<domain::environment::NEnvironmentNode> const& oldEnvironment) {
    OnEnvironmentChange(scene, oldEnvironment);
  }
  void SignalLampChange(domain::light_env::NLightEnvNode const& lightEnv,
                        domain::light_env::NLamp const& lamp, light_env::NLampEventType type) {
    OnLampChange(lightEnv, lamp, type);
  }

 protected:
  NEventListener() noexcept;
  NEventListener(NEventListener const& other) noexcept;
  ~NEventListener() override;

 private:
  virtual void OnAttributeChange(core::attribute::NAttributeHost&,
                                 core::attribute::NAttribute const&) {}
  virtual void OnFloorImageChange(domain::environment::NEnvironmentNode const&) {}
  virtual void OnFloorGeometryChange(domain::environment::NEnvironmentNode const&) {}
  virtual void OnAddLightEnv(domain::environment::NEnvironmentNode const&,
                             domain::light_env::NLightEnvNode const&) {}
  virtual void OnRemoveLightEnv(domain::environment::NEnvironmentNode const&,
                                domain::light_env::NLightEnvNode const&) {}
  virtual void OnEnvironmentMapImageChange(domain::material::NMaterialNode const&) {}
  virtual void OnEnvironmentMapImageChange(domain::environment::NEnvironmentNode const&) {}
  virtual void OnEnvironmentMapImageTypeChange(domain::material::NMaterialNode const&) {}
  virtual void OnEnvironmentMapImageTypeChange(domain::environment::NEnvironmentNode const&) {}
  virtual void OnGeometryChange(domain::scenegraph::item::NSceneGraphModelNode const&,
                                boost::intrusive_ptr<domain::geometry::NGeometryNode> const&) {}
  virtual void OnGeometryChange(domain::geometry::NGeometryNode const&,
                                domain::geometry::NSurface const&,
                                domain::geometry::NGeometryChangeType) {}
  virtual void OnAddTexture(domain::material::NMaterialNode const&, unsigned int) {}
  virtual void OnRemoveTexture(
      domain::material::NMaterialNode const&,
      boost::intrusive_ptr<domain::texture::NTextureNode> const&,
      boost::intrusive_ptr<domain::material::texture_mapping::NTextureMapping> const&) {}
  virtual void OnSetBrdfTextureLocator(domain::material::NMaterialNode const&,
                                       core::locator::NLocator const&) {}
  virtual void OnMaterialChange(domain::scenegraph::item::NSceneGraphModelNode const&,
                                boost::intrusive_ptr<domain::material::NMaterialNode> const&) {}
  virtual void OnAddChild(domain::scenegraph::item::NSceneGraphItemNode const&,
                          domain::scenegraph::item::NSceneGraphItemNode const&) {}
  virtual void OnRemoveChild(domain::scenegraph::item::NSceneGraphItemNode const&,
                             domain::scenegraph::item::NSceneGraphItemNode const&) {}
  virtual void OnSceneGraphTreeChange(
      domain::scenegraph::tree::NSceneGraphTreeHost const&,
      boost::intrusive_ptr<domain::scenegraph::tree::NSceneGraphTreeNode> const&) {}
  virtual void OnSceneGraphTreeRootChange(
      domain::scenegraph::tree::NSceneGraphTreeNode const&,
      boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphItemNode> const&) {}
  virtual void OnSceneGraphTreeRootChange(
      domain::scenegraph::tree::NSceneGraphTreeHost const&,
      domain::scenegraph::tree::NSceneGraphTreeNode const&,
      boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphItemNode> const&) {}
  virtual void OnTextureImageChange(domain::texture::NTextureNode const&) {}
  virtual void OnEnvironmentChange(
      domain::scene::NSceneNode const&,
      boost::intrusive_ptr<domain::environment::NEnvironmentNode> const&) {}
  virtual void OnLampChange(domain::light_env::NLightEnvNode const&,
                            domain::light_env::NLamp const&, light_env::NLampEventType) {}
};

}  // namespace corvanta::data::events
