#include <sys/stat.h>

#include "corvanta/platform/limits.h"
#include "corvanta/platform/temporary.h"
#include "tests/support/temporary_files.h"
#include "tests/support/test.h"
#include "tests/support/zip_archive.h"

namespace corvanta::core::zip {
namespace {

using namespace platform;
using support::ReadBytes;
using text::ToNarrow;

class Zip : public testing::Test {
 protected:
  // Every outcome must leave the temporary folder as it was.
  ~Zip() override { EXPECT_THAT(m_files.GetLeftovers(), IsEmpty()); }

  NPath Archive(std::vector<support::ZipEntry> const& entries) {
    support::WriteZip(m_files.At("archive.zip"), entries);
    return m_files.At("archive.zip");
  }

  /// The bytes of an entry, unpacked.
  static std::string Unzip(NPath const& archive, NPath const& entry,
                           std::wstring const& pass = L"") {
    return ReadBytes(NUnzipToTemporary(archive, entry, pass).GetTemporaryFilePath());
  }

  support::TemporaryFiles const m_files;
};

TEST_F(Zip, WhatIsNotAnArchiveThrows) {
  NPath const archive = Archive({{"a.txt", "text"}});
  for (std::wstring const entry : {L"b.txt", L"A.txt", L""}) {
    EXPECT_THROW(NUnzipToTemporary(archive, entry, L""), NZipError) << ToNarrow(entry);
  }
  EXPECT_THROW(NUnzipToTemporary(archive, std::wstring(L"a.txt\0x", 7), L""), NZipError);
  ASSERT_EQ(mkfifo((m_files.GetFolder() / "pipe.zip").c_str(), 0600), 0);
  m_files.Write("text.zip", "no archive");
  for (char const* const name : {"none.zip", "", "text.zip", "pipe.zip"}) {
    EXPECT_THROW(NUnzipToTemporary(m_files.At(name), L"a.txt", L""), NZipError) << name;
  }
}

TEST_F(Zip, DamagedEntriesThrow) {
  std::string content;
  for (int i = 0; i < 20000; ++i) content += std::to_string(i * 7919 % 10007);
  std::string const bytes = ReadBytes(Archive({{"a.txt", content}}));
  for (std::size_t at : {bytes.size() / 4, bytes.size() / 2}) {
    std::string damaged = bytes;
    damaged[at] = static_cast<char>(damaged[at] ^ 0x55);
    EXPECT_THROW(NUnzipToTemporary(m_files.Write("damaged.zip", damaged), L"a.txt", L""), NZipError)
        << at;
  }
  EXPECT_THROW(NUnzipToTemporary(m_files.Write("short.zip", bytes.substr(0, bytes.size() / 2)),
                                 L"a.txt", L""),
               NZipError);
}

TEST_F(Zip, EncryptedEntriesNeedTheirPass) {
  for (zip_uint16_t const method : {ZIP_EM_AES_256, ZIP_EM_TRAD_PKWARE}) {
    NPath const archive =
        Archive({{"a.txt", "secret", method, "gr\xc3\xbcn"}, {"open.txt", "open"}});
    EXPECT_THROW(NUnzipToTemporary(archive, L"a.txt", L""), NZipPassError);
    EXPECT_THROW(NUnzipToTemporary(archive, L"a.txt", L"rot"), NZipPassError);
    EXPECT_EQ(Unzip(archive, L"a.txt", L"gr\x00fcn"), "secret");
    EXPECT_EQ(Unzip(archive, L"open.txt", L"rot"), "open");
  }
}

// Traditional encryption knows a wrong pass by one byte alone, so among some 600 a few are only
// found out by what they unpack.
TEST_F(Zip, NoWrongPassIsTakenForARightOne) {
  NPath const archive = Archive({{"a.txt", "some secret text", ZIP_EM_TRAD_PKWARE, "right"}});
  for (int i = 0; i < 600; ++i) {
    EXPECT_THROW(NUnzipToTemporary(archive, L"a.txt", L"wrong" + std::to_wstring(i)),
                 NZipPassError);
  }
}

TEST_F(Zip, EntriesThatGrowBeyondMeasureThrow) {
  constexpr std::size_t kMiB = 1024 * 1024;
  std::string const zeros(70 * kMiB, '\0');  // packs to about a thousandth
  NPath const archive = Archive({{"a.bin", zeros}, {"b.bin", zeros.substr(0, 60 * kMiB)}});
  EXPECT_THROW(NUnzipToTemporary(archive, L"a.bin", L""), NZipError);
  EXPECT_EQ(Unzip(archive, L"b.bin").size(), 60 * kMiB);

  // The same with an archive that claims a small size for it.
  std::string bytes = ReadBytes(archive);
  std::size_t const directory = bytes.find("PK\x01\x02");
  ASSERT_NE(directory, std::string::npos);
  bytes.replace(directory + 24, 4, std::string("\0\1\0\0", 4));
  bytes.replace(22, 4, std::string("\0\1\0\0", 4));
  EXPECT_THROW(NUnzipToTemporary(m_files.Write("liar.zip", bytes), L"a.bin", L""), NZipError);
}

// An entry's claim is judged before its pass is asked for, so a claim alone tells what is allowed.
// What counts of the packed size is no more than the archive has: the filler gives it 2 or 3 MiB.
TEST_F(Zip, LimitsAreThoseStated) {
  constexpr std::uint32_t kMiB = 1024 * 1024;
  for (std::uint32_t const fillerBytes : {2 * kMiB, 3 * kMiB}) {
    std::string filler(fillerBytes, '\0');
    std::uint32_t state = 1;
    for (char& c : filler) c = static_cast<char>((state = state * 1664525 + 1013904223) >> 24);
    std::string bytes = ReadBytes(
        Archive({{"a.bin", "x", ZIP_EM_AES_256, "pass"}, {"filler", filler, ZIP_EM_NONE, ""}}));
    std::size_t const directory = bytes.rfind("PK\x01\x02", bytes.rfind("filler") - 47);
    ASSERT_NE(directory, std::string::npos);
    auto const expectMost = [&](std::uint32_t packed, std::uint32_t most) {
      for (std::uint32_t const size : {most, most + 1}) {
        std::uint32_t const claims[]{packed, size};
        std::memcpy(&bytes[directory + 20], claims, sizeof claims);
        try {
          NUnzipToTemporary(m_files.Write("claim.zip", bytes), L"a.bin", L"");
          FAIL();
        } catch (NZipError const& error) {
          bool const isAllowed = dynamic_cast<NZipPassError const*>(&error) != nullptr;
          EXPECT_EQ(isAllowed, size == most) << packed << " bytes claim to hold " << size;
        }
      }
    };
    expectMost(1, 64 * kMiB);
    expectMost(kMiB, 200 * kMiB);
    auto const length = static_cast<std::uint32_t>(bytes.size());
    for (std::uint32_t const packed : {4 * kMiB, 0xfffffff0u}) {
      expectMost(packed, std::min(200 * length, 512 * kMiB));
    }
    platform::SetArchiveLimits({.bytes = 300 * kMiB, .ratio = 150, .freeBytes = kMiB});
    expectMost(1, kMiB);
    expectMost(kMiB, 150 * kMiB);
    expectMost(4 * kMiB, 300 * kMiB);
    platform::SetArchiveLimits({});
  }
}

TEST_F(Zip, TheFileHoldsTheEntryAsLongAsTheObject) {
  NPath const archive = Archive({{"dir/\xc3\xa4.jpg", std::string("a\0b", 3)}, {"empty", ""}});
  NPath path;
  {
    NUnzipToTemporary const unzipped(archive, L"dir/\x00e4.jpg", L"");
    NUnzipToTemporary const again(archive, L"dir/\x00e4.jpg", L"");
    path = unzipped.GetTemporaryFilePath();
    EXPECT_NE(again.GetTemporaryFilePath(), path);
    EXPECT_EQ(ReadBytes(path), std::string("a\0b", 3));
    EXPECT_EQ(Unzip(archive, L"empty"), "");
  }
  EXPECT_FALSE(uri::Exists(path));
}

TEST_F(Zip, OfTheEntrysNameOnlyAPlainExtensionIsKept) {
  using Row = std::pair<std::string, std::wstring>;
  for (auto const& [name, extension] :
       {Row{"a.jpg", L".jpg"}, Row{"a.b.TIFF", L".TIFF"}, Row{"a.12345678", L".12345678"},
        Row{"a.123456789", L""}, Row{"a", L""}, Row{"a.", L""}, Row{"a.b c", L""},
        Row{"a.\xc3\xa4", L""}, Row{"../../x.p~g", L""}, Row{"/etc/x.png", L".png"}}) {
    NPath const archive = Archive({{name, "x"}});
    NUnzipToTemporary const unzipped(archive, text::ToWide(name), L"");
    EXPECT_EQ(unzipped.GetTemporaryFilePath().GetExtension(), extension) << name;
    EXPECT_TRUE(unzipped.GetTemporaryFilePath().ToString().starts_with(
        platform::GetTemporaryFolder() + L"/"));
  }
}

TEST(Pass, ComesFromTheProvider) {
  EXPECT_EQ(GetPass(L"a.zip", NPT_ARCHIVE), L"");
  SetPassProvider([](NPath const& path, NPassType type) -> std::wstring {
    SetPassProvider({});  // its own replacement doesn't pull it away from under it
    return path.ToString() + std::to_wstring(type);
  });
  EXPECT_EQ(GetPass(L"a.zip", NPT_ARCHIVE), L"a.zip256");
  EXPECT_EQ(GetPass(L"a.zip", NPT_ARCHIVE), L"");
}

class TemporaryFolder : public testing::Test {
 protected:
  std::filesystem::path GetPlace() const {
    return m_files.GetFolder() / "tmp" / ("corvanta-" + std::to_string(geteuid()));
  }

