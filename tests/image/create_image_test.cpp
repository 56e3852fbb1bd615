#include <sys/stat.h>
#include <atomic>
#include <chrono>
#include <thread>

#include "tests/image/picture_files.h"
#include "tests/support/temporary_files.h"
#include "tests/support/zip_archive.h"

namespace corvanta::data::resource::image {
namespace {

using core::locator::NLocator;
using core::uri::NPath;
using core::uri::NUri;
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
  for (NImageFormat const format : {NIF_RAW, NIF_DECODED}) {
    ExpectNotFound(m_files.At("missing.jpg"), format);
    ExpectNotFound(m_files.At(""), format);
    ExpectNotFound({}, format);
    ExpectNotFound(m_files.Write("cut.jpg", pictures::Jpeg()).ToString() + L'\0', format);
  }
  std::string const jpeg = pictures::Jpeg();
  ExpectNotFound(m_files.Write("broken.jpg", jpeg.substr(0, 20) + std::string(200, 'x')),
                 NIF_DECODED);
  ExpectNotFound(m_files.Write("empty.jpg", ""), NIF_DECODED);
  ExpectNotFound(m_files.Write("text.tif", "no picture"), NIF_DECODED);
  ASSERT_EQ(mkfifo((m_files.GetFolder() / "pipe.jpg").c_str(), 0600), 0);
  ExpectNotFound(m_files.At("pipe.jpg"), NIF_RAW);
  ExpectNotFound(m_files.At("pipe.jpg"), NIF_DECODED);
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
  ExpectJpeg(*Load(m_files.Write("a.jpg", pictures::Jpeg()), NIF_DECODED));
  ExpectJpeg(*Load(m_files.Write("St\xc3\xbchle \xe6\xa4\x85\xe5\xad\x90.jpg", pictures::Jpeg()),
                   NIF_DECODED));
  ExpectJpeg(*Load(m_files.Write("really.tif", pictures::Jpeg()), NIF_DECODED));
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
  using Row = std::pair<std::string, NImageFormat>;
  for (auto const& [name, format] : {Row{"a.jpg", NIF_DECODED},
                                     Row{"a.JPEG", NIF_DECODED},
                                     Row{"a.tif", NIF_DECODED},
                                     Row{"a.TIFF", NIF_DECODED},
                                     Row{"a.gif", NIF_DECODED},
                                     Row{"a.exr", NIF_DECODED},
                                     Row{"a.pgm", NIF_DECODED},
                                     Row{"a.psd", NIF_DECODED},
                                     Row{"a.nef", NIF_DECODED},
                                     Row{"a.png.jpg", NIF_DECODED},
                                     Row{"a.bmp", NIF_RAW},
                                     Row{"a.PNG", NIF_RAW},
                                     Row{"a.ppm", NIF_RAW},
                                     Row{"a.tga", NIF_RAW},
                                     Row{"a.targa", NIF_RAW},
                                     Row{"a.dds", NIF_RAW},
                                     Row{"a.hdr", NIF_RAW},
                                     Row{"a.jpg.xyz", NIF_RAW},
                                     Row{"a", NIF_RAW},
                                     Row{"a.", NIF_RAW},
                                     Row{"\xc3\xa4.jpg", NIF_DECODED},
                                     Row{"a.jpg\xc3\xa4", NIF_RAW}}) {
    NLocator const locator(NUri::CreateFileUri(m_files.Write(name, "any content")));
    EXPECT_EQ(LocatorToFormat(locator), format) << name;
  }
  EXPECT_EQ(LocatorToFormat(NLocator(NUri::CreateFileUri(m_files.At("missing.jpg")))), NIF_RAW);
  EXPECT_EQ(LocatorToFormat(NLocator()), NIF_RAW);
  EXPECT_EQ(LocatorToFormat(internal::GetNotFoundImage()), NIF_RAW);
  for (wchar_t const* extension : {L".tif", L".TIF", L".Tiff", L".tIfF"}) {
    EXPECT_EQ(ExtensionToFormat(extension), NIF_DECODED);
  }
  for (wchar_t const* extension : {L"", L"tif", L".ti", L".tifff", L".tif ", L".jpg",
                                   L".t\x0131"
                                   L"f"}) {
    EXPECT_EQ(ExtensionToFormat(extension), NIF_RAW);
  }
}

}  // namespace
}  // namespace corvanta::data::resource::image
