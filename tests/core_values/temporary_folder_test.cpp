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

TEST_F(TemporaryFolder, WhatSomebodyElsePutInItsPlaceIsNotTaken) {
  std::filesystem::create_directory(m_files.GetFolder() / "trap");
  std::filesystem::create_directory_symlink(m_files.GetFolder() / "trap", GetPlace());
  EXPECT_EQ(GetTemporaryFolder(), L"");
  EXPECT_EQ(WriteTemporaryFile(L"name", "x", 1), L"");
  EXPECT_TRUE(std::filesystem::is_empty(m_files.GetFolder() / "trap"));
  std::filesystem::remove(GetPlace());
  std::ofstream(GetPlace()) << "a file";
  EXPECT_EQ(GetTemporaryFolder(), L"");
  std::filesystem::remove(GetPlace());
  if (geteuid() == 0) {  // only root can make a folder of another user
    std::filesystem::create_directory(GetPlace());
    ASSERT_EQ(chown(GetPlace().c_str(), 12345, 12345), 0);
    EXPECT_EQ(GetTemporaryFolder(), L"");
  }
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
