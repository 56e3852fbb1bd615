// A transaction of 10,000 attribute writes and its undo, against the same writes alone and against
// a map of old values written by hand; and how often listeners are called for 10,000 other
// materials.
#include <benchmark/benchmark.h>

#include <boost/intrusive_ptr.hpp>
#include <cstdlib>
#include <unordered_map>
#include <vector>

#include "bench/support.h"
#include "corvanta/core/attribute/NAttribute.h"
#include "corvanta/data/document/NDocument.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"
#include "corvanta/data/history/NChangeSetListener.h"
#include "corvanta/data/history/NHistory.h"
#include "corvanta/data/history/NTransaction.h"

namespace {

using namespace corvanta;
using core::attribute::NAttribute;
using core::variant::NVariant;
using data::document::NDocument;
using data::domain::scenegraph::item::NSceneGraphModelNode;

constexpr std::size_t kWrites = 10000;
constexpr std::size_t kModels = 10000;

/// 10,000 numbers of many lights.
struct Lights {
  Lights() {
    while (attributes.size() < kWrites) {
      auto const light = document.GetLights().CreateNode();
      for (auto i = light->GetAttributeBegin(); i != light->GetAttributeEnd(); ++i) {
        bool const isTaken =
            i->GetKind() == core::variant::NVK_DOUBLE && attributes.size() < kWrites;
        if (isTaken) attributes.push_back(&*i);
      }
    }
  }
  void Write(double value) {
    for (NAttribute* const attribute : attributes) attribute->SetValue(NVariant(value), true);
  }

  NDocument document;
  std::vector<NAttribute*> attributes;
};

void Alone(benchmark::State& state) {
  Lights lights;
  double value = 0;
  for (auto _ : state) lights.Write(value += 1);
}
BENCHMARK(Alone);

void TransactionAndUndo(benchmark::State& state) {
  Lights lights;
  data::history::NHistory history(lights.document);
  double value = 0;
  for (auto _ : state) {
    data::history::NTransaction transaction(lights.document);
    lights.Write(value += 1);
    transaction.Commit(L"write");
    if (!history.Undo()) std::abort();
  }
}
BENCHMARK(TransactionAndUndo);

void MapByHand(benchmark::State& state) {
  Lights lights;
  double value = 0;
  for (auto _ : state) {
    value += 1;
    std::unordered_map<NAttribute*, NVariant> previous;
    for (NAttribute* const attribute : lights.attributes) {
      previous.try_emplace(attribute, attribute->GetValue());
      attribute->SetValue(NVariant(value), true);
    }
    for (auto const& [attribute, old] : previous) attribute->SetValue(old, true);
  }
}
BENCHMARK(MapByHand);

class Listener final : public data::history::NChangeSetListener {
 public:
  double called = 0;
  double changes = 0;

 private:
  void OnChangeSet(data::history::NChangeSet const& set) override {
    ++called;
    changes += static_cast<double>(set.GetChanges().size());
  }
};

/// The calls of a listener and the changes that they tell of.
std::pair<double, double> CountDeliveries() {
  NDocument document;
  std::vector<boost::intrusive_ptr<NSceneGraphModelNode>> models;
  for (std::size_t i = 0; i != kModels; ++i) {
    models.push_back(document.GetItems().CreateNode<NSceneGraphModelNode>());
  }
  auto const material = document.GetMaterials().CreateNode();
  boost::intrusive_ptr<Listener> const listener(new Listener);
  data::history::AddChangeSetListener(document, *listener);
  data::history::NTransaction transaction(document);
  for (auto const& model : models) model->SetMaterial(material);
  transaction.Commit(L"switch");
  return {listener->called, listener->changes};
}

}  // namespace

int main(int argc, char** argv) {
  bench::NRun const run(argc, argv);
  auto const time = [&run](char const* name) { return run.GetTime(name) / kWrites; };
  // The undo writes as often as the transaction.
  bench::Report("a write in a transaction or by its undo", time("TransactionAndUndo") / 2,
                {{"the write alone", time("Alone")},
                 {"with a map of old values by hand", time("MapByHand") / 2}},
                "at most 3 times the write alone");
  auto const [called, changes] = CountDeliveries();
  bench::Report("calls of a listener for 10,000 other materials", called,
                {{"changes that they tell of", changes}}, "one", bench::NUnit::kCount);
}
