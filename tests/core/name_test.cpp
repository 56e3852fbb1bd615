#include "tests/support/test.h"

namespace corvanta::core::name {
namespace {

using testing::Pair;

class Named : public NNamedObject {
 public:
  explicit Named(std::wstring const& name) : NNamedObject(name) {}
};
using NamedPointer = Pointer<Named>;

class SharedNamespace : public NNamespace {};

class Hearing : public NNameListener {
 public:
  using Names = std::vector<std::pair<NNamedObject const*, std::wstring>>;
  Names heard;
  std::function<void()> react;

 private:
  void OnSetName(NNamespace const&, NNamedObject const& object) override {
    heard.emplace_back(&object, object.GetName());
    if (react) react();
  }
};

/// A strict namespace against the plainest account of it.
class Model {
 public:
  explicit Model(unsigned seed) : m_random(seed) { m_space->AddNameListener(*m_listener); }

  void Run() {
    for (int step = 0; step != 300; ++step) {
      Edit();
      for (auto const& [object, name] : m_names) ASSERT_EQ(object->GetName(), name) << step;
      for (wchar_t const* const text : kTexts) {
        ASSERT_EQ(m_space->QueryNamedObject(text), Owner(text)) << step;
      }
      ASSERT_EQ(m_space->GetNamedObjectCount(),
                static_cast<std::size_t>(
                    std::count_if(m_names.begin(), m_names.end(),
                                  [this](auto const& i) { return IsInside(*i.first); })));
    }
  }

 private:
  static constexpr wchar_t const* kTexts[] = {L"",          L"light",     L"light (2)",
                                              L"light (3)", L"light (4)", L"light (2) (2)"};

  int Choose(std::size_t count) {
    return std::uniform_int_distribution<int>(0, static_cast<int>(count) - 1)(m_random);
  }
  std::wstring Text() { return kTexts[Choose(std::size(kTexts))]; }
  bool IsInside(Named const& object) { return object.GetNamespace() == m_space.get(); }
  Named* Owner(std::wstring const& name) {
    auto const owner = std::find_if(m_names.begin(), m_names.end(), [&](auto const& i) {
      return i.second == name && IsInside(*i.first);
    });
    return owner == m_names.end() ? nullptr : owner->first.get();
  }
  std::wstring Free(std::wstring const& name, Named const* own) {
    Named const* const owner = Owner(name);
    if (owner == nullptr || owner == own) return name;
    int& number = m_numbers.try_emplace(name, 1).first->second;
    std::wstring numbered;
    for (int i = 2; own != nullptr && i <= std::max(number, 4); ++i) {
      numbered = name + L" (" + std::to_wstring(i) + L")";
      if (own->GetName() == numbered) return numbered;  // what it has already will do
    }
    do {
      numbered = name + L" (" + std::to_wstring(++number) + L")";
    } while (Owner(numbered) != nullptr);
    return numbered;
  }

  void Edit() {
    if (m_names.size() < 4 || (m_names.size() < 12 && Choose(4) == 0)) {
      std::wstring const name = Text();
      m_names.emplace_back(new Named(name), name);
    }
    auto const chosen = m_names.begin() + Choose(m_names.size());
    Named& object = *chosen->first;
    bool const isInside = IsInside(object);
    switch (Choose(6)) {
      case 0:
        EXPECT_EQ(m_space->AddNamedObject(object), !isInside && !Owner(object.GetName()));
        break;
      case 1:
        if (!isInside) chosen->second = Free(chosen->second, nullptr);
        EXPECT_EQ(m_space->AddUnderFreeName(object), !isInside);
        break;
      case 2:
        EXPECT_EQ(m_space->RemoveNamedObject(object), isInside);
        EXPECT_EQ(object.GetNamespace(), nullptr);
        break;
      case 3:
        if (Choose(3) == 0) m_names.erase(chosen);
        break;
      default: {
        std::wstring const name = Text();
        chosen->second = isInside ? Free(name, &object) : name;
        m_listener->heard.clear();
        object.SetName(name);
        Hearing::Names expected;
        if (isInside) expected.emplace_back(&object, chosen->second);
        EXPECT_EQ(m_listener->heard, expected);
      }
    }
  }

