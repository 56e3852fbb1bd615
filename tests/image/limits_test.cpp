#include <sys/resource.h>
#include <chrono>

#include "corvanta/platform/picture.h"
#include "tests/image/picture_files.h"
#include "tests/support/temporary_files.h"

namespace corvanta {
namespace {

using core::uri::NPath;
using namespace pictures;  // the builders of test files

long GetPeakKilobytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

bool HasSize(NPath const& path, unsigned int expectedWidth, unsigned int expectedHeight) {
  unsigned int width = 0;
  unsigned int height = 0;
  return platform::GetPictureSize(path.ToString(), width, height) && width == expectedWidth &&
         height == expectedHeight;
}

struct Claim {
  char const* name;
  std::string (*build)(std::uint32_t width, std::uint32_t height);
};

// A file in each way of telling a size: by the decoder's own header reading, and by ours.
Claim const kClaims[] = {
    {"a.bmp", [](std::uint32_t width, std::uint32_t height) { return Bmp(width, height); }},
    {"a.tif", [](std::uint32_t width, std::uint32_t height) { return Tiff(width, height, 23000); }},
    {"a.gif", &Gif},
    {"a.sgi", &Sgi},
    {"a.wbmp", &Wbmp},
    {"a.dds", [](std::uint32_t width, std::uint32_t height) { return Dds(width, height); }},
    {"a.exr", [](std::uint32_t width, std::uint32_t height) { return Exr(width, height); }},
    {"a.j2k", &J2k},
    {"a.jp2", &Jp2},
};

TEST(PictureLimits, APictureInMemoryIsHeldToThemToo) {
  for (Claim const& claim : kClaims) {
    std::string const huge = claim.build(30000, 30000);
    EXPECT_EQ(platform::DecodePicture(huge.data(), huge.size(), L".bmp"), nullptr) << claim.name;
  }
  EXPECT_EQ(platform::DecodePicture(nullptr, 0, L".png"), nullptr);
  std::string const small = Bmp(3, 2) + std::string(2 * 12, '\x40');
  EXPECT_EQ(platform::DecodePicture(small.data(), small.size(), L"") != nullptr, kDecodes);
}

TEST(PictureLimits, AHugeClaimCostsNoMemoryAndNoTime) {
  support::TemporaryFiles const files;
  for (Claim const& claim : kClaims) {
    for (auto const& [width, height] :
         {std::pair{30000, 30000}, std::pair{16385, 1}, std::pair{1, 16385}}) {
      NPath const path = files.Write(claim.name, claim.build(width, height));
      long const before = GetPeakKilobytes();
      auto const start = std::chrono::steady_clock::now();
      EXPECT_EQ(platform::LoadPicture(path.ToString()), nullptr) << claim.name;
      unsigned int side = 7;
      EXPECT_FALSE(platform::GetPictureSize(path.ToString(), side, side)) << claim.name;
      EXPECT_EQ(side, 7U);
      EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1)) << claim.name;
      EXPECT_LT(GetPeakKilobytes() - before, 32 * 1024) << claim.name;
    }
    EXPECT_EQ(HasSize(files.Write(claim.name, claim.build(16384, 300)), 16384, 300), kDecodes)
        << claim.name;
  }
}

TEST(PictureLimits, FormatsThatCantBeHeldToThemAreRefused) {
  support::TemporaryFiles const files;
  std::string const xbm =
      "#define a_width 8\n#define a_height 1\nstatic char a_bits[] = {\n0x01 };\n";
  EXPECT_EQ(platform::LoadPicture(files.Write("a.xbm", xbm).ToString()), nullptr);
  // One tile for each pixel: the table of them would take 2 GiB.
  EXPECT_EQ(platform::LoadPicture(files.Write("a.exr", Exr(16384, 16384, 1)).ToString()), nullptr);
  EXPECT_FALSE(HasSize(files.Write("a.exr", Exr(16384, 16384, 1)), 16384, 16384));
  EXPECT_EQ(HasSize(files.Write("a.exr", Exr(100, 50, 64)), 100, 50), kDecodes);
  // Without a way to read the size alone, 16 MiB are the most.
  std::string const gif = Gif(8, 8);
  EXPECT_EQ(platform::LoadPicture(files.Write("a.gif", gif).ToString()) != nullptr, kDecodes);
  EXPECT_EQ(
      platform::LoadPicture(files.Write("a.gif", gif + std::string(16 << 20, ' ')).ToString()),
      nullptr);
}

TEST(PictureLimits, DamagedFilesEndQuietly) {
  support::TemporaryFiles const files;
  testing::internal::CaptureStderr();
  std::string const tiff = Tiff(64, 64, 4096);
  for (std::size_t length = 0; length < tiff.size(); length += length < 140 ? 7 : 1999) {
    platform::LoadPicture(files.Write("a.tif", tiff.substr(0, length)).ToString());
  }
  for (std::size_t at = 8; at < 130; at += 3) {
    for (char const byte : {'\xff', '\x80', '\x00'}) {
      std::string damaged = tiff;
      damaged[at] = byte;
      platform::LoadPicture(files.Write("a.tif", damaged).ToString());
    }
  }
  for (Claim const& claim : kClaims) {
    std::string const bytes = claim.build(40, 30);
    for (std::size_t length = 0; length < std::min<std::size_t>(bytes.size(), 160); length += 5) {
      platform::LoadPicture(files.Write(claim.name, bytes.substr(0, length)).ToString());
    }
  }
  // An attribute of 2 GiB beyond the end of the file.
  std::string exr = Exr(40, 30);
  exr.replace(exr.find("chlist") + 7, 4, Little(0x7fffffff, 4));
  EXPECT_EQ(platform::LoadPicture(files.Write("a.exr", exr).ToString()), nullptr);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

}  // namespace
}  // namespace corvanta
