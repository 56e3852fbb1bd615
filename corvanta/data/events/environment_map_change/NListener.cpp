#include "corvanta/data/events/environment_map_change/NListener.h"

namespace corvanta::data::events::environment_map_change {

NListener::~NListener() = default;

}  // namespace corvanta::data::events::environment_map_change
