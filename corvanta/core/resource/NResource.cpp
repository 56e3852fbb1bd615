#include "corvanta/core/resource/NResource.h"

namespace corvanta::core::resource {

NResource::~NResource() = default;

}  // namespace corvanta::core::resource
