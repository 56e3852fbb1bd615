#include <cmath>
#include <csignal>
#include <filesystem>
#include <limits>
#include <sstream>

#include "app/play/plot.h"
#include "tests/app/program.h"

namespace corvanta::app_tests {
namespace {

using nlohmann::json;
using testing::AnyOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

using Table = std::vector<std::vector<std::string>>;

// A slide along x from 0 to 8 in two seconds, which is over at once in the second animation, and
// two cameras below a root that stands elsewhere.
class PlayTest : public ProgramTest {
 protected:
  PlayTest() {
    json const camera = {{"type", "perspective"}, {"perspective", {{"yfov", 1.0}, {"znear", 1}}}};
    json const nodes = {{{"name", "top"}, {"translation", {100, 0, 0}}, {"children", {1, 2, 3}}},
                        {{"name", "part"}, {"mesh", 0}},
                        {{"name", "near"}, {"camera", 0}, {"translation", {0, 0, 4}}},
                        {{"name", "far"}, {"camera", 1}, {"translation", {0, 2, 9}}}};
    std::string const gltf =
        MakeGltf({Triangle()}, nodes, {{"cameras", json::array({camera, camera})}});
    m_files.Write("plain.gltf", MakeGltf({Triangle()}, {{{"name", "part"}, {"mesh", 0}}}));
    m_files.Write(
        "model.gltf",
        AddAnimation(AddAnimation(gltf, "slide", {{1, "translation", {0, 2}, {0, 0, 0, 8, 0, 0}}}),
                     "short", {{1, "translation", {0}, {0, 5, 0}}}));
  }

  Table PlayTable(std::string const& line) const {
    RunWell("play " + line + " --csv out.csv");
    Table table;
    std::istringstream file(Read("out.csv"));
    for (std::string row; std::getline(file, row);) {
      std::istringstream cells(row);
      table.emplace_back();
      for (std::string cell; std::getline(cells, cell, ',');) table.back().push_back(cell);
    }
    return table;
  }

