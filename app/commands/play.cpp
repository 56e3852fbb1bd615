#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <cmath>
#include <exception>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <system_error>

#include "app/commands/commands.h"
#include "app/commands/open_model.h"
#include "app/commands/size.h"
#include "app/output/NInterruption.h"
#include "app/output/NProgressBar.h"
#include "app/output/NWholeFile.h"
#include "app/output/record.h"
#include "app/output/text.h"
#include "app/play/NFrameWriter.h"
#include "app/play/NPlayback.h"
#include "app/play/NRecording.h"
#include "app/play/NTimeLinePlayer.h"
#include "app/play/NTourPlayer.h"
#include "app/play/csv.h"
#include "app/play/plot.h"
#include "app/scene/NStage.h"
#include "app/scene/missing.h"
#include "corvanta/core/text/convert.h"
#include "corvanta/data/document/NDocument.h"
#include "corvanta/renderer/NRenderError.h"

namespace corvanta::app {

namespace {

constexpr char kFooter[] = R"(
Without --timeline and --tour the first animation is played, or the tour where
there is none. A frame is a line: the seconds since the begin, the moment of
what is played, how many items moved, and how many events a listener of the
document received. It ends with the run; with --repeat after two, or when
--seconds are over; by Ctrl-C, with the frames that are done. With --repeat a
frame at the end of a run shows the begin of the next one, also the last.

The pictures of -o are seen by the tour's camera or, for an animation, by one
that shows the whole scene as it is in that frame. --csv has a row for each
frame and a column for each attribute that is animated; for the tour, the
camera's global position, its interest and its up. --plot draws these over time.
What was in these files stays until all is played.

Other tools make one file of the pictures, where 25 is the --fps and 4 are
hundredths of a second:

