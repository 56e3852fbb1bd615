#include <gtest/gtest.h>

#include "corvanta/data/environment_map/guess_image_type.h"
#include "tests/image/picture_files.h"
#include "tests/support/temporary_files.h"

namespace corvanta::data::environment_map {
namespace {

using pictures::Bmp;
using pictures::Dds;
using pictures::kDecodes;

TEST(GuessImageType, AnswersRectangularInEveryDoubt) {
  support::TemporaryFiles const files;
  auto const guess = [&](std::string const& bytes) {
    return GuessEnvironmentMapImageType(files.Write("map", bytes).ToString().c_str());
  };
  EXPECT_EQ(GuessEnvironmentMapImageType(files.At("missing.dds").ToString().c_str()),
            NEMIT_RECTANGULAR);
  EXPECT_EQ(GuessEnvironmentMapImageType(files.At("").ToString().c_str()), NEMIT_RECTANGULAR);
  EXPECT_EQ(guess(""), NEMIT_RECTANGULAR);
  EXPECT_EQ(guess("DDS"), NEMIT_RECTANGULAR);
  EXPECT_EQ(guess("no picture"), NEMIT_RECTANGULAR);
  EXPECT_EQ(guess(Dds(64, 64).substr(0, 127)), NEMIT_RECTANGULAR);
  EXPECT_EQ(guess(Dds(64, 64, 0x200, 123)), NEMIT_RECTANGULAR);
  EXPECT_EQ(guess(Dds(64, 64, 0x200, 124, 0x1006)), NEMIT_RECTANGULAR);
  EXPECT_EQ(guess(Dds(0, 0)), NEMIT_RECTANGULAR);
}

TEST(GuessImageType, GoesByTheSizeAndTheCubeBit) {
  support::TemporaryFiles const files;
  auto const guess = [&](std::string const& bytes) {
    return GuessEnvironmentMapImageType(files.Write("map", bytes).ToString().c_str());
  };
  struct Row {
    std::uint32_t width;
    std::uint32_t height;
    NEnvironmentMapImageType type;
  };
  // 1.1 * 100 is a little above 110 in binary, so 110 by 100 lies within.
  for (Row const& row : {Row{1024, 1024, NEMIT_SQUARE}, Row{1024, 512, NEMIT_RECTANGULAR},
                         Row{1024, 1000, NEMIT_SQUARE}, Row{120, 100, NEMIT_RECTANGULAR},
                         Row{100, 120, NEMIT_RECTANGULAR}, Row{110, 100, NEMIT_SQUARE},
                         Row{111, 100, NEMIT_RECTANGULAR}, Row{100, 110, NEMIT_SQUARE},
                         Row{100, 111, NEMIT_RECTANGULAR}}) {
    EXPECT_EQ(guess(Dds(row.width, row.height)), row.type) << row.width << " " << row.height;
    EXPECT_EQ(guess(Dds(row.width, row.height, 0x200)), NEMIT_CUBE);
    EXPECT_EQ(guess(Dds(row.width, row.height, 0xfdff)), row.type);
    EXPECT_EQ(guess(Bmp(row.width, row.height)), kDecodes ? row.type : NEMIT_RECTANGULAR);
  }
  EXPECT_EQ(guess(Dds(0xffffffff, 0xfffffff0)), NEMIT_SQUARE)
      << "a size in a DDS file has no limit";
}

}  // namespace
}  // namespace corvanta::data::environment_map
