#include "corvanta/data/events/NForwardingListener.h"

#include "corvanta/data/domain/environment/NEnvironmentNode.h"
#include "corvanta/data/domain/geometry/NGeometryNode.h"
#include "corvanta/data/domain/light_env/NLamp.h"
#include "corvanta/data/domain/light_env/NLightEnvNode.h"
#include "corvanta/data/domain/material/NMaterialNode.h"
#include "corvanta/data/domain/scene/NSceneNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"
#include "corvanta/data/domain/scenegraph/tree/NSceneGraphTreeNode.h"
#include "corvanta/data/domain/texture/NTextureNode.h"

namespace corvanta::data::events {

using core::node::NNode;
using domain::environment::NEnvironmentNode;
using domain::geometry::NGeometryNode;
using domain::light_env::NLightEnvNode;
using domain::material::NMaterialNode;
using domain::scenegraph::item::NSceneGraphItemNode;
using domain::scenegraph::item::NSceneGraphModelNode;
using domain::scenegraph::tree::NSceneGraphTreeHost;
using domain::scenegraph::tree::NSceneGraphTreeNode;
using domain::texture::NTextureNode;

NForwardingListener::NForwardingListener() noexcept = default;
NForwardingListener::~NForwardingListener() = default;

void NForwardingListener::OnAttributeChange(core::attribute::NAttributeHost& host,
                                            core::attribute::NAttribute const& attribute) {
  OnSignal({.kind = NSK_ATTRIBUTE_CHANGE,
            .name = "attributeChange",
            .node = dynamic_cast<NNode const*>(&host),
            .host = &host,
            .attribute = &attribute});
}

void NForwardingListener::OnFloorImageChange(NEnvironmentNode const& environment) {
  OnSignal({NSK_FLOOR_IMAGE_CHANGE, "floorImageChange", &environment});
}
void NForwardingListener::OnFloorGeometryChange(NEnvironmentNode const& environment) {
  OnSignal({NSK_FLOOR_GEOMETRY_CHANGE, "floorGeometryChange", &environment});
}
void NForwardingListener::OnAddLightEnv(NEnvironmentNode const& environment,
                                        NLightEnvNode const& lightEnv) {
  OnSignal({NSK_ADD_LIGHT_ENV, "addLightEnv", &environment, &lightEnv});
}
void NForwardingListener::OnRemoveLightEnv(NEnvironmentNode const& environment,
                                           NLightEnvNode const& lightEnv) {
  OnSignal({NSK_REMOVE_LIGHT_ENV, "removeLightEnv", &environment, &lightEnv});
}

void NForwardingListener::OnEnvironmentMapImageChange(NMaterialNode const& material) {
  OnSignal({NSK_ENVIRONMENT_MAP_IMAGE_CHANGE, "environmentMapImageChange", &material});
}
void NForwardingListener::OnEnvironmentMapImageChange(NEnvironmentNode const& environment) {
  OnSignal({NSK_ENVIRONMENT_MAP_IMAGE_CHANGE, "environmentMapImageChange", &environment});
}
void NForwardingListener::OnEnvironmentMapImageTypeChange(NMaterialNode const& material) {
  OnSignal({NSK_ENVIRONMENT_MAP_IMAGE_TYPE_CHANGE, "environmentMapImageTypeChange", &material});
}
void NForwardingListener::OnEnvironmentMapImageTypeChange(NEnvironmentNode const& environment) {
  OnSignal({NSK_ENVIRONMENT_MAP_IMAGE_TYPE_CHANGE, "environmentMapImageTypeChange", &environment});
}

void NForwardingListener::OnGeometryChange(NSceneGraphModelNode const& model,
                                           boost::intrusive_ptr<NGeometryNode> const& oldGeometry) {
  OnSignal({NSK_GEOMETRY_CHANGE, "geometryChange", &model, oldGeometry.get()});
}
void NForwardingListener::OnGeometryChange(NGeometryNode const& geometry,
                                           domain::geometry::NSurface const& surface,
                                           domain::geometry::NGeometryChangeType type) {
  constexpr char const* kNames[] = {"surfaceAdded", "surfaceRemoved", "surfaceChanged"};
  OnSignal(
      {.kind = NSK_SURFACE_CHANGE, .name = kNames[type], .node = &geometry, .surface = &surface});
}

void NForwardingListener::OnAddTexture(NMaterialNode const& material, unsigned int index) {
  OnSignal({.kind = NSK_ADD_TEXTURE, .name = "addTexture", .node = &material, .index = index});
}
void NForwardingListener::OnRemoveTexture(
    NMaterialNode const& material, boost::intrusive_ptr<NTextureNode> const& texture,
    boost::intrusive_ptr<domain::material::texture_mapping::NTextureMapping> const& mapping) {
  OnSignal({.kind = NSK_REMOVE_TEXTURE,
            .name = "removeTexture",
            .node = &material,
            .other = texture.get(),
            .mapping = mapping.get()});
}
void NForwardingListener::OnSetBrdfTextureLocator(NMaterialNode const& material,
                                                  core::locator::NLocator const& locator) {
  OnSignal({.kind = NSK_SET_BRDF_TEXTURE_LOCATOR,
            .name = "setBrdfTextureLocator",
            .node = &material,
            .locator = &locator});
}
void NForwardingListener::OnMaterialChange(NSceneGraphModelNode const& model,
                                           boost::intrusive_ptr<NMaterialNode> const& oldMaterial) {
  OnSignal({NSK_MATERIAL_CHANGE, "materialChange", &model, oldMaterial.get()});
}

void NForwardingListener::OnAddChild(NSceneGraphItemNode const& parent,
                                     NSceneGraphItemNode const& child) {
  OnSignal({NSK_ADD_CHILD, "addChild", &parent, &child});
}
void NForwardingListener::OnRemoveChild(NSceneGraphItemNode const& parent,
                                        NSceneGraphItemNode const& child) {
  OnSignal({NSK_REMOVE_CHILD, "removeChild", &parent, &child});
}

void NForwardingListener::OnSceneGraphTreeChange(
    NSceneGraphTreeHost const& host, boost::intrusive_ptr<NSceneGraphTreeNode> const& oldTree) {
  OnSignal({.kind = NSK_SCENE_GRAPH_TREE_CHANGE,
            .name = "sceneGraphTreeChange",
            .node = dynamic_cast<NNode const*>(&host),
            .other = oldTree.get(),
            .treeHost = &host});
}
void NForwardingListener::OnSceneGraphTreeRootChange(
    NSceneGraphTreeNode const& tree, boost::intrusive_ptr<NSceneGraphItemNode> const& oldRoot) {
  OnSignal({.kind = NSK_SCENE_GRAPH_TREE_ROOT_CHANGE,
            .name = "sceneGraphTreeRootChange",
            .node = &tree,
            .other = oldRoot.get(),
            .tree = &tree});
}
void NForwardingListener::OnSceneGraphTreeRootChange(
    NSceneGraphTreeHost const& host, NSceneGraphTreeNode const& tree,
    boost::intrusive_ptr<NSceneGraphItemNode> const& oldRoot) {
  OnSignal({.kind = NSK_SHOWN_ROOT_CHANGE,
            .name = "sceneGraphTreeRootChange",
            .node = dynamic_cast<NNode const*>(&host),
            .other = oldRoot.get(),
            .treeHost = &host,
            .tree = &tree});
}

void NForwardingListener::OnTextureImageChange(NTextureNode const& texture) {
  OnSignal({NSK_TEXTURE_IMAGE_CHANGE, "textureImageChange", &texture});
}

void NForwardingListener::OnEnvironmentChange(
    domain::scene::NSceneNode const& scene,
    boost::intrusive_ptr<NEnvironmentNode> const& oldEnvironment) {
  OnSignal({NSK_ENVIRONMENT_CHANGE, "environmentChange", &scene, oldEnvironment.get()});
}

void NForwardingListener::OnLampChange(NLightEnvNode const& lightEnv,
                                       domain::light_env::NLamp const& lamp,
                                       light_env::NLampEventType type) {
  constexpr char const* kNames[] = {"lampCreated", "lampDeleted", "lampRenamed", "lampChanged"};
  OnSignal({NSK_LAMP_CHANGE, kNames[type], &lightEnv, &lamp});
}

}  // namespace corvanta::data::events
