#include <CLI/CLI.hpp>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <exception>
#include <iostream>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/commands/commands.h"
#include "app/commands/open_model.h"
#include "app/commands/size.h"
#include "app/output/png_file.h"
#include "app/output/text.h"
#include "app/play/NFrameWriter.h"
#include "app/play/NTimeLinePlayer.h"
#include "app/play/NTourPlayer.h"
#include "app/scene/NStage.h"
#include "app/scene/NStagePreview.h"
#include "app/scene/common_tree.h"
#include "app/scene/material_choice.h"
#include "app/watch/assignment.h"
#include "corvanta/core/text/convert.h"
#include "corvanta/data/document/NDocument.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphReferenceNode.h"

namespace corvanta::app {

namespace {

constexpr char kFooter[] = R"(
Draws the scene of the files as a PNG file, through a camera that shows the whole
of it, with --time as it is then, or one of the files' cameras. It needs no
display and no window. --set, as in watch, also reaches the node "environment", such as
  --set environment.floor.isVisible=true
--ids makes each pixel's colour the number of the model seen there, red its
highest byte, and prints the models in the order of their numbers.)";

constexpr double kLatest = 1e9;  // seconds

struct Options {
  std::vector<std::string> files, assignments;
  std::string output, ids, camera, method, texture, choice;
  std::string size = "800x600";
  std::optional<double> time;
  NStageLights lights = NSL_AUTOMATIC;
  std::string background;
  unsigned orbit = 0;
  bool isStereo = false, isHeadMounted = false, reportsClip = false;
  bool isWireframe = false, showsEdges = false;
};

/// N of "material=N".
std::optional<unsigned> ParseChoice(std::string const& text) {
  constexpr std::string_view kPrefix = "material=";
  unsigned number = 0;
  if (text.rfind(kPrefix, 0) != 0) return std::nullopt;
  char const* const end = text.data() + text.size();
  auto const [rest, fault] = std::from_chars(text.data() + kPrefix.size(), end, number);
  return fault == std::errc() && rest == end ? std::optional(number) : std::nullopt;
}

/// The linear light of "R,G,B", bytes of a picture, or of a name; none if it is neither.
std::optional<VX_Math::Vec3> ParseColor(std::string const& text) {
  static std::map<std::string, std::string> const names{
      {"black", "0,0,0"},   {"white", "255,255,255"}, {"grey", "128,128,128"}, {"red", "255,0,0"},
      {"green", "0,128,0"}, {"blue", "0,0,255"},      {"sky", "135,206,235"}};
  auto const named = names.find(text);
  std::string const bytes = named == names.end() ? text : named->second;
  VX_Math::Vec3 color;
  char const* at = bytes.data();
  char const* const end = at + bytes.size();
  for (int channel = 0; channel != 3; ++channel) {
    if (channel != 0 && (at == end || *at++ != ',')) return std::nullopt;
    unsigned byte = 0;
    auto const [rest, fault] = std::from_chars(at, end, byte);
    if (fault != std::errc() || byte > 255) return std::nullopt;
    at = rest;
    double const value = byte / 255.0;
    color[channel] = static_cast<float>(value <= 0.04045 ? value / 12.92
                                                         : std::pow((value + 0.055) / 1.055, 2.4));
  }
  return at == end ? std::optional(color) : std::nullopt;
}

/// SECONDS of "tour:SECONDS".
std::optional<double> ParseTour(std::string const& text) {
  constexpr std::string_view kPrefix = "tour:";
  double seconds = 0;
  if (text.rfind(kPrefix, 0) != 0) return std::nullopt;
  char const* const end = text.data() + text.size();
  auto const [rest, fault] = std::from_chars(text.data() + kPrefix.size(), end, seconds);
  bool const isTime = fault == std::errc() && rest == end && seconds >= 0 && seconds <= kLatest;
  return isTime ? std::optional(seconds) : std::nullopt;
}

class Render {
 public:
  explicit Render(Options const& options) : m_options(options), m_size(*ParseSize(options.size)) {}

