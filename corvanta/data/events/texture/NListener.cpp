#include "corvanta/data/events/texture/NListener.h"

namespace corvanta::data::events::texture {

NListener::~NListener() = default;

}  // namespace corvanta::data::events::texture
