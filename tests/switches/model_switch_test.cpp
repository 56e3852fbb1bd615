#include "tests/support/test.h"

namespace corvanta::data::switches {
namespace {

using detail::NModelSet;
using SetPointer = Pointer<NModelSet>;

constexpr unsigned kNone = 0xFFFFFFFF;

/// Writes down what it hears, with the position that the set has at that moment; `react` runs after
/// that.
class Recorder final : public NModelSwitchListener {
 public:
  explicit Recorder(NModelSwitch const& chooser) : m_switch(chooser) {}
  std::vector<std::wstring> heard;
  std::function<void(NModelSet const&)> react;

  std::vector<std::wstring> Take() { return std::exchange(heard, {}); }

 private:
  void OnAddModelSet(NModelSet const& set) override { Record(L"added ", set); }
  void OnRemoveModelSet(NModelSet const& set) override { Record(L"removed ", set); }
  void Record(wchar_t const* what, NModelSet const& set) {
    heard.push_back(what + set.GetName() + L" at " +
                    std::to_wstring(static_cast<int>(m_switch.GetModelSetIndex(set))));
    if (auto const call = react) call(set);  // a copy, which may replace itself
  }

  NModelSwitch const& m_switch;
};

SetPointer MakeSet(wchar_t const* name) {
  SetPointer const set(new NModelSet);
  set->SetName(name);
  return set;
}

class ModelSwitch : public testing::Test {
 protected:
  Pointer<NModelSwitch> chooser{new NModelSwitch};
  Pointer<Recorder> recorder{new Recorder(*chooser)};
  SetPointer a = MakeSet(L"a");
  SetPointer b = MakeSet(L"b");

  void SetUp() override { chooser->AddObserver(*recorder); }
};

TEST_F(ModelSwitch, KeepsAnOrderWithUniqueNames) {
  EXPECT_EQ(chooser->GetName(), L"");
  EXPECT_EQ(FindModelSet(*chooser, L"a"), nullptr);
  EXPECT_FALSE(chooser->AddModelSet(*a, 1));
  EXPECT_FALSE(chooser->RemoveModelSet(0));
  EXPECT_FALSE(chooser->RemoveModelSet(*a));
  EXPECT_TRUE(chooser->AddModelSet(*a, 0));
  EXPECT_TRUE(chooser->AddModelSet(*b, 0));
  EXPECT_THAT(recorder->Take(), ElementsAre(L"added a at 0", L"added b at 0"));
  EXPECT_FALSE(chooser->AddModelSet(*MakeSet(L"b"), 0));
  EXPECT_FALSE(chooser->AddModelSet(*a, 2));
  Pointer<NModelSwitch> const other(new NModelSwitch);
  EXPECT_FALSE(other->AddModelSet(*a, 0));
  EXPECT_TRUE(other->AddModelSet(*MakeSet(L"a"), 0));
  EXPECT_FALSE(chooser->RemoveModelSet(**other->GetModelSets().begin()));
  EXPECT_FALSE(chooser->RemoveModelSet(2));
  EXPECT_THAT(recorder->Take(), IsEmpty());
  EXPECT_THAT(chooser->GetModelSets(), ElementsAre(b, a));
  EXPECT_EQ(chooser->GetModelSetCount(), 2u);
  EXPECT_EQ(chooser->GetModelSetIndex(*a), 1u);
  EXPECT_EQ(chooser->GetModelSetIndex(**other->GetModelSets().begin()), kNone);
  EXPECT_EQ(FindModelSet(*chooser, L"a"), a);
  EXPECT_TRUE(chooser->RemoveModelSet(1));
  EXPECT_TRUE(chooser->RemoveModelSet(*b));
  EXPECT_THAT(recorder->Take(), ElementsAre(L"removed a at 1", L"removed b at 0"));
  EXPECT_EQ(chooser->GetModelSetIndex(*a), kNone);
  EXPECT_TRUE(chooser->AddModelSet(*a, 0));
}

TEST_F(ModelSwitch, AListenerMayThrowOrEdit) {
  chooser->AddModelSet(*a, 0);
  chooser->AddModelSet(*b, 1);
  recorder->react = [](NModelSet const&) { throw std::runtime_error("heard"); };
  EXPECT_THROW(chooser->RemoveModelSet(*a), std::runtime_error);
  EXPECT_THAT(chooser->GetModelSets(), ElementsAre(b));
  EXPECT_THROW(chooser->AddModelSet(*a, 0), std::runtime_error);
  EXPECT_THAT(chooser->GetModelSets(), ElementsAre(a, b));
  // One that enters the set anew, before and behind its old place, while it is about to go.
  for (unsigned const place : {0u, 2u}) {
    recorder->react = [&](NModelSet const&) {
      recorder->react = nullptr;
      EXPECT_FALSE(chooser->RemoveModelSet(*a));
      EXPECT_TRUE(chooser->AddModelSet(*a, place));
    };
    EXPECT_TRUE(chooser->RemoveModelSet(*a));
    EXPECT_EQ(chooser->GetModelSetIndex(*a), place / 2);
    EXPECT_EQ(chooser->GetModelSetCount(), 2u);
    EXPECT_EQ(a->GetNamespace(), chooser.get());
  }
  // One that ends everything.
  recorder->react = [&](NModelSet const&) {
    recorder->react = nullptr;
    while (chooser->GetModelSetCount() > 1) chooser->RemoveModelSet(0u);
    chooser.reset();
    a.reset();
  };
  recorder->heard.clear();
  EXPECT_TRUE(chooser->RemoveModelSet(*a));
  EXPECT_EQ(chooser, nullptr);
}

}  // namespace
}  // namespace corvanta::data::switches
