#ifdef CORVANTA_WITH_FREEIMAGE

#include <FreeImage.h>

#include "corvanta/platform/limits.h"
#include "corvanta/platform/picture.h"
#include "tests/image/picture_files.h"
#include "tests/support/temporary_files.h"

// The picture library, which this test writes its files with, keeps some memory for ever.
extern "C" char const* __lsan_default_suppressions() { return "leak:libfreeimage"; }

namespace corvanta::platform {
namespace {

using pictures::Big;
using pictures::Little;

struct Unload {
  void operator()(FIBITMAP* bitmap) const { FreeImage_Unload(bitmap); }
};
using Bitmap = std::unique_ptr<FIBITMAP, Unload>;

// A picture with a palette and a resolution, its bytes told from each other.
Bitmap Draw(FREE_IMAGE_TYPE type, unsigned bits, unsigned width, unsigned height,
            bool is565 = false) {
  Bitmap bitmap(FreeImage_AllocateT(type, static_cast<int>(width), static_cast<int>(height),
                                    static_cast<int>(bits), is565 ? 0xf800 : 0, is565 ? 0x7e0 : 0,
                                    is565 ? 0x1f : 0));
  FreeImage_SetDotsPerMeterX(bitmap.get(), 3937);
  FreeImage_SetDotsPerMeterY(bitmap.get(), 7874);
  for (unsigned i = 0; i < FreeImage_GetColorsUsed(bitmap.get()); ++i)
    FreeImage_GetPalette(bitmap.get())[i] = {static_cast<BYTE>(255 - i), static_cast<BYTE>(3 * i),
                                             static_cast<BYTE>(7 * i), 0};
  bool const isFloat = type == FIT_FLOAT || type == FIT_RGBF || type == FIT_RGBAF;
  for (unsigned y = 0; y < height; ++y) {
    BYTE* const row = FreeImage_GetScanLine(bitmap.get(), static_cast<int>(y));
    for (unsigned i = 0; i < FreeImage_GetLine(bitmap.get()); ++i)
      row[i] = static_cast<BYTE>(5 * y + 11 * i + (i * i >> 5));
    for (unsigned i = 0; isFloat && i < FreeImage_GetLine(bitmap.get()) / sizeof(float); ++i) {
      float const value = 0.01f * static_cast<float>(i) + 0.25f * static_cast<float>(y);
      std::memcpy(row + i * sizeof value, &value, sizeof value);
    }
  }
  return bitmap;
}

class PictureFormats : public testing::Test {
 protected:
  // What comes is what the decoder makes of the file: type, depth, palette, resolution, pixels.
  void ExpectAsDecoded(FREE_IMAGE_FORMAT format, NPath const& path, std::string const& name) {
    SCOPED_TRACE(name);
    std::string const narrow = core::text::ToNarrow(path.ToString());
    Bitmap const expected(FreeImage_Load(format, narrow.c_str(), 0));
    ASSERT_TRUE(expected);
    std::string reason;
    auto const picture = LoadPicture(path.ToString(), &reason);
    ASSERT_TRUE(picture) << reason;
    EXPECT_EQ(static_cast<int>(picture->GetPixelType()), FreeImage_GetImageType(expected.get()));
    unsigned const masks = picture->GetMasksByteLength();
    ASSERT_EQ(picture->GetByteLength() - masks, FreeImage_GetDIBSize(expected.get()));
    auto const* const bytes = static_cast<unsigned char const*>(picture->GetInfoHeader());
    std::size_t const head =
        sizeof(BITMAPINFOHEADER) + 4 * FreeImage_GetColorsUsed(expected.get()) + masks;
    EXPECT_EQ(std::memcmp(bytes, FreeImage_GetInfoHeader(expected.get()), head), 0);
    EXPECT_EQ(std::memcmp(bytes + head, FreeImage_GetBits(expected.get()),
                          picture->GetByteLength() - head),
              0);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(bytes + head) % 16, 0U);
    unsigned width = 0, height = 0;
    EXPECT_TRUE(GetPictureSize(path.ToString(), width, height));
    EXPECT_EQ(width, FreeImage_GetWidth(expected.get()));
    EXPECT_EQ(height, FreeImage_GetHeight(expected.get()));
    // And the image of it, whose count leaves the masks out.
    auto const image = data::resource::image::CreateImage(NLocator(NUri::CreateFileUri(path)),
                                                          data::resource::image::NIF_DECODED);
    EXPECT_EQ(image->GetType(), data::resource::image::NIT_BITMAP);
    EXPECT_EQ(image->GetDataByteLength(), FreeImage_GetDIBSize(expected.get()));
  }

