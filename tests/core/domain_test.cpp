#include "tests/support/test.h"

namespace corvanta::core::domain {
namespace {

using LightPointer = Pointer<NLightNode>;
using DomainPointer = Pointer<NLightDomain>;

DomainPointer MakeDomain(NDomainManager const* manager = nullptr) {
  return new NLightDomain(manager, nullptr);
}
LightPointer MakeLight(NNodeID const& id = NNodeID(), NDomainBase* domain = nullptr) {
  return new NLightNode(id, domain, nullptr);
}
std::vector<NLightNode*> Order(NLightDomain const& domain) {
  std::vector<NLightNode*> order;
  for (NLightNode& light : domain) order.push_back(&light);
  return order;
}

TEST(NodeIDs, AreNewInEveryChildProcess) {
  (void)NNodeID();  // the generator is there before the processes part
  std::set<std::wstring> ids;
  for (int i = 0; i != 3; ++i) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    pid_t const child = fork();
    std::wstring id = NNodeID().ToString();
    std::size_t const size = id.size() * sizeof(wchar_t);
    ids.insert(id);
    if (child == 0) _exit(write(ends[1], id.data(), size) < 0 ? 1 : 0);
    close(ends[1]);
    EXPECT_EQ(read(ends[0], id.data(), size), static_cast<ssize_t>(size));
    close(ends[0]);
    waitpid(child, nullptr, 0);
    ids.insert(id);
  }
  EXPECT_EQ(ids.size(), 6u);
}

/// Two domains that fight for the same nodes, against plain lists of them.
class Model {
 public:
  explicit Model(unsigned seed) : m_random(seed) {}

  void Run() {
    for (int step = 0; step != 300; ++step) {
      Edit();
      for (int d = 0; d != 2; ++d) {
        ASSERT_EQ(Order(*m_domains[d]), m_orders[d]) << step;
        ASSERT_EQ(m_domains[d]->GetNodeCount(), m_orders[d].size());
        std::set<std::wstring> names;
        for (NLightNode* const light : m_orders[d]) {
          ASSERT_EQ(light->GetDomain(), m_domains[d].get());
          ASSERT_EQ(m_domains[d]->QueryNode(light->GetID()), light);
          ASSERT_EQ(m_domains[d]->QueryNamedObject(light->GetName()), light);
          ASSERT_TRUE(names.insert(light->GetName()).second);
        }
      }
    }
    // Nodes with another holder survive their domain.
    for (auto& domain : m_domains) domain.reset();
    for (auto const& light : m_lights) {
      ASSERT_EQ(light->GetDomain(), nullptr);
      ASSERT_EQ(light->GetNamespace(), nullptr);
    }
  }

 private:
  int Choose(std::size_t count) {
    return std::uniform_int_distribution<int>(0, static_cast<int>(count) - 1)(m_random);
  }
  NNodeID AnyID() { return NNodeID(std::to_wstring(Choose(12))); }
  bool Has(int d, NNodeID const& id) const {
    return std::any_of(m_orders[d].begin(), m_orders[d].end(),
                       [&id](NLightNode* light) { return light->GetID() == id; });
  }

