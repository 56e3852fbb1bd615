#include "corvanta/data/events/light_env/NListener.h"

namespace corvanta::data::events::light_env {

NListener::~NListener() = default;

}  // namespace corvanta::data::events::light_env
