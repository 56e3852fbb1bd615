#pragma once

#include <boost/intrusive_ptr.hpp>

#include "corvanta/data/events/NEventListener.h"

namespace corvanta::core::name {
class NNamedObject;
}  // namespace corvanta::core::name

namespace corvanta::core::node {
class NNode;
}  // namespace corvanta::core::node

namespace corvanta::data::events {

enum NSignalKind : int {
  NSK_ATTRIBUTE_CHANGE,
  NSK_FLOOR_IMAGE_CHANGE,
  NSK_FLOOR_GEOMETRY_CHANGE,
  NSK_ADD_LIGHT_ENV,
  NSK_REMOVE_LIGHT_ENV,
  NSK_ENVIRONMENT_MAP_IMAGE_CHANGE,       // of a material or an environment
  NSK_ENVIRONMENT_MAP_IMAGE_TYPE_CHANGE,  // of a material or an environment
  NSK_GEOMETRY_CHANGE,                    // of a model
  NSK_SURFACE_CHANGE,                     // of a geometry
  NSK_ADD_TEXTURE,
  NSK_REMOVE_TEXTURE,
  NSK_SET_BRDF_TEXTURE_LOCATOR,
  NSK_MATERIAL_CHANGE,
  NSK_ADD_CHILD,
  NSK_REMOVE_CHILD,
  NSK_SCENE_GRAPH_TREE_CHANGE,       // of a host
  NSK_SCENE_GRAPH_TREE_ROOT_CHANGE,  // of a tree
  NSK_SHOWN_ROOT_CHANGE,             // of the tree of a host
  NSK_TEXTURE_IMAGE_CHANGE,
  NSK_ENVIRONMENT_CHANGE,
  NSK_LAMP_CHANGE,
};

/// A signal as data, good during its delivery. What the signal doesn't carry is null.
struct NSignal {
  NSignalKind kind;
  /// "addChild" and the like; of surfaces and lamps with what happened: "surfaceAdded",
  /// "lampRenamed".
  char const* name;
  /// Whom it is about. Null for a host that is no node.
  core::node::NNode const* node = nullptr;
  /// The child, light environment, lamp or removed texture that it is about beside the node, or
  /// the old geometry, material, tree, root or environment.
  core::name::NNamedObject const* other = nullptr;
  core::attribute::NAttributeHost* host = nullptr;
  core::attribute::NAttribute const* attribute = nullptr;
  domain::geometry::NSurface const* surface = nullptr;
  domain::material::texture_mapping::NTextureMapping const* mapping = nullptr;
  core::locator::NLocator const* locator = nullptr;
  domain::scenegraph::tree::NSceneGraphTreeHost const* treeHost = nullptr;
  domain::scenegraph::tree::NSceneGraphTreeNode const* tree = nullptr;
  unsigned int index = 0;  // of an added texture
};

/// Passes every signal of every kind on to one function: the base of what counts, prints or
/// records. Asks nothing of the objects, and takes no memory.
class CORVANTA_API NForwardingListener : public NEventListener {
 protected:
  NForwardingListener() noexcept;
  ~NForwardingListener() override;

 private:
  virtual void OnSignal(NSignal const& signal) = 0;

  void OnAttributeChange(core::attribute::NAttributeHost& host,
                         core::attribute::NAttribute const& attribute) final;
  void OnFloorImageChange(domain::environment::NEnvironmentNode const& environment) final;
  void OnFloorGeometryChange(domain::environment::NEnvironmentNode const& environment) final;
  void OnAddLightEnv(domain::environment::NEnvironmentNode const& environment,
                     domain::light_env::NLightEnvNode const& lightEnv) final;
  void OnRemoveLightEnv(domain::environment::NEnvironmentNode const& environment,
                        domain::light_env::NLightEnvNode const& lightEnv) final;
  void OnEnvironmentMapImageChange(domain::material::NMaterialNode const& material) final;
  void OnEnvironmentMapImageChange(domain::environment::NEnvironmentNode const& environment) final;
  void OnEnvironmentMapImageTypeChange(domain::material::NMaterialNode const& material) final;
  void OnEnvironmentMapImageTypeChange(
      domain::environment::NEnvironmentNode const& environment) final;
  void OnGeometryChange(
      domain::scenegraph::item::NSceneGraphModelNode const& model,
      boost::intrusive_ptr<domain::geometry::NGeometryNode> const& oldGeometry) final;
  void OnGeometryChange(domain::geometry::NGeometryNode const& geometry,
                        domain::geometry::NSurface const& surface,
                        domain::geometry::NGeometryChangeType type) final;
  void OnAddTexture(domain::material::NMaterialNode const& material, unsigned int index) final;
  void OnRemoveTexture(
      domain::material::NMaterialNode const& material,
      boost::intrusive_ptr<domain::texture::NTextureNode> const& texture,
      boost::intrusive_ptr<domain::material::texture_mapping::NTextureMapping> const& mapping)
      final;
  void OnSetBrdfTextureLocator(domain::material::NMaterialNode const& material,
                               core::locator::NLocator const& locator) final;
  void OnMaterialChange(
      domain::scenegraph::item::NSceneGraphModelNode const& model,
      boost::intrusive_ptr<domain::material::NMaterialNode> const& oldMaterial) final;
  void OnAddChild(domain::scenegraph::item::NSceneGraphItemNode const& parent,
                  domain::scenegraph::item::NSceneGraphItemNode const& child) final;
  void OnRemoveChild(domain::scenegraph::item::NSceneGraphItemNode const& parent,
                     domain::scenegraph::item::NSceneGraphItemNode const& child) final;
  void OnSceneGraphTreeChange(
      domain::scenegraph::tree::NSceneGraphTreeHost const& host,
      boost::intrusive_ptr<domain::scenegraph::tree::NSceneGraphTreeNode> const& oldTree) final;
  void OnSceneGraphTreeRootChange(
      domain::scenegraph::tree::NSceneGraphTreeNode const& tree,
      boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphItemNode> const& oldRoot) final;
  void OnSceneGraphTreeRootChange(
      domain::scenegraph::tree::NSceneGraphTreeHost const& host,
      domain::scenegraph::tree::NSceneGraphTreeNode const& tree,
      boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphItemNode> const& oldRoot) final;
  void OnTextureImageChange(domain::texture::NTextureNode const& texture) final;
  void OnEnvironmentChange(
      domain::scene::NSceneNode const& scene,
      boost::intrusive_ptr<domain::environment::NEnvironmentNode> const& oldEnvironment) final;
  void OnLampChange(domain::light_env::NLightEnvNode const& lightEnv,
                    domain::light_env::NLamp const& lamp, light_env::NLampEventType type) final;
};

}  // namespace corvanta::data::events
