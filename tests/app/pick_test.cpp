#include <gtest/gtest.h>

#include "tests/app/program.h"

namespace corvanta::app_tests {
namespace {

using support::TemporaryFiles;

/// A triangle at z = 0 with corners at the origin and one along x and y, shown twice.
class PickTest : public testing::Test {
 protected:
  PickTest() {
    m_files.Write(
        "model.gltf",
        MakeGltf({Triangle()}, {{{"name", "top"}, {"children", {1, 2}}},
                                {{"name", "near"}, {"mesh", 0}, {"translation", {0, 0, 2}}},
                                {{"name", "far"}, {"mesh", 0}}}));
  }

  Result Pick(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), {"pick", "model.gltf"});
    return RunProgram(m_files, std::move(arguments));
  }

  TemporaryFiles m_files;
};

TEST_F(PickTest, PrintsHitsNearestFirst) {
  auto const hits = Pick({"--ray", "0.2,0.2,5,0,0,-1", "--json"}).Json()["hits"];
  ASSERT_EQ(hits.size(), 2u);
  EXPECT_EQ(hits[0]["path"].get<std::string>().find("near") != std::string::npos, true);
  EXPECT_NEAR(hits[0]["distance"].get<double>(), 3, 1e-6);
  EXPECT_NEAR(hits[1]["point"][2].get<double>(), 0, 1e-6);
  auto const beyond = Pick({"--ray", "0.2,0.2,5,0,0,-1", "--from-plane", "0,0,1,1", "--json"});
  EXPECT_EQ(beyond.Json()["hits"].size(), 1u);
  EXPECT_NEAR(beyond.Json()["plane"][2].get<double>(), 1, 1e-6);
  auto const inside = Pick({"--ray", "0.2,0.2,5,0,0,-1", "--area", "-1,-1,1,1,1,3", "--json"});
  EXPECT_EQ(inside.Json()["hits"].size(), 1u);
}

TEST_F(PickTest, SeesTheWholeSceneThroughItsCamera) {
  auto const grid = Pick({"--grid", "50", "--json"}).Json();
  EXPECT_GT(grid["raysThatHit"].get<int>(), 50);
  EXPECT_EQ(Pick({"--at", "0,0"}).out, "no hit\n");
}

TEST_F(PickTest, DrawsTheHits) {
  Result const miss = Pick({"--at", "0,0", "--size", "60x40", "-o", "miss.png"});
  if (miss.HasOneError("render", "EGL")) GTEST_SKIP() << miss.err;
  EXPECT_EQ(miss.status, 0);
  EXPECT_EQ(Pick({"--ray", "0.2,0.2,5,0,0,-1", "--size", "60x40", "-o", "hit.png"}).status, 0);
  std::string const hit = support::ReadBytes(m_files.At("hit.png"));
  EXPECT_EQ(hit.substr(1, 3), "PNG");
  EXPECT_NE(hit, support::ReadBytes(m_files.At("miss.png")));
}

TEST_F(PickTest, RefusesInOneLine) {
  for (std::vector<std::string> const& arguments :
       std::vector<std::vector<std::string>>{{},
                                             {"--ray", "0,0,5,0,0,0"},
                                             {"--at", "1,1", "--size", "0x5"},
                                             {"--grid", "0"},
                                             {"--grid", "5", "-o", "a.png"},
                                             {"--at", "1,1", "--size", "99999x9", "-o", "a.png"},
                                             {"--at", "1,nan"},
                                             {"--at", "1,-1e39"},
                                             {"--ray", "0,0,1e39,0,0,1"},
                                             {"--ray", "0,0,1,0,0,1", "--area", "0,0,0,1,1,1e39"},
                                             {"--ray", "0,0,1,0,0,1", "--from-plane", "0,0,1,1e39"},
                                             {"--at", "1,1", "--size=-5x5"},
                                             {"--at", "1,1", "--ray", "0,0,5,0,0,1"}}) {
    Result const result = Pick(arguments);
    EXPECT_EQ(result.status, 2);
    EXPECT_TRUE(result.HasOneError("options", ""));
  }
}

}  // namespace
}  // namespace corvanta::app_tests
