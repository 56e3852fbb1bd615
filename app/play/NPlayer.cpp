#include "app/play/NPlayer.h"

namespace corvanta::app {

NPlayer::~NPlayer() = default;

}  // namespace corvanta::app