  void ExpectBytes(FREE_IMAGE_FORMAT format, std::string const& name, std::string const& bytes) {
    ExpectAsDecoded(format, m_files.Write(name, bytes), name);
  }

  void ExpectWritten(FREE_IMAGE_FORMAT format, FIBITMAP& bitmap, std::string const& name) {
    NPath const path = m_files.At(name);
    ASSERT_TRUE(FreeImage_Save(format, &bitmap, core::text::ToNarrow(path.ToString()).c_str(), 0))
        << name;
    ExpectAsDecoded(format, path, name);
  }

  support::TemporaryFiles const m_files;
};

// Every format that the decoder can write.
TEST_F(PictureFormats, ComeThroughAsTheDecoderMadeThem) {
  int count = 0;
  for (int i = 0; i < FreeImage_GetFIFCount(); ++i) {
    auto const format = static_cast<FREE_IMAGE_FORMAT>(i);
    if (format == FIF_JXR) continue;  // see below
    if (!FreeImage_FIFSupportsWriting(format) || !FreeImage_FIFSupportsReading(format)) continue;
    std::string const name = std::string("a.") + FreeImage_GetFormatFromFIF(format);
    Bitmap bitmap;
    for (int const bits : {24, 8, 32, 1, 4})
      if (!bitmap && FreeImage_FIFSupportsExportBPP(format, bits))
        bitmap = Draw(FIT_BITMAP, static_cast<unsigned>(bits), 64, 64);
    for (FREE_IMAGE_TYPE const type : {FIT_RGBF, FIT_FLOAT})
      if (!bitmap && FreeImage_FIFSupportsExportType(format, type)) bitmap = Draw(type, 8, 64, 64);
    if (!bitmap) continue;
    ExpectWritten(format, *bitmap, name);
    ++count;
  }
  EXPECT_GE(count, 20);
}

TEST_F(PictureFormats, EveryTypeAndDepthStays) {
  for (unsigned const bits : {1u, 4u, 8u, 16u, 24u, 32u}) {
    if (bits != 16) ExpectWritten(FIF_TIFF, *Draw(FIT_BITMAP, bits, 33, 9), "bits.tif");
    ExpectWritten(FIF_BMP, *Draw(FIT_BITMAP, bits, 33, 9, bits == 16), "bits.bmp");
  }
  for (int type = FIT_UINT16; type <= FIT_RGBAF; ++type) {
    if (FreeImage_FIFSupportsExportType(FIF_TIFF, static_cast<FREE_IMAGE_TYPE>(type)))
      ExpectWritten(FIF_TIFF, *Draw(static_cast<FREE_IMAGE_TYPE>(type), 8, 33, 9), "type.tif");
  }
}

// Small, copied, and beyond what is copied; and wide ones.
TEST_F(PictureFormats, EverySizeComesWhole) {
  for (auto const& [width, height] :
       {std::pair{1u, 1u}, std::pair{40000u, 200u}, std::pair{5000u, 4700u}})
    ExpectWritten(FIF_BMP, *Draw(FIT_BITMAP, 24, width, height), "size.bmp");
  Bitmap const wide = Draw(FIT_BITMAP, 24, 40000, 200);
  for (FREE_IMAGE_FORMAT const format : {FIF_JPEG, FIF_TIFF, FIF_TARGA})
    ExpectWritten(format, *wide, std::string("wide.") + FreeImage_GetFormatFromFIF(format));
  ExpectWritten(FIF_GIF, *Draw(FIT_BITMAP, 8, 40000, 200), "wide.gif");
  ExpectWritten(FIF_BMP, *Draw(FIT_BITMAP, 24, 5000, 4700), "again.bmp");
}

// Those that it can only read.
TEST_F(PictureFormats, FilesWrittenByHandComeThrough) {
  std::string ramp;
  for (int i = 0; i < 256; ++i) ramp += std::string(3, static_cast<char>(i));
  auto const chunk = [](std::string const& name, std::string const& content) {
    return name + Big(static_cast<std::uint32_t>(content.size()), 4) + content;
  };
  std::string const amiga =
      "PBM " +
      chunk("BMHD", Big(4, 2) + Big(2, 2) + Big(0, 4) + std::string("\x08\0\0\0", 4) + Big(0, 2) +
                        "\1\1" + Big(4, 2) + Big(2, 2)) +
      chunk("CMAP", ramp) + chunk("BODY", "\1\2\3\4\5\6\7\x08");
  ExpectBytes(FIF_IFF, "a.iff", chunk("FORM", amiga));

  std::string const box = Big(0, 4) + Big(2, 2) + Big(4, 2);
  std::string colors = Big(0, 6) + Big(255, 2);
  for (std::uint32_t i = 0; i < 256; ++i)
    colors += Big(i, 2) + Big(257 * i, 2) + Big(257 * i, 2) + Big(257 * i, 2);
  std::string const mac = std::string(512, '\0') + Big(0, 2) + box + Big(0x001102ff, 4) +
                          Big(0x0c00, 2) + Big(0xfffe0000, 4) + Big(0x480000, 4) +
                          Big(0x480000, 4) + box + Big(0, 4) + Big(0x98, 2) + Big(0x8004, 2) + box +
                          Big(0, 4) + Big(0, 4) + Big(0x480000, 4) + Big(0x480000, 4) + Big(0, 2) +
                          Big(8, 2) + Big(1, 2) + Big(8, 2) + Big(0, 12) + colors + box + box +
                          Big(0, 2) + "\1\2\3\4\5\6\7\x08" + Big(0xff, 2);
  ExpectBytes(FIF_PICT, "a.pct", mac);
  ExpectBytes(FIF_XBM, "a.xbm",
              "#define a_width 8\n#define a_height 2\nstatic char a_bits[] = {\n0x01, 0x82 };\n");
  ExpectBytes(FIF_RAS, "a.ras",
              Big(0x59a66a95, 4) + Big(4, 4) + Big(2, 4) + Big(24, 4) + Big(24, 4) + Big(1, 4) +
                  Big(0, 8) + ramp.substr(30, 24));
  std::string pcx = std::string("\x0a\5\1\x08", 4) + Little(0, 4) + Little(3, 2) + Little(1, 2) +
                    Little(72, 2) + Little(72, 2);
  pcx += std::string(65 - pcx.size(), '\0') + "\1" + Little(4, 2) + Little(1, 2);
  ExpectBytes(FIF_PCX, "a.pcx",
              pcx + std::string(128 - pcx.size(), '\0') + "\1\2\3\4\5\6\7\x08\x0c" + ramp);
  std::string const sgi =
      Big(474, 2) + std::string("\0\1", 2) + Big(3, 2) + Big(4, 2) + Big(2, 2) + Big(3, 2);
  ExpectBytes(FIF_SGI, "a.sgi", sgi + std::string(512 - sgi.size(), '\0') + ramp.substr(60, 24));
  EXPECT_EQ(LoadPicture(m_files.Write("a.xbm", "#define a_width 8\n").ToString()), nullptr);
}

// The decoder's own reader of JPEG XR doesn't work: the program brings another. The file has no
// loss.
TEST_F(PictureFormats, JpegXrComesThrough) {
  std::string reason;
  auto const picture = LoadPicture(core::text::ToWide(PICTURES "/lossless_16x8.jxr"), &reason);
  ASSERT_TRUE(picture) << reason;
  EXPECT_EQ(picture->GetPixelType(), PT_BITMAP);
  ASSERT_EQ(picture->GetByteLength(), 40U + 8 * 48);
  auto const* const bytes = static_cast<unsigned char const*>(picture->GetInfoHeader());
  for (unsigned y = 0; y < 8; ++y)
    for (unsigned x = 0; x < 48; ++x)
      ASSERT_EQ(bytes[40 + 48 * y + x], static_cast<unsigned char>(5 * x + 20 * y))
          << x << " " << y;
  unsigned width = 0, height = 0;
  EXPECT_TRUE(GetPictureSize(core::text::ToWide(PICTURES "/lossless_16x8.jxr"), width, height));
  EXPECT_EQ(std::pair(width, height), std::pair(16U, 8U));
}

TEST_F(PictureFormats, WithoutTheProgramThreeOfThemAreDecodedHere) {
  Bitmap const bitmap = Draw(FIT_BITMAP, 24, 64, 64);
  std::string reason;
  for (bool const isMissing : {false, true}) {
    if (isMissing) SetDecoderProgram(m_files.At("no program").ToString());
    SetDecoderProgramAllowed(isMissing);
    for (FREE_IMAGE_FORMAT const format : {FIF_PNG, FIF_BMP, FIF_JPEG})
      ExpectWritten(format, *bitmap, "a." + std::to_string(format));
    ASSERT_TRUE(FreeImage_Save(FIF_TIFF, bitmap.get(), (m_files.GetFolder() / "a.tif").c_str(), 0));
    EXPECT_EQ(LoadPicture(m_files.At("a.tif").ToString(), &reason), nullptr);
    EXPECT_NE(reason.find("PNG, JPEG and BMP alone"), std::string::npos) << reason;
  }
  SetDecoderProgram({});
  ExpectAsDecoded(FIF_TIFF, m_files.At("a.tif"), "tiff");
}

}  // namespace
}  // namespace corvanta::platform

#endif
