#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <set>

#include "tests/app/program.h"

namespace corvanta::app_tests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

/// Two triangles beside each other, and a camera that looks at them.
class RenderTest : public ProgramTest {
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
};

/// Where there is something that draws.
class DrawTest : public RenderTest {
 protected:
  void SetUp() override {
    Result const result = Run("render model.gltf --clip-report --size 4x4");
    if (result.HasOneError("render", "EGL")) GTEST_SKIP() << result.err;
  }
};

TEST_F(DrawTest, PicturesAreThereAsAWhole) {
  EXPECT_THAT(RunWell("render model.gltf -o a.png --ids ids.png --size 90x60").Lines(),
              ElementsAre("1  model/left", "2  model/right"));
  EXPECT_THAT(GetNames(), ElementsAre("a.png", "ids.png", "model.gltf"));
  std::string const picture = Read("a.png");
  EXPECT_EQ(picture.substr(1, 3), "PNG");
  EXPECT_EQ(picture.substr(16, 8), std::string("\0\0\0\x5A\0\0\0\x3C", 8));
  RunWell("render model.gltf -o b.png --size 90x60");
  EXPECT_EQ(Read("b.png"), picture);
  RunWell("render model.gltf -o b.png --size 90x60 --camera eye");
  EXPECT_NE(Read("b.png"), picture);
}

TEST_F(DrawTest, WritesToStdoutAndWhatTheNameSays) {
  RunWell("render model.gltf -o a.png --size 90x60");
  Result const piped = RunWell("render model.gltf -o - --size 90x60 --clip-report");
  EXPECT_EQ(piped.out, Read("a.png"));
  EXPECT_THAT(piped.err, StartsWith("near "));
  Result const hits = RunWell("pick model.gltf --at 1,1 --size 90x60 -o -");
  EXPECT_EQ(hits.out.substr(1, 3), "PNG");
  EXPECT_EQ(hits.err, "no hit\n");
#ifdef CORVANTA_WITH_FREEIMAGE
  RunWell("render model.gltf -o a.JPG --size 90x60");
  EXPECT_EQ(Read("a.JPG").substr(0, 3), "\xFF\xD8\xFF");
  RunWell("render model.gltf -o around%d.jpeg --orbit 2 --size 90x60");
  EXPECT_EQ(Read("around1.jpeg").substr(0, 3), "\xFF\xD8\xFF");
#endif
}

TEST_F(DrawTest, SaysWhenNothingIsSeenOrChanged) {
  struct Row {
    char const* options;
    char const* note;
  };
  for (auto const& [options, note] :
       {Row{"--set left.isVisible=false --set right.isVisible=false",
            "a.png: note: the picture is empty: all models are hidden"},
        Row{"--camera eye --set eye.interest.z=9",
            "a.png: note: the picture is empty: no model is in view"},
        Row{"--set environment.floor.shadingMode=2",
            "--set environment.floor.shadingMode=2: note: pictures don't depend on this attribute"},
        Row{"--set left.scale.x=1", "--set left.scale.x=1: note: it has this value already"}}) {
    EXPECT_EQ(RunWell(std::string("render model.gltf -o a.png --size 9x6 ") + options).err,
              std::string("corvanta: ") + note + '\n');
  }
  EXPECT_EQ(RunWell("render model.gltf -o a.png --size 9x6 --set left.scale.x=2").err, "");
  m_files.Write("line.obj", "v 0 0 0\nv 1 1 1\nl 1 2\n");
  EXPECT_EQ(RunWell("render line.obj -o a.png --size 9x6").err, "");
}

TEST_F(DrawTest, TheCameraShowsWhatIsSet) {
  // A hundred times as large, it still is before the camera and none of it outside.
  auto const lines =
      RunWell(
          "render model.gltf --clip-report --ids ids.png --size 90x60 --set top.scale.x=100 "
          "--set top.scale.y=100")
          .Lines();
  ASSERT_EQ(lines.size(), 5u);
  EXPECT_EQ(lines[4], "6 vertices, 0 of them before near, 0 beyond far");
  EXPECT_THAT(RunWell("render model.gltf -o a.png --size 90x60 --set top.translation.x=100").err,
              "");
}

TEST_F(DrawTest, EachOptionChangesThePicture) {
#ifndef CORVANTA_WITH_FREEIMAGE
  GTEST_SKIP() << "pictures aren't decoded here";
#endif
  m_files.Write("picture.png", MakePng());
  std::set<std::string> pictures;
  for (std::string const options :
       {"", "--set left.isVisible=false", "--set environment.floor.isVisible=true",
        "--texture picture.png", "--method plane", "--stereo", "--hmd"}) {
    RunWell("render model.gltf -o a.png --size 90x60 " + options);
    EXPECT_TRUE(pictures.insert(Read("a.png")).second) << options;
  }
}

TEST_F(DrawTest, ReportsWhatClippingCutsOff) {
  EXPECT_THAT(RunWell("render model.gltf --clip-report --camera eye").Lines(),
              ElementsAre(StartsWith("near "), StartsWith("seen from 4"),
                          "6 vertices, 0 of them before near, 0 beyond far"));
}

