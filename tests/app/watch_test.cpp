#include <csignal>
#include <filesystem>

#include "tests/app/program.h"

namespace corvanta::app_tests {
namespace {

using nlohmann::json;

// A group with a model below it, and names that can be taken in more than one way.
class WatchTest : public ProgramTest {
 protected:
  WatchTest() {
    m_files.Write("model.gltf",
                  MakeGltf({Triangle()},
                           {{{"name", "top"}, {"children", {1, 2, 3}}},
                            {{"name", "part"}, {"mesh", 0}, {"translation", {1, 2, 3}}},
                            {{"name", "part.rotation"}},
                            {{"name", "a=b"}}},
                           {{"materials", json::array({{{"name", "paint"}}})}}));
  }

  /// Expects these lines among other members of the records; more may follow.
  void ExpectLines(std::string const& assignments, std::size_t count,
                   std::vector<json> const& rows) const {
    auto const lines = RunWell("watch model.gltf --json " + assignments).Lines();
    ASSERT_EQ(lines.size(), count);
    for (std::size_t i = 0; i != rows.size(); ++i) {
      json const line = json::parse(lines[i]);
      json expected = line;
      expected.update(rows[i]);
      EXPECT_EQ(line, expected);
      if (line["kind"] == "attributeChange") {
        EXPECT_GE(line["microseconds"], 0.0);
      }
    }
  }
};

TEST_F(WatchTest, PrintsEachEventWithOldAndNewValueInOrder) {
  auto const change = [](char const* attribute, json const& before, json const& after) -> json {
    return {{"kind", "attributeChange"},
            {"node", "part"},
            {"attribute", attribute},
            {"old", before},
            {"new", after}};
  };
  ExpectLines(
      "--set part.translation.x=5 --set part.isVisible=off --set part.translation.x=-2.5e1 "
      "--set part.billboardType=7",
      6,
      {change("translation.x", 1.0, 5.0), change("isVisible", true, false),
       change("translation.x", 5.0, -25.0), change("billboardType", 0, 7)});
  for (std::string const value : {"nan", "inf", "-inf"}) {
    ExpectLines("--set part.translation.x=" + value, 3, {change("translation.x", 1.0, value)});
  }
}

TEST_F(WatchTest, EndsWithBoxAndTransformBeforeAndAfter) {
  ExpectLines("--set part.scale.x=2 --set top.translation.y=10", 5,
              {json::object(),
               json::object(),
               json::parse(R"({
                  "before": {"min": [1, 2, 3], "max": [2, 3, 3]},
                  "after": {"min": [1, 12, 3], "max": [3, 13, 3]}})"),
               json::parse(R"({"node": "part",
                  "before": [1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 1, 2, 3, 1],
                  "after": [2, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 1, 12, 3, 1]})"),
               {{"node", "top"}}});
}

TEST_F(WatchTest, TakesTheLongestAttributeAndItemsBeforeOtherNodes) {
  // Both "part" and "part.rotation" are nodes.
  char const* const rows[][4] = {
      {"part.rotation.x=1", "part", "model", "rotation.x"},
      {"part.rotation.rotation.x=1", "part.rotation", "group", "rotation.x"},
      {"a=b.scale.x=1", "a=b", "group", "scale.x"},
      {"model.unit=2", "model", "scenegraphtree", "unit"},
      {"model.coordConversion=zup2yup", "model", "scenegraphtree", "coordConversion"},
  };
  for (auto const& [text, node, kind, attribute] : rows) {
    ExpectLines(std::string("--set ") + text, std::string(kind) == "scenegraphtree" ? 2 : 3,
                {{{"node", node}, {"nodeKind", kind}, {"attribute", attribute}}});
  }
}

TEST_F(WatchTest, RefusesInOneLineAndWritesNothing) {
  char const* const rows[][2] = {
      {"part", "isn't NAME.ATTRIBUTE=VALUE"},
      {"part.scale.x", "isn't NAME.ATTRIBUTE=VALUE"},
      {"nobody.scale.x=1", "no node of that name"},
      {"part.weight=1", "no such attribute"},
      {"part.scale.x=", "isn't a number"},
      {"part.scale.x=1m", "isn't a number"},
      {"part.scale.x=+-1", "isn't a number"},
      {"part.isVisible=maybe", "isn't true or false"},
      {"part.billboardType=1.5", "isn't a whole number"},
      {"part.billboardType=99999999999999999999", "isn't a whole number in range"},
      {"part.scale.x=1e39", "isn't a number in range"},
      {"part.scale.x=-1e999", "isn't a number in range"},
  };
  for (auto const& [text, reason] : rows) {
    ExpectRefused("watch model.gltf --json --set part.scale.y=2 --set", {{text, reason, text}});
  }
  ExpectRefused("watch none.gltf --set a.b=1", {{"", "no such file", "none.gltf", 1}});
}