  void Edit() {
    int const d = Choose(2);
    NLightDomain& domain = *m_domains[d];
    auto& order = m_orders[d];
    if (m_lights.size() < 6) m_lights.push_back(MakeLight(AnyID(), Choose(3) ? nullptr : &domain));
    auto const chosen = m_lights.begin() + Choose(m_lights.size());
    LightPointer const light = *chosen;
    auto const at = std::find(order.begin(), order.end(), light.get());
    switch (Choose(7)) {
      case 0: {
        NNodeID const id = AnyID();
        bool const isTaken = Has(d, id);
        LightPointer const made = domain.CreateNode(id);
        ASSERT_EQ(made == nullptr, isTaken);
        if (made) order.push_back(made.get());
        if (made && Choose(2) == 0) m_lights.push_back(made);
        break;
      }
      case 1:
      case 2: {
        NDomainBase const* const own = light->GetDomain();
        bool const isWelcome = (own == nullptr || own == &domain) && !Has(d, light->GetID());
        unsigned const position = static_cast<unsigned>(Choose(order.size() + 3));
        bool const appends = Choose(2) == 0;
        std::wstring const name = light->GetName();
        ASSERT_EQ(appends ? domain.AddNode(*light) : domain.AddNode(*light, position), isWelcome);
        if (isWelcome) {
          auto const index = appends || position > order.size() ? order.size() : position;
          order.insert(order.begin() + static_cast<std::ptrdiff_t>(index), light.get());
        } else {
          ASSERT_EQ(light->GetName(), name);
        }
        break;
      }
      case 3:
      case 4: {
        bool const mayGo = at != order.end() && m_sealed[d].count(light.get()) == 0;
        ASSERT_EQ(domain.RemoveNode(*light), mayGo);
        if (mayGo) {
          order.erase(at);
          ASSERT_EQ(light->GetDomain(), nullptr);
          ASSERT_EQ(light->GetNamespace(), nullptr);
        }
        break;
      }
      case 5:
        if (Choose(4) == 0) {
          bool const seals = Choose(2) == 0;
          domain.SetIsReadOnlyFlag(seals);
          ASSERT_EQ(domain.IsReadOnly(), seals);
          m_sealed[d].clear();
          if (seals) m_sealed[d].insert(order.begin(), order.end());
        }
        break;
      default:
        m_lights.erase(chosen);
    }
  }

  std::mt19937 m_random;
  DomainPointer m_domains[2] = {MakeDomain(), MakeDomain()};
  std::vector<NLightNode*> m_orders[2];
  std::set<NLightNode*> m_sealed[2];
  std::vector<LightPointer> m_lights;
};

TEST(Domains, RandomEditsOfTwo) {
  for (unsigned seed = 1; seed <= 200; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    Model(seed).Run();
    if (HasFailure()) return;
  }
}

TEST(Domains, RefusedNodeIsNeitherDestroyedNorRenamed) {
  auto const domain = MakeDomain(), other = MakeDomain();
  NNodeID const id(L"the id");
  ASSERT_TRUE(domain->CreateNode(id));
  auto* const light = new NLightNode(id, nullptr, nullptr);  // nobody holds it yet
  EXPECT_FALSE(domain->AddNode(*light)) << "an id that is there";
  EXPECT_FALSE(domain->RemoveNode(*light));
  EXPECT_TRUE(other->AddNode(*light));
  LightPointer const held(light);
  EXPECT_EQ(light->GetName(), L"light");
  EXPECT_FALSE(other->AddNode(*light, 0)) << "a second time";
  EXPECT_FALSE(domain->AddNode(*light)) << "a node of another domain";
  auto const named = MakeLight();
  name::NStrictNamespace elsewhere;
  elsewhere.AddNamedObject(*named);
  EXPECT_FALSE(other->AddNode(*named)) << "an object of another namespace";
  EXPECT_EQ(other->QueryNode(named->GetID()), nullptr);
  EXPECT_TRUE(elsewhere.RemoveNamedObject(*named));
  EXPECT_TRUE(other->AddNode(*named));
  auto const camera = New<NCameraNode>(NNodeID(), nullptr, nullptr);
  EXPECT_FALSE(static_cast<NDomainBase&>(*other).AddNode(*camera)) << "another kind of node";
  EXPECT_EQ(camera->GetDomain(), nullptr);
  EXPECT_EQ(Order(*other).size(), 2u);
}

TEST(Domains, EndOfDomainAndManagerClearsTheLinks) {
  auto manager = std::make_unique<NDomainManager>();
  auto domain = MakeDomain(manager.get());
  auto const light = domain->CreateNode();
  domain->SetIsReadOnlyFlag(true);
  EXPECT_EQ(light->GetDomainManager(), manager.get());
  manager.reset();
  EXPECT_EQ(domain->GetManager(), nullptr);
  EXPECT_EQ(light->GetDomainManager(), nullptr);
  EXPECT_EQ(light->GetDomain(), domain.get());
  domain.reset();
  EXPECT_EQ(light->GetDomain(), nullptr);
  auto const next = MakeDomain();
  EXPECT_TRUE(next->AddNode(*light));
  EXPECT_TRUE(next->RemoveNode(*light)) << "the seal was the old domain's";
}

/// Asks everything around it when it ends.
class LastWords : public NLightNode {
 public:
  LastWords(NNodeID const& id, NDomainBase* domain, std::vector<std::wstring>& log)
      : NLightNode(id, domain, nullptr), m_log(log) {}
  ~LastWords() override {
    NDomainBase* const domain = GetDomain();
    m_log.push_back(
        domain->GetName() + L" of " +
        std::to_wstring(std::distance(GetDomainManager()->begin(), GetDomainManager()->end())));
    EXPECT_EQ(domain->QueryNode(GetID()), nullptr);
    EXPECT_FALSE(domain->RemoveNode(*this));
  }