TEST_F(DrawTest, ModelsBelowManyTurnedLevelsAreSeen) {
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
  auto const lines = Run("render model.gltf --ids ids.png --clip-report --size 90x60").Lines();
  ASSERT_EQ(lines.size(), 4u);
  EXPECT_THAT(lines[2], StartsWith("seen from "));
  EXPECT_THAT(Run("pick model.gltf --at 45,30 --size 90x60").out, HasSubstr("deep"));
}

TEST_F(RenderTest, RefusesInOneLineAndLeavesNothing) {
  ExpectOptionsRefused("render model.gltf", {""});
  ExpectOptionsRefused("render model.gltf -o a.png",
                       {"--size 0x100", "--size 100000x1", "--size 16000x16000", "--switch model=1",
                        "--stereo --hmd", "--time soon", "--time nan", "--ids a.png"});
  ExpectRefused("render model.gltf", {{"-o a.gif", "not as .gif"},
                                      {"--ids a.jpg", ".png is needed"},
                                      {"-o a.jpg --background none", "needs a .png"},
                                      {"-o - --ids -", "the same file"}});
  // Before anything is read.
  ExpectRefused("render none.gltf", {{"-o missing/a.png", "no folder \"missing\"", "a.png", 1}});
  ExpectRefused("render model.gltf -o a.png", {{"--camera nobody", "", "--camera"},
                                               {"--camera tour:-1", "", "--camera"},
                                               {"--camera tour:1e39", "", "--camera"},
                                               {"--set nobody.isVisible=true", "", "--set"},
                                               {"--set left.scale.x=1e39", "", "--set"},
                                               {"--switch material=99", "", "--switch"},
                                               {"--texture model.gltf", "", "model.gltf", 1}});
  EXPECT_THAT(GetNames(), ElementsAre("model.gltf"));
}

TEST_F(DrawTest, FramesOfATourAreNumberedAndDiffer) {
  std::string const play = "play model.gltf --tour --size 40x30";
  RunWell(play + " --seconds 1 --fps 2 -o frame%03d.png");
  EXPECT_THAT(GetNames(),
              ElementsAre("frame000.png", "frame001.png", "frame002.png", "model.gltf"));
  RunWell("render model.gltf --camera tour:1 -o a.png --size 40x30");
  EXPECT_EQ(Read("a.png"), Read("frame002.png"));
  ExpectRefused(play + " -o", {{"frame.png", "-o"},
                               {"%d%d.png", "-o"},
                               {"%s.png", "-o"},
                               {"%", "-o"},
                               {"missing/%d.png", "written", "missing/%d.png", 1}});
}

TEST_F(DrawTest, TheDefaultCameraFramesWhatIsThereAtThatTime) {
  m_files.Write("model.gltf",
                AddAnimation(MakeGltf({Triangle()}, {{{"name", "part"}, {"mesh", 0}}}), "away",
                             {{0, "translation", {0, 1}, {0, 0, 0, 30, 0, 0}}}));
  auto const lines = Run("render model.gltf --time 1 --clip-report -o a.png --size 40x30").Lines();
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_THAT(lines[1], StartsWith("seen from "));
  RunWell("play model.gltf -o frame%d.png --fps 2 --size 40x30");
  EXPECT_EQ(Read("a.png"), Read("frame2.png"));
}

TEST_F(DrawTest, FramesOfABrokenOffRunAreWhole) {
  for (int const signal : {SIGTERM, SIGHUP}) {
    std::string const name = "frame" + std::to_string(signal);
    pid_t const program =
        StartProgram(m_files, {"play", "model.gltf", "--tour", "--repeat", "--seconds", "1e6",
                               "--size", "40x30", "-o", name + "-%d.png"});
    AwaitFromProgram(
        program, [&] { return std::filesystem::exists(m_files.GetFolder() / (name + "-2.png")); });
    kill(program, signal);
    WaitForProgram(m_files, program);
  }
  for (std::string const& name : GetNames()) {
    if (name == "model.gltf") continue;
    EXPECT_THAT(name, testing::EndsWith(".png"));
    std::string const bytes = Read(name);
    EXPECT_THAT(bytes.substr(bytes.size() - std::min<std::size_t>(bytes.size(), 8)),
                StartsWith("IEND"))
        << name;
  }
}

TEST_F(RenderTest, SaysWhatTheMachineLacks) {
  // The loader takes the first file of the name, and this one isn't a library.
  std::filesystem::create_directory(m_files.GetFolder() / "lib");
  m_files.Write("lib/libEGL.so.1", "");
  struct Row {
    char const* variable;
    std::string value;
    char const* reason;
  };
  for (auto const& [variable, value, reason] :
       {Row{"__EGL_VENDOR_LIBRARY_DIRS", "/nonexistent", ""},
        Row{"LIBGL_DRIVERS_PATH", "/nonexistent", ""},
        Row{"LD_LIBRARY_PATH", (m_files.GetFolder() / "lib").string(),
            "there is no EGL on this machine"}}) {
    setenv(variable, value.c_str(), 1);
    ExpectRefused("render model.gltf -o a.png", {{"", reason, "render", 1}});
    unsetenv(variable);
  }
  EXPECT_THAT(GetNames(), ElementsAre("model.gltf"));
}

}  // namespace
}  // namespace corvanta::app_tests
