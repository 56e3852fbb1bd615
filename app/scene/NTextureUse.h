#pragma once

#include "corvanta/data/domain/texture/NTextureUse.h"

namespace corvanta::app {

using data::domain::texture::NTextureUse;
using enum data::domain::texture::NTextureUse;

}  // namespace corvanta::app
