#pragma once

#include <CLI/App.hpp>
#include <optional>
#include <string>

#include "corvanta/data/document/NDocument.h"
#include "corvanta/importer/import.h"

namespace corvanta::app {

/// Imports the model file `file` into `document`, as the options of AddModelOptions say, and prints
/// the importer's notes on stderr, each once.
/// Fails: nothing, with the reason printed, for a file that can't be used.
std::optional<importer::NImportedModel> OpenModel(data::document::NDocument& document,
                                                  std::string const& file);

/// Gives a command the options that say how to read a model file and what that may take.
void AddModelOptions(CLI::App& command);

}  // namespace corvanta::app
