#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <limits>

#include "tests/app/program.h"

namespace corvanta::app_tests {
namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::StartsWith;
using InfoTest = ProgramTest;

TEST_F(InfoTest, PrintsTheSample) {
  Result const result = RunWell("info " CORVANTA_SAMPLES "/spot.obj --json");
  EXPECT_EQ(result.err, "");
  json const report = result.Json();

  json const& tree = report["trees"][0];
  EXPECT_EQ(tree["kind"], "scenegraphtree");
  EXPECT_EQ(tree["name"], "spot");
  json const spot = Named(tree["items"], "spot");
  EXPECT_EQ(spot["kind"], "model");
  EXPECT_EQ(spot["parent"], tree["root"]);
  EXPECT_EQ(spot["geometry"]["name"], "spot");
  EXPECT_EQ(spot["material"]["name"], "spot");
  EXPECT_EQ(spot["box"], report["box"]);

  for (json const& domain : report["domains"]) {
    if (domain["type"] == "geometry") {
      EXPECT_EQ(domain["count"], 1);
      EXPECT_EQ(domain["nodes"][0]["triangles"], 5856);
      // 3225 pairs of a point and a texture point are in the file's faces; 8 of them lie on
      // creases.
      EXPECT_EQ(domain["nodes"][0]["vertices"], 3233);
      EXPECT_EQ(domain["nodes"][0]["uvwSets"], json::array({1}));
    } else if (domain["type"] == "image") {
      EXPECT_THAT(domain["nodes"][0]["file"].get<std::string>(),
                  HasSubstr("examples/models/spot.png"));
    } else if (domain["type"] == "material") {
      EXPECT_EQ(domain["nodes"][0]["textures"].size(), 1u);
    }
  }
}

TEST_F(InfoTest, PrintsTextWithAttributes) {
  m_files.Write("model.gltf",
                MakeGltf({Triangle()}, {{{"name", "a"}, {"mesh", 0}, {"children", {1}}},
                                        {{"name", "line\nbreak"}}}));
  auto const lines = RunWell("info model.gltf --attributes").Lines();
  auto const find = [&](std::string const& start) {
    return std::find_if(lines.begin(), lines.end(),
                        [&](std::string const& line) { return line.rfind(start, 0) == 0; });
  };
  EXPECT_EQ(lines[0], "file \"model.gltf\"");
  ASSERT_NE(find("scenegraphtree \"model\" "), lines.end());
  ASSERT_NE(find("  model \"a\" "), lines.end());
  EXPECT_THAT(*find("  model \"a\" "), HasSubstr(" box (0, 0, 0) .. (1, 1, 0)"));
  EXPECT_EQ(*(find("  model \"a\" ") + 1), "      translation.x = 0");
  EXPECT_NE(find("    group \"line\\x0abreak\" "), lines.end());
  EXPECT_NE(find("domain geometry: 1"), lines.end());
  EXPECT_EQ(lines.back(), "box (0, 0, 0) .. (1, 1, 0)");
}

TEST_F(InfoTest, ShowsSeveralFilesInACommonTreeInTheirOwnUnits) {
  m_files.Write("a.gltf", MakeGltf({Triangle()}, kOneNode));
  m_files.Write("b.gltf", MakeGltf({Triangle()}, {{{"mesh", 0}, {"translation", {0, 0, 1000}}}}));
  json const report = RunJson("info a.gltf b.gltf --ids --unit 0.001 --zup");
  // The last holds the lights that come with a scene that has none.
  ASSERT_EQ(report["trees"].size(), 4u);
  EXPECT_EQ(report["trees"][3]["items"].size(), 8u);
  json const& items = report["trees"][0]["items"];
  EXPECT_EQ(items[0]["kind"], "group");
  EXPECT_EQ(items[1]["kind"], "reference");
  EXPECT_EQ(items[1]["shows"]["id"], report["trees"][1]["id"]);
  EXPECT_EQ(items[2]["shows"]["id"], report["trees"][2]["id"]);
  // The triangle of b stands a metre up, and its y axis points at -z.
  EXPECT_NEAR(report["box"]["max"][1], 1.0, 1e-6);
  EXPECT_NEAR(report["box"]["min"][2], -0.001, 1e-6);
  EXPECT_NEAR(items[2]["box"]["min"][1], 1.0, 1e-6);
}

struct BadFile {
  char const* name;
  std::string content;
  char const* reason;
};

std::string Ply(char const* vertex, char const* face) {
  return std::string(
             "ply\nformat ascii 1.0\nelement vertex 3\nproperty float x\nproperty float y\n"
             "property float z\nelement face 1\nproperty list uchar int vertex_indices\n"
             "end_header\n0 0 0\n1 0 0\n") +
         vertex + "\n" + face + "\n";
}

std::vector<BadFile> BadFiles() {
  Mesh wild = Triangle();
  wild.indices = {0, 1, 2, 0, 1, 7};
  Mesh endless = Triangle();
  endless.coords[4] = std::numeric_limits<float>::infinity();
  return {
      {"empty.obj", "", ""},
      {"text.txt", "hello", ""},
      {"broken.gltf", "{\"asset\":", ""},
      {"nothing.gltf", MakeGltf({}, json::array({{{"name", "a"}}})), "no faces"},
      {"no_root.gltf", R"({"asset":{"version":"2.0"}})", ""},
      {"beyond.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 9\n", "out of range"},
      {"zero.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 0 1 2\n", ""},
      {"beyond.ply", Ply("0 1 0", "3 0 1 22"), "out of range"},
      {"beyond.off", "OFF\n3 1 0\n0 0 0\n1 0 0\n0 1 0\n3 0 1 9\n", "out of range"},
      {"beyond.gltf", MakeGltf({wild}, kOneNode), "out of range"},
      {"nan.obj", "v 0 0 0\nv nan 0 0\nv 0 1 0\nf 1 2 3\n", "isn't finite"},
      {"nan.ply", Ply("nan 1 0", "3 0 1 2"), "isn't finite"},
      {"endless.gltf", MakeGltf({endless}, kOneNode), "isn't finite"},
      {"huge.gltf", MakeGltf({Triangle()}, {{{"mesh", 0}, {"translation", {1e300, 0, 0}}}}), ""},
  };
}

TEST_F(InfoTest, NamesEachBadFileInOneLineAndKeepsTheGood) {
  m_files.Write("good.gltf", MakeGltf({Triangle()}, kOneNode));
  std::filesystem::create_directory(m_files.GetFolder() / "folder.obj");
  auto bad = BadFiles();
  bad.push_back({"missing.obj", "", "no such file"});
  bad.push_back({"folder.obj", "", "not a file"});
  for (BadFile const& file : bad) {
    SCOPED_TRACE(file.name);
    std::string const name = file.name;
    if (name != "missing.obj" && name != "folder.obj") m_files.Write(name, file.content);
    ExpectRefused("info", {{name, file.reason, name + ": ", 1}});
    EXPECT_GT(Run("info " + name).err.size(), ("corvanta: : \n" + name).size());

    Result const both = Run("info " + name + " good.gltf --json");
    EXPECT_EQ(both.status, 1);
    EXPECT_TRUE(both.HasOneError(name + ": ", file.reason)) << both.err;
    EXPECT_FALSE(Named(both.Json()["trees"][1]["items"], "only").is_null());
  }
}

TEST_F(InfoTest, RefusesImpossibleOptionsInOneLine) {
  m_files.Write("good.gltf", MakeGltf({Triangle()}, kOneNode));
  for (char const* const line :
       {"info", "info good.gltf --colour", "info good.gltf --summary --depth 1",
        "info good.gltf --unit", "info good.gltf --unit 0", "info good.gltf --unit -1",
        "info good.gltf --unit nan", "info good.gltf --unit inch", "info good.gltf --unit 1e39",
        "info good.gltf --unit 1e-42", "info good.gltf --up w", "info good.gltf --up z --zup",
        "render good.gltf --clip-report --crease -1", "pick good.gltf --at 1,1 --crease nan",
        "play good.gltf --unit 0", "watch good.gltf --once --set only.scale.x=1",
        "watch good.gltf extra.gltf --set only.scale.x=1"}) {
    ExpectRefused(line, {{"", "", "corvanta: "}});
  }
  EXPECT_THAT(RunWell("info --help").out, HasSubstr("--attributes"));
}

TEST_F(InfoTest, EveryCommandPassesTheNotesOnOnce) {
  json gltf = json::parse(MakeGltf(
      {Triangle(), Triangle(), Triangle()},
      {{{"name", "only"}, {"mesh", 0}, {"children", {1, 2}}}, {{"mesh", 1}}, {{"mesh", 2}}}));
  for (int const lines : {1, 2}) gltf["meshes"][lines]["primitives"][0]["mode"] = 7;
  m_files.Write("flat.gltf", gltf.dump());
  std::string const note =
      "corvanta: flat.gltf: note: 2 meshes have no triangles and were left out\n";
  for (char const* const line :
       {"info flat.gltf --json", "watch flat.gltf --set only.scale.x=1", "pick flat.gltf --at 1,1",
        "map flat.gltf --method plane", "play flat.gltf --seconds 0.1",
        "render flat.gltf --clip-report", "demo flat.gltf"}) {
    EXPECT_THAT(Run(line).err, StartsWith(note)) << line;
  }
  EXPECT_EQ(Run("info flat.gltf").err, note);
  gltf["meshes"].erase(2);
  gltf["nodes"][2].erase("mesh");
  m_files.Write("flat.gltf", gltf.dump());
  EXPECT_THAT(Run("info flat.gltf").err, HasSubstr("1 mesh has no triangles and was left out"));
}

TEST_F(InfoTest, HelpThatCannotBeWrittenIsAFailure) {
  std::string const err = (m_files.GetFolder() / "stderr").string();
  for (std::string const options : {"--help", "map --help"}) {
    int const status =
        std::system(("'" CORVANTA_PROGRAM "' " + options + " >/dev/full 2>'" + err + "'").c_str());
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 1) << status;
    EXPECT_EQ(Read("stderr"), "corvanta: output: can't be written\n");
  }
}

