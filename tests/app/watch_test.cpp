#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/app/program.h"

namespace corvanta::app_tests {
namespace {

using nlohmann::json;
using support::TemporaryFiles;

// A group with a model below it, and names that can be taken in more than one way.
class WatchTest : public testing::Test {
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

  Result Watch(std::vector<std::string> const& assignments) const {
    std::vector<std::string> arguments{"watch", "model.gltf", "--json"};
    for (std::string const& text : assignments) {
      arguments.push_back("--set");
      arguments.push_back(text);
    }
    return RunProgram(m_files, arguments);
  }

  static std::vector<json> Parse(Result const& result) {
    EXPECT_EQ(result.status, 0) << result.err;
    std::vector<json> lines;
    for (std::string const& line : result.Lines()) lines.push_back(json::parse(line));
    return lines;
  }

  TemporaryFiles const m_files;
};

TEST_F(WatchTest, PrintsEachEventWithOldAndNewValueInOrder) {
  auto const lines = Parse(Watch({"part.translation.x=5", "part.isVisible=off",
                                  "part.translation.x=-2.5e1", "part.billboardType=7"}));
  ASSERT_EQ(lines.size(), 6u);
  struct Row {
    char const* attribute;
    json before;
    json after;
  };
  Row const rows[] = {{"translation.x", 1.0, 5.0},
                      {"isVisible", true, false},
                      {"translation.x", 5.0, -25.0},
                      {"billboardType", 0, 7}};
  for (std::size_t i = 0; i != std::size(rows); ++i) {
    EXPECT_EQ(lines[i]["kind"], "attributeChange");
    EXPECT_EQ(lines[i]["node"], "part");
    EXPECT_EQ(lines[i]["attribute"], rows[i].attribute);
    EXPECT_EQ(lines[i]["old"], rows[i].before);
    EXPECT_EQ(lines[i]["new"], rows[i].after);
    EXPECT_GE(lines[i]["microseconds"], 0.0);
  }
}

TEST_F(WatchTest, EndsWithBoxAndTransformBeforeAndAfter) {
  auto const lines = Parse(Watch({"part.scale.x=2", "top.translation.y=10"}));
  ASSERT_EQ(lines.size(), 5u);
  EXPECT_EQ(lines[2]["before"], json::parse(R"({"min": [1, 2, 3], "max": [2, 3, 3]})"));
  EXPECT_EQ(lines[2]["after"], json::parse(R"({"min": [1, 12, 3], "max": [3, 13, 3]})"));
  EXPECT_EQ(lines[3]["node"], "part");
  EXPECT_EQ(lines[3]["before"], json::parse("[1,0,0,0, 0,1,0,0, 0,0,1,0, 1,2,3,1]"));
  EXPECT_EQ(lines[3]["after"], json::parse("[2,0,0,0, 0,1,0,0, 0,0,1,0, 1,12,3,1]"));
  EXPECT_EQ(lines[4]["node"], "top");
}

TEST_F(WatchTest, TakesTheLongestAttributeAndItemsBeforeOtherNodes) {
  // Both "part" and "part.rotation" are nodes.
  struct Row {
    char const* text;
    char const* node;
    char const* kind;
    char const* attribute;
  };
  Row const rows[] = {
      {"part.rotation.x=1", "part", "model", "rotation.x"},
      {"part.rotation.rotation.x=1", "part.rotation", "group", "rotation.x"},
      {"a=b.scale.x=1", "a=b", "group", "scale.x"},
      {"model.unit=2", "model", "scenegraphtree", "unit"},
      {"model.coordConversion=zup2yup", "model", "scenegraphtree", "coordConversion"},
  };
  for (Row const& row : rows) {
    SCOPED_TRACE(row.text);
    auto const lines = Parse(Watch({row.text}));
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines[0]["node"], row.node);
    EXPECT_EQ(lines[0]["nodeKind"], row.kind);
    EXPECT_EQ(lines[0]["attribute"], row.attribute);
  }
}

TEST_F(WatchTest, RefusesInOneLineAndWritesNothing) {
  struct Row {
    char const* text;
    char const* reason;
  };
  Row const rows[] = {
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
  for (Row const& row : rows) {
    SCOPED_TRACE(row.text);
    Result const result = Watch({"part.scale.y=2", row.text});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(result.HasOneError(row.text, row.reason)) << result.err;
  }
  Result const missing = RunProgram(m_files, {"watch", "none.gltf", "--set", "a.b=1"});
  EXPECT_EQ(missing.status, 1);
  EXPECT_TRUE(missing.HasOneError("none.gltf", "no such file")) << missing.err;
}

TEST_F(WatchTest, TakesValuesThatAreNotFinite) {
  for (std::string const value : {"nan", "inf", "-inf"}) {
    auto const lines = Parse(Watch({"part.translation.x=" + value}));
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[0]["new"], value);
  }
}

TEST_F(WatchTest, PrintsTextForPeople) {
  Result const result =
      RunProgram(m_files, {"watch", "model.gltf", "--set", "part.translation.z=4"});
  ASSERT_EQ(result.status, 0) << result.err;
  auto const lines = result.Lines();
  EXPECT_THAT(lines[0], testing::MatchesRegex(
                            "attributeChange model \"part\" translation.z: 3 -> 4 after .* us"));
  EXPECT_EQ(lines[1], "box before (1, 2, 3) .. (2, 3, 3)");
  EXPECT_EQ(lines[2], "box after  (1, 2, 4) .. (2, 3, 4)");
  EXPECT_EQ(lines[3], "model \"part\" global transform before");
  EXPECT_EQ(lines[7], "  1 2 3 1");
  EXPECT_EQ(lines.back(), "  1 2 4 1");
}

}  // namespace
}  // namespace corvanta::app_tests
