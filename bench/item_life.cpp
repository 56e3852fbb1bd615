// Making and dropping an item with twenty-five attributes, an id, a name and a domain, in time and
// memory.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <map>
#include <memory>
#include <new>
#include <string>
#include <variant>
#include <vector>

#include "bench/support.h"
#include "corvanta/core/attribute/NTypedAttribute.h"
#include "corvanta/core/domain/NDomainManager.h"
#include "corvanta/core/observer/NObservable.h"
#include "corvanta/core/string_table/string_table.h"
#include "corvanta/data/domain/NDomain.h"
#include "corvanta/data/events/scene_graph_hierarchy/NMultiplexer.h"

namespace {
std::size_t g_allocations = 0;
std::size_t g_bytes = 0;
}  // namespace

// Not inlined, or the compiler takes malloc and free for a mismatched pair.
[[gnu::noinline]] void* operator new(std::size_t size) {
  ++g_allocations;
  g_bytes += size;
  if (void* const memory = std::malloc(size)) return memory;
  throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* memory) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

namespace {

using namespace corvanta;

// So few that they stay in the cache, and so many that they don't.
constexpr int kFew = 100;
constexpr int kMany = 10000;

wchar_t const* const kDoubles[] = {
    L"scale.x",      L"scale.y",       L"scale.z",       L"rotation.x",    L"rotation.y",
    L"rotation.z",   L"translation.x", L"translation.y", L"translation.z", L"pivot.x",
    L"pivot.y",      L"pivot.z",       L"offset.x",      L"offset.y",      L"offset.z",
    L"localScale.x", L"localScale.y",  L"localScale.z",  L"opacity",       L"priority"};
wchar_t const* const kBools[] = {L"isVisible", L"isLocked", L"isAbsolute", L"isFlipped",
                                 L"isSelectable"};

/// The shape of a scene graph item: attributes in a block, one observable, a domain that attaches.
class Item
    : public data::domain::NNode,
      public core::observer::NObservable<Item, data::events::scene_graph_hierarchy::NListener> {
 public:
  Item(core::node::NNodeID const& id, core::domain::NDomainBase* domain,
       data::events::attribute_change::NMultiplexer const* multiplexer)
      : NNode(id, domain, multiplexer,
              core::string_table::GetString(core::string_table::DATA_GROUP)) {
    ReserveAttributes(25);
    m_block = std::make_unique<Block>(*this);
  }
  ~Item() override = default;

 private:
  struct Block {
    explicit Block(Item& host)
        : doubles(MakeSlots<double>(host, kDoubles, std::make_index_sequence<20>())),
          bools(MakeSlots<bool>(host, kBools, std::make_index_sequence<5>())) {}
    std::array<core::attribute::NTypedAttribute<double>, 20> doubles;
    std::array<core::attribute::NTypedAttribute<bool>, 5> bools;
    std::vector<boost::intrusive_ptr<Item>> children;
    Item* parent = nullptr;
  };
  template <class T, std::size_t kCount, std::size_t... kIndex>
  static std::array<core::attribute::NTypedAttribute<T>, kCount> MakeSlots(
      Item& host, wchar_t const* const (&names)[kCount], std::index_sequence<kIndex...>) {
    static std::array<core::attribute::detail::NNameIndex, kCount> const interned = {
        core::attribute::detail::InternName(names[kIndex])...};
    return {core::attribute::NTypedAttribute<T>(host, interned[kIndex], T(1))...};
  }

  void AcceptImpl(data::domain::NNodeWatcher&) const override {}
  void AcceptImpl(data::domain::NNodeModifier&) override {}

  std::unique_ptr<Block> m_block;
};

class ItemDomain : public data::domain::NDomain<Item, core::name::NStrictNamespace> {
 public:
  ItemDomain(core::domain::NDomainManager const* manager,
             data::events::attribute_change::NMultiplexer const* attributes,
             data::events::scene_graph_hierarchy::NMultiplexer* hierarchy)
      : NDomain(manager, attributes, L"items"), m_hierarchy(hierarchy) {}

 private:
  wchar_t const* GetTypeImpl() const override { return L"item"; }
  bool InitializeNode(Item& node) const override {
    return Attach<data::events::scene_graph_hierarchy::NListener>(m_hierarchy, node);
  }

