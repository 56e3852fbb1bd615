// A squad of 1,000 keys at a random time, against another library's.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <boost/make_shared.hpp>
#include <vector>

#include "bench/key_times.h"
#include "bench/support.h"
#include "corvanta/data/animation/SquadInterpolator.h"
#include "corvanta/vx_math/euler_angles.h"
#if defined(CORVANTA_BENCH_GLM)
#define GLM_ENABLE_EXPERIMENTAL
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wshadow"
#pragma GCC diagnostic ignored "-Wpedantic"
#include <glm/glm.hpp>
#include <glm/gtx/quaternion.hpp>
#pragma GCC diagnostic pop
#endif

namespace {

using namespace corvanta;
using VX_Math::Quaternion;

std::vector<Quaternion> MakeRotations(bench::KeyTimes const& keys) {
  std::vector<Quaternion> rotations;
  float angle = 0.0f;
  for (std::size_t i = 0; i != keys.times.size(); ++i) {
    angle += 11.0f;
    rotations.push_back(VX_Math::CreateQuaternion({angle, 2.0f * angle, 0.3f * angle}, false));
  }
  return rotations;
}

void Ours(benchmark::State& state) {
  bench::KeyTimes const keys(state.range(0) != 0);
  data::animation::SquadInterpolator const squad(
      MakeRotations(keys), boost::make_shared<std::vector<double>>(keys.times));
  for (auto _ : state) benchmark::DoNotOptimize(squad.Evaluate(keys.Next()));
}
BENCHMARK(Ours)->Arg(0)->Arg(1);

/// Three slerps whose angles are known.
void ThreeSlerps(benchmark::State& state) {
  bench::KeyTimes const keys(false);
  std::vector<Quaternion> const rotations = MakeRotations(keys);
  for (auto _ : state) {
    double const t = keys.Next();
    auto const i = std::min(static_cast<std::size_t>(t), rotations.size() - 3);
    auto const s = static_cast<float>(t - static_cast<double>(i));
    Quaternion const p = VX_Math::Slerp(rotations[i], rotations[i + 1], s, 0.5f);
    Quaternion const q = VX_Math::Slerp(rotations[i + 1], rotations[i + 2], s, 0.4f);
    benchmark::DoNotOptimize(VX_Math::Slerp(p, q, 2.0f * s * (1.0f - s), 0.3f));
  }
}
BENCHMARK(ThreeSlerps);

#if defined(CORVANTA_BENCH_GLM)
struct GlmKeys {
  explicit GlmKeys(bench::KeyTimes const& keys) {
    for (Quaternion const& q : MakeRotations(keys)) rotations.emplace_back(q.w, q.x, q.y, q.z);
    for (std::size_t i = 0; i != rotations.size(); ++i) controls.push_back(GetControl(i));
  }
  glm::quat GetControl(std::size_t i) const {
    return glm::intermediate(rotations[i == 0 ? 0 : i - 1], rotations[i],
                             rotations[std::min(i + 1, rotations.size() - 1)]);
  }
  std::vector<glm::quat> rotations;
  std::vector<glm::quat> controls;
};

void Glm(benchmark::State& state) {
  bench::KeyTimes const keys(false);
  GlmKeys const squad(keys);
  for (auto _ : state) {
    double const t = keys.Next();
    auto const i = std::min(static_cast<std::size_t>(t), squad.rotations.size() - 2);
    auto const s = static_cast<float>(t - static_cast<double>(i));
    benchmark::DoNotOptimize(glm::squad(squad.rotations[i], squad.rotations[i + 1],
                                        squad.controls[i], squad.controls[i + 1], s));
  }
}
BENCHMARK(Glm);

void GlmWithControlPoints(benchmark::State& state) {
  bench::KeyTimes const keys(false);
  GlmKeys const squad(keys);
  for (auto _ : state) {
    double const t = keys.Next();
    auto const i = std::min(static_cast<std::size_t>(t), squad.rotations.size() - 2);
    auto const s = static_cast<float>(t - static_cast<double>(i));
    benchmark::DoNotOptimize(glm::squad(squad.rotations[i], squad.rotations[i + 1],
                                        squad.GetControl(i), squad.GetControl(i + 1), s));
  }
}
BENCHMARK(GlmWithControlPoints);
#endif

}  // namespace

int main(int argc, char** argv) {
  bench::NRun const run(argc, argv);
  for (char const* const spacing : {"0", "1"}) {
    bench::Report(std::string("squad of 1,000 keys, ") + bench::GetSpacing(spacing),
                  run.GetTime(std::string("Ours/") + spacing),
                  {{"floor: three slerps, angles known", run.GetTime("ThreeSlerps")},
                   {"glm, no search", run.GetTime("Glm")},
                   {"glm, with its control points", run.GetTime("GlmWithControlPoints")}},
                  "60 ns");
  }
}
