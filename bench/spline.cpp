// A natural cubic spline of 1,000 keys at a random time, against others' splines.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <boost/make_shared.hpp>
#include <boost/math/interpolators/cardinal_cubic_b_spline.hpp>
#include <vector>

#include "bench/key_times.h"
#include "bench/support.h"
#include "corvanta/data/animation/CubicSplineInterpolator.h"
#if defined(CORVANTA_BENCH_GSL)
#include <gsl/gsl_spline.h>
#endif

namespace {

using namespace corvanta;

void Ours(benchmark::State& state) {
  bench::KeyTimes const keys(state.range(0) != 0);
  data::animation::CubicSplineInterpolator<double, double> const spline(
      keys.values, boost::make_shared<std::vector<double>>(keys.times));
  data::animation::Interpolator<double, double> const* interpolator = &spline;
  benchmark::DoNotOptimize(interpolator);
  for (auto _ : state) benchmark::DoNotOptimize(interpolator->Evaluate(keys.Next()));
}
BENCHMARK(Ours)->Arg(0)->Arg(1);

/// Keys one apart without any search: the polynomial alone.
void DirectIndex(benchmark::State& state) {
  bench::KeyTimes const keys(false);
  std::vector<data::animation::detail::SplineKnot> knots;
  for (double const value : keys.values) knots.push_back({value, 0.1 * value});
  for (auto _ : state) {
    double const t = keys.Next();
    auto const left = std::min(static_cast<std::size_t>(t), knots.size() - 2);
    double const b = t - static_cast<double>(left);
    benchmark::DoNotOptimize(data::animation::detail::EvaluateSpline(&knots[left], 1.0 - b, b));
  }
}
BENCHMARK(DirectIndex);

void Boost(benchmark::State& state) {
  bench::KeyTimes const keys(false);
  boost::math::interpolators::cardinal_cubic_b_spline<double> const spline(
      keys.values.begin(), keys.values.end(), 0.0, 1.0);
  for (auto _ : state) benchmark::DoNotOptimize(spline(keys.Next()));
}
BENCHMARK(Boost);

#if defined(CORVANTA_BENCH_GSL)
void Gsl(benchmark::State& state) {
  bench::KeyTimes const keys(state.range(0) != 0);
  gsl_spline* const spline = gsl_spline_alloc(gsl_interp_cspline, bench::kKeys);
  gsl_spline_init(spline, keys.times.data(), keys.values.data(), bench::kKeys);
  gsl_interp_accel* const accelerator = gsl_interp_accel_alloc();
  for (auto _ : state) {
    benchmark::DoNotOptimize(gsl_spline_eval(spline, keys.Next(), accelerator));
  }
  gsl_interp_accel_free(accelerator);
  gsl_spline_free(spline);
}
BENCHMARK(Gsl)->Arg(0)->Arg(1);
#endif

}  // namespace

int main(int argc, char** argv) {
  bench::NRun const run(argc, argv);
  for (char const* const spacing : {"0", "1"}) {
    std::string const suffix = std::string("/") + spacing;
    bench::Report(std::string("natural spline of 1,000 keys, ") + bench::GetSpacing(spacing),
                  run.GetTime("Ours" + suffix),
                  {{"floor: direct index, one apart", run.GetTime("DirectIndex")},
                   {"GSL", run.GetTime("Gsl" + suffix)},
                   {"Boost, one apart", run.GetTime("Boost")}},
                  "10 ns");
  }
}
