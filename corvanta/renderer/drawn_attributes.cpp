#include "corvanta/renderer/drawn_attributes.h"

#include <algorithm>
#include <iterator>
#include <span>

#include "corvanta/data/domain/camera/NCameraNode.h"
#include "corvanta/data/domain/environment/NEnvironmentNode.h"
#include "corvanta/data/domain/light/NLightNode.h"
#include "corvanta/data/domain/light_env/NLamp.h"
#include "corvanta/data/domain/light_env/NLightEnvNode.h"
#include "corvanta/data/domain/material/NMaterialNode.h"
#include "corvanta/data/domain/projection/NProjectionNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphCameraNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"
#include "corvanta/data/domain/scenegraph/tree/NSceneGraphTreeNode.h"
#include "corvanta/data/domain/texture/NTextureNode.h"
#include "corvanta/data/view/NView.h"

namespace corvanta::renderer {

namespace {

using core::attribute::NAttributeHost;
namespace domain = data::domain;
namespace item = domain::scenegraph::item;

using Name = std::wstring_view;

constexpr Name kOfItems[] = {
    L"translation.x",        L"translation.y", L"translation.z",    L"rotation.x",
    L"rotation.y",           L"rotation.z",    L"rotation.pivot.x", L"rotation.pivot.y",
    L"rotation.pivot.z",     L"scale.x",       L"scale.y",          L"scale.z",
    L"transform.isAbsolute", L"isVisible",     L"dropsShadow"};
constexpr Name kOfModels[] = {L"isWired", L"billboardType"};
constexpr Name kOfCameraItems[] = {L"interest.x", L"interest.y", L"interest.z",
                                   L"up.x",       L"up.y",       L"up.z"};
constexpr Name kOfTrees[] = {L"coordConversion", L"unit"};
constexpr Name kOfCameras[] = {L"exposure",
                               L"gamma",
                               L"viewAngle.horizontal",
                               L"viewAngle.vertical",
                               L"viewAngle.usesVertical",
                               L"projectionType",
                               L"horizontalTiltAngle",
                               L"verticalTiltAngle"};
constexpr Name kOfLights[] = {L"type",
                              L"color.r",
                              L"color.g",
                              L"color.b",
                              L"extension",
                              L"makesShadow",
                              L"shadow.darkness",
                              L"shadow.softness",
                              L"attenuation.type",
                              L"attenuation.range",
                              L"spreadAngle",
                              L"falloffAngle"};
constexpr Name kOfLightEnvs[] = {L"lamps.coefficient", L"lamps.rotation.y", L"lamps.scale"};
constexpr Name kOfLamps[] = {L"enabled",           L"type",
                             L"color.r",           L"color.g",
                             L"color.b",           L"direction.x",
                             L"direction.y",       L"direction.z",
                             L"position.x",        L"position.y",
                             L"position.z",        L"emitMinus",
                             L"makesShadow",       L"shadow.darkness",
                             L"shadow.softness",   L"attenuation.type",
                             L"attenuation.range", L"spreadAngle",
                             L"falloffAngle"};
constexpr Name kOfTextures[] = {L"type", L"bumpScale", L"operation"};
constexpr Name kOfProjections[] = {
    L"method",     L"translation.x", L"translation.y", L"translation.z", L"rotation.x",
    L"rotation.y", L"rotation.z",    L"scale.x",       L"scale.y",       L"scale.z",
    L"flip.u",     L"flip.v",        L"repeat.u",      L"repeat.v",      L"wrap.u",
    L"wrap.v",     L"offset.u",      L"offset.v"};
constexpr Name kOfMaterials[] = {L"type",
                                 L"diffuse.r",
                                 L"diffuse.g",
                                 L"diffuse.b",
                                 L"ambient.r",
                                 L"ambient.g",
                                 L"ambient.b",
                                 L"specular.r",
                                 L"specular.g",
                                 L"specular.b",
                                 L"emissive.r",
                                 L"emissive.g",
                                 L"emissive.b",
                                 L"transparency",
                                 L"power",
                                 L"eccentricity",
                                 L"specularRollOff",
                                 L"refractiveIndex",
                                 L"backRefractiveIndex",
                                 L"clearcoatIndex",
                                 L"scale",
                                 L"bias",
                                 L"roughness",
                                 L"fleck.size",
                                 L"fleck.perturbation",
                                 L"fleck.specular.r",
                                 L"fleck.specular.g",
                                 L"fleck.specular.b",
                                 L"environmentMap.isEnabled",
                                 L"environmentMap.rotation.x",
                                 L"environmentMap.rotation.y",
                                 L"environmentMap.rotation.z",
                                 L"ibl.coeff.diffuse",
                                 L"ibl.coeff.specular",
                                 L"ibl.roughness",
                                 L"ibl.contrast"};
constexpr Name kOfEnvironments[] = {L"color.r",
                                    L"color.g",
                                    L"color.b",
                                    L"ambientLight.r",
                                    L"ambientLight.g",
                                    L"ambientLight.b",
                                    L"hdr.bloom",
                                    L"hdr.exposure",
                                    L"hdr.gamma",
                                    L"hdr.light",
                                    L"environmentMap.rotation.x",
                                    L"environmentMap.rotation.y",
                                    L"environmentMap.rotation.z",
                                    L"2DImage.exposure",
                                    L"2DImage.gamma",
                                    L"floor.isVisible",
                                    L"floor.showsShadow",
                                    L"floor.height",
                                    L"floor.reflection",
                                    L"floor.roughness",
                                    L"floor.color.r",
                                    L"floor.color.g",
                                    L"floor.color.b",
                                    L"hdr.diffuse",
                                    L"hdr.star",
                                    L"autoExposure.isEnabled",
                                    L"autoExposure.relativeExposure",
                                    L"ssao.isEnabled",
                                    L"ssao.radius",
                                    L"ssao.depthFalloff",
                                    L"ssao.contrast",
                                    L"toneMapping.isEnabled",
                                    L"toneMapping.whiteBrightness"};
constexpr Name kOfViews[] = {L"left", L"right", L"top", L"bottom"};

template <class Class>
bool IsOne(NAttributeHost const& host) {
  return dynamic_cast<Class const*>(&host) != nullptr;
}

/// The attributes of a class that are drawn.
struct DrawnRow {
  bool (*isOne)(NAttributeHost const& host);
  std::span<Name const> names;
};

constexpr DrawnRow kDrawnRows[] = {
    {&IsOne<item::NSceneGraphItemNode>, kOfItems},
    {&IsOne<item::NSceneGraphModelNode>, kOfModels},
    {&IsOne<item::NSceneGraphCameraNode>, kOfCameraItems},
    {&IsOne<domain::scenegraph::tree::NSceneGraphTreeNode>, kOfTrees},
    {&IsOne<domain::camera::NCameraNode>, kOfCameras},
    {&IsOne<domain::light::NLightNode>, kOfLights},
    {&IsOne<domain::light_env::NLightEnvNode>, kOfLightEnvs},
    {&IsOne<domain::light_env::NLamp>, kOfLamps},
    {&IsOne<domain::texture::NTextureNode>, kOfTextures},
    {&IsOne<domain::projection::NProjectionNode>, kOfProjections},
    {&IsOne<domain::material::NMaterialNode>, kOfMaterials},
    {&IsOne<domain::environment::NEnvironmentNode>, kOfEnvironments},
    {&IsOne<data::view::NView>, kOfViews},
};

}  // namespace

bool IsDrawn(NAttributeHost const& host, std::wstring_view name) {
  return std::any_of(std::begin(kDrawnRows), std::end(kDrawnRows), [&](DrawnRow const& row) {
    return std::find(row.names.begin(), row.names.end(), name) != row.names.end() &&
           row.isOne(host);
  });
}

}  // namespace corvanta::renderer
