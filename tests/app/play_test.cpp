#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <csignal>
#include <filesystem>
#include <limits>
#include <sstream>
#include <thread>

#include "app/play/plot.h"
#include "tests/app/program.h"

namespace corvanta::app_tests {
namespace {

using nlohmann::json;
using support::TemporaryFiles;
using testing::AnyOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

using Table = std::vector<std::vector<std::string>>;

Table ReadTable(TemporaryFiles const& files, std::string const& name) {
  Table table;
  std::istringstream file(support::ReadBytes(files.At(name)));
  for (std::string line; std::getline(file, line);) {
    std::istringstream cells(line);
    table.emplace_back();
    for (std::string cell; std::getline(cells, cell, ',');) table.back().push_back(cell);
  }
  return table;
}

// A slide along x from 0 to 8 in two seconds, which is over at once in the second animation, and
// two cameras below a root that stands elsewhere.
class PlayTest : public testing::Test {
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

  Result Play(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), {"play", "model.gltf"});
    return RunProgram(m_files, std::move(arguments));
  }

  // The column of translation.x, behind the times.
  std::vector<double> PlaySlide(std::vector<std::string> arguments) const {
    arguments.insert(arguments.end(), {"--timeline", "1", "--csv", "out.csv"});
    Result const result = Play(std::move(arguments));
    EXPECT_EQ(result.status, 0) << result.err;
    Table const table = ReadTable(m_files, "out.csv");
    auto const column = std::find(table[0].begin(), table[0].end(), "part.translation.x");
    std::vector<double> values;
    for (std::size_t i = 1; i < table.size(); ++i) {
      values.push_back(std::stod(table[i].at(static_cast<std::size_t>(column - table[0].begin()))));
    }
    return values;
  }

  TemporaryFiles const m_files;
};

auto Near(std::vector<double> const& values) {
  return testing::Pointwise(testing::DoubleNear(1e-9), values);
}

TEST_F(PlayTest, PlaysInBothDirectionsAndRoundTheEnds) {
  EXPECT_THAT(PlaySlide({"--fps", "2"}), Near({0, 2, 4, 6, 8}));
  EXPECT_EQ(ReadTable(m_files, "out.csv")[2][0], "0.5");
  EXPECT_THAT(PlaySlide({"--fps", "2", "--reverse"}), Near({8, 6, 4, 2, 0}));
  // An end that is reached counts as the other one.
  EXPECT_THAT(PlaySlide({"--fps", "2", "--repeat"}), Near({0, 2, 4, 6, 0, 2, 4, 6, 0}));
  EXPECT_THAT(PlaySlide({"--fps", "2", "--repeat", "--reverse", "--seconds", "3"}),
              Near({8, 6, 4, 2, 8, 6, 4}));
  // The last frame stands where the seconds end, and without repeat no later than the run.
  EXPECT_THAT(PlaySlide({"--fps", "2", "--seconds", "0.75"}), Near({0, 2, 3}));
  EXPECT_THAT(PlaySlide({"--fps", "1", "--seconds", "50"}), Near({0, 4, 8}));
  EXPECT_EQ(PlaySlide({}).size(), 51u);
}

TEST_F(PlayTest, CountsItemsAndEvents) {
  auto const lines = Play({"--fps", "1", "--json"}).Lines();
  ASSERT_EQ(lines.size(), 3u);
  // One write for each attribute, and the first frame is the pose that stands.
  std::size_t const columns = 9;
  for (std::size_t i = 0; i != 3; ++i) {
    json const frame = json::parse(lines[i]);
    EXPECT_EQ(frame["time"], static_cast<double>(i));
    EXPECT_EQ(frame["itemsMoved"], i == 0 ? 0 : 1);
    EXPECT_EQ(frame["events"], columns);
  }
  EXPECT_EQ(Play({"--fps", "1", "--reverse"}).Lines()[1], "1 s  at 1 s  1 item moved  9 events");
  EXPECT_THAT(Play({"--timeline", "2"}).Lines(),
              ElementsAre("0 s  at 0 s  1 item moved  9 events"));
}

TEST_F(PlayTest, TheTourStandsAtEachCameraInTurn) {
  ASSERT_EQ(Play({"--tour", "--fps", "1", "--csv", "out.csv"}).status, 0);
  Table table = ReadTable(m_files, "out.csv");
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
  Result const round =
      RunProgram(m_files, {"play", "plain.gltf", "--fps", "10", "--csv", "out.csv"});
  ASSERT_EQ(round.status, 0) << round.err;
  table = ReadTable(m_files, "out.csv");
  ASSERT_EQ(table.size(), 122u);
  EXPECT_THAT(place(121), Near(place(1)));
  double const radius = std::hypot(place(1)[0] - 0.5, place(1)[2]);
  for (std::size_t row = 1; row != table.size(); ++row) {
    EXPECT_NEAR(std::hypot(place(row)[0] - 0.5, place(row)[2]), radius, 0.01 * radius);
  }
  EXPECT_GT(std::abs(place(61)[2] - place(1)[2]), 1.9 * radius);
}

