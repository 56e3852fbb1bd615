#include "corvanta/core/name/NNameListener.h"

namespace corvanta::core::name {

NNameListener::~NNameListener() = default;

}  // namespace corvanta::core::name