  boost::intrusive_ptr<data::events::scene_graph_hierarchy::NMultiplexer> const m_hierarchy;
};

struct Scene {
  core::domain::NDomainManager manager;
  boost::intrusive_ptr<data::events::attribute_change::NMultiplexer> attributes{
      new data::events::attribute_change::NMultiplexer};
  boost::intrusive_ptr<data::events::scene_graph_hierarchy::NMultiplexer> hierarchy{
      new data::events::scene_graph_hierarchy::NMultiplexer};
  boost::intrusive_ptr<ItemDomain> domain{
      new ItemDomain(&manager, attributes.get(), hierarchy.get())};
};

void Ours(benchmark::State& state) {
  Scene const scene;
  std::vector<boost::intrusive_ptr<Item>> items(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    for (auto& item : items) item = scene.domain->CreateNode(core::node::NNodeID());
    for (auto& item : items) {
      scene.domain->RemoveNode(*item);
      item.reset();
    }
  }
}
BENCHMARK(Ours)->Arg(kFew)->Arg(kMany)->Unit(benchmark::kMicrosecond);

/// The least: the numbers alone, behind one pointer.
using Numbers = std::vector<double>;
std::unique_ptr<Numbers> MakeNumbers() { return std::make_unique<Numbers>(25, 1.0); }

void Floor(benchmark::State& state) {
  std::vector<std::unique_ptr<Numbers>> items(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    for (auto& item : items) item = MakeNumbers();
    for (auto& item : items) item.reset();
  }
}
BENCHMARK(Floor)->Arg(kFew)->Arg(kMany)->Unit(benchmark::kMicrosecond);

/// What is written first: a map from name to value in each item.
using Values = std::map<std::wstring, std::variant<double, long, bool, std::wstring>>;
std::unique_ptr<Values> MakeMap() {
  auto values = std::make_unique<Values>();
  for (wchar_t const* const name : kDoubles) values->emplace(name, 1.0);
  for (wchar_t const* const name : kBools) values->emplace(name, true);
  return values;
}

void MapOfVariants(benchmark::State& state) {
  std::vector<std::unique_ptr<Values>> items(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    for (auto& item : items) item = MakeMap();
    for (auto& item : items) item.reset();
  }
}
BENCHMARK(MapOfVariants)->Arg(kFew)->Arg(kMany)->Unit(benchmark::kMicrosecond);

struct Memory {
  double allocations;
  double bytes;
};

/// What one of many objects takes; what grows with the containers is in it by its share.
template <class Make>
Memory Measure(Make const& make) {
  std::vector<decltype(make())> made;
  made.reserve(kMany);
  std::size_t const allocations = g_allocations;
  std::size_t const bytes = g_bytes;
  for (int i = 0; i != kMany; ++i) made.push_back(make());
  return {static_cast<double>(g_allocations - allocations) / kMany,
          static_cast<double>(g_bytes - bytes) / kMany};
}

}  // namespace

int main(int argc, char** argv) {
  bench::NRun const run(argc, argv);
  Scene const scene;
  Memory const ours = Measure([&] { return scene.domain->CreateNode(core::node::NNodeID()); });
  Memory const floor = Measure(&MakeNumbers);
  Memory const map = Measure(&MakeMap);
  for (int const count : {kFew, kMany}) {
    std::string const suffix = "/" + std::to_string(count);
    auto const time = [&](char const* name) { return run.GetTime(name + suffix) / count; };
    bench::Report(
        "item, made and dropped, " + std::to_string(count) + " at a time", time("Ours"),
        {{"floor: 25 doubles", time("Floor")}, {"map of named variants", time("MapOfVariants")}},
        count == kFew ? "must reach 1.5 us (aim: 1 us)" : "");
  }
  bench::Report("item, bytes asked for", ours.bytes,
                {{"floor: 25 doubles", floor.bytes}, {"map of named variants", map.bytes}},
                "must reach 1,200 B (aim: 1,000 B)", bench::NUnit::kBytes);
  bench::Report(
      "item, allocations", ours.allocations,
      {{"floor: 25 doubles", floor.allocations}, {"map of named variants", map.allocations}},
      "must reach 12", bench::NUnit::kCount);
}
