#include "corvanta/data/animation/NAnimationListener.h"

namespace corvanta::data::animation {

NAnimationListener::~NAnimationListener() = default;

}  // namespace corvanta::data::animation
