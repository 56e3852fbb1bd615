#include "tests/support/temporary_files.h"
#include "tests/support/test.h"

namespace corvanta::core {
namespace {

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

TEST(Text, BadTextBecomesTheReplacementCharacter) {
  for (std::string const bytes :
       {"\xff", "\xc0\x80", "\xe4\xb8", "\xed\xa0\x80", "\xf5\x80\x80\x80"}) {
    EXPECT_EQ(text::ToWide(bytes)[0], L'\xfffd') << testing::PrintToString(bytes);
  }
  for (wchar_t const bad : {0xd800, 0xdfff, 0x110000}) {
    EXPECT_EQ(text::ToNarrow(std::wstring{L'a', bad}), "a\xef\xbf\xbd");
  }
}

TEST(Text, GoesThroughUtf8AndBack) {
  // The four lengths of UTF-8 and the borders between them; a zero character isn't an end.
  std::wstring const wide = {0, 0x7f, 0x80, 0x7ff, 0x800, 0xffff, 0x10000, 0x10ffff};
  std::string const narrow(
      "\0\x7f\xc2\x80\xdf\xbf\xe0\xa0\x80\xef\xbf\xbf\xf0\x90\x80\x80\xf4\x8f\xbf\xbf", 20);
  EXPECT_EQ(text::ToNarrow(wide), narrow);
  EXPECT_EQ(text::ToWide(narrow), wide);
}

TEST(Debug, WritesUtf8WithoutAnythingOfItsOwn) {
  testing::internal::CaptureStderr();
  platform::OutputDebugString(L"Stuhl \x00e4\n50 %s");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Stuhl \xc3\xa4\n50 %s");
}

class TextError : public error::NException {
 private:
  wchar_t const* GetErrorCodeImpl() const override { return m_code.c_str(); }
  std::wstring const m_code = L"\x00c4rger";
};

TEST(Exception, WhatIsTheCodeInUtf8AndOutlivesTheException) {
  char const* what = nullptr;
  try {
    throw TextError();
  } catch (std::exception const& error) {
    what = error.what();
  }
  EXPECT_STREQ(what, "\xc3\x84rger");
}

TEST(StringTable, RefusesKeysThatItDoesNotHave) {
  unsigned long const version = string_table::GetVersion();
  for (int key : {-1, string_table::DATA_TEXTURE + 1}) {
    auto const unknown = static_cast<string_table::NStringKey>(key);
    EXPECT_FALSE(string_table::SetString(unknown, L"x"));
    EXPECT_EQ(string_table::GetString(unknown), L"");
  }
  EXPECT_EQ(string_table::GetVersion(), version);
}

TEST(StringTable, ATranslationLeavesTextsInUseAlone) {
  using string_table::DATA_LIGHT;
  std::wstring const& english = string_table::GetString(DATA_LIGHT);
  ASSERT_EQ(english, L"light");
  unsigned long const version = string_table::GetVersion();
  ASSERT_TRUE(string_table::SetString(DATA_LIGHT, L"Licht"));
  EXPECT_NE(string_table::GetVersion(), version);
  EXPECT_EQ(string_table::GetString(DATA_LIGHT), L"Licht");
  EXPECT_EQ(english, L"light");
  EXPECT_EQ(string_table::GetString(string_table::DATA_LIGHT_ENV), L"light environment");
  ASSERT_TRUE(string_table::SetString(DATA_LIGHT, english));
  EXPECT_EQ(string_table::GetString(DATA_LIGHT), L"light");
}

class Lamp : public NAttributeHost {
 public:
  Lamp(std::initializer_list<wchar_t const*> names) {
    for (wchar_t const* name : names) AddAttribute(name, true)->SetValue(0.25 * ++m_count, false);
  }
  std::vector<std::wstring> heard;
  double Get(wchar_t const* name) const { return QueryAttribute(name)->GetDouble(); }

 private:
  void OnAttributeChangeImpl(NAttribute const& changed) override {
    heard.push_back(changed.GetName());
  }
  int m_count = 0;
};

class Rotation : public color::ColorTransform {
 public:
  void Transform(double& r, double& g, double& b) const override {
    double const first = r;
    r = g;
    g = b;
    b = first;
  }
};

TEST(Color, AllThreeAreReadBeforeTheFirstIsWrittenOrNothingIs) {
  Pointer<Lamp> const lamp(new Lamp{L"r", L"g", L"b"});
  color::utility::TranslateRGB(*lamp, L"x", L"g", L"b", Rotation());
  color::utility::TranslateRGB(*lamp, L"r", L"x", L"b", Rotation());
  color::utility::TranslateRGB(*lamp, L"r", L"g", L"x", Rotation());
  EXPECT_TRUE(lamp->heard.empty());
  color::utility::TranslateRGB(*lamp, L"r", L"g", L"b", Rotation());
  EXPECT_THAT(lamp->heard, ElementsAre(L"r", L"g", L"b"));
  EXPECT_EQ(lamp->Get(L"r"), 0.5);
  EXPECT_EQ(lamp->Get(L"g"), 0.75);
  EXPECT_EQ(lamp->Get(L"b"), 0.25);
}

}  // namespace
}  // namespace corvanta::core
