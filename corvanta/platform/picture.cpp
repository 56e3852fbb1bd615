#include "corvanta/platform/picture.h"

namespace corvanta::platform {

NPicture::~NPicture() = default;

}  // namespace corvanta::platform
