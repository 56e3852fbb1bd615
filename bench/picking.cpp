// The nearest hit on a mesh of a million triangles, and among ten thousand meshes under a hundred
// groups.

#include <cmath>
#include <memory>
#include <random>
#include <vector>

#include "bench/pick_peer.h"
#include "bench/support.h"
#include "corvanta/core/domain/NDomainManager.h"
#include "corvanta/data/domain/geometry/NGeometryDomain.h"
#include "corvanta/data/domain/geometry/NPolygonSurface.h"
#include "corvanta/data/domain/scene/NSceneDomain.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphGroupNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphItemDomain.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"
#include "corvanta/data/domain/scenegraph/tree/NSceneGraphTreeDomain.h"
#include "corvanta/data/events/geometry_change/NMultiplexer.h"
#include "corvanta/data/events/scene/NMultiplexer.h"
#include "corvanta/data/operators/ray_picker/NRayPicker.h"
#include "corvanta/data/operators/ray_picker/detail/NTriangleIndex.h"
#include "corvanta/data/operators/ray_picker/detail/least_hit.h"

namespace {

namespace domain = corvanta::data::domain;
namespace item = domain::scenegraph::item;
namespace picker = corvanta::data::operators::ray_picker;
using corvanta::core::node::NNodeID;
using picker::detail::NTriangleIndex;
using VX_Math::Line;
using VX_Math::Matrix;
using VX_Math::Vec3;

constexpr std::size_t kRays = 4096;
auto const kAll = [](float) { return true; };

/// A ball with bumps, of 2 * `sides` * `sides` triangles.
struct Ball {
  std::vector<float> coords;
  std::vector<unsigned> indices;

  explicit Ball(unsigned sides, float radius = 1, Vec3 const& center = {}) {
    for (unsigned i = 0; i <= sides; ++i) {
      for (unsigned j = 0; j <= sides; ++j) {
        float const u = 6.2831853f * static_cast<float>(j) / static_cast<float>(sides);
        float const v = 3.1415927f * static_cast<float>(i) / static_cast<float>(sides);
        float const r = radius * (1 + 0.1f * std::sin(9 * u) * std::sin(11 * v));
        coords.insert(coords.end(),
                      {center.x + r * std::sin(v) * std::cos(u), center.y + r * std::cos(v),
                       center.z + r * std::sin(v) * std::sin(u)});
      }
    }
    for (unsigned i = 0; i != sides; ++i) {
      for (unsigned j = 0; j != sides; ++j) {
        unsigned const a = i * (sides + 1) + j, b = a + sides + 1;
        indices.insert(indices.end(), {a, a + 1, b, a + 1, b + 1, b});
      }
    }
  }
  boost::intrusive_ptr<domain::geometry::NPolygonSurface> MakeSurface() const {
    boost::intrusive_ptr<domain::geometry::NPolygonSurface> made(
        new domain::geometry::NPolygonSurface);
    made->Assign(coords, coords, indices, {});
    return made;
  }
};

/// Rays from a sphere around towards points within it.
struct Rays {
  std::vector<Vec3> origins, directions;

  explicit Rays(float radius, float within) {
    std::mt19937 random(1);
    std::uniform_real_distribution<float> any(-1, 1);
    for (std::size_t i = 0; i != kRays; ++i) {
      Vec3 from(any(random), any(random), any(random));
      from.Normalize();
      origins.push_back(from * radius);
      Vec3 to = Vec3(any(random), any(random), any(random)) * within - origins.back();
      to.Normalize();
      directions.push_back(to);
    }
  }
};

Ball const& GetBigBall() {
  static Ball const ball(708);
  return ball;
}
Rays const& GetRays() {
  static Rays const rays(3, 0.8f);
  return rays;
}

void MeshOfAMillion(benchmark::State& state) {
  NTriangleIndex const index(*GetBigBall().MakeSurface());
  std::size_t i = 0;
  for (auto _ : state) {
    i = (i + 1) % kRays;
    benchmark::DoNotOptimize(index.FindLeast(GetRays().origins[i], GetRays().directions[i], kAll));
  }
}
BENCHMARK(MeshOfAMillion);

void BuildAMillion(benchmark::State& state) {
  auto const surface = GetBigBall().MakeSurface();
  for (auto _ : state) benchmark::DoNotOptimize(NTriangleIndex(*surface));
}
BENCHMARK(BuildAMillion);

void RefitAMillion(benchmark::State& state) {
  auto const surface = GetBigBall().MakeSurface();
  NTriangleIndex index(*surface);
  for (auto _ : state) benchmark::DoNotOptimize(index.Refit(*surface));
  state.counters["bytes"] =
      static_cast<double>(index.GetBytes()) / static_cast<double>(index.GetTriangleCount());
}
BENCHMARK(RefitAMillion);

void ExhaustiveLoop(benchmark::State& state) {
  auto const surface = GetBigBall().MakeSurface();
  std::size_t i = 0;
  for (auto _ : state) {
    i = (i + 1) % kRays;
    benchmark::DoNotOptimize(picker::detail::FindLeastHitExhaustively(
        *surface, GetRays().origins[i], GetRays().directions[i], kAll));
  }
}
BENCHMARK(ExhaustiveLoop);

/// A hundred groups of a hundred small balls each, in a cube.
struct Crowd {
  corvanta::core::domain::NDomainManager manager;
  boost::intrusive_ptr<item::NSceneGraphItemDomain> items{
      new item::NSceneGraphItemDomain(&manager, nullptr, nullptr, nullptr, nullptr)};
  boost::intrusive_ptr<domain::scenegraph::tree::NSceneGraphTreeDomain> trees{
      new domain::scenegraph::tree::NSceneGraphTreeDomain(&manager, nullptr, nullptr)};
  boost::intrusive_ptr<domain::geometry::NGeometryDomain> geometries{
      new domain::geometry::NGeometryDomain(&manager, nullptr, nullptr)};
  boost::intrusive_ptr<domain::scene::NSceneDomain> scenes{
      new domain::scene::NSceneDomain(&manager, nullptr, nullptr, nullptr)};
  boost::intrusive_ptr<domain::scene::NSceneNode> scene = scenes->CreateNode(NNodeID());

