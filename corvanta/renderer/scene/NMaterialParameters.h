#pragma once

#include <array>

#include "corvanta/data/domain/environment/NEnvironmentNode.h"
#include "corvanta/data/domain/material/NMaterialNode.h"
#include "corvanta/data/domain/material/NMaterialOptions.h"
#include "corvanta/renderer/gl/shaders.h"
#include "corvanta/renderer/scene/NMeshes.h"
#include "corvanta/renderer/scene/NTextures.h"
#include "corvanta/vx_math/Matrix.h"

namespace corvanta::renderer {

using NColor = std::array<float, 3>;

/// How a picture shows the directions around; values of the shaders, and but for the first and the
/// last those of NEnvironmentMapImageType.
enum NEnvironmentProjection {
  NEP_NONE = -1,  ///< there is no picture
  NEP_CUBE = 0,
  NEP_RECTANGULAR = 1,
  NEP_SQUARE = 2,
  NEP_SCREEN = 3,  ///< it fills the view, whatever the direction; for a background alone
};

/// A picture of an environment on the graphics processor. It owns nothing: NTextures does.
struct NEnvironmentTexture {
  bool Exists() const { return projection != NEP_NONE; }

  NEnvironmentProjection projection = NEP_NONE;
  bool isLinear = false;  // its light may exceed white
  GLuint texture = 0;
  VX_Math::Matrix rotation;               // from global directions to those of the picture
  NHarmonics const* harmonics = nullptr;  // of the light from there
};

/// Reads an environment map, whose picture is uploaded if it isn't yet.
NEnvironmentTexture ReadEnvironmentTexture(data::environment_map::NEnvironmentMap const& map,
                                           NTextures& textures);

/// What the numbers of a bump texture are; values of the shader.
enum NBumpContent { NBC_NONE = 0, NBC_HEIGHTS = 1, NBC_NORMALS = 2 };

/// A material as the shader takes it. All its numbers are finite, and it owns none of its textures.
struct NMaterialParameters {
  bool HasTexture(NTextureSlot slot) const { return textures[slot] != 0; }
  /// Whether metalness and roughness are read at once.
  bool HasOneMetalRoughness() const {
    return HasTexture(NTS_METALNESS) && textures[NTS_METALNESS] == textures[NTS_ROUGHNESS] &&
           samplers[NTS_METALNESS] == samplers[NTS_ROUGHNESS] &&
           coordsSlots[NTS_METALNESS] == coordsSlots[NTS_ROUGHNESS];
  }

  NColor diffuse{}, ambient{}, specular{}, emissive{};
  float power = 1.0f;
  float opacity = 1.0f;
  std::array<GLuint, NTS_COUNT> textures{};  // 0 where there is none
  std::array<GLuint, NTS_COUNT> samplers{};  // 0 for those that repeat
  NTextureMappings mappings;
  std::array<NTextureSlot, NTS_COUNT> coordsSlots{};  // whose coordinates each texture has
  int bounds = 0;  // two bits for each texture: it ends at the borders of u, of v
  data::domain::material::NColorOperation colorOperation = data::domain::material::NCO_MULTIPLY;
  NBumpContent bumpContent = NBC_NONE;
  float bumpScale = 1.0f;
  bool opacityInAlpha = false;
  std::array<float, 3> dataScales{1.0f, 1.0f, 1.0f};  // of metalness, roughness, occlusion
  bool hasFloatTexture = false;                       // whose light may exceed white
  bool isTransparent = false;
  bool isOneSided = false;
  float cutOff = 0.0f;  // of the opacity, below which nothing is drawn; 0 without
  float roughness = 0.0f;
  float coatReflectance = 0.0f;  // of a clear coat, seen along the normal; 0 without
  NColor fleckColor{};
  float fleckSize = 1.0f;
  float fleckPerturbation = 0.0f;
  float reflection = 0.0f;  // a factor of the reflected environment
  // What is reflected along the normal, at a grazing angle; a factor and a constant for both.
  std::array<float, 4> fresnel{0.0f, 1.0f, 1.0f, 0.0f};
  float reflectionLod = 0.0f;  // level of detail of the environment's picture
  float irradiance = 0.0f;     // a factor of the light from the environment
  float environmentContrast = 1.0f;
  NEnvironmentTexture environment;  // of its own
};

/// Reads a material, whose pictures are uploaded if they aren't yet. Of several textures for one
/// use the first counts. An attribute that isn't finite counts as 0.
NMaterialParameters ReadMaterialParameters(data::domain::material::NMaterialNode const& material,
                                           NTextures& textures);
/// The material of a model that has none: middle grey.
NMaterialParameters MakeDefaultMaterialParameters();
/// Reads the floor of an environment, whose picture is uploaded if it isn't yet.
NMaterialParameters ReadFloorMaterialParameters(
    data::domain::environment::NEnvironmentNode const& environment, NTextures& textures);

}  // namespace corvanta::renderer
