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
#include "app/output/NWholeFile.h"
#include "app/output/picture_file.h"
#include "app/output/text.h"
#include "app/play/NFrameWriter.h"
#include "app/play/NTimeLinePlayer.h"
#include "app/play/NTourPlayer.h"
#include "app/scene/NStage.h"
#include "app/scene/NStagePreview.h"
#include "app/scene/common_tree.h"
#include "app/scene/material_choice.h"
#include "app/scene/missing.h"
#include "app/watch/assignment.h"
#include "corvanta/core/text/convert.h"
#include "corvanta/data/document/NDocument.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphReferenceNode.h"
#include "corvanta/renderer/drawn_attributes.h"

namespace corvanta::app {

namespace {

constexpr char kFooter[] = R"(
The camera shows all models, as they are at the moment of --time, unless
--camera names another one. No display and no window is needed. NAME.ATTRIBUTE
is that of a node as info --attributes prints it, or of the node "environment".
--ids prints the models in the order of their numbers; a pixel's number is 65536
red + 256 green + blue, and 0 where there is none. With -o - or --ids - all else
is printed on stderr.

  corvanta render model.glb -o picture.png --size 1920x1080
  corvanta render model.glb -o picture.png --floor --set spot.rotation.y=90
  corvanta render model.glb -o around%03d.png --orbit 36)";

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
  bool isWireframe = false, showsEdges = false, showsFloor = false;
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
    if (!CanWrite(m_options.output) || !CanWrite(m_options.ids)) return NS_FILE;
    std::vector<NOverview::Tree> trees;
    for (std::string const& file : m_options.files) {
      if (auto const model = OpenModel(m_document, file)) {
        m_models.push_back(*model);
        trees.push_back(model->tree);
      }
    }
    if (trees.empty()) return NS_FILE;
    auto const tree = CreateCommonTree(m_document, trees);
    // What the files hold is set before cameras and lights are fitted to it.
    std::vector<std::string> const ofStage = AssignWhatIsThere();
    if (!m_options.assignments.empty()) UpdateDeformers();
    m_stage = std::make_unique<NStage>(m_document, tree, m_options.lights);
    int status = Assign(ofStage);
    if (status == NS_DONE) status = Prepare(*m_stage, tree);
    if (status == NS_DONE) status = Draw(*m_stage);
    return status == NS_DONE && trees.size() != m_options.files.size() ? NS_FILE : status;
  }

 private:
  /// Carries out the assignments to nodes of the files; gives the others.
  std::vector<std::string> AssignWhatIsThere() const {
    std::vector<std::string> others;
    for (std::string const& text : m_options.assignments) {
      try {
        Assign(ParseAssignment(m_document, core::text::ToWide(text)), text);
      } catch (NAssignmentError const&) {
        others.push_back(text);
      }
    }
    return others;
  }

  int Assign(std::vector<std::string> const& assignments) const {
    for (std::string const& text : assignments) {
      try {
        Assign(ParseAssignment(m_document, core::text::ToWide(text)), text);
      } catch (NAssignmentError const& error) {
        return Refuse("--set " + text, error.what());
      }
    }
    return NS_DONE;
  }

  void UpdateDeformers() const {
    for (importer::NImportedModel const& model : m_models) {
      if (model.deformer) model.deformer->Update();
    }
  }

  static void Assign(NAssignment const& assignment, std::string const& text) {
    bool const isNew = assignment.attribute->GetValue() != assignment.value;
    assignment.attribute->SetValue(assignment.value, true);
    std::wstring const& name = assignment.attribute->GetName();
    if (!renderer::IsDrawn(*assignment.node, name) && !importer::NDeformer::IsWeightName(name)) {
      PrintNote("--set " + text, "pictures don't depend on this attribute");
    } else if (!isNew) {
      PrintNote("--set " + text, "it has this value already");
    }
  }

  int Prepare(NStage& stage, NOverview::Tree const& tree) {
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
    if (m_options.showsFloor) stage.GetEnvironment().SetFloorIsVisibleFlag(true);
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
      if (!m_options.output.empty()) NoteWhatIsMissing(preview);
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
      if (i == 0) NoteWhatIsMissing(preview);
    }
    return NS_DONE;
  }

  void NoteWhatIsMissing(NStagePreview& preview) const {
    // A camera that shows all shows something, and to look costs nearly as much as to draw.
    bool const showsAll = m_options.camera.empty() && m_options.assignments.empty();
    if (!showsAll || !IsLarge(preview)) {
      std::string const reason = FindEmptiness(m_document, preview);
      if (!reason.empty()) PrintNote(m_options.output, "the picture is empty: " + reason);
    }
    PrintBrokenPictures(preview);
  }

  std::ostream& GetStream() const {
    bool const isTaken =
        NWholeFile::IsStdout(m_options.output) || NWholeFile::IsStdout(m_options.ids);
    return isTaken ? std::cerr : std::cout;
  }

  void Print(renderer::NClipReport const& report) const {
    std::ostream& out = GetStream();
    out << "near " << NumberText(report.clip.near) << "  far " << NumberText(report.clip.far)
        << '\n';
    if (report.farthest > 0) {
      out << "seen from " << NumberText(static_cast<float>(report.nearest)) << " to "
          << NumberText(static_cast<float>(report.farthest)) << '\n';
    } else {
      out << "nothing seen\n";
    }
    out << Plural(report.vertices, "vertex", "vertices") << ", " << report.before
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
      WritePicture(path, pixels);
      return true;
    } catch (std::exception const& error) {
      PrintError(path, error.what());
    }
    return false;
  }

  void PrintItems(std::vector<renderer::NDrawItem> const& items) const {
    std::ostream& out = GetStream();
    std::size_t number = 0;
    for (renderer::NDrawItem const& item : items) {
      std::string text;
      for (auto const& point : item.path.GetCheckPoints()) {
        if (auto const reference = point.Get()) {
          text += core::text::ToNarrow(reference->GetName()) + '/';
        }
      }
      out << ++number << "  " << OneLine(text + core::text::ToNarrow(item.model->GetName()))
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
      .add_option_function<std::string>(
          "--lights", [&lights](std::string const& name) { lights = names.at(name); },
          "Light by the files' lights alone, the default ones alone, or both; without it by "
          "the files', with a soft fill where they leave most in the dark, or by the default "
          "ones where there are none")
      ->check(CLI::IsMember({"file", "default", "both"}))
      ->option_text("file|default|both");
}

/// Which options exclude --orbit, or lack for it; empty if all is well.
std::string FindOrbitFault(Options const& options) {
  if (options.output.empty()) return "--orbit needs -o";
  std::string const fault = NFrameWriter::FindFault(options.output);
  if (!fault.empty()) return "-o " + fault;
  if (!options.camera.empty()) return "--orbit and --camera exclude each other";
  if (!options.ids.empty()) return "--orbit and --ids exclude each other";
  return options.reportsClip ? "--orbit and --clip-report exclude each other" : "";
}

/// What the options can't be together or at all; empty if they can be.
std::string FindFault(Options const& options) {
  if (options.output.empty() && options.ids.empty() && !options.reportsClip) {
    return "one of -o, --ids and --clip-report is needed";
  }
  if (options.background == "none" && !FindPictureFault(options.output, true).empty()) {
    return "--background none needs a .png, which can be transparent";
  }
  if (options.orbit != 0) return FindOrbitFault(options);
  std::string fault = FindPictureFault(options.output);
  if (!fault.empty()) return "-o " + options.output + ": " + fault;
  fault = FindPictureFault(options.ids, true);
  if (!fault.empty()) return "--ids " + options.ids + ": " + fault;
  bool const isSame = !options.output.empty() && options.output == options.ids;
  return isSame ? "-o and --ids name the same file" : "";
}

std::string CheckColor(std::string const& text) {
  bool const isColor = text == "none" || ParseColor(text);
  return isColor ? "" : "needs R,G,B of 0 to 255, a colour's name or none";
}

void AddLook(CLI::App& command, Options& options) {
  AddLights(command, options.lights);
  command
      .add_option("--background", options.background,
                  "Colour behind the models, of 0 to 255 each, or black, white, grey, red, green, "
                  "blue, sky; none leaves it transparent")
      ->check(CLI::Validator(&CheckColor, ""))
      ->option_text("R,G,B");
  command
      .add_option("--orbit", options.orbit,
                  "Draw N pictures from around the models; -o has a %d for their number from 0")
      ->check(CLI::Range(1u, 10000u))
      ->option_text("N");
  command.add_flag("--floor", options.showsFloor, "Draw the floor, and the models' shadows on it");
  command.add_flag("--wireframe", options.isWireframe, "Draw the edges of triangles alone");
  command.add_flag("--edges", options.showsEdges, "Draw the edges of triangles over the models");
}

std::string CheckChoice(std::string const& text) {
  return ParseChoice(text) ? "" : "needs material=N, N from 0";
}

void AddScene(CLI::App& command, Options& options) {
  command
      .add_option("--set", options.assignments,
                  "Set an attribute of a node; may be given several times")
      ->allow_extra_args(false)
      ->option_text("NAME.ATTRIBUTE=VALUE");
  command.add_option("--texture", options.texture, "Picture that textures all models")
      ->option_text("PICTURE");
  command.add_option("--method", options.method, "Map all textures by a projection")
      ->check(CLI::IsMember({"plane", "cylinder", "sphere", "triplanar", "box"}))
      ->option_text("plane|cylinder|sphere|triplanar|box");
  command
      .add_option("--switch", options.choice,
                  "Give all models material N of the files, counted from 0")
      ->check(CLI::Validator(&CheckChoice, ""))
      ->option_text("material=N");
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
  CLI::App* const command = program.add_subcommand("render", "Draw a picture of model files.");
  command->add_option("FILE", options->files, "Model files")->required();
  command
      ->add_option("-o,--output", options->output,
                   "The picture: .png, .jpg, or - for a PNG file on stdout")
      ->option_text("PICTURE");
  command
      ->add_option("--size", options->size,
                   "Width and height of the picture in pixels; 800x600 without it")
      ->check(CLI::Validator(&CheckDrawnSize, ""))
      ->option_text("WxH");
  command
      ->add_option("--camera", options->camera,
                   "Camera of the files that sees the picture, or tour:SECONDS for where the tour "
                   "of play is then")
      ->option_text("NAME");
  command
      ->add_option("--time", options->time,
                   "Play the first animation of each file up to that moment")
      ->check(CLI::Validator(&CheckTime, ""))
      ->option_text("SECONDS");
  AddLook(*command, *options);
  AddScene(*command, *options);
  auto* const stereo = command->add_flag("--stereo", options->isStereo,
                                         "Draw two half pictures, for two eyes, beside each other");
  command->add_flag("--hmd", options->isHeadMounted, "The same for a head-mounted display")
      ->excludes(stereo);
  command
      ->add_option("--ids", options->ids,
                   "Write a PNG file whose pixels are the numbers of the models seen there")
      ->option_text("PICTURE");
  command->add_flag("--clip-report", options->reportsClip,
                    "Print the clip distances and what they cut off");
  AddModelOptions(*command);
  command->footer(kFooter);
  command->callback([options, &status] {
    status = RunUnless(FindFault(*options), [&] { return Render(*options).Run(); });
  });
}

}  // namespace corvanta::app