  Crowd() {
    auto const geometry = geometries->CreateNode(NNodeID());
    geometry->AddSurface(*Ball(10, 0.015f).MakeSurface());
    auto const root = items->CreateNode<item::NSceneGraphGroupNode>(NNodeID());
    std::mt19937 random(3);
    std::uniform_real_distribution<double> any(-1, 1);
    for (int g = 0; g != 100; ++g) {
      auto const group = items->CreateNode<item::NSceneGraphGroupNode>(NNodeID());
      group->SetTranslationX(any(random));
      group->SetTranslationY(any(random));
      group->SetTranslationZ(any(random));
      for (int m = 0; m != 100; ++m) {
        auto const model = items->CreateNode<item::NSceneGraphModelNode>(NNodeID());
        model->SetGeometryNode(geometry);
        model->SetTranslationX(0.1 * any(random));
        model->SetTranslationY(0.1 * any(random));
        model->SetTranslationZ(0.1 * any(random));
        group->AddChild(*model);
      }
      root->AddChild(*group);
    }
    auto const tree = trees->CreateNode(NNodeID());
    tree->SetRoot(root);
    scene->SetSceneGraph(tree);
  }
};

void TenThousandMeshes(benchmark::State& state) {
  Crowd const crowd;
  std::size_t i = 0;
  for (auto _ : state) {
    i = (i + 1) % kRays;
    picker::NRayPicker pick;
    pick.SetRay(Line(GetRays().origins[i], GetRays().origins[i] + GetRays().directions[i]));
    crowd.scene->Accept(pick);
    pick.SortWithDistance();
    pick.CheckDetail();
    benchmark::DoNotOptimize(pick.GetPickCount());
  }
}
BENCHMARK(TenThousandMeshes);

#ifdef CORVANTA_BENCH_EMBREE
void Embree(benchmark::State& state) {
  corvanta::bench::PickPeer const peer(GetBigBall().coords, GetBigBall().indices);
  std::size_t i = 0;
  for (auto _ : state) {
    i = (i + 1) % kRays;
    benchmark::DoNotOptimize(peer.Hit(GetRays().origins[i], GetRays().directions[i]));
  }
}
BENCHMARK(Embree);

void EmbreeBuild(benchmark::State& state) {
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        std::make_unique<corvanta::bench::PickPeer>(GetBigBall().coords, GetBigBall().indices));
  }
}
BENCHMARK(EmbreeBuild);
#endif

}  // namespace

int main(int argc, char** argv) {
  corvanta::bench::NRun const run(argc, argv);
  corvanta::bench::Report(
      "nearest hit, mesh of 1,000,000 triangles", run.GetTime("MeshOfAMillion"),
      {{"exhaustive loop", run.GetTime("ExhaustiveLoop")}, {"Embree", run.GetTime("Embree")}},
      "must reach 1 us");
  corvanta::bench::Report("building the index of 1,000,000 triangles", run.GetTime("BuildAMillion"),
                          {{"Embree, one thread", run.GetTime("EmbreeBuild")}},
                          "must stay under 400 ms");
  corvanta::bench::Report("the index of 1,000,000 triangles with other coordinates",
                          run.GetTime("RefitAMillion"),
                          {{"building it", run.GetTime("BuildAMillion")}}, "");
  corvanta::bench::Report("nearest hit, 10,000 meshes under 100 groups",
                          run.GetTime("TenThousandMeshes"), {}, "must be below 11 us (aim 4 us)");
}
