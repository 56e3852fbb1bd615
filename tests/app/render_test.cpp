#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <thread>

#include "tests/app/program.h"

namespace corvanta::app_tests {
namespace {

using support::TemporaryFiles;

/// Two triangles beside each other, and a camera that looks at them.
class RenderTest : public testing::Test {
 protected:
  RenderTest() {
    m_files.Write(
        "model.gltf",
        MakeGltf({Triangle()},
                 {{{"name", "top"}, {"children", {1, 2, 3}}},
                  {{"name", "left"}, {"mesh", 0}},
                  {{"name", "right"}, {"mesh", 0}, {"translation", {1.5, 0, 0}}},
                  {{"name", "eye"}, {"camera", 0}, {"translation", {1, 0.5, 4}}}},
                 {{"cameras",
                   {{{"type", "perspective"},
                     {"perspective", {{"yfov", 0.8}, {"znear", 0.1}, {"aspectRatio", 1.0}}}}}}}));
  }

  Result Render(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), {"render", "model.gltf"});
    return RunProgram(m_files, std::move(arguments));
  }

  /// The files beside the model, without what the test itself writes there.
  std::set<std::string> GetOutputs() const {
    std::set<std::string> names;
    for (auto const& entry : std::filesystem::directory_iterator(m_files.GetFolder())) {
      if (entry.is_regular_file()) names.insert(entry.path().filename());
    }
    for (char const* const own : {"model.gltf", "stdout", "stderr"}) names.erase(own);
    return names;
  }

  TemporaryFiles m_files;
};

TEST_F(RenderTest, DrawsPicturesThatAreThereAsAWhole) {
  Result const result = Render({"-o", "a.png", "--ids", "ids.png", "--size", "90x60"});
  if (result.HasOneError("render", "EGL")) GTEST_SKIP() << result.err;
  ASSERT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.Lines(), (std::vector<std::string>{"1  model/left", "2  model/right"}));
  EXPECT_EQ(GetOutputs(), (std::set<std::string>{"a.png", "ids.png"}));
  std::string const picture = support::ReadBytes(m_files.At("a.png"));
  EXPECT_EQ(picture.substr(1, 3), "PNG");
  EXPECT_EQ(picture.substr(16, 8), std::string("\0\0\0\x5A\0\0\0\x3C", 8));
  EXPECT_EQ(Render({"-o", "b.png", "--size", "90x60"}).status, 0);
  EXPECT_EQ(support::ReadBytes(m_files.At("b.png")), picture);
  EXPECT_EQ(Render({"-o", "b.png", "--size", "90x60", "--camera", "eye"}).status, 0);
  EXPECT_NE(support::ReadBytes(m_files.At("b.png")), picture);
}

TEST_F(RenderTest, EachOptionChangesThePicture) {
#ifndef CORVANTA_WITH_FREEIMAGE
  GTEST_SKIP() << "pictures aren't decoded here";
#endif
  m_files.Write("picture.png", MakePng());
  std::set<std::string> pictures;
  for (std::vector<std::string> arguments :
       std::vector<std::vector<std::string>>{{},
                                             {"--set", "left.isVisible=false"},
                                             {"--set", "environment.floor.isVisible=true"},
                                             {"--texture", "picture.png"},
                                             {"--method", "plane"},
                                             {"--stereo"},
                                             {"--hmd"}}) {
    arguments.insert(arguments.end(), {"-o", "a.png", "--size", "90x60"});
    Result const result = Render(arguments);
    if (result.HasOneError("render", "EGL")) GTEST_SKIP() << result.err;
    EXPECT_EQ(result.status, 0) << result.err;
    pictures.insert(support::ReadBytes(m_files.At("a.png")));
  }
  EXPECT_EQ(pictures.size(), 7u);
}

TEST_F(RenderTest, ReportsWhatClippingCutsOff) {
  Result const result = Render({"--clip-report", "--camera", "eye"});
  if (result.HasOneError("render", "EGL")) GTEST_SKIP() << result.err;
  auto const lines = result.Lines();
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_EQ(lines[0].find("near "), 0u);
  EXPECT_EQ(lines[1].find("seen from 4"), 0u) << lines[1];
  EXPECT_EQ(lines[2], "6 vertices, 0 of them before near, 0 beyond far");
}