  corvanta play model.glb -o frames/%04d.png
  ffmpeg -framerate 25 -i frames/%04d.png -pix_fmt yuv420p video.mp4
  ffmpeg -framerate 25 -i frames/%04d.png animation.gif
  convert -delay 4 -loop 0 frames/*.png animation.gif)";

struct Options {
  std::string file, csv, plot, frames, camera;
  std::string size = "800x600";
  std::string timeline;
  bool isTour = false;
  NPace pace;
  bool isReverse = false;
  bool asJson = false;
};

// Times are sums of steps; nobody means what stands behind the microseconds.
double Rounded(double seconds) { return std::round(seconds * 1e6) / 1e6; }

/// The whole number that a text is.
std::optional<std::size_t> ParseNumber(std::string const& text) {
  std::size_t number = 0;
  char const* const end = text.data() + text.size();
  auto const [rest, fault] = std::from_chars(text.data(), end, number);
  return fault == std::errc() && rest == end ? std::optional(number) : std::nullopt;
}

class Play {
 public:
  explicit Play(Options const& options) : m_options(options) {}

  int Run() {
    // The folder of the frames is known without their number.
    for (std::string const& path : {m_options.csv, m_options.plot, m_options.frames}) {
      if (!CanWrite(path)) return NS_FILE;
    }
    auto const model = OpenModel(m_document, m_options.file);
    if (!model) return NS_FILE;
    m_model = *model;
    NStage stage(m_document, m_model.tree);
    auto const player = CreatePlayer(stage);
    if (!player) return NS_FILE;
    NInterruption const interruption;
    std::unique_ptr<NWholeFile> csv;
    std::unique_ptr<NWholeFile> plot;
    if (!Open(m_options.csv, csv) || !Open(m_options.plot, plot)) return NS_FILE;
    if (int const status = CreateFrameWriter(stage); status != NS_DONE) return status;
    NRecording recording(player->GetChannels().size());
    if (csv) WriteCsvHead(csv->GetStream(), player->GetChannels());
    Drive(*player, csv.get(), plot ? &recording : nullptr);
    if (!m_emptiness.empty()) PrintNote(m_options.frames, "all pictures are empty: " + m_emptiness);
    if (m_frames) PrintBrokenPictures(m_frames->GetPreview());
    // As a shell tells of a program that a signal has ended.
    if (int const signal = NInterruption::GetSignal(); signal != 0) return 128 + signal;
    if (m_hasFailed) return NS_FILE;
    if (plot) {
      std::string const name = std::filesystem::path(m_options.file).filename().string();
      WritePlot(plot->GetStream(), name + ": " + player->GetTitle(), player->GetChannels(),
                recording);
    }
    return Commit(m_options.csv, csv.get()) && Commit(m_options.plot, plot.get()) ? NS_DONE
                                                                                  : NS_FILE;
  }

 private:
  bool IsTour() const {
    return m_options.isTour || (m_options.timeline.empty() && m_model.animations.empty());
  }

  /// Fails: null, with the reason printed.
  std::unique_ptr<NPlayer> CreatePlayer(NStage& stage) {
    auto const& animations = m_model.animations;
    bool const repeats = m_options.pace.repeats;
    if (IsTour()) {
      return std::make_unique<NTourPlayer>(stage, m_model, m_options.isReverse, repeats);
    }
    auto const number = FindAnimation();
    if (number < animations.size()) {
      return std::make_unique<NTimeLinePlayer>(*animations[number], m_options.isReverse, repeats,
                                               m_model.deformer);
    }
    PrintError(
        m_options.file,
        "no animation " +
            (ParseNumber(m_options.timeline) ? m_options.timeline : Quoted(m_options.timeline)) +
            ", the file has " + (animations.empty() ? "none" : std::to_string(animations.size())));
    return nullptr;
  }

  /// The place of the animation that is to be played.
  /// Fails: a place behind all.
  std::size_t FindAnimation() const {
    std::string const& wanted = m_options.timeline;
    if (wanted.empty()) return 0;
    auto const& animations = m_model.animations;
    auto const named =
        std::find_if(animations.begin(), animations.end(), [&wanted](auto const& animation) {
          return core::text::ToNarrow(animation->GetName()) == wanted;
        });
    if (named != animations.end()) return static_cast<std::size_t>(named - animations.begin());
    return ParseNumber(wanted).value_or(0) - std::size_t{1};
  }

  /// Gives the exit status.
  int CreateFrameWriter(NStage& stage) {
    if (m_options.frames.empty()) return NS_DONE;
    if (!m_options.camera.empty()) {
      auto const camera = stage.FindCamera(core::text::ToWide(m_options.camera));
      if (!camera.GetNode()) {
        PrintError("--camera", "there is no camera " + Quoted(m_options.camera));
        return NS_OPTIONS;
      }
      stage.GetView().SetCamera(camera);
    } else if (!IsTour()) {
      m_overview = &stage.GetOverview();
    }
    try {
      auto const [width, height] = *ParseSize(m_options.size);
      m_frames = std::make_unique<NFrameWriter>(m_document, stage, m_options.frames, width, height);
      return NS_DONE;
    } catch (renderer::NRenderError const& error) {
      PrintError("render", error.what());
    }
    return NS_FILE;
  }

  /// False if it can't be written.
  bool WriteFrame(std::size_t number) {
    if (!m_frames) return true;
    if (m_overview != nullptr) m_overview->FrameAll();
    try {
      m_frames->Write(number);
      // One frame with something to be seen is enough.
      if (number == 0 || !m_emptiness.empty()) {
        m_emptiness = FindEmptiness(m_document, m_frames->GetPreview());
      }
      return true;
    } catch (renderer::NRenderError const& error) {
      PrintError("render", error.what());
    } catch (std::exception const& error) {
      PrintError(m_frames->GetPath(number), error.what());
    }
    m_hasFailed = true;
    return false;
  }

  static bool Open(std::string const& path, std::unique_ptr<NWholeFile>& file) {
    if (path.empty()) return true;
    try {
      file = std::make_unique<NWholeFile>(path);
    } catch (std::exception const& error) {
      PrintError(path, error.what());
    }
    return file != nullptr;
  }

  static bool Commit(std::string const& path, NWholeFile* file) {
    if (file == nullptr) return true;
    try {
      file->Commit();
    } catch (std::exception const& error) {
      PrintError(path, error.what());
      return false;
    }
    return true;
  }

  void Drive(NPlayer& player, NWholeFile* csv, NRecording* recording) {
    NPlayback playback(m_document, player, m_options.pace);
    NProgressBar bar(m_options.asJson ? 0 : playback.GetFrameCount());
    playback.Run([&](NFrame const& frame) {
      bool const isWritten = WriteFrame(frame.number);
      bar.MakeRoom();
      if (!isWritten) return false;
      Print(frame);
      if (csv != nullptr) WriteCsvRow(csv->GetStream(), Rounded(frame.time), frame.values);
      if (recording != nullptr) recording->Add(frame.time, frame.values);
      bar.Draw(frame.number + 1);
      return NInterruption::GetSignal() == 0 && std::cout.good();
    });
  }

  void Print(NFrame const& frame) const {
    bool const isTaken =
        NWholeFile::IsStdout(m_options.csv) || NWholeFile::IsStdout(m_options.plot);
    std::ostream& out = isTaken ? std::cerr : std::cout;
    if (m_options.asJson) {
      out << NRecord{{"frame", frame.number},
                     {"time", Rounded(frame.time)},
                     {"moment", Rounded(frame.moment)},
                     {"itemsMoved", frame.movedCount},
                     {"events", frame.eventCount}}
                 .dump()
          << '\n';
      return;
    }
    out << NumberText(Rounded(frame.time)) << " s  at " << NumberText(Rounded(frame.moment))
        << " s  " << Plural(frame.movedCount, "item", "items") << " moved  "
        << Plural(frame.eventCount, "event", "events") << '\n';
  }

  Options const& m_options;
  data::document::NDocument m_document;
  importer::NImportedModel m_model;
  std::unique_ptr<NFrameWriter> m_frames;
  NOverview* m_overview = nullptr;  // whose camera sees the frames; null for another
  std::string m_emptiness;          // why nothing was seen in any frame
  bool m_hasFailed = false;
};

bool IsSamePlace(std::string const& a, std::string const& b) {
  std::error_code error;
  auto const place = std::filesystem::weakly_canonical(a, error);
  return a == b || (!error && place == std::filesystem::weakly_canonical(b, error) && !error);
}

/// What the options can't be together or at all; empty if they can be.
std::string FindFault(Options const& options) {
  if (!options.timeline.empty() && options.isTour)
    return "--timeline and --tour exclude each other";
  if (ParseNumber(options.timeline) == std::size_t{0})
    return "--timeline: animations are counted from 1";
  if (!(options.pace.fps > 0.0 && options.pace.fps <= 1e6)) {
    return "--fps needs a number above 0, up to a million";
  }
  if (options.pace.seconds && !(*options.pace.seconds > 0.0 && *options.pace.seconds <= 1e7)) {
    return "--seconds needs a number above 0, up to ten million";
  }
  if (!options.csv.empty() && IsSamePlace(options.csv, options.plot)) {
    return "--csv and --plot name the same file";
  }
  if (!options.camera.empty() && options.isTour) return "--camera and --tour exclude each other";
  if (!options.frames.empty()) {
    std::string const fault = NFrameWriter::FindFault(options.frames);
    if (!fault.empty()) return "-o " + fault;
  }
  int const onStdout = NWholeFile::IsStdout(options.csv) + NWholeFile::IsStdout(options.plot);
  return onStdout > 1 ? "--csv and --plot can't both be on stdout" : "";
}

}  // namespace

void AddPlay(CLI::App& program, int& status) {
  auto const options = std::make_shared<Options>();
  CLI::App* const command =
      program.add_subcommand("play", "Play an animation of a file, or lead a camera through it.");
  command->add_option("FILE", options->file, "Model file")->required();
  command
      ->add_option("--timeline", options->timeline,
                   "Play the first animation of that name, or else the Nth, from 1")
      ->option_text("N|NAME");
  command->add_flag(
      "--tour", options->isTour,
      "Lead a camera from one camera of the file to the next, two seconds at each, or "
      "once around the scene where there are none");
  command->add_option("--fps", options->pace.fps, "Frames a second; 25 without it")
      ->option_text("NUMBER");
  command->add_option("--seconds", options->pace.seconds, "How long to play")
      ->option_text("SECONDS");
  command->add_flag("--reverse", options->isReverse, "Play from the end to the begin");
  command->add_flag("--repeat", options->pace.repeats, "Begin again at the end");
  command->add_option("--csv", options->csv, "Write the animated attributes as a table")
      ->option_text("FILE");
  command->add_option("--plot", options->plot, "Draw them over time as an SVG picture")
      ->option_text("FILE");
  command
      ->add_option("-o,--output", options->frames,
                   "Write each frame as a picture, .png or .jpg, with a %d for its number from 0, "
                   "such as frames/%04d.png")
      ->option_text("PATTERN");
  command
      ->add_option("--size", options->size,
                   "Width and height of these pictures in pixels; 800x600 without it")
      ->check(CLI::Validator(&CheckDrawnSize, ""))
      ->option_text("WxH");
  command->add_option("--camera", options->camera, "Camera of the file that sees these pictures")
      ->option_text("NAME");
  command->add_flag("--json", options->asJson, "Print one JSON object a line");
  AddModelOptions(*command);
  command->footer(kFooter);
  command->callback([options, &status] {
    status = RunUnless(FindFault(*options), [&] { return Play(*options).Run(); });
  });
}

}  // namespace corvanta::app
