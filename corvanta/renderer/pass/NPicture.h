#pragma once

#include "corvanta/data/domain/scene/NSceneNode.h"
#include "corvanta/renderer/NViewpoint.h"
#include "corvanta/renderer/pass/NSurfaceProgram.h"
#include "corvanta/renderer/scene/NLamps.h"
#include "corvanta/renderer/scene/NMaterialParameters.h"
#include "corvanta/renderer/scene/NResolvedScene.h"

namespace corvanta::renderer {

/// How near surfaces hide the light from each other; see NOcclusionPass.
/// Units: scene units.
struct NOcclusion {
  bool isEnabled = false;
  float radius = 0.0f, falloff = 0.0f;
  float contrast = 1.0f;
};

/// What the passes of one picture have in common. It lives as long as the picture is drawn, and
/// nothing changes meanwhile.
struct NPicture {
  NResolvedScene const& scene;
  NViewpoint const& viewpoint;
  NLamps lamps;
  NExposure exposure;
  NEnvironmentTexture environment;  // what surfaces reflect
  NColor backgroundColor{}, ambientLight{};
  float glow = 0.0f;  // a factor of the light above white around it
  float star = 0.0f;  // of that light along two diagonals
  NOcclusion occlusion = {};
  bool hasBackground = true;  // without, alpha is how much of a pixel is covered
};

/// Reads what lights and surrounds a scene. Without an `environment` there is no light, and the
/// background is black.
NPicture MakePicture(NResolvedScene& scene, NViewpoint const& viewpoint,
                     data::domain::environment::NEnvironmentNode const* environment);
/// Drops what would show light above white where there can't be any.
/// Cost: as CanExceedWhite.
void LimitGlow(NPicture& picture, NTextures& textures,
               data::domain::environment::NEnvironmentNode const& environment);

}  // namespace corvanta::renderer
