#include "tests/support/temporary_files.h"
#include "tests/support/test.h"

namespace corvanta::core {
namespace {

using locator::NLocator;
using uri::NPath;
using uri::NUri;

TEST(Path, ExtensionIsTheEndOfTheLastPart) {
  struct Row {
    wchar_t const* path;
    wchar_t const* extension;
  };
  for (Row const& row :
       {Row{L"", L""}, Row{L"a", L""}, Row{L"a.png", L".png"}, Row{L"a.tar.gz", L".gz"},
        Row{L"d.x/a", L""}, Row{L"d.x/a.B", L".B"}, Row{L".png", L""}, Row{L"d/.png", L""},
        Row{L"d/.a.b", L".b"}, Row{L"a.", L"."}, Row{L"d/..", L""}, Row{L"..", L""},
        Row{L"...", L"."}, Row{L"a.png/", L""}, Row{L"\x00fc.\x00e4", L".\x00e4"}}) {
    EXPECT_EQ(NPath(row.path).GetExtension(), row.extension) << text::ToNarrow(row.path);
  }
}

TEST(Path, JoinsWithOneSlash) {
  using Row = std::tuple<wchar_t const*, wchar_t const*, wchar_t const*>;
  for (auto const& [left, right, joined] :
       {Row{L"a", L"b", L"a/b"}, Row{L"a/", L"b", L"a/b"}, Row{L"a", L"/b", L"a/b"},
        Row{L"a//", L"//b/", L"a/b/"}, Row{L"", L"b", L"b"}, Row{L"a/", L"", L"a/"},
        Row{L"", L"/b", L"/b"}, Row{L"/", L"b", L"/b"}, Row{L"/", L"/", L"/"},
        Row{L"", L"", L""}}) {
    EXPECT_EQ(NPath(left) / right, NPath(joined)) << text::ToNarrow(joined);
  }
}

TEST(Locator, DiffersByKindPathAndEntry) {
  std::set<NLocator> locators;
  for (auto* create : {&NUri::CreateFileUri, &NUri::CreateInternalUri, &NUri::CreateSystemUri}) {
    for (wchar_t const* path : {L"", L"a", L"b"}) {
      for (wchar_t const* entry : {L"", L"a", L"b"}) {
        NLocator const locator(create(path), entry);
        EXPECT_TRUE(locators.insert(locator).second || locator == NLocator());
        EXPECT_EQ(locator.IsZipped(), *entry != 0);
        EXPECT_EQ(locators.count(NLocator(create(path), entry)), 1U);
      }
    }
  }
  EXPECT_EQ(locators.size(), 27U);
  EXPECT_EQ(*locators.begin(), NLocator());
}

TEST(Uri, NamesNoFileWithoutAPathOrInsideTheProgram) {
  EXPECT_EQ(uri::GetFile(NUri()), NPath());
  EXPECT_EQ(uri::GetFile(NUri::CreateSystemUri(L"")), NPath());
  EXPECT_EQ(uri::GetFile(NUri::CreateInternalUri(L"/image")), NPath());
  EXPECT_FALSE(uri::Exists(NPath()));
}

TEST(Uri, ExistingFilesAndFoldersAreFound) {
  support::TemporaryFiles const files;
  NPath const path = files.Write("St\xc3\xbchle \xf0\x9f\xaa\x91.txt", "x");
  EXPECT_TRUE(uri::Exists(uri::GetFile(NUri::CreateFileUri(path))));
  EXPECT_TRUE(uri::Exists(files.At("")));
  EXPECT_FALSE(uri::Exists(files.At("missing")));
  EXPECT_FALSE(uri::Exists(path.ToString() + L'\0' + L".png"))
      << "what follows a zero character counts";
}

TEST(Uri, SystemPicturesStandBesideTheLibraryOrWhereTheyWereSet) {
  for (NLocator const& picture :
       {data::internal::GetDefaultEnvironmentMapImage(), data::internal::GetDefaultFloorImage(),
        data::internal::GetNotFoundImage()}) {
    EXPECT_EQ(support::ReadBytes(uri::GetFile(picture.GetUri())).substr(0, 4), "DDS ");
  }
  NPath const before = uri::GetResourceFolder();
  uri::SetResourceFolder(L"/elsewhere/");
  EXPECT_EQ(uri::GetFile(NUri::CreateSystemUri(L"/Resource/a.dds")), NPath(L"/elsewhere/a.dds"));
  EXPECT_EQ(uri::GetFile(NUri::CreateSystemUri(L"/Resources/a.dds")),
            NPath(L"/elsewhere/Resources/a.dds"));
  uri::SetResourceFolder({});
  EXPECT_EQ(uri::GetResourceFolder(), before);
}

}  // namespace
}  // namespace corvanta::core