  support::TemporaryFiles const m_files;
};

TEST_F(TemporaryFolder, WhereSomebodyElseWasFirstItIsAPrivateOne) {
  // Once, and again when that is taken too: the folder is one of this user, closed to all others.
  auto const expectPrivate = [this] {
    std::wstring const folder = GetTemporaryFolder();
    struct stat status {};
    ASSERT_EQ(stat(ToNarrow(folder).c_str(), &status), 0);
    EXPECT_EQ(status.st_mode, S_IFDIR | 0700U);
    EXPECT_EQ(status.st_uid, geteuid());
    EXPECT_THAT(ToNarrow(folder), testing::StartsWith(GetPlace().string() + "-"));
    EXPECT_EQ(GetTemporaryFolder(), folder) << "one a process";
    EXPECT_EQ(WriteTemporaryFile(L"name", "x", 1), folder + L"/name");
  };
  std::filesystem::create_directory(m_files.GetFolder() / "trap");
  std::filesystem::create_directory_symlink(m_files.GetFolder() / "trap", GetPlace());
  expectPrivate();
  EXPECT_TRUE(std::filesystem::is_empty(m_files.GetFolder() / "trap"));
  std::filesystem::remove(GetPlace());
  std::ofstream(GetPlace()) << "a file";
  std::filesystem::remove_all(ToNarrow(GetTemporaryFolder()));
  std::ofstream(ToNarrow(GetTemporaryFolder()) + "/kept") << "x";
  expectPrivate();
  std::filesystem::remove(GetPlace());
  if (geteuid() != 0) return;  // only root can make a folder of another user
  std::filesystem::create_directory(GetPlace());
  ASSERT_EQ(chown(GetPlace().c_str(), 12345, 12345), 0);
  expectPrivate();
  EXPECT_EXIT(
      {
        setenv("TMPDIR", m_files.GetFolder().c_str(), 1);
        std::ofstream(m_files.GetFolder() / ("corvanta-" + std::to_string(geteuid()))) << "a file";
        std::exit(WriteTemporaryFile(L"name", "x", 1).empty() ? 1 : 0);
      },
      testing::ExitedWithCode(0), "");
  for (auto const& entry : std::filesystem::directory_iterator(m_files.GetFolder()))
    EXPECT_FALSE(entry.is_directory() && entry.path().filename().string().starts_with("corvanta-"));
}

TEST_F(TemporaryFolder, IsClosedToOthers) {
  for (bool const isThere : {false, true}) {
    if (isThere) std::filesystem::permissions(GetPlace(), std::filesystem::perms::all);
    EXPECT_EQ(ToNarrow(GetTemporaryFolder()), GetPlace().string());
    struct stat status;
    ASSERT_EQ(stat(GetPlace().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0700U);
  }
}

TEST_F(TemporaryFolder, AFileIsReplacedWholeAndNoLinkIsFollowed) {
  EXPECT_EQ(WriteTemporaryFile(L"no/such/place", "x", 1), L"");
  std::wstring const path = WriteTemporaryFile(L"name", "first", 5);
  ASSERT_EQ(ReadBytes(path), "first");
  std::ifstream reader(ToNarrow(path));
  EXPECT_EQ(WriteTemporaryFile(L"name", "2nd", 3), path);
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(reader), {}), "first");
  std::filesystem::remove(ToNarrow(path));
  NPath const target = m_files.Write("target", "untouched");
  std::filesystem::create_symlink(ToNarrow(target.ToString()), ToNarrow(path));
  EXPECT_EQ(WriteTemporaryFile(L"name", "third", 5), path);
  EXPECT_EQ(ReadBytes(target), "untouched");
  EXPECT_EQ(ReadBytes(path), "third");
  EXPECT_THAT(m_files.GetLeftovers(), SizeIs(1));
}

}  // namespace
}  // namespace corvanta::core::zip
