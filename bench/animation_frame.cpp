// A frame that writes 10,000 attributes through an animation node, with one listener attached.
#include <benchmark/benchmark.h>

#include <boost/intrusive_ptr.hpp>
#include <vector>

#include "bench/support.h"
#include "corvanta/data/domain/animation/NAnimationDomain.h"
#include "corvanta/data/domain/animation/NNodeAnimationTarget.h"
#include "corvanta/data/domain/light/NLightDomain.h"
#include "corvanta/data/timeline/NTimeLine.h"

namespace {

using namespace corvanta;

constexpr int kLights = 2500;
constexpr int kKeys = 10;
constexpr double kWrites = 4.0 * kLights;
wchar_t const* const kNames[] = {L"color.r", L"color.g", L"color.b", L"shadow.darkness"};

class Listener final : public data::events::attribute_change::NListener {
 public:
  double sum = 0.0;

 private:
  void OnAttributeChangeImpl(core::attribute::NAttributeHost&,
                             core::attribute::NAttribute const& attribute) override {
    sum += attribute.GetDouble();
  }
};

struct Scene {
  Scene() {
    multiplexer->AddObserver(*listener);
    for (int i = 0; i != kLights; ++i) {
      nodes.push_back(lights->CreateNode(core::node::NNodeID()));
      core::node::NNodeReference<data::domain::NNode> const reference(nodes.back());
      boost::intrusive_ptr<data::domain::animation::NAnimationTarget> const target(
          new data::domain::animation::NNodeAnimationTarget(reference));
      for (wchar_t const* const name : kNames) {
        boost::intrusive_ptr<data::operators::animation::NKeyFrameAnimation> const curve(
            new data::operators::animation::NKeyFrameAnimation);
        for (int key = 0; key != kKeys; ++key) curve->AddKey({12.0 * key, 0.1 * key});
        animation->AddAnimation({name, target}, *curve);
      }
    }
  }

  boost::intrusive_ptr<data::events::attribute_change::NMultiplexer> multiplexer{
      new data::events::attribute_change::NMultiplexer};
  boost::intrusive_ptr<Listener> listener{new Listener};
  boost::intrusive_ptr<data::domain::light::NLightDomain> lights{
      new data::domain::light::NLightDomain(nullptr, multiplexer.get())};
  boost::intrusive_ptr<data::domain::animation::NAnimationDomain> animations{
      new data::domain::animation::NAnimationDomain(nullptr, nullptr)};
  boost::intrusive_ptr<data::domain::animation::NAnimationNode> animation =
      animations->CreateNode(core::node::NNodeID());
  std::vector<boost::intrusive_ptr<data::domain::light::NLightNode>> nodes;
};

void Frame(benchmark::State& state) {
  Scene const scene;
  boost::intrusive_ptr<data::timeline::NTimeLine> const timeline(
      new data::timeline::NTimeLine(scene.animation));
  timeline->SetRepeatsFlag(true);
  for (auto _ : state) data::timeline::Update(*timeline, 1.0 / 60.0);
  benchmark::DoNotOptimize(scene.listener->sum);
}
BENCHMARK(Frame);

/// The same writes by the setters: what telling the listener costs alone.
void Setters(benchmark::State& state) {
  Scene const scene;
  double value = 0.0;
  for (auto _ : state) {
    value += 0.001;
    for (auto const& light : scene.nodes) {
      light->SetColorR(value);
      light->SetColorG(value);
      light->SetColorB(value);
      light->SetShadowDarkness(value);
    }
  }
  benchmark::DoNotOptimize(scene.listener->sum);
}
BENCHMARK(Setters);

}  // namespace

int main(int argc, char** argv) {
  bench::NRun const run(argc, argv);
  bench::Report("frame of 10,000 animated attributes, a write", run.GetTime("Frame") / kWrites,
                {{"floor: the same writes by setters", run.GetTime("Setters") / kWrites}}, "");
}
