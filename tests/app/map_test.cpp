#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <tuple>

#include "tests/app/program.h"

namespace corvanta::app_tests {
namespace {

using support::TemporaryFiles;
using testing::ElementsAre;
using testing::HasSubstr;

/// Two models: a triangle across the seam at negative z, half a unit out to either side; the same
/// mirrored in x and a unit further up.
class MapTest : public testing::Test {
 protected:
  MapTest() {
    Mesh mesh = Triangle();
    mesh.coords = {-0.5f, 0, -1, 0.5f, 0, -1, 0.5f, 1, -1};
    m_files.Write("model.gltf", MakeGltf({mesh}, {{{"name", "top"}, {"children", {1, 2}}},
                                                  {{"name", "first"}, {"mesh", 0}},
                                                  {{"name", "second"},
                                                   {"mesh", 0},
                                                   {"translation", {0, 1, 0}},
                                                   {"scale", {-1, 1, 1}}}}));
  }

  Result Map(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), {"map", "model.gltf"});
    return RunProgram(m_files, std::move(arguments));
  }
  nlohmann::json MapFirst(std::vector<std::string> arguments) const {
    arguments.push_back("--json");
    return Named(Map(std::move(arguments)).Json()["models"], "first");
  }

  TemporaryFiles m_files;
};

TEST_F(MapTest, PrintsVerticesAndRangesOfEachModel) {
  auto const models = Map({"--method", "cylinder", "--json"}).Json()["models"];
  ASSERT_EQ(models.size(), 2u);
  // Two low corners and one high; mirrored, one low and two high.
  EXPECT_EQ(Named(models, "first")["vertices"], 3);
  EXPECT_EQ(Named(models, "first")["mappedVertices"], 5);
  EXPECT_EQ(Named(models, "second")["mappedVertices"], 4);
  for (auto const& model : models) EXPECT_NEAR(model["u"][1].get<double>(), 1.0738, 1e-4);
  EXPECT_EQ(Named(models, "second")["v"], nlohmann::json({0.5, 1.5}));
  EXPECT_THAT(Map({"--method", "cylinder"}).Lines()[0],
              HasSubstr("first  vertices 3, after the seam cut 5  u 0.07"));
  EXPECT_EQ(MapFirst({"--method", "plane"})["mappedVertices"], 3);
}

TEST_F(MapTest, PlacesTheProjectorAndChangesTheCoordinates) {
  auto const range = [this](std::vector<std::string> arguments, char const* axis) {
    arguments.insert(arguments.begin(), {"--method", "plane"});
    auto const model = MapFirst(arguments);
    return std::vector<double>{model[axis][0].get<double>(), model[axis][1].get<double>()};
  };
  EXPECT_THAT(range({}, "u"), ElementsAre(-0.5, 0.5));
  EXPECT_THAT(range({"--translate", "-1,0,0"}, "u"), ElementsAre(0.5, 1.5));
  EXPECT_THAT(range({"--scale", "2,1,0.25"}, "u"), ElementsAre(-0.25, 0.25));
  EXPECT_THAT(range({"--scale", "2,1,0.25"}, "v"), ElementsAre(-4, -4));
  EXPECT_THAT(range({"--scale", "2"}, "v"), ElementsAre(-0.5, -0.5));
  EXPECT_THAT(range({"--repeat", "4,2", "--offset", "0,0.5"}, "u"), ElementsAre(-2, 2));
  EXPECT_THAT(range({"--repeat", "4,2", "--offset", "0,0.5"}, "v"), ElementsAre(-1.5, -1.5));
  EXPECT_THAT(range({"--flip", "uv"}, "u"), ElementsAre(0.5, 1.5));
  EXPECT_THAT(range({"--flip", "u"}, "v"), ElementsAre(-1, -1));
  // Seen along z: v runs along y.
  EXPECT_THAT(range({"--rotate", "90,0,0"}, "v"),
              ElementsAre(testing::DoubleNear(-1, 1e-6), testing::DoubleNear(0, 1e-6)));
}

TEST_F(MapTest, WritesWhatItMapped) {
  ASSERT_EQ(Map({"--method", "cylinder", "-o", "out.obj"}).status, 0);
  std::string const obj = support::ReadBytes(m_files.At("out.obj"));
  auto const count = [&](std::string const& start) {
    std::size_t lines = 0;
    for (auto at = obj.find(start); at != std::string::npos; at = obj.find(start, at + 1)) ++lines;
    return lines;
  };
  EXPECT_EQ(count("\nv "), 9u);
  EXPECT_EQ(count("\nvt "), 9u);
  EXPECT_EQ(count("\nf "), 2u);
  EXPECT_THAT(obj, HasSubstr("f 9/9/9 8/8/8 7/7/7")) << "a mirrored model is turned round";
  // What a reader makes of it lies where the models lay.
  auto const info = RunProgram(m_files, {"info", "out.obj", "--json"}).Json();
  EXPECT_EQ(info["box"], RunProgram(m_files, {"info", "model.gltf", "--json"}).Json()["box"]);
  auto const again = RunProgram(m_files, {"map", "out.obj", "--method", "plane", "--json"}).Json();
  EXPECT_EQ(again["models"].size(), 2u);

  Result const refused = Map({"--method", "plane", "-o", "no/such/folder.obj"});
  EXPECT_EQ(refused.status, 1);
  EXPECT_TRUE(refused.HasOneError("no/such/folder.obj", "there is no folder \"no/such\""));
}

