#include "corvanta/data/internal/internal_data.h"

#include <boost/make_shared.hpp>

#include "corvanta/data/internal/built_in_images.h"
#include "corvanta/data/internal/detail/NInternalDataManager.h"
#include "corvanta/data/internal/detail/create_node.h"
#include "corvanta/data/internal/detail/registry.h"

namespace corvanta::data::internal {

using core::domain::NDomainManager;
using core::node::NNodeReference;
using detail::FindInternalData;
using detail::NInternalDataManager;
using domain::material::NMaterialNode;

namespace item = domain::scenegraph::item;

bool Initialize(NDomainManager& manager, events::NEventMultiplexer& events) {
  // What ends, ends outside the lock.
  std::vector<detail::NRegistration::Entry> entries;
  detail::DataPointer released;
  detail::NRegistryLock const lock;
  if (!lock || FindInternalData(manager) != nullptr) return false;
  detail::NRegistration registration(manager, entries);
  try {
    detail::NInternalDomains const domains(registration, manager, events);
    detail::SetInternalData(manager, boost::make_shared<NInternalDataManager>(domains), released);
  } catch (detail::NRefusal const&) {
    return false;
  }
  registration.Keep();
  return true;
}

bool Uninitialize(NDomainManager& manager) {
  detail::DataPointer released;  // which ends outside the lock
  detail::NRegistryLock const lock;
  return lock && detail::EraseInternalData(manager, released);
}

namespace {

GeometryReference GetGeometry(NDomainManager const& manager, detail::NPrimitive primitive) {
  NInternalDataManager const* const data = FindInternalData(manager);
  return data ? GeometryReference(*data->geometry.nodes[primitive]) : GeometryReference();
}

NMaterialNode* GetMaterial(NDomainManager const& manager, int slot) {
  NInternalDataManager const* const data = FindInternalData(manager);
  return data ? data->material.materials[slot].get() : nullptr;
}

}  // namespace

GeometryReference GetPlane(NDomainManager const& manager) {
  return GetGeometry(manager, detail::NP_PLANE);
}
GeometryReference GetCube(NDomainManager const& manager) {
  return GetGeometry(manager, detail::NP_CUBE);
}
GeometryReference GetInwardCube(NDomainManager const& manager) {
  return GetGeometry(manager, detail::NP_INWARD_CUBE);
}
GeometryReference GetCubeFloor(NDomainManager const& manager) {
  return GetGeometry(manager, detail::NP_CUBE_FLOOR);
}
GeometryReference GetSphere(NDomainManager const& manager) {
  return GetGeometry(manager, detail::NP_SPHERE);
}
GeometryReference GetInwardSphere(NDomainManager const& manager) {
  return GetGeometry(manager, detail::NP_INWARD_SPHERE);
}
GeometryReference GetSphereFloor(NDomainManager const& manager) {
  return GetGeometry(manager, detail::NP_SPHERE_FLOOR);
}
GeometryReference GetArrow(NDomainManager const& manager) {
  return GetGeometry(manager, detail::NP_ARROW);
}
GeometryReference GetRing(NDomainManager const& manager) {
  return GetGeometry(manager, detail::NP_RING);
}
GeometryReference GetMace(NDomainManager const& manager) {
  return GetGeometry(manager, detail::NP_MACE);
}
GeometryReference GetCone(NDomainManager const& manager) {
  return GetGeometry(manager, detail::NP_CONE);
}
GeometryReference GetInwardDome(NDomainManager const& manager) {
  return GetGeometry(manager, detail::NP_INWARD_DOME);
}
GeometryReference GetMapPlanar(NDomainManager const& manager) {
  return GetGeometry(manager, detail::NP_MAP_PLANAR);
}
GeometryReference GetMapCylinder(NDomainManager const& manager) {
  return GetGeometry(manager, detail::NP_MAP_CYLINDER);
}
GeometryReference GetMapRibbon(NDomainManager const& manager) {
  return GetGeometry(manager, detail::NP_MAP_RIBBON);
}
GeometryReference GetCameraObject(NDomainManager const& manager) {
  return GetGeometry(manager, detail::NP_CAMERA_OBJECT);
}
GeometryReference GetRod(NDomainManager const& manager) {
  return GetGeometry(manager, detail::NP_ROD);
}

NNodeReference<domain::scene::NSceneNode> GetSphereScene(NDomainManager const& manager) {
  NInternalDataManager const* const data = FindInternalData(manager);
  if (!data) return {};
  return *data->scene.scene;
}

NNodeReference<item::NSceneGraphModelNode> GetSphereModel(NDomainManager const& manager) {
  NInternalDataManager const* const data = FindInternalData(manager);
  if (!data) return {};
  return *data->scene.model;
}

domain::scenegraph::NSceneGraphPath<item::NSceneGraphCameraNode> GetSphereCamera(
    NDomainManager const& manager) {
  NInternalDataManager const* const data = FindInternalData(manager);
  if (!data) return {};
  return {*data->scene.cameraItem, data->scene.scene->GetSceneGraph()};
}

NNodeReference<domain::environment::NEnvironmentNode> GetThumbnailEnvironment(
    NDomainManager const& manager) {
  NInternalDataManager const* const data = FindInternalData(manager);
  if (!data) return {};
  return *data->environment.environment;
}

item::NSceneGraphItemNode* GetPostureSceneRoot(NDomainManager const& manager) {
  NInternalDataManager const* const data = FindInternalData(manager);
  return data ? data->scene.postureRoot.get() : nullptr;
}

NMaterialNode* GetRGBMaterialNode(NDomainManager const& manager, int index) {
  bool const isColored = index >= detail::NIM_RED && index < detail::NIM_GRAY;
  return GetMaterial(manager, isColored ? index : detail::NIM_GRAY);
}

NMaterialNode* GetUnusedNodeMaterial(NDomainManager const& manager) {
  return GetMaterial(manager, detail::NIM_UNUSED);
}

NMaterialNode* GetWaterMarkNodeMaterial(NDomainManager const& manager, int index) {
  bool const isWatermark = index >= 0 && index < 3;
  return GetMaterial(manager, isWatermark ? detail::NIM_WATERMARK + index : detail::NIM_GRAY);
}

item::NSceneGraphItemDomain* GetInternalSceneGraphItemDomain(NDomainManager const& manager) {
  item::NSceneGraphItemNode const* const root = GetPostureSceneRoot(manager);
  return root ? dynamic_cast<item::NSceneGraphItemDomain*>(root->GetDomain()) : nullptr;
}

domain::material::NMaterialDomain* GetInternalMaterialDomain(NDomainManager const& manager) {
  NMaterialNode const* const red = GetMaterial(manager, detail::NIM_RED);
  return red ? dynamic_cast<domain::material::NMaterialDomain*>(red->GetDomain()) : nullptr;
}

using core::locator::NLocator;
using core::uri::NUri;

NLocator GetDefaultEnvironmentMapImage() {
  return NLocator(NUri::CreateSystemUri(L"/Resource/cubemap-vx01.dds"));
}

NLocator GetDefaultFloorImage() {
  return NLocator(NUri::CreateSystemUri(L"/Resource/floor-vx01.dds"));
}

NLocator GetNotFoundImage() { return NLocator(NUri::CreateSystemUri(L"/Resource/notfound.dds")); }

}  // namespace corvanta::data::internal
