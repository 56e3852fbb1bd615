#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/app/program.h"

namespace corvanta::app_tests {
namespace {

using testing::ContainsRegex;

TEST(DemoTest, ShowsEverythingOnTheSampleOrAFile) {
  support::TemporaryFiles const files;
  Result const result = RunProgram(files, {"demo"});
  ASSERT_EQ(result.status, 0) << result.err;
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
    EXPECT_THAT(result.out, ContainsRegex(line));
  }
  Result const missing = RunProgram(files, {"demo", "missing.obj"});
  EXPECT_EQ(missing.status, 1);
  EXPECT_TRUE(missing.HasOneError("missing.obj", "")) << missing.err;
}

}  // namespace
}  // namespace corvanta::app_tests