TEST_F(MapTest, ModelsStayApartWhateverTheirNames) {
  nlohmann::json nodes = {{{"name", "top"}, {"children", nlohmann::json::array()}}};
  for (char const* const name : {"big part", "big hull", "big\tpart", "big_part", "back\\", "#5",
                                 " ", "g 2", "big_part_2"}) {
    nodes[0]["children"].push_back(nodes.size());
    nodes.push_back({{"name", name}, {"mesh", 0}});
  }
  m_files.Write("names.gltf", MakeGltf({Triangle()}, nodes));
  Result const result =
      RunProgram(m_files, {"map", "names.gltf", "--method", "plane", "-o", "names.obj", "--json"});
  ASSERT_EQ(result.status, 0) << result.err;
  auto const again =
      RunProgram(m_files, {"map", "names.obj", "--method", "plane", "--json"}).Json()["models"];
  EXPECT_EQ(again.size(), nodes.size() - 1);
  for (auto const& model : again) EXPECT_EQ(model["vertices"], 3) << model;
  EXPECT_FALSE(Named(again, "big_hull").is_null()) << again;
}

TEST_F(MapTest, WhatReplacesAFileIsWholeAndKeepsItsModeAndOwner) {
  namespace fs = std::filesystem;
  fs::path const old = m_files.GetFolder() / "old.obj";
  auto const write = [&](std::string const& place) {
    return Map({"--method", "plane", "-o", place});
  };
  auto const state = [&] {
    struct stat found = {};
    stat(old.c_str(), &found);
    return std::tuple(found.st_mode & 07777u, found.st_uid, found.st_gid);
  };
  fs::create_symlink("old.obj", m_files.GetFolder() / "link.obj");
  ASSERT_EQ(write("link.obj").status, 0) << "of a file that isn't there yet";
  for (mode_t const mode : {0600u, 0646u, 0755u}) {
    m_files.Write("old.obj", "before");
    fs::permissions(old, fs::perms(mode));
    if (geteuid() == 0) {
      ASSERT_EQ(chown(old.c_str(), 12345, 54321), 0);
    }
    auto const before = state();
    EXPECT_EQ(write("link.obj").status, 0);
    EXPECT_EQ(state(), before);
    EXPECT_NE(support::ReadBytes(m_files.At("old.obj")), "before");
    EXPECT_TRUE(fs::is_symlink(m_files.GetFolder() / "link.obj"));
  }
  m_files.Write("old.obj", "before");
  fs::permissions(old, fs::perms(0444));
  EXPECT_TRUE(write("old.obj").HasOneError("old.obj", "read-only"));
  fs::permissions(old, fs::perms(0644));
  // What breaks off on the way, here by a limit to the size of files, changes nothing. The model
  // itself takes less than that.
  Mesh strip = Triangle();
  for (int i = 0; i != 200; ++i) strip.indices.insert(strip.indices.end(), {0, 1, 2});
  nlohmann::json nodes = {{{"children", nlohmann::json::array()}}};
  for (int i = 1; i != 50; ++i) {
    nodes[0]["children"].push_back(i);
    nodes.push_back({{"mesh", 0}});
  }
  m_files.Write("model.gltf", MakeGltf({strip}, nodes));
  struct rlimit before = {};
  getrlimit(RLIMIT_FSIZE, &before);
  struct rlimit const small = {50'000, before.rlim_max};
  signal(SIGXFSZ, SIG_IGN);
  setrlimit(RLIMIT_FSIZE, &small);
  Result const full = write("old.obj");
  setrlimit(RLIMIT_FSIZE, &before);
  signal(SIGXFSZ, SIG_DFL);
  EXPECT_EQ(full.status, 1);
  EXPECT_THAT(full.err, HasSubstr("old.obj: can't be written"));
  EXPECT_EQ(support::ReadBytes(m_files.At("old.obj")), "before");
  for (auto const& entry : fs::directory_iterator(m_files.GetFolder())) {
    EXPECT_NE(entry.path().extension(), ".part");
  }
}

TEST_F(MapTest, RefusesInOneLine) {
  for (std::vector<std::string> const& arguments :
       std::vector<std::vector<std::string>>{{},
                                             {"--method", "cone"},
                                             {"--method", "plane", "--scale", "1,0,1"},
                                             {"--method", "plane", "--scale", "1,2"},
                                             {"--method", "plane", "--scale", "1,1e-60,1"},
                                             {"--method", "plane", "--translate", "0,1e39,0"},
                                             {"--method", "plane", "--repeat", "-1e39"},
                                             {"--method", "plane", "--translate", "1,2,nan"},
                                             {"--method", "plane", "--rotate", "1,2,3,4"},
                                             {"--method", "plane", "--repeat", "1,"},
                                             {"--method", "plane", "--offset", ""},
                                             {"--method", "plane", "--flip", "x"}}) {
    Result const result = Map(arguments);
    EXPECT_EQ(result.status, 2) << testing::PrintToString(arguments);
    EXPECT_TRUE(result.HasOneError("options", "")) << result.err;
  }
  EXPECT_EQ(RunProgram(m_files, {"map", "none.obj", "--method", "plane"}).status, 1);
}

}  // namespace
}  // namespace corvanta::app_tests
