#include "corvanta/data/view/NViewManagerListener.h"

namespace corvanta::data::view {

NViewManagerListener::~NViewManagerListener() = default;

}  // namespace corvanta::data::view
