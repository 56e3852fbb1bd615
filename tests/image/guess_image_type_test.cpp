#include "tests/image/picture_files.h"
#include "tests/support/temporary_files.h"

namespace corvanta::data::environment_map {
namespace {

using pictures::Bmp;
using pictures::Dds;

class GuessImageType : public testing::Test {
 protected:
  NEnvironmentMapImageType Guess(std::string const& bytes) {
    return GuessEnvironmentMapImageType(m_files.Write("map", bytes).ToString().c_str());
  }
  support::TemporaryFiles const m_files;
};

TEST_F(GuessImageType, AnswersRectangularInEveryDoubt) {
  EXPECT_EQ(GuessEnvironmentMapImageType(m_files.At("missing.dds").ToString().c_str()),
            NEMIT_RECTANGULAR);
  EXPECT_EQ(GuessEnvironmentMapImageType(m_files.At("").ToString().c_str()), NEMIT_RECTANGULAR);
  EXPECT_EQ(Guess(""), NEMIT_RECTANGULAR);
  EXPECT_EQ(Guess("DDS"), NEMIT_RECTANGULAR);
  EXPECT_EQ(Guess("no picture"), NEMIT_RECTANGULAR);
  EXPECT_EQ(Guess(Dds(64, 64).substr(0, 127)), NEMIT_RECTANGULAR);
  EXPECT_EQ(Guess(Dds(64, 64, 0x200, 123)), NEMIT_RECTANGULAR);
  EXPECT_EQ(Guess(Dds(64, 64, 0x200, 124, 0x1006)), NEMIT_RECTANGULAR);
  EXPECT_EQ(Guess(Dds(0, 0)), NEMIT_RECTANGULAR);
}

TEST_F(GuessImageType, GoesByTheSizeAndTheCubeBit) {
  using Row = std::tuple<std::uint32_t, std::uint32_t, NEnvironmentMapImageType>;
  // 1.1 * 100 is a little above 110 in binary, so 110 by 100 lies within.
  for (auto const& [width, height, type] :
       {Row{1024, 1024, NEMIT_SQUARE}, Row{1024, 512, NEMIT_RECTANGULAR},
        Row{1024, 1000, NEMIT_SQUARE}, Row{120, 100, NEMIT_RECTANGULAR},
        Row{100, 120, NEMIT_RECTANGULAR}, Row{110, 100, NEMIT_SQUARE},
        Row{111, 100, NEMIT_RECTANGULAR}, Row{100, 110, NEMIT_SQUARE},
        Row{100, 111, NEMIT_RECTANGULAR}}) {
    EXPECT_EQ(Guess(Dds(width, height)), type) << width << " " << height;
    EXPECT_EQ(Guess(Dds(width, height, 0x200)), NEMIT_CUBE);
    EXPECT_EQ(Guess(Dds(width, height, 0xfdff)), type);
    EXPECT_EQ(Guess(Bmp(width, height)), type);
  }
  std::string const png = std::string("\x89PNG\r\n\x1a\n") + pictures::Big(13, 4) + "IHDR";
  std::string const rest(9, '\2');
  EXPECT_EQ(Guess(png + pictures::Big(17000, 4) + pictures::Big(17000, 4) + rest), NEMIT_SQUARE);
  EXPECT_EQ(Guess(png + pictures::Big(40000, 4) + pictures::Big(200, 4) + rest), NEMIT_RECTANGULAR);
  EXPECT_EQ(Guess(Dds(0xffffffff, 0xfffffff0)), NEMIT_SQUARE)
      << "a size in a DDS file has no limit";
}

}  // namespace
}  // namespace corvanta::data::environment_map
