#pragma once

namespace corvanta::data::domain::texture {

/// What a texture does for its material, as importers store it in the texture's type and renderers
/// read it there. A `NTextureType` of the same value stands for each.
enum NTextureUse : long {
  NTU_COLOR = 0,
  NTU_SPECULAR = 1,
  NTU_AMBIENT = 2,
  NTU_EMISSIVE = 3,
  NTU_HEIGHT = 4,
  NTU_NORMAL = 5,
  NTU_OPACITY = 6,
  NTU_LIGHTMAP = 7,
  NTU_METALNESS = 8,
  NTU_ROUGHNESS = 9,
  NTU_OTHER = 10,
};

}  // namespace corvanta::data::domain::texture
