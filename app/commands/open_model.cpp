#include "app/commands/open_model.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <exception>

#include "app/output/text.h"
#include "corvanta/importer/limits.h"

namespace corvanta::app {

namespace {

// A number above 0, as far as the limit can hold.
std::string CheckLimit(std::string const& text) {
  double number = 0.0;
  bool const isNumber = CLI::detail::lexical_cast(text, number);
  return isNumber && number > 0.0 && number <= 1e9 ? "" : "needs a number above 0, up to 1e9";
}

void AddLimit(CLI::App& command, std::string const& name, std::string const& help,
              void (*set)(importer::NImportLimits& limits, double value)) {
  command
      .add_option_function<double>(
          name,
          [set](double const& value) {
            importer::NImportLimits limits = importer::GetImportLimits();
            set(limits, value);
            importer::SetImportLimits(limits);
          },
          help)
      ->check(CLI::Validator(&CheckLimit, "NUMBER"));
}

}  // namespace

std::optional<importer::NImportedModel> OpenModel(data::document::NDocument& document,
                                                  std::string const& file) {
  try {
    importer::NImportedModel model = importer::ImportModel(document, file);
    for (std::string const& note : model.notes) PrintNote(file, note);
    return model;
  } catch (std::exception const& error) {
    PrintError(file, error.what());
  }
  return std::nullopt;
}

void AddLimitOptions(CLI::App& command) {
  AddLimit(command, "--memory",
           "MB that reading a model file may take; half of the machine's by default",
           [](importer::NImportLimits& limits, double value) {
             limits.memory = static_cast<std::uint64_t>(std::ceil(value * (1 << 20)));
           });
  AddLimit(command, "--timeout", "Seconds that reading a model file may take; 60 by default",
           [](importer::NImportLimits& limits, double value) {
             limits.timeout = std::chrono::milliseconds(std::max(1LL, std::llround(value * 1e3)));
           });
}

}  // namespace corvanta::app
