// One attribute write, told to eight listeners, against the same write and eight calls by others'
// means.
#include <benchmark/benchmark.h>

#include <atomic>
#include <boost/intrusive_ptr.hpp>
#include <boost/signals2.hpp>
#include <memory>
#include <thread>
#include <vector>

#include "bench/support.h"
#include "corvanta/core/attribute/NAttribute.h"
#include "corvanta/core/domain/NDomainManager.h"
#include "corvanta/data/domain/light/NLightDomain.h"
#include "corvanta/data/events/attribute_change/NListener.h"
#include "corvanta/data/events/attribute_change/NMultiplexer.h"
#if defined(CORVANTA_BENCH_SIGCXX)
#include <sigc++/sigc++.h>
#endif

namespace {

using namespace corvanta;

constexpr int kListeners = 8;

class Listener : public data::events::attribute_change::NListener {
 public:
  long heard = 0;

 private:
  void OnAttributeChangeImpl(core::attribute::NAttributeHost&,
                             core::attribute::NAttribute const&) override {
    ++heard;
  }
};

void Ours(benchmark::State& state) {
  boost::intrusive_ptr<data::events::attribute_change::NMultiplexer> const multiplexer(
      new data::events::attribute_change::NMultiplexer);
  core::domain::NDomainManager const manager;
  boost::intrusive_ptr<data::domain::light::NLightDomain> const domain(
      new data::domain::light::NLightDomain(&manager, multiplexer.get()));
  auto const light = domain->CreateNode(core::node::NNodeID());
  std::vector<boost::intrusive_ptr<Listener>> listeners;
  for (int i = 0; i != kListeners; ++i) {
    listeners.emplace_back(new Listener);
    multiplexer->AddObserver(*listeners.back());
  }
  double value = 0;
  for (auto _ : state) light->SetColorR(value += 1);
  for (auto const& listener : listeners) benchmark::DoNotOptimize(listener->heard);
}
BENCHMARK(Ours);

/// The same write where nobody listens.
void Unheard(benchmark::State& state) {
  boost::intrusive_ptr<data::events::attribute_change::NMultiplexer> const multiplexer(
      new data::events::attribute_change::NMultiplexer);
  core::domain::NDomainManager const manager;
  boost::intrusive_ptr<data::domain::light::NLightDomain> const domain(
      new data::domain::light::NLightDomain(&manager, multiplexer.get()));
  auto const light = domain->CreateNode(core::node::NNodeID());
  double value = 0;
  for (auto _ : state) light->SetColorR(value += 1);
}
BENCHMARK(Unheard);

/// The least that weak listeners cost: a count up and down around a virtual call, in one array.
struct Counted {
  virtual ~Counted() = default;
  virtual void OnChange(double const&) = 0;
  std::atomic<int> count{1};
};
struct CountedListener final : Counted {
  void OnChange(double const&) override { ++heard; }
  long heard = 0;
};
struct Weak {
  Counted* object;
};

void Floor(benchmark::State& state) {
  std::vector<std::unique_ptr<Counted>> listeners;
  std::vector<std::unique_ptr<Weak>> weak;
  for (int i = 0; i != kListeners; ++i) {
    listeners.push_back(std::make_unique<CountedListener>());
    weak.push_back(std::unique_ptr<Weak>(new Weak{listeners.back().get()}));
  }
  auto const stored = std::make_unique<double>(0);
  for (auto _ : state) {
    *stored += 1;
    benchmark::ClobberMemory();
    for (auto const& reference : weak) {
      Counted* const object = reference->object;
      if (object == nullptr) continue;
      int count = object->count.load(std::memory_order_relaxed);
      while (count > 0 && !object->count.compare_exchange_weak(count, count + 1)) {
      }
      if (count <= 0) continue;
      object->OnChange(*stored);
      if (object->count.fetch_sub(1, std::memory_order_acq_rel) == 1) delete object;
    }
  }
}
BENCHMARK(Floor);

#if defined(CORVANTA_BENCH_SIGCXX)
struct SigcListener : sigc::trackable {
  void OnChange(double const&) { ++heard; }
  long heard = 0;
};

void Sigcxx(benchmark::State& state) {
  sigc::signal<void, double const&> changed;
  std::vector<std::unique_ptr<SigcListener>> listeners;
  for (int i = 0; i != kListeners; ++i) {
    listeners.push_back(std::make_unique<SigcListener>());
    changed.connect(sigc::mem_fun(*listeners.back(), &SigcListener::OnChange));
  }
  auto const stored = std::make_unique<double>(0);
  for (auto _ : state) {
    *stored += 1;
    changed.emit(*stored);
  }
  for (auto const& listener : listeners) benchmark::DoNotOptimize(listener->heard);
}
BENCHMARK(Sigcxx);
#endif

template <class Mutex>
void Signals2(benchmark::State& state) {
  struct Listener2 {
    long heard = 0;
  };
  namespace signals = boost::signals2;
  typename signals::signal_type<void(double const&), signals::keywords::mutex_type<Mutex>>::type
      changed;
  std::vector<std::shared_ptr<Listener2>> listeners;
  for (int i = 0; i != kListeners; ++i) {
    listeners.push_back(std::make_shared<Listener2>());
    Listener2* const listener = listeners.back().get();
    using Slot = typename decltype(changed)::slot_type;
    changed.connect(
        Slot([listener](double const&) { ++listener->heard; }).track_foreign(listeners.back()));
  }
  auto const stored = std::make_unique<double>(0);
  for (auto _ : state) {
    *stored += 1;
    changed(*stored);
  }
  for (auto const& listener : listeners) benchmark::DoNotOptimize(listener->heard);
}
void Signals2WithMutex(benchmark::State& state) { Signals2<boost::signals2::mutex>(state); }
void Signals2WithoutMutex(benchmark::State& state) {
  Signals2<boost::signals2::dummy_mutex>(state);
}
BENCHMARK(Signals2WithMutex);
BENCHMARK(Signals2WithoutMutex);

void ReportRun(bench::NRun const& run, char const* row, char const* goal) {
  auto const time = [&](char const* name) { return run.GetTime(name) / kListeners; };
  bench::Report(row, time("Ours"),
                {{"floor: array of weak references, atomic", time("Floor")},
                 {"libsigc++, trackable", time("Sigcxx")},
                 {"Boost.Signals2, tracked", time("Signals2WithMutex")},
                 {"Boost.Signals2, tracked, no mutex", time("Signals2WithoutMutex")}},
                goal);
}

}  // namespace

int main(int argc, char** argv) {
  bench::NRun const alone(argc, argv);
  // From the first thread on, counts are changed by locked instructions; libsigc++ knows none.
  std::thread([] {}).join();
  bench::NRun const threaded(argc, argv);
  ReportRun(alone, "attribute write, per listener (of 8)", "must be below libsigc++");
  ReportRun(threaded, "the same in a process with threads", "");
  bench::Report("attribute write that nobody hears", alone.GetTime("Unheard"),
                {{"the same in a process with threads", threaded.GetTime("Unheard")}}, "");
}
