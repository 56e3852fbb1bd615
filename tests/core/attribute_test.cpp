#include "tests/support/test.h"

namespace corvanta::core::attribute {
namespace {

constexpr long kMost = std::numeric_limits<long>::max();
constexpr long kLeast = std::numeric_limits<long>::min();

/// A host that writes down what changed; `react` runs after that.
class Host : public NAttributeHost {
 public:
  using NAttributeHost::ReserveAttributes;

  std::vector<std::wstring> changed;
  std::function<void(NAttribute const&)> react;

 private:
  void OnAttributeChangeImpl(NAttribute const& attribute) override {
    changed.push_back(attribute.GetName());
    if (react) react(attribute);
  }
};
TEST(Variants, ConvertWhenTheyAreRead) {
  enum Plain : long { kPlain = 7 };
  enum class Scoped : unsigned char { kScoped = 200 };
  struct {
    char const* name;
    NVariant value;
    double asDouble;
    long asLong;
    bool asBool;
    std::wstring asText;
  } const rows[] = {
      {"nothing", NVariant(), 0, 0, false, L""},
      {"fraction", 2.75, 2.75, 2, true, L""},
      {"negative fraction", -2.75, -2.75, -2, true, L""},
      {"below one", 0.5, 0.5, 0, true, L""},
      {"negative zero", -0.0, 0, 0, false, L""},
      {"infinity", kInfinity, kInfinity, kMost, true, L""},
      {"minus infinity", -kInfinity, -kInfinity, kLeast, true, L""},
      {"two to the 63rd", 0x1p63, 0x1p63, kMost, true, L""},
      {"minus two to the 63rd", -0x1p63, -0x1p63, kLeast, true, L""},
      {"last double below", 0x1.fffffffffffffp62, 0x1.fffffffffffffp62, 0x7ffffffffffffc00, true,
       L""},
      {"long", 3L, 3, 3, true, L""},
      {"largest long", kMost, 0x1p63, kMost, true, L""},
      {"unsigned", 4000000000u, 4e9, 4000000000, true, L""},
      {"plain enumeration", kPlain, 7, 7, true, L""},
      {"scoped enumeration", Scoped::kScoped, 200, 200, true, L""},
      {"true", true, 1, 1, true, L""},
      {"false", false, 0, 0, false, L""},
      {"text", L"1.5", 0, 0, false, L"1.5"},
      {"empty text", L"", 0, 0, false, L""},
  };
  auto const host = New<Host>();
  NAttribute& attribute = *host->AddAttribute(L"a", true);
  for (auto const& row : rows) {
    SCOPED_TRACE(row.name);
    attribute.SetValue(row.value, false);
    EXPECT_EQ(attribute.GetValue(), row.value);
    auto const expectRead = [&row](auto const& source) {
      EXPECT_EQ(source.GetDouble(), row.asDouble);
      EXPECT_EQ(source.GetLong(), row.asLong);
      EXPECT_EQ(source.GetBool(), row.asBool);
      EXPECT_EQ(source.GetString(), row.asText);
    };
    expectRead(row.value);
    expectRead(attribute.GetValue());
    expectRead(attribute);
  }
  NVariant const nan(kNaN);
  EXPECT_EQ(nan.GetLong(), 0);
  EXPECT_TRUE(nan.GetBool());
  static_assert(!std::is_constructible_v<NVariant, char const*>);
  static_assert(!std::is_constructible_v<NVariant, int*>);
}

TEST(Variants, CopyAndMoveAcrossKinds) {
  NVariant const values[] = {NVariant(), 1.5, 2L, true, L"text", L"another text"};
  for (NVariant const& from : values) {
    for (NVariant const& to : values) {
      NVariant source(from), copied(to), moved(to);
      copied = from;
      EXPECT_EQ(copied, from);
      moved = std::move(source);
      EXPECT_EQ(moved, from);
      moved = *&moved;
      EXPECT_EQ(moved, from);
      EXPECT_EQ(from == to, &from == &to);
    }
  }
}

TEST(Attributes, RefuseASecondOfTheNameAndKeepTheirPlace) {
  auto const host = New<Host>();
  host->ReserveAttributes(3);
  EXPECT_EQ(host->GetAttributeBegin(), host->GetAttributeEnd()) << "reserved isn't created";
  constexpr int kCount = 300;
  std::vector<NAttribute*> made;
  for (int i = 0; i != kCount; ++i) {
    std::wstring const name = L"attribute " + std::to_wstring(i);
    EXPECT_EQ(host->QueryAttribute(name), nullptr);
    made.push_back(host->AddAttribute(name, i % 2 == 0));
    ASSERT_NE(made.back(), nullptr);
    made.back()->SetValue(i, false);
  }
  int i = 0;
  for (auto at = host->GetAttributeBegin(); at != host->GetAttributeEnd(); ++at, ++i) {
    std::wstring const name = L"attribute " + std::to_wstring(i);
    EXPECT_EQ(host->AddAttribute(name, true), nullptr);
    EXPECT_EQ(&*at, made[i]);
    EXPECT_EQ(host->QueryAttribute(name.c_str()), made[i]);
    EXPECT_EQ(at->GetName(), name);
    EXPECT_EQ(at->GetLong(), i);
    EXPECT_EQ(at->GetFlag(), i % 2 == 0);
    EXPECT_EQ(&at->GetHost(), host.get());
  }
  EXPECT_EQ(i, kCount);
  EXPECT_TRUE(host->changed.empty());
}

TEST(Attributes, NamesAreAnyTextButNull) {
  auto const host = New<Host>();
  EXPECT_EQ(host->AddAttribute(nullptr, true), nullptr);
  EXPECT_EQ(host->QueryAttribute(static_cast<wchar_t const*>(nullptr)), nullptr);
  EXPECT_EQ(host->GetAttributeBegin(), host->GetAttributeEnd());
  NAttribute* const empty = host->AddAttribute(L"", true);
  std::wstring const withNull(L"a\0b", 3);
  NAttribute* const whole = host->AddAttribute(withNull, true);
  ASSERT_NE(empty, nullptr);
  ASSERT_NE(whole, nullptr);
  EXPECT_EQ(host->QueryAttribute(L""), empty);
  EXPECT_EQ(host->QueryAttribute(withNull), whole);
  EXPECT_EQ(host->QueryAttribute(L"a"), nullptr);
  EXPECT_THROW(NTypedAttribute<double>(*host, L"", 1.0), NAttributeContainerError);
}

TEST(Attributes, TrySetsTheKindThatIsThereAndAnyNumberForANumber) {
  NVariant const values[] = {1.5, 2L, true, L"text"};
  for (NVariant const& held : values) {
    for (NVariant const& offered : values) {
      auto const host = New<Host>();
      NAttribute& attribute = *host->AddAttribute(L"a", true);
      attribute.SetValue(held, false);
      NVariant const other = &offered == values ? NVariant(9.0) : offered;
      bool const areNumbers = &held < values + 2 && &offered < values + 2;
      bool const isTaken = &held == &offered || areNumbers;
      EXPECT_EQ(attribute.Try(other, true), isTaken);
      EXPECT_EQ(attribute.GetValue(), isTaken ? other : held);
      EXPECT_EQ(host->changed.size(), isTaken ? 1u : 0u);
    }
  }
}

/// Setting isn't compared with what was there; a number in place of a text stays a number.
TEST(Attributes, SetValueStoresAnyKindAndTellsEachTime) {
  auto const host = New<Host>();
  NAttribute& attribute = *host->AddAttribute(L"a", true);
  attribute.SetValue(L"text", true);
  attribute.SetValue(L"text", true);
  attribute.SetValue(2.5, true);
  attribute.SetValue(true, false);
  EXPECT_EQ(attribute.GetKind(), variant::NVK_BOOL);
  EXPECT_THAT(host->changed, ElementsAre(L"a", L"a", L"a"));
}

TEST(Attributes, HandlerMayDropTheLastReferenceOfTheHost) {
  auto host = New<Host>();
  NAttribute& attribute = *host->AddAttribute(L"a", true);
  bool hasSeenValue = false;
  host->react = [&](NAttribute const& changed) {
    host.reset();
    hasSeenValue = changed.GetString() == L"a text of some length";
  };
  attribute.SetValue(L"a text of some length", true);
  EXPECT_TRUE(hasSeenValue);
  EXPECT_EQ(host, nullptr);
}

TEST(Attributes, ExceptionOfAHandlerLeavesTheNewValue) {
  auto const host = New<Host>();
  NAttribute& attribute = *host->AddAttribute(L"a", true);
  host->react = [](NAttribute const&) { throw 1; };
  EXPECT_THROW(attribute.SetValue(L"new", true), int);
  EXPECT_EQ(attribute.GetString(), L"new");
}

TEST(Attributes, CopySetsWhatBothHaveAndHoldsAValueHere) {
  auto source = New<Host>(), target = New<Host>();
  source->AddAttribute(L"unset", true);
  for (wchar_t const* const name : {L"a", L"only here", L"b", L"c"}) {
    source->AddAttribute(name, true)->SetValue(name, false);
  }
  for (wchar_t const* const name : {L"c", L"b", L"only there", L"a", L"unset"}) {
    target->AddAttribute(name, false)->SetValue(1.5, false);
  }
  // The copy tells in the source's order, with the values at its start, and outlives both holders.
  std::vector<std::wstring> values;
  target->react = [&, raw = target.get()](NAttribute const& changed) {
    values.push_back(changed.GetString());
    if (source) source->QueryAttribute(L"c")->SetValue(L"too late", false);
    source.reset();
    target.reset();
    EXPECT_EQ(raw->QueryAttribute(L"unset")->GetDouble(), 1.5);
    EXPECT_EQ(raw->QueryAttribute(L"only there")->GetDouble(), 1.5);
    EXPECT_EQ(raw->QueryAttribute(L"only here"), nullptr);
  };
  source->CopyAttributesTo(*target);
  EXPECT_THAT(values, ElementsAre(L"a", L"b", L"c"));
}

}  // namespace
}  // namespace corvanta::core::attribute
