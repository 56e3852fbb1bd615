// A curve of 1,000 keys at a random time, against others' linear interpolation.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <boost/intrusive_ptr.hpp>
#include <vector>

#include "bench/key_times.h"
#include "bench/support.h"
#include "corvanta/data/operators/animation/NKeyFrameAnimation.h"
#if defined(CORVANTA_BENCH_GSL)
#include <gsl/gsl_spline.h>
#endif

namespace {

using namespace corvanta;

void Ours(benchmark::State& state) {
  bench::KeyTimes const keys(state.range(0) != 0);
  boost::intrusive_ptr<data::operators::animation::NKeyFrameAnimation> const curve(
      new data::operators::animation::NKeyFrameAnimation);
  for (int i = 0; i != bench::kKeys; ++i) curve->AddKey({keys.times[i], keys.values[i]});
  for (auto _ : state) benchmark::DoNotOptimize(curve->CalculateValue(keys.Next()));
}
BENCHMARK(Ours)->Arg(0)->Arg(1);

/// The least that a search over the keys costs.
void BinarySearch(benchmark::State& state) {
  bench::KeyTimes const keys(state.range(0) != 0);
  for (auto _ : state) {
    double const t = keys.Next();
    auto const right = std::lower_bound(keys.times.begin(), keys.times.end(), t);
    auto const i = static_cast<std::size_t>(right - keys.times.begin());
    double value = keys.values.front();
    if (i == keys.times.size()) {
      value = keys.values.back();
    } else if (i != 0) {
      value =
          ((keys.times[i] - t) * keys.values[i - 1] + (t - keys.times[i - 1]) * keys.values[i]) /
          (keys.times[i] - keys.times[i - 1]);
    }
    benchmark::DoNotOptimize(value);
  }
}
BENCHMARK(BinarySearch)->Arg(0)->Arg(1);

#if defined(CORVANTA_BENCH_GSL)
void Gsl(benchmark::State& state) {
  bench::KeyTimes const keys(state.range(0) != 0);
  gsl_interp* const line = gsl_interp_alloc(gsl_interp_linear, bench::kKeys);
  gsl_interp_init(line, keys.times.data(), keys.values.data(), bench::kKeys);
  gsl_interp_accel* const accelerator = gsl_interp_accel_alloc();
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        gsl_interp_eval(line, keys.times.data(), keys.values.data(), keys.Next(), accelerator));
  }
  gsl_interp_accel_free(accelerator);
  gsl_interp_free(line);
}
BENCHMARK(Gsl)->Arg(0)->Arg(1);
#endif

}  // namespace

int main(int argc, char** argv) {
  bench::NRun const run(argc, argv);
  for (char const* const spacing : {"0", "1"}) {
    std::string const suffix = std::string("/") + spacing;
    bench::Report(std::string("curve of 1,000 keys, ") + bench::GetSpacing(spacing),
                  run.GetTime("Ours" + suffix),
                  {{"floor: binary search", run.GetTime("BinarySearch" + suffix)},
                   {"GSL, linear", run.GetTime("Gsl" + suffix)}},
                  "15 ns");
  }
}
