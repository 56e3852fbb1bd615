#include "corvanta/data/switches/NModelSwitchListener.h"

namespace corvanta::data::switches {

NModelSwitchListener::~NModelSwitchListener() = default;

}  // namespace corvanta::data::switches
