#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "corvanta/core/attribute/NAttributeHost.h"
#include "corvanta/core/color/ColorTransform.h"
#include "corvanta/core/color/translate_rgb.h"
#include "corvanta/core/configuration/NConfiguration.h"
#include "corvanta/core/error/NException.h"
#include "corvanta/core/string_table/string_table.h"
#include "corvanta/core/text/convert.h"
#include "corvanta/data/error_code/error_code.h"
#include "corvanta/platform/debug.h"

namespace corvanta::core {
namespace {

TEST(Text, BadTextBecomesTheReplacementCharacter) {
  struct Row {
    std::string bytes;
    std::wstring text;
  };
  for (Row const& row : {Row{"\xff", L"\xfffd"}, Row{"\xc0\x80", L"\xfffd\xfffd"},
                         Row{"a\xe4\xb8", L"a\xfffd"}, Row{"\xed\xa0\x80", L"\xfffd"}}) {
    EXPECT_EQ(text::ToWide(row.bytes).substr(0, 2), row.text.substr(0, 2))
        << testing::PrintToString(row.bytes);
  }
  EXPECT_EQ(text::ToNarrow(std::wstring{L'a', wchar_t{0xd800}, L'b'}),
            "a\xef\xbf\xbd"
            "b");
  EXPECT_EQ(text::ToNarrow(std::wstring{L'a', wchar_t{0x110000}, L'b'}),
            "a\xef\xbf\xbd"
            "b");
}

TEST(Text, GoesThroughUtf8AndBack) {
  // The four lengths of UTF-8 and the borders between them; a zero character in the middle isn't an
  // end.
  std::wstring const wide = {1, 0x7f, 0, 0x80, 0x7ff, 0x800, 0xffff, 0x10000, 0x10ffff};
  EXPECT_EQ(
      text::ToNarrow(wide),
      std::string(
          "\x01\x7f\0\xc2\x80\xdf\xbf\xe0\xa0\x80\xef\xbf\xbf\xf0\x90\x80\x80\xf4\x8f\xbf\xbf",
          21));
  EXPECT_EQ(text::ToWide(text::ToNarrow(wide)), wide);
}

TEST(Debug, WritesUtf8WithoutAnythingOfItsOwn) {
  testing::internal::CaptureStderr();
  platform::OutputDebugString(L"Stuhl \x00e4\n50 %s");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Stuhl \xc3\xa4\n50 %s");
}

class TextError : public error::NException {
 public:
  explicit TextError(std::wstring code) : m_code(std::move(code)) {}

 private:
  wchar_t const* GetErrorCodeImpl() const override { return m_code.c_str(); }
  std::wstring m_code;
};

TEST(Exception, WhatIsTheCodeInUtf8AndOutlivesTheException) {
  char const* first = nullptr;
  char const* second = nullptr;
  try {
    throw TextError(L"\x00c4rger");
  } catch (std::exception const& error) {
    first = error.what();
  }
  try {
    throw TextError(data::error_code::NE_FIIMAGE);
  } catch (std::exception const& error) {
    second = error.what();
  }
  EXPECT_STREQ(first, "\xc3\x84rger");
  EXPECT_STREQ(second, "FIImage Error");
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

TEST(StringTable, ReadersSeeWholeTextsWhileAnotherThreadTranslates) {
  using string_table::DATA_SOUND;
  std::wstring const before = string_table::GetString(DATA_SOUND);
  std::atomic<bool> done{false};
  std::thread writer([&done] {
    for (int i = 0; i < 2000; ++i)
      string_table::SetString(DATA_SOUND, std::wstring(i % 40 + 1, L'a' + i % 26));
    done = true;
  });
  while (!done) {
    std::wstring const& seen = string_table::GetString(DATA_SOUND);
    ASSERT_FALSE(seen.empty());
    ASSERT_TRUE(seen == before || seen == std::wstring(seen.size(), seen[0]));
  }
  writer.join();
  string_table::SetString(DATA_SOUND, before);
}

TEST(Configuration, AnswersZeroUntilANumberIsSet) {
  auto& configuration = configuration::GetConfiguration();
  EXPECT_FALSE(configuration.SetLong(static_cast<configuration::NConfigurationKey>(7), 1));
  EXPECT_EQ(configuration.GetLong(static_cast<configuration::NConfigurationKey>(7)), 0);
  EXPECT_EQ(configuration.GetLong(configuration::CK_VIEW_MODE), 0);
  EXPECT_TRUE(configuration.SetLong(configuration::CK_VIEW_MODE, -3));
  EXPECT_EQ(configuration::GetConfiguration().GetLong(configuration::CK_VIEW_MODE), -3);
  configuration.SetLong(configuration::CK_VIEW_MODE, 0);
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

TEST(Color, NothingIsWrittenIfAnAttributeIsMissing) {
  for (std::wstring const missing : {L"r", L"g", L"b"}) {
    boost::intrusive_ptr<Lamp> const lamp(new Lamp{missing == L"r" ? L"x" : L"r",
                                                   missing == L"g" ? L"x" : L"g",
                                                   missing == L"b" ? L"x" : L"b"});
    color::utility::TranslateRGB(*lamp, L"r", L"g", L"b", Rotation());
    EXPECT_TRUE(lamp->heard.empty());
  }
}

TEST(Color, TheThreeAreReadBeforeTheFirstIsWritten) {
  boost::intrusive_ptr<Lamp> const lamp(new Lamp{L"r", L"g", L"b"});
  color::utility::TranslateRGB(*lamp, L"r", L"g", L"b", Rotation());
  EXPECT_THAT(lamp->heard, testing::ElementsAre(L"r", L"g", L"b"));
  EXPECT_EQ(lamp->Get(L"r"), 0.5);
  EXPECT_EQ(lamp->Get(L"g"), 0.75);
  EXPECT_EQ(lamp->Get(L"b"), 0.25);
}

}  // namespace
}  // namespace corvanta::core