TEST_F(RenderTest, SeesModelsBelowManyTurnedLevels) {
  // The boxes of 40 levels, each of a level's box, are a million times as large as the model.
  nlohmann::json nodes;
  for (int i = 0; i != 40; ++i) {
    nodes.push_back({{"children", {i + 1}}, {"rotation", {0.2, 0.3, 0.1, 0.927361849549570}}});
  }
  nodes.push_back({{"name", "deep"}, {"mesh", 0}});
  Mesh square;
  square.coords = {-1, -1, 0, 1, -1, 0, 1, 1, 0, -1, 1, 0};
  square.indices = {0, 1, 2, 0, 2, 3};
  m_files.Write("model.gltf", MakeGltf({square}, nodes));
  Result const drawn = Render({"--ids", "ids.png", "--clip-report", "--size", "90x60"});
  if (drawn.HasOneError("render", "EGL")) GTEST_SKIP() << drawn.err;
  ASSERT_EQ(drawn.Lines().size(), 4u) << drawn.err;
  EXPECT_EQ(drawn.Lines()[2].find("seen from "), 0u) << drawn.Lines()[2];
  Result const picked =
      RunProgram(m_files, {"pick", "model.gltf", "--at", "45,30", "--size", "90x60"});
  EXPECT_NE(picked.out.find("deep"), std::string::npos) << picked.out << picked.err;
}

TEST_F(RenderTest, RefusesInOneLineAndLeavesNothing) {
  struct Row {
    std::vector<std::string> arguments;
    int status;
    std::string subject;
  };
  for (Row const& row : std::vector<Row>{
           {{}, 2, "options"},
           {{"-o", "a.png", "--size", "0x100"}, 2, "options"},
           {{"-o", "a.png", "--size", "100000x1"}, 2, "options"},
           {{"-o", "a.png", "--size", "16000x16000"}, 2, "options"},
           {{"-o", "a.png", "--camera", "nobody"}, 2, "--camera"},
           {{"-o", "a.png", "--set", "nobody.isVisible=true"}, 2, "--set"},
           {{"-o", "a.png", "--switch", "material=99"}, 2, "--switch"},
           {{"-o", "a.png", "--switch", "model=1"}, 2, "options"},
           {{"-o", "a.png", "--stereo", "--hmd"}, 2, "options"},
           {{"-o", "a.png", "--camera", "tour:-1"}, 2, "--camera"},
           {{"-o", "a.png", "--time", "soon"}, 2, "options"},
           {{"-o", "a.png", "--time", "nan"}, 2, "options"},
           {{"-o", "a.png", "--camera", "tour:1e39"}, 2, "--camera"},
           {{"-o", "a.png", "--set", "left.scale.x=1e39"}, 2, "--set"},
           {{"-o", "a.png", "--texture", "model.gltf"}, 1, "model.gltf"},
       }) {
    Result const result = Render(row.arguments);
    EXPECT_EQ(result.status, row.status);
    EXPECT_TRUE(result.HasOneError(row.subject, "")) << result.err;
  }
  Result const result = Render({"-o", "missing/a.png"});
  EXPECT_EQ(result.status, 1);
  if (!result.HasOneError("render", "EGL")) {
    EXPECT_TRUE(result.HasOneError("missing/a.png", "no folder \"missing\"")) << result.err;
  }
  EXPECT_EQ(GetOutputs(), std::set<std::string>());
}

TEST_F(RenderTest, FramesOfATourAreNumberedAndDiffer) {
  auto const play = [this](std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {"play", "model.gltf", "--tour", "--size", "40x30"});
    return RunProgram(m_files, std::move(arguments));
  };
  Result const result = play({"--seconds", "1", "--fps", "2", "-o", "frame%03d.png"});
  if (result.HasOneError("render", "EGL")) GTEST_SKIP() << result.err;
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(GetOutputs(), (std::set<std::string>{"frame000.png", "frame001.png", "frame002.png"}));
  EXPECT_EQ(Render({"--camera", "tour:1", "-o", "a.png", "--size", "40x30"}).status, 0);
  EXPECT_EQ(support::ReadBytes(m_files.At("a.png")),
            support::ReadBytes(m_files.At("frame002.png")));
  for (char const* const pattern : {"frame.png", "%d%d.png", "%s.png", "%"}) {
    EXPECT_TRUE(play({"-o", pattern}).HasOneError("options", "-o")) << pattern;
  }
  Result const missing = play({"-o", "missing/%d.png"});
  EXPECT_EQ(missing.status, 1);
  EXPECT_TRUE(missing.HasOneError("missing/0.png", "written")) << missing.err;
}

