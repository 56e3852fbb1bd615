#include <sys/stat.h>
#include <atomic>
#include <chrono>
#include <thread>

#include "tests/image/picture_files.h"
#include "tests/support/temporary_files.h"
#include "tests/support/zip_archive.h"

namespace corvanta::data::resource::image {
namespace {

using core::zip::SetPassProvider;

std::string GetBytes(NImage const& image) {
  return {static_cast<char const*>(image.GetData()), image.GetDataByteLength()};
}

class CreateImageTest : public testing::Test {
 protected:
  ~CreateImageTest() override {
    EXPECT_THAT(m_files.GetLeftovers(), IsEmpty());
    SetPassProvider({});
  }

  Pointer<NImage> Load(NPath const& path, NImageFormat format) {
    return CreateImage(NLocator(NUri::CreateFileUri(path)), format);
  }

  void ExpectNotFound(NPath const& path, NImageFormat format) {
    Pointer<NImage> const image = Load(path, format);
    EXPECT_EQ(image->GetType(), NIT_RAW);
    EXPECT_EQ(GetBytes(*image),
              support::ReadBytes(core::uri::GetFile(internal::GetNotFoundImage().GetUri())));
  }

  // The JPEG of picture_files.h as the bitmap it must become.
  static void ExpectJpeg(NImage const& image) {
#ifdef CORVANTA_WITH_FREEIMAGE
    ASSERT_EQ(image.GetType(), NIT_BITMAP);
    std::string const bytes = GetBytes(image);
    constexpr std::size_t kPalette = 256 * 4;
    ASSERT_EQ(bytes.size(), 40 + kPalette + 16 * 8);
    EXPECT_EQ(bytes.substr(0, 16), pictures::Little(40, 4) + pictures::Little(16, 4) +
                                       pictures::Little(8, 4) + pictures::Little(1, 2) +
                                       pictures::Little(8, 2));
    for (std::size_t i = 0; i < 16 * 8; ++i) {
      int const tone = static_cast<unsigned char>(bytes[40 + kPalette + i]);
      EXPECT_NEAR(tone, i % 16 < 8 ? 0 : 255, 8);
    }
#else
    EXPECT_EQ(image.GetType(), NIT_RAW);
#endif
  }