TEST_F(PlayTest, RefusesInOneLineAndLeavesFilesAlone) {
  struct Row {
    std::vector<std::string> arguments;
    int status;
    char const* subject;
    char const* reason;
  };
  Row const rows[] = {
      {{"--timeline", "3"}, 1, "model.gltf", "no animation 3, the file has 2"},
      {{"--timeline", "0"}, 2, "options", "counted from 1"},
      {{"--timeline", "one"}, 2, "options", ""},
      {{"--timeline", "1", "--tour"}, 2, "options", "exclude"},
      {{"--fps", "0"}, 2, "options", "--fps"},
      {{"--fps", "nan"}, 2, "options", "--fps"},
      {{"--seconds", "-1"}, 2, "options", "--seconds"},
      {{"--seconds", "inf"}, 2, "options", "--seconds"},
      {{"--csv", "kept", "--plot", "./kept"}, 2, "options", "same file"},
      {{"--csv", "kept", "--plot", "no/such/folder.svg"}, 1, "no/such/folder.svg", "written"},
      {{"--csv", "kept", "--plot", "."}, 1, ".", "written"},
  };
  m_files.Write("kept", "before");
  for (Row const& row : rows) {
    SCOPED_TRACE(row.reason);
    Result const result = Play(row.arguments);
    EXPECT_EQ(result.status, row.status);
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(result.HasOneError(row.subject, row.reason)) << result.err;
    EXPECT_EQ(support::ReadBytes(m_files.At("kept")), "before");
  }
  EXPECT_EQ(RunProgram(m_files, {"play", "none.gltf"}).status, 1);
}

TEST_F(PlayTest, WhatIsBrokenOffLeavesNoHalfFile) {
  m_files.Write("kept", "before");
  std::filesystem::path const out = m_files.GetFolder() / "stdout";
  for (int const signal : {SIGTERM, SIGHUP}) {
    std::filesystem::remove(out);
    pid_t const program = StartProgram(
        m_files, {"play", "model.gltf", "--repeat", "--seconds", "1e6", "--csv", "kept"});
    std::error_code error;
    while (std::filesystem::file_size(out, error) == 0 || error) {
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    kill(program, signal);
    EXPECT_EQ(WaitForProgram(m_files, program).status, 128 + signal);
    EXPECT_EQ(support::ReadBytes(m_files.At("kept")), "before");
  }
  for (auto const& entry : std::filesystem::directory_iterator(m_files.GetFolder())) {
    EXPECT_NE(entry.path().extension(), ".part");
  }
}

TEST_F(PlayTest, PlotsWhatChanges) {
  ASSERT_EQ(Play({"--plot", "out.svg", "--fps", "10"}).status, 0);
  std::string const svg = support::ReadBytes(m_files.At("out.svg"));
  EXPECT_THAT(svg, HasSubstr("model.gltf: slide"));
  EXPECT_THAT(svg, HasSubstr(">part  translation</text>"));
  EXPECT_THAT(svg, HasSubstr("2 panels in which nothing changes"));
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
  std::ostringstream out;
  app::WritePlot(out, "a & <b>", {{"it<em", "scale.x"}, {"it<em", "scale.y"}, {"it<em", "scale.z"}},
                 recording);
  std::string const svg = out.str();
  auto const count = [&](std::string const& text) {
    std::size_t found = 0;
    for (auto at = svg.find(text); at != std::string::npos; at = svg.find(text, at + 1)) ++found;
    return found;
  };
  EXPECT_EQ(count("<circle"), 2u) << "single values stand between gaps";
  EXPECT_EQ(count("<polyline"), 3u);
  EXPECT_EQ(count(">it&lt;em  scale</text>"), 2u) << "y and z share a panel";
  EXPECT_THAT(svg, HasSubstr("a &amp; &lt;b&gt;"));
  EXPECT_THAT(svg, Not(AnyOf(HasSubstr("nan"), HasSubstr("inf"))));
}

TEST(PlotTest, AxesHaveTwoTicksAtLeast) {
  for (double half = 1.0; half < 10.0; half += 0.05) {
    app::NRecording recording(1);
    recording.Add(0.0, {-half});
    recording.Add(1.0, {half});
    std::ostringstream out;
    app::WritePlot(out, "title", {{"item", "scale.x"}}, recording);
    std::string const svg = out.str();
    auto const first = svg.find("text-anchor=\"end\"");
    ASSERT_NE(first, std::string::npos);
    EXPECT_NE(svg.find("text-anchor=\"end\"", first + 1), std::string::npos) << half;
  }
}

}  // namespace
}  // namespace corvanta::app_tests
