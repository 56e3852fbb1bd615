#include "app/commands/open_model.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <exception>
#include <limits>
#include <set>
#include <utility>
#include <vector>

#include "app/output/text.h"
#include "app/scene/float_range.h"
#include "corvanta/core/text/message.h"
#include "corvanta/importer/NImportError.h"
#include "corvanta/importer/limits.h"

namespace corvanta::app {

namespace {

// A number above 0, as far as the limit can hold.
std::string CheckLimit(std::string const& text) {
  double number = 0.0;
  bool const isNumber = CLI::detail::lexical_cast(text, number);
  return isNumber && number > 0.0 && number <= 1e9 ? "" : "needs a number above 0, up to 1e9";
}

importer::NImportOptions& GetOptions() {
  static importer::NImportOptions options;
  return options;
}

// The variant that all files are shown in, as far as they have any.
std::string& GetVariant() {
  static std::string variant;
  return variant;
}

// Each once, also for a file that is read again.
void PrintNotes(std::string const& file, std::vector<std::string> const& notes) {
  static std::set<std::pair<std::string, std::string>> printed;
  for (std::string const& note : notes) {
    if (printed.emplace(file, note).second) PrintNote(file, note);
  }
}

std::string CheckUnit(std::string const& text) {
  if (text == "auto") return "";
  double unit = 0.0;
  bool const isNumber = CLI::detail::lexical_cast(text, unit) && IsInFloatRange(unit);
  // Below that a float's inverse is none.
  bool const isAbove = unit >= static_cast<double>(std::numeric_limits<float>::min());
  return isNumber && isAbove ? "" : "needs a number above 0 that a float can hold";
}

std::string CheckCrease(std::string const& text) {
  double angle = 0.0;
  bool const isNumber = CLI::detail::lexical_cast(text, angle);
  return isNumber && angle >= 0.0 && angle <= 180.0 ? "" : "needs degrees from 0 to 180";
}

void SetUnit(std::string const& text) {
  double unit = 1.0;
  GetOptions().unit = CLI::detail::lexical_cast(text, unit) ? std::optional(unit) : std::nullopt;
}

void SetUp(std::string const& axis) {
  if (axis == "x") GetOptions().up = importer::NUA_X;
  if (axis == "y") GetOptions().up = importer::NUA_Y;
  if (axis == "z") GetOptions().up = importer::NUA_Z;
}

constexpr char kGroup[] = "Reading of the files";

void AddAxisOptions(CLI::App& command) {
  auto* const up =
      command
          .add_option_function<std::string>(
              "--up", &SetUp,
              "Axis of the files that points up; without it, and with auto, what a file or its "
              "format says")
          ->check(CLI::IsMember({"x", "y", "z", "auto"}))
          ->option_text("x|y|z|auto")
          ->group(kGroup);
  command
      .add_flag_callback(
          "--zup", [] { SetUp("z"); }, "The same as --up z")
      ->excludes(up)
      ->group(kGroup);
  command
      .add_option_function<std::string>(
          "--unit", &SetUnit,
          "Length of the files' unit in the scene, such as 0.001 for millimetres in metres; auto "
          "takes metres, as an FBX file says")
      ->check(CLI::Validator(&CheckUnit, ""))
      ->option_text("NUMBER|auto")
      ->group(kGroup);
  command
      .add_option_function<double>(
          "--crease", [](double const& angle) { GetOptions().crease = angle; },
          "Angle between faces without normals from which on their edge is sharp; 60 without it, "
          "for glTF 0")
      ->check(CLI::Validator(&CheckCrease, ""))
      ->option_text("DEGREES")
      ->group(kGroup);
}

void AddVariantOption(CLI::App& command) {
  command
      .add_option_function<std::string>(
          "--variant", [](std::string const& name) { GetVariant() = name; },
          "Variant of the files' materials that is shown; info lists them")
      ->option_text("NAME")
      ->group(kGroup);
}

void AddLimit(CLI::App& command, std::string const& name, std::string const& text,
              std::string const& help, void (*set)(importer::NImportLimits& limits, double value)) {
  command
      .add_option_function<double>(
          name,
          [set](double const& value) {
            importer::NImportLimits limits = importer::GetImportLimits();
            set(limits, value);
            importer::SetImportLimits(limits);
          },
          help)
      ->check(CLI::Validator(&CheckLimit, ""))
      ->option_text(text)
      ->group(kGroup);
}

}  // namespace

std::optional<importer::NImportedModel> OpenModel(data::document::NDocument& document,
                                                  std::string const& file) {
  try {
    importer::NImportedModel model = importer::ImportModel(document, file, GetOptions());
    PrintNotes(file, model.notes);
    std::string const& variant = GetVariant();
    if (!variant.empty() && !importer::ChooseVariant(model, variant)) {
      if (!model.variants.empty())
        throw importer::NImportError("there is no variant " + Quoted(variant));
      PrintNote(file, "there are no variants");
    }
    return model;
  } catch (std::exception const& error) {
    std::string reason = error.what();
    if (reason == importer::kUnknownFormat) reason += "; corvanta formats lists those that can";
    PrintError(file, reason);
  }
  return std::nullopt;
}

void AddModelOptions(CLI::App& command) {
  AddAxisOptions(command);
  AddVariantOption(command);
  AddLimit(command, "--memory", "MB",
           "Memory of the process that reads a file, half of the machine's without it; what the "
           "program itself then makes of it isn't counted",
           [](importer::NImportLimits& limits, double value) {
             limits.memory = static_cast<std::uint64_t>(std::ceil(value * (1 << 20)));
           });
  AddLimit(command, "--timeout", "SECONDS", "Time that this process has for a file, 60 without it",
           [](importer::NImportLimits& limits, double value) {
             limits.timeout = std::chrono::milliseconds(std::max(1LL, std::llround(value * 1e3)));
           });
}

}  // namespace corvanta::app