  int Run() {
    std::vector<NOverview::Tree> trees;
    for (std::string const& file : m_options.files) {
      if (auto const model = OpenModel(m_document, file)) {
        m_models.push_back(*model);
        trees.push_back(model->tree);
      }
    }
    if (trees.empty()) return NS_FILE;
    auto const tree = CreateCommonTree(m_document, trees);
    m_stage = std::make_unique<NStage>(m_document, tree, m_options.lights);
    int status = Prepare(*m_stage, tree);
    if (status == NS_DONE) status = Draw(*m_stage);
    return status == NS_DONE && trees.size() != m_options.files.size() ? NS_FILE : status;
  }

 private:
  int Prepare(NStage& stage, NOverview::Tree const& tree) {
    for (std::string const& text : m_options.assignments) {
      try {
        NAssignment const assignment = ParseAssignment(m_document, core::text::ToWide(text));
        assignment.attribute->SetValue(assignment.value, true);
      } catch (NAssignmentError const& error) {
        return Refuse("--set " + text, error.what());
      }
    }
    for (importer::NImportedModel const& model : m_models) {
      if (model.deformer && !m_options.assignments.empty()) model.deformer->Update();
    }
    if (!m_options.choice.empty() &&
        !SwitchMaterial(m_document, tree, *ParseChoice(m_options.choice))) {
      return Refuse("--switch", "there is no such material");
    }
    if (!m_options.texture.empty() && !MapPicture(m_document, tree, m_options.texture)) {
      PrintError(m_options.texture, "isn't a picture that can be read");
      return NS_FILE;
    }
    if (!m_options.method.empty()) {
      ProjectTextures(m_document, tree, core::text::ToWide(m_options.method));
    }
    if (m_options.isWireframe) stage.SetWired();
    if (!m_options.background.empty() && m_options.background != "none") {
      stage.SetBackground(*ParseColor(m_options.background));
    }
    if (m_options.time) PlayTo(*m_options.time);
    if (m_options.camera.empty()) {
      if (m_options.time) stage.GetOverview().FrameAll();
      return NS_DONE;
    }
    if (auto const camera = stage.FindCamera(core::text::ToWide(m_options.camera));
        camera.GetNode()) {
      stage.GetView().SetCamera(camera);
      return NS_DONE;
    }
    auto const seconds = ParseTour(m_options.camera);
    if (!seconds) return Refuse("--camera", "there is no camera " + Quoted(m_options.camera));
    m_players.push_back(std::make_unique<NTourPlayer>(stage, m_models.front(), false, false));
    m_players.back()->Begin();
    m_players.back()->Advance(*seconds);
    return NS_DONE;
  }

  /// Moves all that the first animation of each file moves to that moment.
  void PlayTo(double seconds) {
    for (importer::NImportedModel const& model : m_models) {
      if (model.animations.empty()) continue;
      m_players.push_back(std::make_unique<NTimeLinePlayer>(*model.animations.front(), false, false,
                                                            model.deformer));
      m_players.back()->Begin();
      m_players.back()->Advance(seconds);
    }
  }

  static int Refuse(std::string const& subject, std::string const& reason) {
    PrintError(subject, reason);
    return NS_OPTIONS;
  }

  int Draw(NStage& stage) const {
    try {
      renderer::NStereoMode const stereo = m_options.isStereo        ? renderer::NSM_SIDE_BY_SIDE
                                           : m_options.isHeadMounted ? renderer::NSM_HEAD_MOUNTED
                                                                     : renderer::NSM_MONO;
      NStagePreview preview(m_document, stage, m_size[0], m_size[1], stereo);
      preview.SetShowsEdgesFlag(m_options.showsEdges);
      preview.SetHasBackgroundFlag(m_options.background != "none");
      if (m_options.orbit != 0) return DrawAround(stage, preview);
      if (!m_options.output.empty() && !Write(m_options.output, preview.TakePicture())) {
        return NS_FILE;
      }
      if (!m_options.ids.empty()) {
        if (!Write(m_options.ids, ToPixels(preview.TakeNumbers()))) return NS_FILE;
        PrintItems(preview.GetRenderer().GetItems());
      }
      if (m_options.reportsClip) Print(preview.MeasureClip());
      return NS_DONE;
    } catch (std::exception const& error) {
      PrintError("render", error.what());
    }
    return NS_FILE;
  }

