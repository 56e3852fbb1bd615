#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <tuple>

#include "tests/app/program.h"

namespace corvanta::app_tests {
namespace {

using nlohmann::json;
using testing::HasSubstr;

/// Two models: a triangle across the seam at negative z, half a unit out to either side; the same
/// mirrored in x and a unit further up.
class MapTest : public ProgramTest {
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

  json MapFirst(std::string const& options) const {
    return Named(RunJson("map model.gltf --method plane " + options)["models"], "first");
  }
  /// A group with that many children, which show the one mesh.
  static json MakeNodes(std::vector<std::string> const& names) {
    json nodes = {{{"children", json::array()}}};
    for (std::string const& name : names) {
      nodes[0]["children"].push_back(nodes.size());
      nodes.push_back({{"name", name}, {"mesh", 0}});
    }
    return nodes;
  }
};

TEST_F(MapTest, PrintsVerticesAndRangesOfEachModel) {
  auto const models = RunJson("map model.gltf --method cylinder")["models"];
  ASSERT_EQ(models.size(), 2u);
  // Two low corners and one high; mirrored, one low and two high.
  EXPECT_EQ(Named(models, "first")["vertices"], 3);
  EXPECT_EQ(Named(models, "first")["mappedVertices"], 5);
  EXPECT_EQ(Named(models, "second")["mappedVertices"], 4);
  for (auto const& model : models) EXPECT_NEAR(model["u"][1].get<double>(), 1.0738, 1e-4);
  EXPECT_EQ(Named(models, "second")["v"], json({0.5, 1.5}));
  EXPECT_THAT(Run("map model.gltf --method cylinder").Lines()[0],
              HasSubstr("first  vertices 3, after the seam cut 5  u 0.07"));
  EXPECT_EQ(MapFirst("")["mappedVertices"], 3);
}

TEST_F(MapTest, PlacesTheProjectorAndChangesTheCoordinates) {
  struct Row {
    char const* options;
    char axis;
    double from, to;
  };
  for (Row const& row :
       {Row{"", 'u', -0.5, 0.5}, Row{"--translate -1,0,0", 'u', 0.5, 1.5},
        Row{"--scale 2,1,0.25", 'u', -0.25, 0.25}, Row{"--scale 2,1,0.25", 'v', -4, -4},
        Row{"--scale 2", 'v', -0.5, -0.5}, Row{"--repeat 4,2 --offset 0,0.5", 'u', -2, 2},
        Row{"--repeat 4,2 --offset 0,0.5", 'v', -1.5, -1.5}, Row{"--flip uv", 'u', 0.5, 1.5},
        Row{"--flip u", 'v', -1, -1},
        Row{"--rotate 90,0,0", 'v', -1, 0}}) {  // seen along z: v runs along y
    auto const range = MapFirst(row.options)[std::string(1, row.axis)];
    double const tolerance = std::string(row.options).starts_with("--rotate") ? 1e-6 : 0;
    EXPECT_NEAR(range[0].get<double>(), row.from, tolerance) << row.options;
    EXPECT_NEAR(range[1].get<double>(), row.to, tolerance) << row.options;
  }
}

TEST_F(MapTest, WritesWhatItMapped) {
  RunWell("map model.gltf --method cylinder -o out.obj");
  std::string const obj = Read("out.obj");
  EXPECT_EQ(Count(obj, "\nv "), 9u);
  EXPECT_EQ(Count(obj, "\nvt "), 9u);
  EXPECT_EQ(Count(obj, "\nf "), 2u);
  EXPECT_THAT(obj, HasSubstr("f 9/9/9 8/8/8 7/7/7")) << "a mirrored model is turned round";
  // What a reader makes of it lies where the models lay.
  EXPECT_EQ(RunJson("info out.obj")["box"], RunJson("info model.gltf")["box"]);
  EXPECT_EQ(RunJson("map out.obj --method plane")["models"].size(), 2u);
}

TEST_F(MapTest, ModelsStayApartWhateverTheirNames) {
  json const nodes = MakeNodes(
      {"big part", "big hull", "big\tpart", "big_part", "back\\", "#5", " ", "g 2", "big_part_2"});
  m_files.Write("names.gltf", MakeGltf({Triangle()}, nodes));
  RunWell("map names.gltf --method plane -o names.obj");
  auto const again = RunJson("map names.obj --method plane")["models"];
  EXPECT_EQ(again.size(), nodes.size() - 1);
  for (auto const& model : again) EXPECT_EQ(model["vertices"], 3) << model;
  EXPECT_FALSE(Named(again, "big_hull").is_null()) << again;
}

TEST_F(MapTest, WhatReplacesAFileIsWholeAndKeepsItsModeAndOwner) {
  namespace fs = std::filesystem;
  fs::path const old = m_files.GetFolder() / "old.obj";
  std::string const write = "map model.gltf --method plane -o ";
  auto const state = [&] {
    struct stat found = {};
    stat(old.c_str(), &found);
    return std::tuple(found.st_mode & 07777u, found.st_uid, found.st_gid);
  };
  fs::create_symlink("old.obj", m_files.GetFolder() / "link.obj");
  RunWell(write + "link.obj");  // of a file that isn't there yet
  for (mode_t const mode : {0600u, 0646u, 0755u}) {
    m_files.Write("old.obj", "before");
    fs::permissions(old, fs::perms(mode));
    if (geteuid() == 0) {
      ASSERT_EQ(chown(old.c_str(), 12345, 54321), 0);
    }
    auto const before = state();
    RunWell(write + "link.obj");
    EXPECT_EQ(state(), before);
    EXPECT_NE(Read("old.obj"), "before");
    EXPECT_TRUE(fs::is_symlink(m_files.GetFolder() / "link.obj"));
  }
  m_files.Write("old.obj", "before");
  fs::permissions(old, fs::perms(0444));
  ExpectRefused(write, {{"old.obj", "read-only", "old.obj", 1}});
  fs::permissions(old, fs::perms(0644));
  // What breaks off on the way, here by a limit to the size of files, changes nothing. The model
  // itself takes less than that.
  Mesh strip = Triangle();
  for (int i = 0; i != 200; ++i) strip.indices.insert(strip.indices.end(), {0, 1, 2});
  m_files.Write("model.gltf", MakeGltf({strip}, MakeNodes(std::vector<std::string>(49))));
  struct rlimit before = {};
  getrlimit(RLIMIT_FSIZE, &before);
  struct rlimit const small = {50'000, before.rlim_max};
  signal(SIGXFSZ, SIG_IGN);
  setrlimit(RLIMIT_FSIZE, &small);
  Result const full = Run(write + "old.obj");
  setrlimit(RLIMIT_FSIZE, &before);
  signal(SIGXFSZ, SIG_DFL);
  EXPECT_EQ(full.status, 1);
  EXPECT_THAT(full.err, HasSubstr("old.obj: can't be written"));
  EXPECT_EQ(Read("old.obj"), "before");
  EXPECT_THAT(GetNames(), testing::Not(testing::Contains(testing::EndsWith(".part"))));
}

TEST_F(MapTest, RefusesInOneLine) {
  ExpectOptionsRefused("map model.gltf", {"", "--method cone"});
  ExpectOptionsRefused(
      "map model.gltf --method plane",
      {"--scale 1,0,1", "--scale 1,2", "--scale 1,1e-60,1", "--translate 0,1e39,0",
       "--repeat -1e39", "--translate 1,2,nan", "--rotate 1,2,3,4", "--repeat 1,", "--flip x"});
  EXPECT_TRUE(RunProgram(m_files, {"map", "model.gltf", "--method", "plane", "--offset", ""})
                  .HasOneError("options", ""));
  ExpectRefused("map --method plane",
                {{"none.obj", "no such file", "none.obj", 1},
                 {"model.gltf -o no/such/folder.obj", "there is no folder \"no/such\"",
                  "no/such/folder.obj", 1}});
}

}  // namespace
}  // namespace corvanta::app_tests