  support::TemporaryFiles const m_files;
};

TEST_F(CreateImageTest, WhatCantBeLoadedIsTheNotFoundPicture) {
  ASSERT_EQ(mkfifo((m_files.GetFolder() / "pipe.jpg").c_str(), 0600), 0);
  for (NImageFormat const format : {NIF_RAW, NIF_DECODED}) {
    ExpectNotFound(m_files.At("pipe.jpg"), format);
    ExpectNotFound(m_files.At("missing.jpg"), format);
    ExpectNotFound(m_files.At(""), format);
    ExpectNotFound({}, format);
    ExpectNotFound(m_files.Write("cut.jpg", pictures::Jpeg()).ToString() + L'\0', format);
  }
  for (std::string const& bytes : {pictures::Jpeg().substr(0, 20) + std::string(200, 'x'),
                                   std::string(), std::string("no picture")}) {
    ExpectNotFound(m_files.Write("broken.jpg", bytes), NIF_DECODED);
    ExpectNotFound(m_files.Write("broken.tif", bytes), NIF_DECODED);
  }
  EXPECT_EQ(CreateImage(NLocator(NUri::CreateInternalUri(L"/image")), NIF_RAW)->GetType(), NIT_RAW);
}

TEST_F(CreateImageTest, WithoutTheNotFoundPictureThereIsAnException) {
  core::uri::SetResourceFolder(m_files.At("nowhere"));
  EXPECT_THROW(Load(m_files.At("missing"), NIF_RAW), core::error::NFileError);
  core::uri::SetResourceFolder({});
  ExpectNotFound(m_files.At("missing"), NIF_RAW);
}

TEST_F(CreateImageTest, RawBytesComeWhole) {
  for (std::size_t const length : {0, 1, 8191, 8192, 8193, 16384, 100001}) {
    std::string content;
    for (std::size_t i = 0; i < length; ++i) content += static_cast<char>(i * i >> 3);
    NPath const path = m_files.Write("picture.png", content);
    Pointer<NImage> const image = Load(path, length % 2 ? NIF_RAW : static_cast<NImageFormat>(7));
    EXPECT_EQ(image->GetType(), NIT_RAW);
    ASSERT_EQ(image->GetDataByteLength(), length);
    EXPECT_TRUE(GetBytes(*image) == content);
    EXPECT_NE(Load(path, NIF_RAW), image);
  }
}

TEST_F(CreateImageTest, AJpegIsDecodedAlsoUnderForeignLettersAndAnotherName) {
  for (char const* const name :
       {"a.jpg", "St\xc3\xbchle \xe6\xa4\x85\xe5\xad\x90.jpg", "really.tif"}) {
    ExpectJpeg(*Load(m_files.Write(name, pictures::Jpeg()), NIF_DECODED));
  }
}

TEST_F(CreateImageTest, EntriesOfArchivesAreLoaded) {
  support::WriteZip(m_files.At("a.zip"),
                    {{"\xc3\xa4/b.jpg", pictures::Jpeg()},
                     {"c.png", "raw bytes"},
                     {"secret.jpg", pictures::Jpeg(), ZIP_EM_AES_256, "pass"}});
  NUri const archive = NUri::CreateFileUri(m_files.At("a.zip"));
  EXPECT_EQ(LocatorToFormat({archive, L"\x00e4/b.jpg"}), NIF_DECODED);
  EXPECT_EQ(LocatorToFormat({archive, L"c.png"}), NIF_RAW);
  ExpectJpeg(*CreateImage({archive, L"\x00e4/b.jpg"}, NIF_DECODED));
  EXPECT_EQ(GetBytes(*CreateImage({archive, L"c.png"}, NIF_RAW)), "raw bytes");

  NLocator const secret(archive, L"secret.jpg");
  EXPECT_THROW(CreateImage(secret, NIF_DECODED), core::zip::NZipPassError);
  EXPECT_THROW(LocatorToFormat(secret), core::zip::NZipPassError);
  EXPECT_THROW(CreateImage({archive, L"none.jpg"}, NIF_DECODED), core::zip::NZipError);
  SetPassProvider([this](NPath const& path, core::zip::NPassType type) -> std::wstring {
    return path == m_files.At("a.zip") && type == core::zip::NPT_ARCHIVE ? L"pass" : L"";
  });
  EXPECT_EQ(LocatorToFormat(secret), NIF_DECODED);
  ExpectJpeg(*CreateImage(secret, NIF_DECODED));
}

TEST_F(CreateImageTest, WithoutATemporaryFolderAnEntryThrowsAndOtherPicturesCome) {
  support::WriteZip(m_files.At("a.zip"), {{"b.jpg", pictures::Jpeg()}});
  NLocator const entry(NUri::CreateFileUri(m_files.At("a.zip")), L"b.jpg");
  auto const folder = m_files.GetFolder() / "tmp";
  std::filesystem::remove_all(folder);
  std::ofstream(folder) << "in the way";
  EXPECT_THROW(CreateImage(entry, NIF_DECODED), core::zip::NZipError);
  EXPECT_THROW(LocatorToFormat(entry), core::zip::NZipError);
  ExpectJpeg(*Load(m_files.Write("a.jpg", pictures::Jpeg()), NIF_DECODED));
  std::filesystem::remove(folder);
  std::filesystem::create_directory(folder);
  ExpectJpeg(*CreateImage(entry, NIF_DECODED));
  EXPECT_THAT(m_files.GetLeftovers(), IsEmpty());
}

TEST_F(CreateImageTest, ANestedCallThrowsAndNoThrowKeepsTheLock) {
  NPath const plain = m_files.Write("a.png", "bytes");
  support::WriteZip(m_files.At("a.zip"), {{"b.png", "entry"}});
  NLocator const entry(NUri::CreateFileUri(m_files.At("a.zip")), L"b.png");
  int nested = 0;
  SetPassProvider([&](NPath const&, core::zip::NPassType) -> std::wstring {
    EXPECT_THROW(Load(plain, NIF_RAW), NNestedCreationError);
    ++nested;
    return {};
  });
  EXPECT_EQ(GetBytes(*CreateImage(entry, NIF_RAW)), "entry");
  EXPECT_EQ(nested, 1);
  SetPassProvider(
      [](NPath const&, core::zip::NPassType) -> std::wstring { throw std::runtime_error("no"); });
  EXPECT_THROW(CreateImage(entry, NIF_RAW), std::runtime_error);
  SetPassProvider({});
  std::thread([&] { EXPECT_EQ(GetBytes(*Load(plain, NIF_RAW)), "bytes"); }).join();
  EXPECT_EQ(GetBytes(*Load(plain, NIF_RAW)), "bytes");
}

TEST_F(CreateImageTest, LoadsOfSeveralThreadsRunOneAtATime) {
  support::WriteZip(m_files.At("a.zip"), {{"b.jpg", pictures::Jpeg()}});
  NLocator const entry(NUri::CreateFileUri(m_files.At("a.zip")), L"b.jpg");
  std::atomic<int> inside{0};
  SetPassProvider([&inside](NPath const&, core::zip::NPassType) -> std::wstring {
    EXPECT_EQ(++inside, 1);
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
    --inside;
    return {};
  });
  std::vector<std::jthread> threads;
  for (int i = 0; i < 4; ++i)
    threads.emplace_back([&entry] { ExpectJpeg(*CreateImage(entry, NIF_DECODED)); });
}

TEST_F(CreateImageTest, FormatsAreJudgedByTheName) {
  auto const judge = [this](std::string const& name) {
    return LocatorToFormat(NLocator(NUri::CreateFileUri(m_files.Write(name, "any content"))));
  };
  for (char const* const name : {"a.jpg", "a.JPEG", "a.tif", "a.TIFF", "a.gif", "a.exr", "a.pgm",
                                 "a.psd", "a.nef", "a.png.jpg", "\xc3\xa4.jpg"}) {
    EXPECT_EQ(judge(name), NIF_DECODED) << name;
  }
  for (char const* const name : {"a.bmp", "a.PNG", "a.ppm", "a.tga", "a.targa", "a.dds", "a.hdr",
                                 "a.jpg.xyz", "a", "a.", "a.jpg\xc3\xa4"}) {
    EXPECT_EQ(judge(name), NIF_RAW) << name;
  }
  EXPECT_EQ(LocatorToFormat(NLocator(NUri::CreateFileUri(m_files.At("missing.jpg")))), NIF_RAW);
  EXPECT_EQ(LocatorToFormat(NLocator()), NIF_RAW);
  EXPECT_EQ(LocatorToFormat(internal::GetNotFoundImage()), NIF_RAW);
  for (wchar_t const* extension : {L".tif", L".TIF", L".Tiff", L".tIfF"}) {
    EXPECT_EQ(ExtensionToFormat(extension), NIF_DECODED);
  }
  std::wstring const dotless =
      L".t\x0131"
      L"f";
  for (wchar_t const* extension :
       {L"", L"tif", L".ti", L".tifff", L".tif ", L".jpg", dotless.c_str()}) {
    EXPECT_EQ(ExtensionToFormat(extension), NIF_RAW);
  }
}

using namespace environment_map;
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
  for (char const* const name : {"missing.dds", ""}) {
    EXPECT_EQ(GuessEnvironmentMapImageType(m_files.At(name).ToString().c_str()), NEMIT_RECTANGULAR);
  }
  for (std::string const& bytes :
       {std::string(), std::string("DDS"), std::string("no picture"), Dds(64, 64).substr(0, 127),
        Dds(64, 64, 0x200, 123), Dds(64, 64, 0x200, 124, 0x1006), Dds(0, 0)}) {
    EXPECT_EQ(Guess(bytes), NEMIT_RECTANGULAR) << bytes.size();
  }
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
}  // namespace corvanta::data::resource::image