  std::mt19937 m_random;
  Pointer<NStrictNamespace> const m_space{new NStrictNamespace};
  Pointer<Hearing> const m_listener{new Hearing};
  std::vector<std::pair<NamedPointer, std::wstring>> m_names;
  std::map<std::wstring, int> m_numbers;
};

TEST(Names, RandomEditsOfAStrictNamespace) {
  for (unsigned seed = 1; seed <= 200; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    Model(seed).Run();
    if (HasFailure()) return;
  }
}

TEST(Names, ATextThatIsTakenLeavesTheObjectANumberOfItsOwn) {
  auto const space = New<NStrictNamespace>();
  NamedPointer const owner(new Named(L"a"));
  space->AddNamedObject(*owner);
  int number = 1;
  for (std::wstring const name :
       {L"a (12)", L"a (9)", L"a (10000000000000000000)", L"a (1)", L"a (0)", L"a (02)", L"a ()",
        L"a (7", L"a (7) ", L"a (7x)", L"a(7)", L"b (7)", L"a (-7)", L"a ", L""}) {
    NamedPointer const object(new Named(name));
    ASSERT_TRUE(space->AddNamedObject(*object));
    object->SetName(L"a");
    bool const keeps = name == L"a (12)" || name == L"a (9)" || name.size() > 20;
    EXPECT_EQ(object->GetName(), keeps ? name : L"a (" + std::to_wstring(++number) + L")");
  }
}

TEST(Names, AnObjectStandsInOneNamespace) {
  Pointer<NStrictNamespace> first(new NStrictNamespace), second(new NStrictNamespace);
  NamedPointer const object(new Named(L"a")), copy(new Named(*object));
  EXPECT_TRUE(first->AddNamedObject(*object));
  EXPECT_FALSE(second->AddNamedObject(*object));
  EXPECT_FALSE(second->AddUnderFreeName(*object));
  EXPECT_FALSE(second->RemoveNamedObject(*object));
  EXPECT_EQ(object->GetNamespace(), first.get());
  EXPECT_TRUE(second->AddNamedObject(*copy)) << "a copy has the name and no namespace";
  first.reset();
  EXPECT_EQ(object->GetNamespace(), nullptr);
  object->SetName(L"b");
  EXPECT_TRUE(second->AddNamedObject(*object));
}

TEST(Names, AreSharedWhereTheNamespaceIsNotStrict) {
  auto const space = New<SharedNamespace>();
  NamedPointer const a(new Named(L"x")), b(new Named(L"x")), c(new Named(L"y"));
  EXPECT_TRUE(space->AddNamedObject(*a));
  EXPECT_TRUE(space->AddUnderFreeName(*b));
  EXPECT_TRUE(space->AddNamedObject(*c));
  c->SetName(L"x");
  EXPECT_EQ(c->GetName(), L"x");
  EXPECT_TRUE(space->RemoveNamedObject(*a));
  EXPECT_TRUE(space->RemoveNamedObject(*b));
  EXPECT_EQ(space->QueryNamedObject(L"x"), c.get());
}

TEST(Names, HandlerMayRenameAgainAndDropNamespaceAndObject) {
  auto space = New<NStrictNamespace>();
  NamedPointer object(new Named(L"a"));
  auto const listener = New<Hearing>();
  EXPECT_TRUE(space->AddNameListener(*listener));
  EXPECT_FALSE(space->AddNameListener(*listener));
  space->AddNamedObject(*object);
  listener->react = [&] {
    if (listener->heard.size() == 1) return object->SetName(L"c");
    space.reset();
    object.reset();
  };
  object->SetName(L"b");
  EXPECT_THAT(listener->heard, ElementsAre(Pair(testing::_, L"b"), Pair(testing::_, L"c")));
}

TEST(Names, ListenersAreHeldWeaklyAndCanBeRemoved) {
  auto const space = New<NStrictNamespace>();
  NamedPointer const object(new Named(L"a"));
  space->AddNamedObject(*object);
  Pointer<Hearing> removed(new Hearing), dead(new Hearing);
  space->AddNameListener(*removed);
  space->AddNameListener(*dead);
  dead.reset();
  EXPECT_TRUE(space->RemoveNameListener(*removed));
  EXPECT_FALSE(space->RemoveNameListener(*removed));
  object->SetName(L"b");
  EXPECT_TRUE(removed->heard.empty());
}

}  // namespace
}  // namespace corvanta::core::name
