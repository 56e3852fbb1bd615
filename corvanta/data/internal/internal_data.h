#pragma once

#include "corvanta/core/domain/fwd.h"
#include "corvanta/core/node/NNodeReference.h"
#include "corvanta/data/domain/fwd.h"
#include "corvanta/data/domain/scenegraph/NSceneGraphPath.h"
#include "corvanta/export.h"

namespace corvanta::data::domain::material {
class NMaterialDomain;
}
namespace corvanta::data::domain::scenegraph::item {
class NSceneGraphItemDomain;
}
namespace corvanta::data::events {
class NEventMultiplexer;
}

/// Nodes that the library itself makes beside those of a document: meshes, materials of handles, a
/// scene with a sphere, an environment for thumbnails. They stand under fixed ids in ten read-only
/// domains of their own.
///
/// The readers give what `Initialize` made for the manager and never look at its state. Without
/// that they give an empty reference, a null pointer or a default path.
/// Requires: no reader while another thread initializes or uninitializes the same manager.
/// Cost: a look-up in a map.
namespace corvanta::data::internal {

/// Makes the internal data of `manager` and registers its domains at the internal locators
/// "/geometry", "/scene" and so on, in the place of any that stand there.
///
/// May be called from several threads at once.
/// Raises: on `events`, all that comes of making the nodes; what a listener throws passes through.
/// Fails: false for a manager that has its internal data, where a domain refuses a node, and for a
/// call from a listener inside Initialize. Whenever it fails, the domains are registered as before.
/// Without a writable temporary folder it succeeds, and the watermark images have locators of an
/// empty path.
CORVANTA_API bool Initialize(core::domain::NDomainManager& manager,
                             events::NEventMultiplexer& events);

/// Forgets the internal data of `manager`; its nodes stay in their domains, and the domains stay
/// registered. May be called from several threads at once.
/// Fails: false for a manager that no other function here was called with, and for a call from a
/// listener inside Initialize.
CORVANTA_API bool Uninitialize(core::domain::NDomainManager& manager);

using GeometryReference = core::node::NNodeReference<domain::geometry::NGeometryNode>;

/// The square from -1 to 1 in the plane x = 0, seen from -x; with UVWs.
CORVANTA_API GeometryReference GetPlane(core::domain::NDomainManager const& manager);
/// The cube from -1 to 1.
CORVANTA_API GeometryReference GetCube(core::domain::NDomainManager const& manager);
/// The same seen from inside.
CORVANTA_API GeometryReference GetInwardCube(core::domain::NDomainManager const& manager);
/// The square from -1 to 1 in the plane y = 0.
CORVANTA_API GeometryReference GetCubeFloor(core::domain::NDomainManager const& manager);
/// The unit sphere; with UVWs.
CORVANTA_API GeometryReference GetSphere(core::domain::NDomainManager const& manager);
/// The same seen from inside.
CORVANTA_API GeometryReference GetInwardSphere(core::domain::NDomainManager const& manager);
/// The unit disc in the plane y = 0.
CORVANTA_API GeometryReference GetSphereFloor(core::domain::NDomainManager const& manager);
/// Along x, of length 1.2.
CORVANTA_API GeometryReference GetArrow(core::domain::NDomainManager const& manager);
/// A torus about the x axis, of radius 1.
CORVANTA_API GeometryReference GetRing(core::domain::NDomainManager const& manager);
/// Along x, with a box at its end.
CORVANTA_API GeometryReference GetMace(core::domain::NDomainManager const& manager);
/// The tip at the origin, the open base of radius 1 at x = 1.
CORVANTA_API GeometryReference GetCone(core::domain::NDomainManager const& manager);
/// The upper half of the unit sphere over a flat floor, seen from inside.
CORVANTA_API GeometryReference GetInwardDome(core::domain::NDomainManager const& manager);
/// The outlines of a planar, a cylindrical and a ribbon-like texture map.
CORVANTA_API GeometryReference GetMapPlanar(core::domain::NDomainManager const& manager);
CORVANTA_API GeometryReference GetMapCylinder(core::domain::NDomainManager const& manager);
CORVANTA_API GeometryReference GetMapRibbon(core::domain::NDomainManager const& manager);
/// A box with a funnel towards -z.
CORVANTA_API GeometryReference GetCameraObject(core::domain::NDomainManager const& manager);
/// Along x, of length 1.
CORVANTA_API GeometryReference GetRod(core::domain::NDomainManager const& manager);

/// The sphere's model as the root of a tree, with a camera at (8, 0, 0) below it.
CORVANTA_API core::node::NNodeReference<domain::scene::NSceneNode> GetSphereScene(
    core::domain::NDomainManager const& manager);
CORVANTA_API core::node::NNodeReference<domain::scenegraph::item::NSceneGraphModelNode>
GetSphereModel(core::domain::NDomainManager const& manager);
CORVANTA_API domain::scenegraph::NSceneGraphPath<domain::scenegraph::item::NSceneGraphCameraNode>
GetSphereCamera(core::domain::NDomainManager const& manager);

/// What thumbnails are drawn in: the default map on a cube, a floor and one directional lamp.
CORVANTA_API core::node::NNodeReference<domain::environment::NEnvironmentNode>
GetThumbnailEnvironment(core::domain::NDomainManager const& manager);

/// The group that postures stand below; in no tree. The pointers from here on aren't counted.
CORVANTA_API domain::scenegraph::item::NSceneGraphItemNode* GetPostureSceneRoot(
    core::domain::NDomainManager const& manager);
/// The materials of postures: 0 red, 1 blue, 2 green, 3 yellow, any other number gray.
CORVANTA_API domain::material::NMaterialNode* GetRGBMaterialNode(
    core::domain::NDomainManager const& manager, int index);
CORVANTA_API domain::material::NMaterialNode* GetUnusedNodeMaterial(
    core::domain::NDomainManager const& manager);
/// The materials of watermarks, 0 to 2; any other number gives the gray material.
CORVANTA_API domain::material::NMaterialNode* GetWaterMarkNodeMaterial(
    core::domain::NDomainManager const& manager, int index);

/// The domain of the posture root, for the items of postures.
/// Fails: null also if the domain has gone.
CORVANTA_API domain::scenegraph::item::NSceneGraphItemDomain* GetInternalSceneGraphItemDomain(
    core::domain::NDomainManager const& manager);
/// The domain of the built-in materials.
/// Fails: null also if the domain has gone.
CORVANTA_API domain::material::NMaterialDomain* GetInternalMaterialDomain(
    core::domain::NDomainManager const& manager);

}  // namespace corvanta::data::internal
