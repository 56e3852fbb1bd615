#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <string>
#include <vector>

#include "app/commands/commands.h"
#include "app/output/picture_file.h"
#include "corvanta/importer/NImportError.h"
#include "corvanta/importer/formats.h"

namespace corvanta::app {

namespace {

constexpr char kFooter[] = R"(
Each line is a format, the extensions of its files, and the library that reads
it. A file of a format that isn't there has to be converted by another program.)";

std::string Join(std::vector<std::string> const& extensions) {
  std::string text;
  for (std::string const& extension : extensions) text += (text.empty() ? "." : " .") + extension;
  return text;
}

void PrintLine(std::string const& name, std::string const& rest) {
  constexpr std::size_t kColumn = 44;
  std::string line = "  " + OneLine(name);
  line.resize(std::max(line.size() + 1, kColumn), ' ');
  std::cout << line << OneLine(rest) << '\n';
}

int PrintFormats() {
  try {
    auto const formats = importer::GetModelFormats();
    std::cout << "Models that are read:\n";
    for (auto const& format : formats) {
      PrintLine(format.name, Join(format.extensions) + "  (" + format.reader + ')');
    }
  } catch (importer::NImportError const& error) {
    PrintError("formats", error.what());
    return NS_FILE;
  }
  std::cout << "\nPictures that are read, as textures and by --texture:\n";
  auto const pictures = GetPictureFormats();
  if (pictures.empty()) PrintLine("none", "(built without a decoder)");
  for (auto const& format : pictures) PrintLine(format.name, Join(format.extensions));
  std::cout << "\nWritten:\n";
  PrintLine("pictures, by render, pick and play", Join(GetWrittenExtensions()));
  PrintLine("models with texture coordinates, by map", ".obj");
  PrintLine("plots of an animation, by play", ".svg");
  PrintLine("tables of an animation, by play", ".csv");
  PrintLine("what is printed, by --json", ".json");
  return NS_DONE;
}

}  // namespace

void AddFormats(CLI::App& program, int& status) {
  CLI::App* const command = program.add_subcommand("formats", "List what can be read and written.");
  command->footer(kFooter);
  command->callback([&status] { status = PrintFormats(); });
}

}  // namespace corvanta::app
