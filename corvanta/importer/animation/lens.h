#pragma once

#include "corvanta/data/domain/camera/NCameraNode.h"
#include "corvanta/data/domain/light/NLightNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphCameraNode.h"
#include "corvanta/importer/neutral/scene.h"
#include "corvanta/vx_math/Box3.h"
#include "corvanta/vx_math/Matrix.h"

namespace corvanta::importer {

/// Whether the light is directional, a point or a spot.
bool HasKind(neutral::NLight const& light);

/// Gives `node` the kind, colour and cone of the file's light.
/// Requires: HasKind.
void SetLight(neutral::NLight const& light, data::domain::light::NLightNode& node);

/// Gives the camera item its interest and up, and its camera node the lens of the file's camera.
/// The interest lies as far ahead as the middle of `box`, so that an orthographic view can be
/// sized there.
void Aim(neutral::NCamera const& camera, VX_Math::Matrix const& global, VX_Math::Box3 const& box,
         data::domain::scenegraph::item::NSceneGraphCameraNode& item);

}  // namespace corvanta::importer
