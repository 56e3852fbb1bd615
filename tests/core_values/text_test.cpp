#include "tests/support/test.h"

namespace corvanta::core {
namespace {

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

class Lamp : public attribute::NAttributeHost {
 public:
  Lamp(std::initializer_list<wchar_t const*> names) {
    for (wchar_t const* name : names) {
      AddAttribute(name, true)->SetValue(variant::NVariant(0.25 * ++m_count), false);
    }
  }
  std::vector<std::wstring> heard;
  double Get(wchar_t const* name) const { return QueryAttribute(name)->GetValue().GetDouble(); }

 private:
  void OnAttributeChangeImpl(attribute::NAttribute const& changed) override {
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