TEST_F(RenderTest, TheDefaultCameraFramesWhatIsThereAtThatTime) {
  m_files.Write("model.gltf",
                AddAnimation(MakeGltf({Triangle()}, {{{"name", "part"}, {"mesh", 0}}}), "away",
                             {{0, "translation", {0, 1}, {0, 0, 0, 30, 0, 0}}}));
  Result const drawn = Render({"--time", "1", "--clip-report", "-o", "a.png", "--size", "40x30"});
  if (drawn.HasOneError("render", "EGL")) GTEST_SKIP() << drawn.err;
  ASSERT_EQ(drawn.Lines().size(), 3u) << drawn.err;
  EXPECT_EQ(drawn.Lines()[1].find("seen from "), 0u) << drawn.Lines()[1];
  EXPECT_EQ(RunProgram(m_files,
                       {"play", "model.gltf", "-o", "frame%d.png", "--fps", "2", "--size", "40x30"})
                .status,
            0);
  EXPECT_EQ(support::ReadBytes(m_files.At("a.png")), support::ReadBytes(m_files.At("frame2.png")));
}

TEST_F(RenderTest, FramesOfABrokenOffRunAreWhole) {
  if (Render({"-o", "a.png", "--size", "4x4"}).HasOneError("render", "EGL")) GTEST_SKIP();
  for (int const signal : {SIGTERM, SIGHUP}) {
    std::filesystem::path const second =
        m_files.GetFolder() / ("frame" + std::to_string(signal) + "-2.png");
    pid_t const program = StartProgram(
        m_files, {"play", "model.gltf", "--tour", "--repeat", "--seconds", "1e6", "--size", "40x30",
                  "-o", "frame" + std::to_string(signal) + "-%d.png"});
    while (!std::filesystem::exists(second)) {
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    kill(program, signal);
    WaitForProgram(m_files, program);
  }
  for (std::string const& name : GetOutputs()) {
    EXPECT_EQ(std::filesystem::path(name).extension(), ".png");
    std::string const bytes = support::ReadBytes(m_files.At(name));
    EXPECT_NE(bytes.find("IEND", bytes.size() - std::min<std::size_t>(bytes.size(), 8)),
              std::string::npos)
        << name;
  }
}

TEST_F(RenderTest, SaysWhatTheMachineLacks) {
  setenv("__EGL_VENDOR_LIBRARY_DIRS", "/nonexistent", 1);
  Result const noVendor = Render({"-o", "a.png"});
  unsetenv("__EGL_VENDOR_LIBRARY_DIRS");
  setenv("LIBGL_DRIVERS_PATH", "/nonexistent", 1);
  Result const noDriver = Render({"-o", "a.png"});
  unsetenv("LIBGL_DRIVERS_PATH");
  // The loader takes the first file of the name, and this one isn't a library.
  m_files.Write("libEGL.so.1", "");
  setenv("LD_LIBRARY_PATH", m_files.GetFolder().c_str(), 1);
  Result const noEgl = Render({"-o", "a.png"});
  unsetenv("LD_LIBRARY_PATH");
  std::filesystem::remove(m_files.GetFolder() / "libEGL.so.1");
  EXPECT_TRUE(noEgl.HasOneError("render", "there is no EGL on this machine")) << noEgl.err;
  for (Result const& result : {noVendor, noDriver, noEgl}) {
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(result.HasOneError("render", "")) << result.err;
  }
  EXPECT_EQ(GetOutputs(), std::set<std::string>());
}

}  // namespace
}  // namespace corvanta::app_tests
