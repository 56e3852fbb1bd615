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
#include "corvanta/core/attribute/NAttribute.h"
#include "corvanta/core/domain/NDomainManager.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphGroupNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphItemDomain.h"
#include "corvanta/data/events/NEventMultiplexer.h"
#include "corvanta/data/events/attribute_change/NMultiplexer.h"

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

using data::domain::scenegraph::item::NSceneGraphGroupNode;
using data::domain::scenegraph::item::NSceneGraphItemDomain;

struct Scene {
  core::domain::NDomainManager manager;
  boost::intrusive_ptr<data::events::NEventMultiplexer> events{new data::events::NEventMultiplexer};
  boost::intrusive_ptr<NSceneGraphItemDomain> domain{
      new NSceneGraphItemDomain(&manager, &events->GetAttributeChangeEventMultiplexer(),
                                &events->GetSceneGraphModelEventMultiplexer(),
                                &events->GetSceneGraphHierarchyEventMultiplexer(),
                                &events->GetSceneGraphTreeHostEventMultiplexer())};

  boost::intrusive_ptr<NSceneGraphGroupNode> Make() const {
    return domain->CreateNode<NSceneGraphGroupNode>(core::node::NNodeID());
  }
};

void Ours(benchmark::State& state) {
  Scene const scene;
  std::vector<boost::intrusive_ptr<NSceneGraphGroupNode>> items(
      static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    for (auto& item : items) item = scene.Make();
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
std::unique_ptr<Values> MakeMap(NSceneGraphGroupNode const& item) {
  auto values = std::make_unique<Values>();
  for (auto i = item.GetAttributeBegin(); i != item.GetAttributeEnd(); ++i) {
    values->emplace(i->GetName(), i->GetDouble());
  }
  return values;
}

void MapOfVariants(benchmark::State& state) {
  Scene const scene;
  auto const model = scene.Make();
  std::vector<std::unique_ptr<Values>> items(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    for (auto& item : items) item = MakeMap(*model);
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
  auto const model = scene.Make();
  Memory const ours = Measure([&] { return scene.Make(); });
  Memory const floor = Measure(&MakeNumbers);
  Memory const map = Measure([&] { return MakeMap(*model); });
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
