#pragma once

#include <boost/intrusive_ptr.hpp>
#include <vector>

#include "corvanta/data/domain/fwd.h"
#include "corvanta/export.h"

namespace corvanta::data::domain::image {
class NImageDomain;
}
namespace corvanta::data::domain::scenegraph::item {
class NSceneGraphItemDomain;
}
namespace corvanta::data::view {
class NView;
}

/// The first set-up of a scene: surroundings, a camera that shows all of it, and a rig of lights
/// round it. Each function writes into nodes that the caller has made, every attribute with its
/// event.
///
/// "The scene" is that of the view; its size is the box of its tree. Where that is empty, or there
/// is no scene or tree, the box from (-1, -1, -1) to (1, 1, 1) stands for it. Null arguments have
/// no effect. Arguments are held for the time of the call.
namespace corvanta::data::preset {

/// Gives `environment` the built-in sphere about the scene as its map model, the built-in floor,
/// the default map and the floor's picture. Makes a model item and two images, in the given
/// domains, at each call. Without internal data for the environment's domain manager it has no
/// geometries.
/// Fails: throws std::bad_alloc, without a change.
CORVANTA_API void PresetEnvironment(
    boost::intrusive_ptr<domain::environment::NEnvironmentNode> environment,
    boost::intrusive_ptr<view::NView> view,
    boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphItemDomain> itemDomain,
    boost::intrusive_ptr<domain::image::NImageDomain> imageDomain);
/// Five times the longest side of the scene; 0 for a null view.
CORVANTA_API float GetDefaultEnvironmentModelScale(boost::intrusive_ptr<view::NView> view);

/// Changes nothing: a new camera node is as it should be.
CORVANTA_API void PresetCamera(boost::intrusive_ptr<domain::camera::NCameraNode> camera,
                               bool isDefault);
/// Looks at the centre of the scene from the right, above and in front, as far away as the camera's
/// angle asks for, and at least the scene's depth. Writes interest, translation and up vector, and
/// the saved ones; the item becomes absolute and gets the configured navigation. The flag has no
/// effect.
/// Requires: `tree` is the item's.
/// Fails: no change for an item without a camera node.
CORVANTA_API void PresetSceneGraphCamera(
    boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphCameraNode> item,
    boost::intrusive_ptr<view::NView> view,
    boost::intrusive_ptr<domain::scenegraph::tree::NSceneGraphTreeNode> tree, bool isDefault);

/// The number of lights in the rig, which is 7; a light's number is its place in the vector.
CORVANTA_API unsigned int GetDefaultLightCount();
/// Changes nothing: one light has no place in the rig.
CORVANTA_API void PresetLight(boost::intrusive_ptr<domain::light::NLightNode> light,
                              bool isDefault);
/// Sets the colours of the rig, and the darkness of the shadows of its last three. Without the flag
/// it changes nothing; beyond the rig, no light.
CORVANTA_API void PresetLight(std::vector<boost::intrusive_ptr<domain::light::NLightNode>> lights,
                              bool isDefault);
/// As for a vector of this one item.
CORVANTA_API void PresetSceneGraphLight(
    boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphLightNode> item,
    boost::intrusive_ptr<view::NView> view,
    boost::intrusive_ptr<domain::scenegraph::tree::NSceneGraphTreeNode> tree, bool isDefault);
/// Turns the items as the rig does, or without the flag all to one side, except point lights; and
/// puts each, absolute, at twice the scene's longest side from its centre, on its own z axis.
/// Requires: `tree` is that of the items.
/// Fails: no change for an item without a light node.
CORVANTA_API void PresetSceneGraphLight(
    std::vector<boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphLightNode>> items,
    boost::intrusive_ptr<view::NView> view,
    boost::intrusive_ptr<domain::scenegraph::tree::NSceneGraphTreeNode> tree, bool isDefault);

}  // namespace corvanta::data::preset
