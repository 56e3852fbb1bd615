#include "app/commands/open_model.h"

#include <exception>

#include "app/output/text.h"

namespace corvanta::app {

std::optional<NImportedModel> OpenModel(NDocument& document, std::string const& file) {
  try {
    NImportedModel model = ImportModel(document, file);
    for (std::string const& note : model.notes) PrintNote(file, note);
    return model;
  } catch (std::exception const& error) {
    PrintError(file, error.what());
  }
  return std::nullopt;
}

}  // namespace corvanta::app
