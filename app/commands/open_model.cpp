#include "app/commands/open_model.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <exception>
#include <limits>

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

void AddAxisOptions(CLI::App& command) {
  auto* const up =
      command
          .add_option_function<std::string>(
              "--up", &SetUp, "Axis of the files that points up; auto takes what a file says")
          ->check(CLI::IsMember({"x", "y", "z", "auto"}));
  command
      .add_flag_callback(
          "--zup", [] { SetUp("z"); }, "The same as --up z")
      ->excludes(up);
  command
      .add_option_function<std::string>(
          "--unit", &SetUnit,
          "Scale of each file's tree, such as 0.001; auto takes metres, as an FBX file says")
      ->check(CLI::Validator(&CheckUnit, "NUMBER"));
  command
      .add_option_function<double>(
          "--crease", [](double const& angle) { GetOptions().crease = angle; },
          "Degrees by which faces without normals have to be turned to meet in an edge; 60 by "
          "default, and 0 for glTF")
      ->check(CLI::Validator(&CheckCrease, "DEGREES"));
}

void AddVariantOption(CLI::App& command) {
  command.add_option_function<std::string>(
      "--variant", [](std::string const& name) { GetVariant() = name; },
      "Name of the files' variant of materials to be shown; info lists them");
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
    importer::NImportedModel model = importer::ImportModel(document, file, GetOptions());
    for (std::string const& note : model.notes) PrintNote(file, note);
    std::string const& variant = GetVariant();
    if (!variant.empty() && !importer::ChooseVariant(model, variant)) {
      if (!model.variants.empty())
        throw importer::NImportError("there is no variant " + Quoted(variant));
      PrintNote(file, "there are no variants");
    }
    return model;
  } catch (std::exception const& error) {
    PrintError(file, error.what());
  }
  return std::nullopt;
}

void AddModelOptions(CLI::App& command) {
  AddAxisOptions(command);
  AddVariantOption(command);
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