  int DrawAround(NStage& stage, NStagePreview& preview) const {
    for (unsigned i = 0; i != m_options.orbit; ++i) {
      if (i != 0) stage.GetOverview().Orbit(360.0 / m_options.orbit);
      if (!Write(NFrameWriter::GetPath(m_options.output, i), preview.TakePicture())) return NS_FILE;
    }
    return NS_DONE;
  }

  static void Print(renderer::NClipReport const& report) {
    std::cout << "near " << NumberText(report.clip.near) << "  far " << NumberText(report.clip.far)
              << '\n';
    if (report.farthest > 0) {
      std::cout << "seen from " << NumberText(static_cast<float>(report.nearest)) << " to "
                << NumberText(static_cast<float>(report.farthest)) << '\n';
    } else {
      std::cout << "nothing seen\n";
    }
    std::cout << Plural(report.vertices, "vertex", "vertices") << ", " << report.before
              << " of them before near, " << report.beyond << " beyond far\n";
  }

  renderer::NPixels ToPixels(std::vector<std::uint32_t> const& numbers) const {
    renderer::NPixels pixels(m_size[0], m_size[1]);
    unsigned char* to = pixels.GetRow(0);
    for (std::uint32_t const number : numbers) {
      *to++ = static_cast<unsigned char>(number >> 16);
      *to++ = static_cast<unsigned char>(number >> 8);
      *to++ = static_cast<unsigned char>(number);
    }
    return pixels;
  }

  static bool Write(std::string const& path, renderer::NPixels const& pixels) {
    try {
      WritePng(path, pixels);
      return true;
    } catch (std::exception const& error) {
      PrintError(path, error.what());
    }
    return false;
  }

  static void PrintItems(std::vector<renderer::NDrawItem> const& items) {
    std::size_t number = 0;
    for (renderer::NDrawItem const& item : items) {
      std::string text;
      for (auto const& point : item.path.GetCheckPoints()) {
        if (auto const reference = point.Get()) {
          text += core::text::ToNarrow(reference->GetName()) + '/';
        }
      }
      std::cout << ++number << "  " << OneLine(text + core::text::ToNarrow(item.model->GetName()))
                << '\n';
    }
  }

