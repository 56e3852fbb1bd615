#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "app/play/NPlayer.h"
#include "app/play/NRecording.h"

namespace corvanta::app {

/// Draws the curves of a recording over time, as an SVG picture: a panel for each item and kind of
/// attribute, and a further one for curves that the others would make flat. Gaps
/// stand where values aren't finite. Panels in which nothing changes are left out, unless there is
/// no other.
void WritePlot(std::ostream& out, std::string const& title,
               std::vector<NPlayer::Channel> const& channels, NRecording const& recording);

}  // namespace corvanta::app
