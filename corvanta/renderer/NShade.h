#pragma once

#include <array>

#include "corvanta/data/domain/environment/NEnvironmentNode.h"
#include "corvanta/data/domain/material/NMaterialNode.h"
#include "corvanta/renderer/NMeshes.h"
#include "corvanta/renderer/NTextures.h"
#include "corvanta/renderer/gl/shaders.h"
#include "corvanta/vx_math/Matrix.h"

namespace corvanta::renderer {

using NColor = std::array<float, 3>;

/// A picture of the surroundings, ready to be looked up.
struct NSky {
  int kind = -1;  // an NEnvironmentMapImageType; -1 for none
  GLuint texture = 0;
  VX_Math::Matrix turn;  // from global directions to those of the picture
};
NSky ReadSky(data::environment_map::NEnvironmentMap const& map, NTextures& textures);

/// A material as the shader takes it.
struct NShade {
  NColor diffuse{}, ambient{}, specular{}, emissive{};
  float power = 1.0f;
  float opacity = 1.0f;
  std::array<GLuint, NS_COUNT> textures{};
  NMappings mappings;
  int slots = 0;   // a bit for each texture that is there
  int bounds = 0;  // two bits for each: it ends at the borders of u, of v
  int colorOperation = 0;
  int bumpKind = 0;  // 1: heights, 2: normals
  float bumpScale = 1.0f;
  bool opacityInAlpha = false;
  bool isTransparent = false;
  float mirror = 0.0f;  // how much of the surroundings it reflects
  float mirrorFloor = 0.0f;
  float mirrorBlur = 0.0f;
  NSky sky;  // of its own
};

/// What `material` says. Of several textures for one use the first counts. An attribute that isn't
/// finite counts as 0. Loads the pictures that aren't there yet.
NShade ReadShade(data::domain::material::NMaterialNode const& material, NTextures& textures);
/// What stands in for a material where a model has none: middle grey.
NShade MakePlainShade();
/// What an environment says of its floor.
NShade ReadFloorShade(data::domain::environment::NEnvironmentNode const& environment,
                      NTextures& textures);

}  // namespace corvanta::renderer
