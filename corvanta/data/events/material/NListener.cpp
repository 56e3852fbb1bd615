#include "corvanta/data/events/material/NListener.h"

namespace corvanta::data::events::material {

NListener::~NListener() = default;

}  // namespace corvanta::data::events::material
