#include "tests/app/program.h"

namespace corvanta::app_tests {
namespace {

using DemoTest = ProgramTest;

TEST_F(DemoTest, ShowsEverythingOnTheSampleOrAFile) {
  Result const result = RunWell("demo");
  EXPECT_EQ(result.err, "");
  // The sample has a front that faces the camera, one texture set, and no lights or cameras.
  for (char const* const line : {
           "import +\"spot\": 3233 vertices, 5856 triangles",
           "presets +camera at .*, 7 lights",
           "events +attributeChange model \"spot\" rotation.y: 0 -> 30",
           "pick +[1-9][0-9]* of 4096 rays hit",
           "projection +plane 3233, cylinder 3[2-9]..",
           "presentation +26 frames of .*, [1-9][0-9]* events",
           "lights +.*: 7 lamps",
           "switch +\"spot\" .*; 1 is in use, \"Yellow material for posture\"",
       }) {
    EXPECT_THAT(result.out, testing::ContainsRegex(line));
  }
  ExpectRefused("demo", {{"missing.obj", "", "missing.obj", 1}});
}

}  // namespace
}  // namespace corvanta::app_tests