  // The column of translation.x, behind the times.
  std::vector<double> PlaySlide(std::string const& options) const {
    return PlaySlide("model.gltf", options);
  }
  std::vector<double> PlaySlide(std::string const& file, std::string const& options) const {
    Table const table = PlayTable(file + " --timeline slide " + options);
    auto const column = static_cast<std::size_t>(
        std::find(table[0].begin(), table[0].end(), "part.translation.x") - table[0].begin());
    std::vector<double> values;
    for (std::size_t i = 1; i < table.size(); ++i) values.push_back(std::stod(table[i].at(column)));
    return values;
  }
};

auto Near(std::vector<double> const& values) {
  return testing::Pointwise(testing::DoubleNear(1e-9), values);
}

TEST_F(PlayTest, PlaysInBothDirectionsAndRoundTheEnds) {
  struct Row {
    char const* options;
    std::vector<double> values;
  };
  for (Row const& row : {
           Row{"--fps 2", {0, 2, 4, 6, 8}},
           Row{"--fps 2 --reverse", {8, 6, 4, 2, 0}},
           // An end that is reached counts as the other one.
           Row{"--fps 2 --repeat", {0, 2, 4, 6, 0, 2, 4, 6, 0}},
           Row{"--fps 2 --repeat --reverse --seconds 3", {8, 6, 4, 2, 8, 6, 4}},
           // The last frame stands where the seconds end, and without repeat no later than the run.
           Row{"--fps 2 --seconds 0.75", {0, 2, 3}},
           Row{"--fps 1 --seconds 50", {0, 4, 8}},
       }) {
    EXPECT_THAT(PlaySlide(row.options), Near(row.values)) << row.options;
  }
  EXPECT_EQ(PlayTable("model.gltf --fps 2")[2][0], "0.5");
  EXPECT_EQ(PlaySlide("").size(), 51u);
}

// Whatever the steps add up to: a run that repeats ends where it begins.
TEST_F(PlayTest, ARepeatedRunEndsWhereItBegins) {
  for (double const length : {0.7, 1.1, 2.3}) {
    m_files.Write("slide.gltf",
                  AddAnimation(MakeGltf({Triangle()}, {{{"name", "part"}, {"mesh", 0}}}), "slide",
                               {{0,
                                 "translation",
                                 {0, static_cast<float>(length)},
                                 {0, 0, 0, static_cast<float>(length), 0, 0}}}));
    for (int const fps : {7, 10, 60}) {
      for (bool const isReverse : {false, true}) {
        std::vector<double> const values =
            PlaySlide("slide.gltf",
                      "--repeat --fps " + std::to_string(fps) + (isReverse ? " --reverse" : ""));
        EXPECT_NEAR(values.back(), isReverse ? length : 0, 1e-6)
            << length << ' ' << fps << ' ' << isReverse;
        EXPECT_EQ(values.back(), values.front());
      }
    }
  }
}

TEST_F(PlayTest, CountsItemsAndEvents) {
  auto const lines = Run("play model.gltf --fps 1 --json").Lines();
  ASSERT_EQ(lines.size(), 3u);
  // One write for each attribute, and the first frame is the pose that stands.
  std::size_t const columns = 9;
  for (std::size_t i = 0; i != 3; ++i) {
    json const frame = json::parse(lines[i]);
    EXPECT_EQ(frame["time"], static_cast<double>(i));
    EXPECT_EQ(frame["itemsMoved"], i == 0 ? 0 : 1);
    EXPECT_EQ(frame["events"], columns);
  }
  EXPECT_EQ(Run("play model.gltf --fps 1 --reverse").Lines()[1],
            "1 s  at 1 s  1 item moved  9 events");
  EXPECT_EQ(Run("play model.gltf --timeline 2").out, "0 s  at 0 s  1 item moved  9 events\n");
}

TEST_F(PlayTest, TheTourStandsAtEachCameraInTurn) {
  Table table = PlayTable("model.gltf --tour --fps 1");
  ASSERT_EQ(table.size(), 8u);
  EXPECT_THAT(table[0], ElementsAre("time", "tour.position.x", "tour.position.y", "tour.position.z",
                                    "tour.interest.x", "tour.interest.y", "tour.interest.z",
                                    "tour.up.x", "tour.up.y", "tour.up.z"));
  auto const place = [&](std::size_t row) {
    return std::vector<double>{std::stod(table[row][1]), std::stod(table[row][2]),
                               std::stod(table[row][3])};
  };
  for (std::size_t const row : {1u, 2u, 3u}) EXPECT_THAT(place(row), Near({100, 0, 4}));
  EXPECT_THAT(place(4), Near({100, 1, 6.5}));
  for (std::size_t const row : {5u, 6u, 7u}) EXPECT_THAT(place(row), Near({100, 2, 9}));

  // Without cameras it goes around and comes back, always at one distance.
  table = PlayTable("plain.gltf --fps 10");
  ASSERT_EQ(table.size(), 122u);
  EXPECT_THAT(place(121), Near(place(1)));
  double const radius = std::hypot(place(1)[0] - 0.5, place(1)[2]);
  for (std::size_t row = 1; row != table.size(); ++row) {
    EXPECT_NEAR(std::hypot(place(row)[0] - 0.5, place(row)[2]), radius, 0.01 * radius);
  }
  EXPECT_GT(std::abs(place(61)[2] - place(1)[2]), 1.9 * radius);
}

TEST_F(PlayTest, RefusesInOneLineAndLeavesFilesAlone) {
  m_files.Write("kept", "before");
  ExpectRefused("play model.gltf",
                {{"--timeline 3", "no animation 3, the file has 2", "model.gltf", 1},
                 {"--timeline 0", "counted from 1"},
                 {"--timeline one", "no animation \"one\", the file has 2", "model.gltf", 1},
                 {"--timeline 1 --tour", "exclude"},
                 {"--fps 0", "--fps"},
                 {"--fps nan", "--fps"},
                 {"--seconds -1", "--seconds"},
                 {"--seconds inf", "--seconds"},
                 {"--csv kept --plot ./kept", "same file"},
                 {"--csv kept --plot no/such/folder.svg", "written", "no/such/folder.svg", 1},
                 {"--csv kept --plot .", "written", ".", 1}});
  ExpectRefused("play none.gltf", {{"", "", "none.gltf", 1}});
  EXPECT_EQ(Read("kept"), "before");
}

TEST_F(PlayTest, WhatIsBrokenOffLeavesNoHalfFile) {
  m_files.Write("kept", "before");
  std::filesystem::path const out = m_files.GetFolder() / "stdout";
  for (int const signal : {SIGTERM, SIGHUP}) {
    std::filesystem::remove(out);
    pid_t const program = StartProgram(
        m_files, {"play", "model.gltf", "--repeat", "--seconds", "1e6", "--csv", "kept"});
    std::error_code error;
    AwaitFromProgram(program,
                     [&] { return std::filesystem::file_size(out, error) != 0 && !error; });
    kill(program, signal);
    EXPECT_EQ(WaitForProgram(m_files, program).status, 128 + signal);
    EXPECT_EQ(Read("kept"), "before");
  }
  EXPECT_THAT(GetNames(), ElementsAre("kept", "model.gltf", "plain.gltf"));
}

TEST_F(PlayTest, PlotsWhatChanges) {
  RunWell("play model.gltf --plot out.svg --fps 10");
  for (char const* const text :
       {"model.gltf: slide", ">part  translation</text>", "2 panels in which nothing changes"}) {
    EXPECT_THAT(Read("out.svg"), HasSubstr(text));
  }
}

std::string Plot(std::string const& title, std::vector<app::NPlayer::Channel> const& channels,
                 app::NRecording const& recording) {
  std::ostringstream out;
  app::WritePlot(out, title, channels, recording);
  return out.str();
}

TEST(PlotTest, LeavesGapsAndPartsWhatDiffersInSize) {
  double const inf = std::numeric_limits<double>::infinity();
  double const nan = std::numeric_limits<double>::quiet_NaN();
  app::NRecording recording(3);
  std::vector<double> const x = {0, nan, 500, 1000, inf, 700};
  for (std::size_t i = 0; i != x.size(); ++i) {
    double const small = static_cast<double>(i);
    recording.Add(small, {x[i], small, -small});
  }
  std::string const svg = Plot(
      "a & <b>", {{"it<em", "scale.x"}, {"it<em", "scale.y"}, {"it<em", "scale.z"}}, recording);
  EXPECT_EQ(Count(svg, "<circle"), 2u) << "single values stand between gaps";
  EXPECT_EQ(Count(svg, "<polyline"), 3u);
  EXPECT_EQ(Count(svg, ">it&lt;em  scale</text>"), 2u) << "y and z share a panel";
  EXPECT_THAT(svg, HasSubstr("a &amp; &lt;b&gt;"));
  EXPECT_THAT(svg, Not(AnyOf(HasSubstr("nan"), HasSubstr("inf"))));
}

TEST(PlotTest, AxesHaveTwoTicksAtLeast) {
  for (double half = 1.0; half < 10.0; half += 0.05) {
    app::NRecording recording(1);
    recording.Add(0.0, {-half});
    recording.Add(1.0, {half});
    EXPECT_GE(Count(Plot("title", {{"item", "scale.x"}}, recording), "text-anchor=\"end\""), 2u)
        << half;
  }
}

}  // namespace
}  // namespace corvanta::app_tests