 private:
  std::vector<std::wstring>& m_log;
};

TEST(Domains, NodesMayAskForDomainAndManagerInTheirEnd) {
  std::vector<std::wstring> log;
  {
    NDomainManager manager;
    for (wchar_t const* const name : {L"a", L"b"}) {
      auto const domain = MakeDomain(&manager);
      domain->SetName(name);
      manager.RegisterDomain(*domain, NLocator(NUri::CreateInternalUri(NPath(name))), L"");
      for (int i = 0; i != 2; ++i) {
        auto const node = New<LastWords>(NNodeID(), domain.get(), log);
        ASSERT_TRUE(domain->AddNode(*node));
      }
    }
  }
  EXPECT_THAT(log, ElementsAre(L"a of 1", L"a of 1", L"b of 0", L"b of 0"));
}

TEST(DomainManagers, RegisterReplacesAndUnregisterLetsGo) {
  NDomainManager manager;
  NLocator const here(NUri::CreateInternalUri(NPath(L"/here")));
  NLocator const there(NUri::CreateInternalUri(NPath(L"/there")));
  auto const first = MakeDomain(&manager), second = MakeDomain(&manager);
  manager.RegisterDomain(*first, here, L"First");
  manager.RegisterDomain(*first, there, L"Again");
  manager.RegisterDomain(*second, here, L"Second");
  EXPECT_EQ(manager.QueryDomain(here), second);
  EXPECT_EQ(manager.QueryDomain(there), first);
  manager.RegisterDomain(*second, here, L"Third");
  EXPECT_EQ(std::distance(manager.begin(), manager.end()), 2);
  EXPECT_EQ(manager.begin()->second.text, L"Third");
  EXPECT_FALSE(manager.UnregisterDomain(NLocator()));
  EXPECT_TRUE(manager.UnregisterDomain(here));
  EXPECT_FALSE(manager.UnregisterDomain(here));
  EXPECT_EQ(manager.QueryDomain(here), nullptr);
}

TEST(Domains, TypesCompareByAddress) {
  using namespace data::domain;
  EXPECT_EQ(MakeDomain()->GetType(), DT_LIGHT);
  wchar_t const elsewhere[] = L"light";
  EXPECT_EQ(DomainTypeFromString(elsewhere), DT_LIGHT);
  EXPECT_EQ(DomainTypeFromString(std::wstring(L"lightenvironment")), DT_LIGHT_ENV);
  for (wchar_t const* const name :
       {L"", L"Light", L"light ", static_cast<wchar_t const*>(nullptr)}) {
    EXPECT_EQ(DomainTypeFromString(name), nullptr);
  }
}

TEST(Domains, TwoHundredThousandDefaultNames) {
  constexpr int kCount = 200000;
  auto domain = MakeDomain();
  LightPointer last;
  for (int i = 0; i != kCount; ++i) last = domain->CreateNode();
  EXPECT_EQ(Order(*domain)[0]->GetName(), L"light");
  EXPECT_EQ(last->GetName(), L"light (200000)");
  EXPECT_EQ(domain->GetNodeCount(), static_cast<std::size_t>(kCount));
  // One text all over again, and everything ends on an ordinary stack.
  for (NLightNode* const light : Order(*domain)) light->SetName(L"sun");
  EXPECT_EQ(last->GetName(), L"sun (200000)");
  domain.reset();
  EXPECT_EQ(last->GetDomain(), nullptr);
}

TEST(NodeIDs, CompareAsGuidOrAsText) {
  wchar_t const* const kUpper = L"0123ABCD-4567-89EF-0123-456789ABCDEF";
  struct {
    char const* name;
    wchar_t const* text;
    bool isTheGuid;
    wchar_t const* written;
  } const rows[] = {
      {"upper", kUpper, true, kUpper},
      {"lower", L"0123abcd-4567-89ef-0123-456789abcdef", true, kUpper},
      {"braces", L"{0123abCD-4567-89ef-0123-456789ABcdef}", true, kUpper},
      {"one brace", L"{0123ABCD-4567-89EF-0123-456789ABCDEF", false, nullptr},
      {"no hyphens", L"0123ABCD456789EF0123456789ABCDEF", false, nullptr},
      {"hyphen moved", L"0123ABC-D4567-89EF-0123-456789ABCDEF", false, nullptr},
      {"no digit", L"0123ABCD-4567-89EF-0123-456789ABCDEG", false, nullptr},
      {"longer", L"0123ABCD-4567-89EF-0123-456789ABCDEF0", false, nullptr},
      {"empty", L"", false, nullptr},
      {"other text", L"light", false, nullptr},
  };
  NNodeID const guid(kUpper);
  for (auto const& row : rows) {
    SCOPED_TRACE(row.name);
    NNodeID const id(row.text), copy(id);
    EXPECT_EQ(id == guid, row.isTheGuid);
    EXPECT_EQ(id.ToString(), row.written != nullptr ? row.written : row.text);
    EXPECT_EQ(copy, id);
    EXPECT_EQ(copy.GetHash(), id.GetHash());
    EXPECT_EQ(NNodeID(id.ToString()), id);
    EXPECT_FALSE(id < copy);
    EXPECT_EQ((id < guid) + (guid < id), row.isTheGuid ? 0 : 1);
  }
  EXPECT_FALSE(NNodeID(L"a") == NNodeID(L"A"));
  std::set<NNodeID> fresh;
  for (int i = 0; i != 10000; ++i) EXPECT_TRUE(fresh.insert(NNodeID()).second);
}

TEST(NodeReferences, ReadAsNullWhenDeadOrOfAnotherKind) {
  auto const domain = MakeDomain();
  auto light = domain->CreateNode();
  NNodeReference<NLightNode> const reference(*light);
  NNodeReference<NLightNode const> const constReference = reference;
  NNodeReference<node::NNode> const plain = reference;
  NNodeReference<NCameraNode> const wrong(reference);
  NNodeReference<NLightNode> const empty, back(wrong);
  EXPECT_EQ(reference.Get(), light);
  EXPECT_EQ(constReference.Get(), light);
  EXPECT_EQ(plain.Get(), light);
  EXPECT_EQ(back.Get(), light) << "the kind is judged when it is read";
  EXPECT_EQ(wrong.Get(), nullptr);
  EXPECT_TRUE(wrong);
  EXPECT_TRUE(wrong.Equals(reference));
  EXPECT_FALSE(empty);
  EXPECT_TRUE(empty < reference);
  EXPECT_FALSE(reference < back);
  EXPECT_FALSE(back < reference);

  domain->RemoveNode(*light);
  EXPECT_EQ(reference.Get(), light) << "it refers to the node, wherever that is";
  light.reset();
  EXPECT_EQ(reference.Get(), nullptr);
  EXPECT_TRUE(reference) << "a dead node isn't nothing";
  EXPECT_TRUE(reference == back);
  auto const another = domain->CreateNode();
  EXPECT_FALSE(NNodeReference<NLightNode>(another) == reference);
  EXPECT_TRUE(reference < NNodeReference<NLightNode>(another));
}

}  // namespace
}  // namespace corvanta::core::domain
