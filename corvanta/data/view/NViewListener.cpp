#include "corvanta/data/view/NViewListener.h"

namespace corvanta::data::view {

NViewListener::~NViewListener() = default;

}  // namespace corvanta::data::view