  Options const& m_options;
  std::array<unsigned, 2> const m_size;
  data::document::NDocument m_document;
  std::vector<importer::NImportedModel> m_models;
  std::unique_ptr<NStage> m_stage;
  std::vector<std::unique_ptr<NPlayer>> m_players;
};

void AddLights(CLI::App& command, NStageLights& lights) {
  static std::map<std::string, NStageLights> const names{
      {"file", NSL_FILE}, {"default", NSL_DEFAULT}, {"both", NSL_BOTH}};
  command
      .add_option(
          "--lights", lights,
          "Light by the files' lights alone, the default ones alone, or both; without it by "
          "the files', with a soft fill where they leave most in the dark")
      ->transform(CLI::CheckedTransformer(names).description("file|default|both"))
      ->type_name("");
}

/// Which options exclude --orbit, or lack for it; empty if all is well.
std::string FindFault(Options const& options) {
  if (options.orbit == 0) return {};
  if (options.output.empty()) return "--orbit needs -o";
  std::string const fault = NFrameWriter::FindFault(options.output);
  if (!fault.empty()) return "-o " + fault;
  if (!options.camera.empty()) return "--orbit and --camera exclude each other";
  if (!options.ids.empty()) return "--orbit and --ids exclude each other";
  return options.reportsClip ? "--orbit and --clip-report exclude each other" : "";
}

std::string CheckColor(std::string const& text) {
  bool const isColor = text == "none" || ParseColor(text);
  return isColor ? "" : "needs R,G,B of 0 to 255, a colour's name or none";
}

void AddLook(CLI::App& command, Options& options) {
  AddLights(command, options.lights);
  command
      .add_option("--background", options.background,
                  "Colour behind the models instead of the environment, of 0 to 255; or black, "
                  "white, grey, red, green, blue, sky; none leaves it transparent")
      ->check(CLI::Validator(&CheckColor, "R,G,B"));
  command
      .add_option("--orbit", options.orbit,
                  "Draw N pictures from around the models; -o has a %d for their number from 0")
      ->check(CLI::Range(1u, 10000u).description("from 1 to 10000"))
      ->type_name("N");
  command.add_flag("--wireframe", options.isWireframe, "Draw the edges of triangles alone");
  command.add_flag("--edges", options.showsEdges, "Draw the edges of triangles over the models");
}

std::string CheckChoice(std::string const& text) {
  return ParseChoice(text) ? "" : "needs material=N, N from 0";
}

// CLI::Range lets NaN through.
std::string CheckTime(std::string const& text) {
  double seconds = 0;
  char const* const end = text.data() + text.size();
  auto const [rest, fault] = std::from_chars(text.data(), end, seconds);
  bool const isTime = fault == std::errc() && rest == end && seconds >= 0 && seconds <= kLatest;
  return isTime ? "" : "needs seconds from 0 to 1e9";
}

}  // namespace

void AddRender(CLI::App& program, int& status) {
  auto const options = std::make_shared<Options>();
  CLI::App* const command = program.add_subcommand("render", "Draw the scene of model files.");
  command->add_option("FILE", options->files, "Model files")->required();
  command->add_option("-o,--output", options->output, "PNG file of the picture");
  command->add_option("--ids", options->ids,
                      "PNG file whose pixels are the numbers of the models seen there");
  command->add_option("--size", options->size, "Size of the picture in pixels")
      ->check(CLI::Validator(&CheckDrawnSize, "WxH"));
  command->add_option("--camera", options->camera,
                      "Name of a camera of the files; tour:SECONDS is where the tour of play is");
  command
      ->add_option("--time", options->time,
                   "Play the first animation of each file up to that second")
      ->check(CLI::Validator(&CheckTime, "from 0 to 1e9"));
  command
      ->add_option("--set", options->assignments,
                   "Set an attribute of a node, NAME.ATTRIBUTE=VALUE")
      ->allow_extra_args(false);
  command->add_option("--texture", options->texture, "Picture that textures all models");
  command->add_option("--method", options->method, "Map all textures by a projection")
      ->check(CLI::IsMember({"plane", "cylinder", "sphere", "triplanar", "box"}));
  command
      ->add_option("--switch", options->choice,
                   "material=N gives all models material N of the files, counted from 0")
      ->check(CLI::Validator(&CheckChoice, "material=N"));
  AddLook(*command, *options);
  auto* const stereo =
      command->add_flag("--stereo", options->isStereo, "Two half pictures for two eyes");
  command->add_flag("--hmd", options->isHeadMounted, "The same for a head-mounted display")
      ->excludes(stereo);
  command->add_flag("--clip-report", options->reportsClip,
                    "Print the clip distances and what they cut off");
  command->footer(kFooter);
  command->callback([options, &status] {
    if (options->output.empty() && options->ids.empty() && !options->reportsClip) {
      PrintError("options", "one of -o, --ids and --clip-report is needed");
      status = NS_OPTIONS;
      return;
    }
    if (std::string const fault = FindFault(*options); !fault.empty()) {
      PrintError("options", fault);
      status = NS_OPTIONS;
      return;
    }
    status = Render(*options).Run();
  });
}

}  // namespace corvanta::app
