#include "corvanta/data/switches/NMaterialSwitchListener.h"

namespace corvanta::data::switches {

NMaterialSwitchListener::~NMaterialSwitchListener() = default;

}  // namespace corvanta::data::switches
