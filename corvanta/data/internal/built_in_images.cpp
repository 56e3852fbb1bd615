#include "corvanta/data/internal/built_in_images.h"

namespace corvanta::data::internal {

using core::locator::NLocator;
using core::uri::NUri;

NLocator GetDefaultEnvironmentMapImage() {
  return NLocator(NUri::CreateSystemUri(L"/Resource/cubemap-vx01.dds"));
}

NLocator GetDefaultFloorImage() {
  return NLocator(NUri::CreateSystemUri(L"/Resource/floor-vx01.dds"));
}

NLocator GetNotFoundImage() { return NLocator(NUri::CreateSystemUri(L"/Resource/notfound.dds")); }

}  // namespace corvanta::data::internal
