#pragma once

#include <CLI/App.hpp>
#include <optional>
#include <string>

#include "corvanta/data/document/NDocument.h"
#include "corvanta/importer/import.h"

namespace corvanta::app {

/// Imports the model file `file` into `document` and prints the importer's notes on stderr, each
/// once.
/// Fails: nothing, with the reason printed, for a file that can't be used.
std::optional<importer::NImportedModel> OpenModel(data::document::NDocument& document,
                                                  std::string const& file);

/// Gives a command the options that limit what reading a model file may take.
void AddLimitOptions(CLI::App& command);

}  // namespace corvanta::app
