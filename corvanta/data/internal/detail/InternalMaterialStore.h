#pragma once

#include <array>
#include <boost/intrusive_ptr.hpp>

#include "corvanta/data/domain/image/NImageDomain.h"
#include "corvanta/data/domain/material/NMaterialDomain.h"
#include "corvanta/data/domain/texture/NTextureDomain.h"

namespace corvanta::data::internal::detail {

/// The slots of the built-in materials.
enum NInternalMaterial : int {
  NIM_RED,
  NIM_BLUE,
  NIM_GREEN,
  NIM_YELLOW,
  NIM_GRAY,
  NIM_UNUSED,
  NIM_WATERMARK,
  NIM_COUNT = NIM_WATERMARK + 3,
};

/// The materials of postures, of unused nodes and of watermarks, the latter with textures and
/// images.
struct InternalMaterialStore {
  InternalMaterialStore(domain::material::NMaterialDomain& materialDomain,
                        domain::texture::NTextureDomain& textureDomain,
                        domain::image::NImageDomain& imageDomain);

  std::array<boost::intrusive_ptr<domain::material::NMaterialNode>, NIM_COUNT> materials;
  std::array<boost::intrusive_ptr<domain::texture::NTextureNode>, 3> textures;
  std::array<boost::intrusive_ptr<domain::image::NImageNode>, 3> images;

 private:
  void SetColors();
  void LayWatermarks();
};

}  // namespace corvanta::data::internal::detail
