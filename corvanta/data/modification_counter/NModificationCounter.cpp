#include "corvanta/data/modification_counter/NModificationCounter.h"

namespace corvanta::data::modification_counter {

NModificationCounter::~NModificationCounter() = default;

}  // namespace corvanta::data::modification_counter
