#include "corvanta/data/events/scene/NListener.h"

namespace corvanta::data::events::scene {

NListener::~NListener() = default;

}  // namespace corvanta::data::events::scene