TEST_F(InfoTest, CountsWhatTheFileHoldsAndMarksWhatIsAdded) {
  json gltf = json::parse(MakeGltf({Triangle()}, {{{"name", "top"}, {"children", {1, 2}}},
                                                  {{"name", "a"}, {"mesh", 0}, {"children", {3}}},
                                                  {{"name", "b"}, {"mesh", 0}},
                                                  {{"name", "deep"}}}));
  gltf["images"] = {{{"uri", "data:image/png;base64," + ToBase64(MakePng())}},
                    {{"uri", "gone.png"}}};
  gltf["textures"] = {{{"source", 0}}, {{"source", 1}}};
  gltf["materials"] = {{{"pbrMetallicRoughness", {{"baseColorTexture", {{"index", 0}}}}},
                        {"emissiveTexture", {{"index", 1}}}}};
  gltf["meshes"][0]["primitives"][0]["material"] = 0;
  m_files.Write("model.gltf", gltf.dump());
  // A colour is one of the surface and one of what it mirrors.
  EXPECT_EQ(RunJson("info model.gltf --summary")["totals"],
            json({{"items", 4},
                  {"models", 2},
                  {"meshes", 1},
                  {"surfaces", 1},
                  {"triangles", 1},
                  {"trianglesShown", 2},
                  {"vertices", 3},
                  {"materials", 1},
                  {"textures", 3},
                  {"pictures", 2},
                  {"pictureBytes", MakePng().size()},
                  {"picturesMissing", 1},
                  {"lights", 0},
                  {"cameras", 0},
                  {"animations", 0}}));
  json const report = RunJson("info model.gltf --depth 2");
  json const& items = report["trees"][0]["items"];
  ASSERT_EQ(items.size(), 4u);
  EXPECT_EQ(Named(items, "a")["itemsBelow"], 1);
  EXPECT_FALSE(Named(items, "b").contains("isAdded"));
  EXPECT_EQ(Named(items, "camera")["isAdded"], true);
  EXPECT_EQ(report["trees"][1]["isAdded"], true);
  // The picture in the file lies in an archive of another name in each run.
  std::string const out = RunWell("info model.gltf --attributes").out;
  EXPECT_EQ(RunWell("info model.gltf --attributes").out, out);
  EXPECT_NE(RunWell("info model.gltf --attributes --ids").out, out);
  EXPECT_THAT(RunWell("info model.gltf --times").Lines()[0], HasSubstr("\" read "));
}

TEST_F(InfoTest, WalksAHierarchyOfAHundredThousandLevels) {
  constexpr int kLevels = 100000;
  json nodes = json::array();
  for (int i = 0; i != kLevels; ++i) {
    nodes.push_back({{"name", "n"}, {"translation", {1, 0, 0}}, {"children", {i + 1}}});
  }
  nodes.push_back({{"name", "leaf"}, {"mesh", 0}});
  m_files.Write("deep.gltf", MakeGltf({Triangle()}, nodes));
  Result const result = RunWell("info deep.gltf");
  auto const lines = result.Lines();
  EXPECT_GT(lines.size(), static_cast<std::size_t>(kLevels));
  EXPECT_EQ(lines.back(), "box (100000, 0, 0) .. (100001, 1, 0)");
  EXPECT_LT(result.out.size(), 500u * kLevels);
}

}  // namespace
}  // namespace corvanta::app_tests
