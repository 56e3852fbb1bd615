#include <sys/stat.h>

#include "tests/support/temporary_files.h"
#include "tests/support/test.h"

namespace corvanta::platform {
namespace {

using core::text::ToNarrow;

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
  ASSERT_EQ(support::ReadBytes(path), "first");
  std::ifstream reader(ToNarrow(path));
  EXPECT_EQ(WriteTemporaryFile(L"name", "2nd", 3), path);
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(reader), {}), "first");
  std::filesystem::remove(ToNarrow(path));
  core::uri::NPath const target = m_files.Write("target", "untouched");
  std::filesystem::create_symlink(ToNarrow(target.ToString()), ToNarrow(path));
  EXPECT_EQ(WriteTemporaryFile(L"name", "third", 5), path);
  EXPECT_EQ(support::ReadBytes(target), "untouched");
  EXPECT_EQ(support::ReadBytes(path), "third");
  EXPECT_THAT(m_files.GetLeftovers(), testing::SizeIs(1));
}

}  // namespace
}  // namespace corvanta::platform
