#include "corvanta/data/animation/NAnimationEngineListener.h"

namespace corvanta::data::animation {

NAnimationEngineListener::~NAnimationEngineListener() = default;

}  // namespace corvanta::data::animation
