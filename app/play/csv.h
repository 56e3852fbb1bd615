#pragma once

#include <ostream>
#include <vector>

#include "app/play/NPlayer.h"

namespace corvanta::app {

/// Writes the head of a table: "time" and a column for each channel, named item.attribute. Names
/// with commas, quotes or line breaks are in quotes.
void WriteCsvHead(std::ostream& out, std::vector<NPlayer::Channel> const& channels);
/// Writes a row, numbers by their shortest digits; "nan", "inf" and "-inf" where it is none.
void WriteCsvRow(std::ostream& out, double time, std::vector<double> const& values);

}  // namespace corvanta::app
