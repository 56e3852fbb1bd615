#include "corvanta/data/events/environment/NListener.h"

namespace corvanta::data::events::environment {

NListener::~NListener() = default;

}  // namespace corvanta::data::events::environment
