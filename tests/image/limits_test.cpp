#include <sys/resource.h>

#include "corvanta/platform/limits.h"
#include "corvanta/platform/picture.h"
#include "tests/image/picture_files.h"
#include "tests/support/temporary_files.h"

namespace corvanta {
namespace {

using namespace pictures;  // the builders of test files

long GetPeakKilobytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

bool HasSize(NPath const& path, unsigned int width, unsigned int height) {
  unsigned int w = 0, h = 0;
  return platform::GetPictureSize(path.ToString(), w, h) && w == width && h == height;
}

struct Claim {
  std::string name;
  std::string (*build)(std::uint32_t width, std::uint32_t height);
};

// A file in each way of telling a size: by the decoder's own header reading, and by ours.
Claim const kClaims[] = {
    {"a.bmp", &Bmp},
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

TEST(PictureLimits, AHugeClaimCostsNoMemoryAndItsSizeIsToldAllTheSame) {
  support::TemporaryFiles const files;
  for (Claim const& claim : kClaims) {
    for (auto const& [width, height] : {std::pair{30000, 30000}, std::pair{65535, 8193}}) {
      NPath const path = files.Write(claim.name, claim.build(width, height));
      long const before = GetPeakKilobytes();
      std::string reason;
      EXPECT_EQ(platform::LoadPicture(path.ToString(), &reason), nullptr) << claim.name;
      EXPECT_NE(reason, "") << claim.name;
      // The format without a signature is the decoder's to recognise.
      bool const isTold = kDecodes || claim.build != &Wbmp;
      bool const isBelow = claim.name != "a.tif";
      EXPECT_EQ(HasSize(path, width, height), isTold && (kDecodes || isBelow)) << claim.name;
      EXPECT_LT(GetPeakKilobytes() - before, 32 * 1024) << claim.name;
    }
  }
}

TEST(PictureLimits, TheyAreOnBytesAndCanBeSet) {
  support::TemporaryFiles const files;
  platform::NPictureLimits const usual = platform::GetPictureLimits();
  auto const getReason = [&files](std::string const& bytes,
                                  platform::NPictureLimits const& limits) {
    platform::SetPictureLimits(limits);
    std::string reason;
    platform::LoadPicture(files.Write("a", bytes).ToString(), &reason);
    platform::SetPictureLimits({});
    return reason;
  };
  if (!kDecodes) return;
  std::string const bitmap = Bmp(100, 50) + std::string(300 * 50, 'x');
  EXPECT_EQ(getReason(bitmap, usual), "");
  EXPECT_EQ(getReason(bitmap, {.bytes = 40 + 300 * 50}), "");
  EXPECT_EQ(getReason(bitmap, {.bytes = 300 * 50 - 1}), "decoded it would be too large");
  EXPECT_EQ(getReason(bitmap, {.pixels = 5000}), "");
  EXPECT_EQ(getReason(bitmap, {.pixels = 4999}), "100 x 50 pixels are too many");
  EXPECT_EQ(getReason(Bmp(5000, 5000), {.freeBytes = 1000}),
            "it claims more than a file of its length holds");
  // A length beyond an unsigned int can't be told, whatever the limits say.
  std::uint64_t const all = UINT64_MAX;
  EXPECT_EQ(getReason(Bmp(40000, 40000), {all, all, all, all}), "decoded it would be too large");
  EXPECT_EQ(getReason(J2k(0xffffffff, 0xffffffff), {all, all, all, all}),
            "decoded it would be too large");
  // Scans of nothing: 33 of them count thrice.
  std::string jpeg = Jpeg();
  jpeg.replace(jpeg.find("\xff\xc0") + 1, 1, "\xc2");
  std::size_t const scan = jpeg.find("\xff\xda");
  std::string many = jpeg.substr(0, scan);
  for (int i = 0; i < 33; ++i) many += jpeg.substr(scan, 10);
  EXPECT_EQ(getReason(many, {.bytes = 3 * 16 * 8 - 1}), "it has too many scans");
  EXPECT_NE(getReason(many, {.bytes = 2000}), "it has too many scans");
  // Without its program, and with the text that a PNG may hide.
  platform::SetDecoderProgramAllowed(false);
  std::string const png = std::string("\x89PNG\r\n\x1a\n") + Big(13, 4) + "IHDR" + Big(8, 4) +
                          Big(8, 4) + std::string("\x08\0\0\0\0xxxx", 9) + Big(2000, 4) + "zTXt" +
                          std::string(2004, 'x');
  EXPECT_EQ(getReason(png, {.bytes = 2000000}), "decoded it would be too large");
  EXPECT_EQ(getReason(Bmp(1000, 1000), {.bytes = 1000000}), "decoded it would be too large");
  platform::SetDecoderProgramAllowed(true);
}

// Behind a marker that it doesn't know, the decoder looks for the next one at once: the frame in
// what would be the segment of such a marker counts, not another one at its end.
TEST(PictureLimits, NoMarkerOfAJpegHidesItsFrame) {
  support::TemporaryFiles const files;
  std::string frame = Jpeg().substr(2);
  frame.replace(frame.find("\xff\xc0") + 5, 4, Big(20000, 2) + Big(30000, 2));
  for (unsigned const code : {0x02, 0x4f, 0xbf, 0xde, 0xf0, 0xfd}) {
    std::string const marker = "\xff" + std::string(1, static_cast<char>(code));
    std::string const bytes =
        "\xff\xd8" + marker + Big(2 + static_cast<std::uint32_t>(frame.size()), 2) + frame;
    EXPECT_TRUE(HasSize(files.Write("a.jpg", bytes + Jpeg().substr(2)), 30000, 20000)) << code;
  }
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

// Files that took the decoder down, kept it for ever or made it take gigabytes (tests/hostile): the
// not-found picture and a reason, and the next picture comes.
TEST(HostilePictures, CostTheNotFoundPictureAndAReason) {
  support::TemporaryFiles const files;
  std::vector<std::filesystem::path> hostile;
  for (auto const& entry : std::filesystem::directory_iterator(HOSTILE)) {
    static constexpr std::string_view kPictures[] = {".jpg", ".cut", ".gif", ".ras",
                                                     ".ppm", ".j2k", ".tif"};
    if (std::ranges::count(kPictures, entry.path().extension().string()) != 0)
      hostile.push_back(entry.path());
  }
  EXPECT_GE(hostile.size(), 9U);

  auto const node = New<NImageNode>(NNodeID(), nullptr, nullptr);
  EXPECT_EQ(node->GetImageError(), L"");
  for (bool const isAllowed : {true, false}) {
    platform::SetDecoderProgramAllowed(isAllowed);
    for (auto const& path : hostile) {
      SCOPED_TRACE(path.filename().string());
      std::string const name =
          path.extension() == ".ppm" ? "a.pgm" : "a" + path.extension().string();
      std::filesystem::copy_file(path, files.GetFolder() / name,
                                 std::filesystem::copy_options::overwrite_existing);
      node->SetImageLocator(NLocator(NUri::CreateFileUri(files.At(name))));
      EXPECT_EQ(node->GetImage()->GetType(), data::resource::image::NIT_RAW);
      EXPECT_THAT(core::text::ToNarrow(node->GetImageError()), testing::Not(IsEmpty()));
      node->SetImageLocator(NLocator(NUri::CreateFileUri(files.Write("sound.jpg", Jpeg()))));
      EXPECT_EQ(node->GetImage()->GetType(),
                kDecodes ? data::resource::image::NIT_BITMAP : data::resource::image::NIT_RAW);
      EXPECT_EQ(node->GetImageError() == L"", kDecodes);
    }
  }
  platform::SetDecoderProgramAllowed(true);
  EXPECT_THAT(files.GetLeftovers(), IsEmpty());
}

}  // namespace
}  // namespace corvanta
