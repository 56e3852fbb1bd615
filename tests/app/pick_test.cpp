#include "tests/app/program.h"

namespace corvanta::app_tests {
namespace {

/// A triangle at z = 0 with corners at the origin and one along x and y, shown twice.
class PickTest : public ProgramTest {
 protected:
  PickTest() {
    m_files.Write(
        "model.gltf",
        MakeGltf({Triangle()}, {{{"name", "top"}, {"children", {1, 2}}},
                                {{"name", "near"}, {"mesh", 0}, {"translation", {0, 0, 2}}},
                                {{"name", "far"}, {"mesh", 0}}}));
  }
};

TEST_F(PickTest, PrintsHitsNearestFirst) {
  std::string const ray = "pick model.gltf --ray 0.2,0.2,5,0,0,-1";
  auto const hits = RunJson(ray)["hits"];
  ASSERT_EQ(hits.size(), 2u);
  EXPECT_THAT(hits[0]["path"], testing::HasSubstr("near"));
  EXPECT_NEAR(hits[0]["distance"].get<double>(), 3, 1e-6);
  EXPECT_NEAR(hits[1]["point"][2].get<double>(), 0, 1e-6);
  auto const beyond = RunJson(ray + " --from-plane 0,0,1,1");
  EXPECT_EQ(beyond["hits"].size(), 1u);
  EXPECT_NEAR(beyond["plane"][2].get<double>(), 1, 1e-6);
  EXPECT_EQ(RunJson(ray + " --area -1,-1,1,1,1,3")["hits"].size(), 1u);
}

TEST_F(PickTest, SeesTheWholeSceneThroughItsCamera) {
  EXPECT_GT(RunJson("pick model.gltf --grid 50")["raysThatHit"].get<int>(), 50);
  EXPECT_EQ(Run("pick model.gltf --at 0,0").out, "no hit\n");
}

TEST_F(PickTest, DrawsTheHits) {
  Result const miss = Run("pick model.gltf --at 0,0 --size 60x40 -o miss.png");
  if (miss.HasOneError("render", "EGL")) GTEST_SKIP() << miss.err;
  EXPECT_EQ(miss.status, 0);
  RunWell("pick model.gltf --ray 0.2,0.2,5,0,0,-1 --size 60x40 -o hit.png");
  EXPECT_EQ(Read("hit.png").substr(1, 3), "PNG");
  EXPECT_NE(Read("hit.png"), Read("miss.png"));
}

TEST_F(PickTest, RefusesInOneLine) {
  ExpectOptionsRefused(
      "pick model.gltf",
      {"", "--ray 0,0,5,0,0,0", "--at 1,1 --size 0x5", "--grid 0", "--grid 5 -o a.png",
       "--at 1,1 --size 99999x9 -o a.png", "--at 1,nan", "--at 1,-1e39", "--ray 0,0,1e39,0,0,1",
       "--ray 0,0,1,0,0,1 --area 0,0,0,1,1,1e39", "--ray 0,0,1,0,0,1 --from-plane 0,0,1,1e39",
       "--at 1,1 --size=-5x5", "--at 800,1", "--at 1,60 --size 80x60", "--at=-1,1",
       "--at 1,1 -o hits.gif", "--at 1,1 --ray 0,0,5,0,0,1"});
}

}  // namespace
}  // namespace corvanta::app_tests
