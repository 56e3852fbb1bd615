#pragma once

#include "tests/support/world.h"

namespace corvanta::history {

/// A whole document as text, equal if and only if the documents are: every node in order with its
/// id, name, attributes to the bit, references with why they lead nowhere, lists in order, lamps
/// and surfaces. Objects are told apart by their addresses.
std::string Dump(NDocument const& document);

}  // namespace corvanta::history
