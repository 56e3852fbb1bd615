#pragma once

#include "corvanta/core/locator/NLocator.h"

namespace corvanta::data::internal {

/// The pictures that come with the library, as system URIs: a studio as a cube map, a floor, and a
/// board that stands for an image that can't be loaded.
CORVANTA_API core::locator::NLocator GetDefaultEnvironmentMapImage();
CORVANTA_API core::locator::NLocator GetDefaultFloorImage();
CORVANTA_API core::locator::NLocator GetNotFoundImage();

}  // namespace corvanta::data::internal
