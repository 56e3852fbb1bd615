#include "corvanta/data/domain/material/texture_mapping/NTextureMapping.h"

namespace corvanta::data::domain::material::texture_mapping {

NTextureMapping::~NTextureMapping() = default;

}  // namespace corvanta::data::domain::material::texture_mapping
