#include "corvanta/data/events/NEventListener.h"

namespace corvanta::data::events {

NEventListener::NEventListener() noexcept = default;
NEventListener::NEventListener(NEventListener const& other) noexcept = default;
NEventListener::~NEventListener() = default;

void NEventListener::OnAttributeChange(core::attribute::NAttributeHost&,
                                       core::attribute::NAttribute const&) {}
void NEventListener::OnFloorImageChange(domain::environment::NEnvironmentNode const&) {}
void NEventListener::OnFloorGeometryChange(domain::environment::NEnvironmentNode const&) {}
void NEventListener::OnAddLightEnv(domain::environment::NEnvironmentNode const&,
                                   domain::light_env::NLightEnvNode const&) {}
void NEventListener::OnRemoveLightEnv(domain::environment::NEnvironmentNode const&,
                                      domain::light_env::NLightEnvNode const&) {}
void NEventListener::OnEnvironmentMapImageChange(domain::material::NMaterialNode const&) {}
void NEventListener::OnEnvironmentMapImageChange(domain::environment::NEnvironmentNode const&) {}
void NEventListener::OnEnvironmentMapImageTypeChange(domain::material::NMaterialNode const&) {}
void NEventListener::OnEnvironmentMapImageTypeChange(domain::environment::NEnvironmentNode const&) {
}
void NEventListener::OnGeometryChange(
    domain::scenegraph::item::NSceneGraphModelNode const&,
    boost::intrusive_ptr<domain::geometry::NGeometryNode> const&) {}
void NEventListener::OnGeometryChange(domain::geometry::NGeometryNode const&,
                                      domain::geometry::NSurface const&,
                                      domain::geometry::NGeometryChangeType) {}
void NEventListener::OnAddTexture(domain::material::NMaterialNode const&, unsigned int) {}
void NEventListener::OnRemoveTexture(
    domain::material::NMaterialNode const&,
    boost::intrusive_ptr<domain::texture::NTextureNode> const&,
    boost::intrusive_ptr<domain::material::texture_mapping::NTextureMapping> const&) {}
void NEventListener::OnSetBrdfTextureLocator(domain::material::NMaterialNode const&,
                                             core::locator::NLocator const&) {}
void NEventListener::OnMaterialChange(
    domain::scenegraph::item::NSceneGraphModelNode const&,
    boost::intrusive_ptr<domain::material::NMaterialNode> const&) {}
void NEventListener::OnAddChild(domain::scenegraph::item::NSceneGraphItemNode const&,
                                domain::scenegraph::item::NSceneGraphItemNode const&) {}
void NEventListener::OnRemoveChild(domain::scenegraph::item::NSceneGraphItemNode const&,
                                   domain::scenegraph::item::NSceneGraphItemNode const&) {}
void NEventListener::OnSceneGraphTreeChange(
    domain::scenegraph::tree::NSceneGraphTreeHost const&,
    boost::intrusive_ptr<domain::scenegraph::tree::NSceneGraphTreeNode> const&) {}
void NEventListener::OnSceneGraphTreeRootChange(
    domain::scenegraph::tree::NSceneGraphTreeNode const&,
    boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphItemNode> const&) {}
void NEventListener::OnSceneGraphTreeRootChange(
    domain::scenegraph::tree::NSceneGraphTreeHost const&,
    domain::scenegraph::tree::NSceneGraphTreeNode const&,
    boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphItemNode> const&) {}
void NEventListener::OnTextureImageChange(domain::texture::NTextureNode const&) {}
void NEventListener::OnEnvironmentChange(
    domain::scene::NSceneNode const&,
    boost::intrusive_ptr<domain::environment::NEnvironmentNode> const&) {}
void NEventListener::OnLampChange(domain::light_env::NLightEnvNode const&,
                                  domain::light_env::NLamp const&, light_env::NLampEventType) {}

}  // namespace corvanta::data::events
