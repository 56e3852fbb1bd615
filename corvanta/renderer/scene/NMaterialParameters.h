#pragma once

#include <array>

#include "corvanta/data/domain/environment/NEnvironmentNode.h"
#include "corvanta/data/domain/material/NMaterialNode.h"
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
  GLuint texture = 0;
  VX_Math::Matrix rotation;  // from global directions to those of the picture
};

/// Reads an environment map, whose picture is uploaded if it isn't yet.
NEnvironmentTexture ReadEnvironmentTexture(data::environment_map::NEnvironmentMap const& map,
                                           NTextures& textures);

/// How a colour texture is combined with the diffuse colour; values of the shader and of a
/// texture's operation, whose other values do as NCO_MULTIPLY.
enum NColorOperation { NCO_MULTIPLY = 0, NCO_ADD = 1, NCO_COVER = 2 };

/// What the numbers of a bump texture are; values of the shader.
enum NBumpContent { NBC_NONE = 0, NBC_HEIGHTS = 1, NBC_NORMALS = 2 };

/// A material as the shader takes it. All its numbers are finite, and it owns none of its textures.
struct NMaterialParameters {
  bool HasTexture(NTextureSlot slot) const { return textures[slot] != 0; }

  NColor diffuse{}, ambient{}, specular{}, emissive{};
  float power = 1.0f;
  float opacity = 1.0f;
  std::array<GLuint, NTS_COUNT> textures{};  // 0 where there is none
  NTextureMappings mappings;
  int bounds = 0;  // two bits for each texture: it ends at the borders of u, of v
  NColorOperation colorOperation = NCO_MULTIPLY;
  NBumpContent bumpContent = NBC_NONE;
  float bumpScale = 1.0f;
  bool opacityInAlpha = false;
  bool isTransparent = false;
  float reflection = 0.0f;          // a factor of the reflected environment
  float normalReflectance = 0.0f;   // seen along the normal
  float reflectionLod = 0.0f;       // level of detail of the environment's picture
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