TEST_F(WatchTest, PrintsTextForPeople) {
  auto const lines = RunWell("watch model.gltf --set part.translation.z=4").Lines();
  EXPECT_THAT(lines[0], testing::MatchesRegex(
                            "attributeChange model \"part\" translation.z: 3 -> 4 after .* us"));
  EXPECT_EQ(lines[1], "box before (1, 2, 3) .. (2, 3, 3)");
  EXPECT_EQ(lines[2], "box after  (1, 2, 4) .. (2, 3, 4)");
  EXPECT_EQ(lines[3], "model \"part\" global transform before");
  EXPECT_EQ(lines[7], "  1 2 3 1");
  EXPECT_EQ(lines.back(), "  1 2 4 1");
}

/// Replaces a file at once, as careful editors do.
void Replace(support::TemporaryFiles const& files, std::string const& name,
             std::string const& content) {
  files.Write("aside", content);
  std::filesystem::rename(files.GetFolder() / "aside", files.GetFolder() / name);
}

TEST_F(WatchTest, FollowsAFileAndPrintsWhatAReloadChanged) {
  json gltf = json::parse(Read("model.gltf"));
  pid_t const program = StartProgram(m_files, {"watch", "model.gltf", "--json"});
  auto const await = [&](char const* file, char const* text, std::size_t count = 1) {
    AwaitFromProgram(program, [&] { return Count(Read(file), text) == count; });
  };
  await("stdout", "watching");
  gltf["nodes"][1]["translation"] = {1, 2, 4};
  gltf["nodes"][3]["name"] = "other";
  Replace(m_files, "model.gltf", gltf.dump());
  await("stdout", "reload");
  m_files.Write("model.gltf", "{");
  await("stderr", "model.gltf: ");
  std::filesystem::remove(m_files.GetFolder() / "model.gltf");
  await("stderr", "no such file");
  gltf["nodes"][1]["translation"] = {1, 2, 5};
  m_files.Write("model.gltf", gltf.dump());
  await("stdout", "reload", 2);
  kill(program, SIGINT);
  Result const result = WaitForProgram(m_files, program);
  EXPECT_EQ(result.status, 128 + SIGINT);
  EXPECT_EQ(Count(result.err, "\n"), 2u) << result.err;
  std::vector<json> lines;
  for (std::string const& line : result.Lines()) lines.push_back(json::parse(line));
  auto const change = [](double before, double after) -> json {
    return {{"kind", "changed"},       {"nodeKind", "model"}, {"place", "top/part"},
            {"what", "translation.z"}, {"before", before},    {"after", after}};
  };
  EXPECT_THAT(lines, testing::ElementsAre(
                         json{{"kind", "watching"}, {"file", "model.gltf"}, {"files", 1}},
                         json{{"kind", "reload"}, {"differences", 3}},
                         json{{"kind", "removed"}, {"nodeKind", "group"}, {"place", "top/a=b"}},
                         json{{"kind", "added"}, {"nodeKind", "group"}, {"place", "top/other"}},
                         change(3, 4), json{{"kind", "reload"}, {"differences", 1}}, change(4, 5)));
}

TEST_F(WatchTest, EndsWhenItIsAskedTo) {
  EXPECT_EQ(RunWell("watch model.gltf --for 0").Lines().size(), 1u);
  EXPECT_EQ(Run("watch none.gltf").status, 1);
  m_files.Write("picture.png", MakePng());
  json gltf = json::parse(Read("model.gltf"));
  gltf["images"] = {{{"uri", "picture.png"}}};
  gltf["textures"] = {{{"source", 0}}};
  gltf["materials"][0]["pbrMetallicRoughness"] = {{"baseColorTexture", {{"index", 0}}}};
  gltf["meshes"][0]["primitives"][0]["material"] = 0;
  m_files.Write("model.gltf", gltf.dump());
  pid_t const program = StartProgram(m_files, {"watch", "model.gltf", "--once"});
  AwaitFromProgram(program, [&] { return Count(Read("stdout"), "2 files\n") == 1; });
  m_files.Write("picture.png", MakePng() + "and more");
  Result const result = WaitForProgram(m_files, program);
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.Lines(), testing::Contains("  changed image \"picture\" file"));
}

}  // namespace
}  // namespace corvanta::app_tests
