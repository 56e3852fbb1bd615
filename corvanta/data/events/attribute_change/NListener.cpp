#include "corvanta/data/events/attribute_change/NListener.h"

namespace corvanta::data::events::attribute_change {

NListener::~NListener() = default;

}  // namespace corvanta::data::events::attribute_change
