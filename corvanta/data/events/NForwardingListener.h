#pragma once

#include <boost/intrusive_ptr.hpp>

#include "corvanta/data/domain/environment/NEnvironmentNode.h"
#include "corvanta/data/domain/geometry/NGeometryNode.h"
#include "corvanta/data/domain/light_env/NLamp.h"
#include "corvanta/data/domain/light_env/NLightEnvNode.h"
#include "corvanta/data/domain/material/NMaterialNode.h"
#include "corvanta/data/domain/scene/NSceneNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"
#include "corvanta/data/domain/scenegraph/tree/NSceneGraphTreeNode.h"
#include "corvanta/data/domain/texture/NTextureNode.h"
#include "corvanta/data/events/NEventListener.h"

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
                         core::attribute::NAttribute const& attribute) final {
    OnSignal({.kind = NSK_ATTRIBUTE_CHANGE,
              .name = "attributeChange",
              .node = dynamic_cast<core::node::NNode const*>(&host),
              .host = &host,
              .attribute = &attribute});
  }
  void OnFloorImageChange(domain::environment::NEnvironmentNode const& environment) final {
    OnSignal({NSK_FLOOR_IMAGE_CHANGE, "floorImageChange", &environment});
  }
  void OnFloorGeometryChange(domain::environment::NEnvironmentNode const& environment) final {
    OnSignal({NSK_FLOOR_GEOMETRY_CHANGE, "floorGeometryChange", &environment});
  }
  void OnAddLightEnv(domain::environment::NEnvironmentNode const& environment,
                     domain::light_env::NLightEnvNode const& lightEnv) final {
    OnSignal({NSK_ADD_LIGHT_ENV, "addLightEnv", &environment, &lightEnv});
  }
  void OnRemoveLightEnv(domain::environment::NEnvironmentNode const& environment,
                        domain::light_env::NLightEnvNode const& lightEnv) final {
    OnSignal({NSK_REMOVE_LIGHT_ENV, "removeLightEnv", &environment, &lightEnv});
  }
  void OnEnvironmentMapImageChange(domain::material::NMaterialNode const& material) final {
    OnSignal({NSK_ENVIRONMENT_MAP_IMAGE_CHANGE, "environmentMapImageChange", &material});
  }
  void OnEnvironmentMapImageChange(domain::environment::NEnvironmentNode const& environment) final {
    OnSignal({NSK_ENVIRONMENT_MAP_IMAGE_CHANGE, "environmentMapImageChange", &environment});
  }
  void OnEnvironmentMapImageTypeChange(domain::material::NMaterialNode const& material) final {
    OnSignal({NSK_ENVIRONMENT_MAP_IMAGE_TYPE_CHANGE, "environmentMapImageTypeChange", &material});
  }
  void OnEnvironmentMapImageTypeChange(
      domain::environment::NEnvironmentNode const& environment) final {
    OnSignal(
        {NSK_ENVIRONMENT_MAP_IMAGE_TYPE_CHANGE, "environmentMapImageTypeChange", &environment});
  }
  void OnGeometryChange(
      domain::scenegraph::item::NSceneGraphModelNode const& model,
      boost::intrusive_ptr<domain::geometry::NGeometryNode> const& oldGeometry) final {
    OnSignal({NSK_GEOMETRY_CHANGE, "geometryChange", &model, oldGeometry.get()});
  }
  void OnGeometryChange(domain::geometry::NGeometryNode const& geometry,
                        domain::geometry::NSurface const& surface,
                        domain::geometry::NGeometryChangeType type) final {
    constexpr char const* kNames[] = {"surfaceAdded", "surfaceRemoved", "surfaceChanged"};
    OnSignal(
        {.kind = NSK_SURFACE_CHANGE, .name = kNames[type], .node = &geometry, .surface = &surface});
  }
  void OnAddTexture(domain::material::NMaterialNode const& material, unsigned int index) final {
    OnSignal({.kind = NSK_ADD_TEXTURE, .name = "addTexture", .node = &material, .index = index});
  }
  void OnRemoveTexture(
      domain::material::NMaterialNode const& material,
      boost::intrusive_ptr<domain::texture::NTextureNode> const& texture,
      boost::intrusive_ptr<domain::material::texture_mapping::NTextureMapping> const& mapping)
      final {
    OnSignal({.kind = NSK_REMOVE_TEXTURE,
              .name = "removeTexture",
              .node = &material,
              .other = texture.get(),
              .mapping = mapping.get()});
  }
  void OnSetBrdfTextureLocator(domain::material::NMaterialNode const& material,
                               core::locator::NLocator const& locator) final {
    OnSignal({.kind = NSK_SET_BRDF_TEXTURE_LOCATOR,
              .name = "setBrdfTextureLocator",
              .node = &material,
              .locator = &locator});
  }
  void OnMaterialChange(
      domain::scenegraph::item::NSceneGraphModelNode const& model,
      boost::intrusive_ptr<domain::material::NMaterialNode> const& oldMaterial) final {
    OnSignal({NSK_MATERIAL_CHANGE, "materialChange", &model, oldMaterial.get()});
  }
  void OnAddChild(domain::scenegraph::item::NSceneGraphItemNode const& parent,
                  domain::scenegraph::item::NSceneGraphItemNode const& child) final {
    OnSignal({NSK_ADD_CHILD, "addChild", &parent, &child});
  }
  void OnRemoveChild(domain::scenegraph::item::NSceneGraphItemNode const& parent,
                     domain::scenegraph::item::NSceneGraphItemNode const& child) final {
    OnSignal({NSK_REMOVE_CHILD, "removeChild", &parent, &child});
  }
  void OnSceneGraphTreeChange(
      domain::scenegraph::tree::NSceneGraphTreeHost const& host,
      boost::intrusive_ptr<domain::scenegraph::tree::NSceneGraphTreeNode> const& oldTree) final {
    OnSignal({.kind = NSK_SCENE_GRAPH_TREE_CHANGE,
              .name = "sceneGraphTreeChange",
              .node = dynamic_cast<core::node::NNode const*>(&host),
              .other = oldTree.get(),
              .treeHost = &host});
  }
  void OnSceneGraphTreeRootChange(
      domain::scenegraph::tree::NSceneGraphTreeNode const& tree,
      boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphItemNode> const& oldRoot) final {
    OnSignal({.kind = NSK_SCENE_GRAPH_TREE_ROOT_CHANGE,
              .name = "sceneGraphTreeRootChange",
              .node = &tree,
              .other = oldRoot.get(),
              .tree = &tree});
  }
  void OnSceneGraphTreeRootChange(
      domain::scenegraph::tree::NSceneGraphTreeHost const& host,
      domain::scenegraph::tree::NSceneGraphTreeNode const& tree,
      boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphItemNode> const& oldRoot) final {
    OnSignal({.kind = NSK_SHOWN_ROOT_CHANGE,
              .name = "sceneGraphTreeRootChange",
              .node = dynamic_cast<core::node::NNode const*>(&host),
              .other = oldRoot.get(),
              .treeHost = &host,
              .tree = &tree});
  }
  void OnTextureImageChange(domain::texture::NTextureNode const& texture) final {
    OnSignal({NSK_TEXTURE_IMAGE_CHANGE, "textureImageChange", &texture});
  }
  void OnEnvironmentChange(
      domain::scene::NSceneNode const& scene,
      boost::intrusive_ptr<domain::environment::NEnvironmentNode> const& oldEnvironment) final {
    OnSignal({NSK_ENVIRONMENT_CHANGE, "environmentChange", &scene, oldEnvironment.get()});
  }
  void OnLampChange(domain::light_env::NLightEnvNode const& lightEnv,
                    domain::light_env::NLamp const& lamp, light_env::NLampEventType type) final {
    constexpr char const* kNames[] = {"lampCreated", "lampDeleted", "lampRenamed", "lampChanged"};
    OnSignal({NSK_LAMP_CHANGE, kNames[type], &lightEnv, &lamp});
  }
};

}  // namespace corvanta::data::events
