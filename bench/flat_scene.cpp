// Cubes under one group, from a thousand to a million: the nearest hit, the box after one of them
// has moved, and a pick after a thousand have.

#include <array>
#include <cmath>
#include <memory>
#include <random>
#include <string>
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
#include "corvanta/data/domain/scenegraph/tree/bounding_box.h"
#include "corvanta/data/operators/ray_picker/NRayPicker.h"
#include "corvanta/data/operators/ray_picker/pick.h"

namespace {

namespace domain = corvanta::data::domain;
namespace item = domain::scenegraph::item;
namespace picker = corvanta::data::operators::ray_picker;
using corvanta::core::node::NNodeID;
using VX_Math::Line;
using VX_Math::Vec3;

constexpr std::size_t kRays = 4096;
constexpr std::size_t kMoved = 1000;
constexpr float kSpacing = 3;  // a cube of side 1 in each cube of this side, on average

std::vector<float> MakeCubeCoords(Vec3 const& at) {
  std::vector<float> coords;
  for (unsigned i = 0; i != 8; ++i) {
    coords.insert(coords.end(),
                  {at.x + ((i & 1) != 0 ? 0.5f : -0.5f), at.y + ((i & 2) != 0 ? 0.5f : -0.5f),
                   at.z + ((i & 4) != 0 ? 0.5f : -0.5f)});
  }
  return coords;
}
std::vector<unsigned> const kCubeIndices{0, 2, 1, 1, 2, 3, 4, 5, 6, 5, 7, 6, 0, 1, 4, 1, 5, 4,
                                         2, 6, 3, 3, 6, 7, 0, 4, 2, 2, 4, 6, 1, 3, 5, 3, 7, 5};

/// Where the cubes are, and rays through them.
struct Layout {
  float half;
  std::vector<Vec3> places, origins, directions;

  explicit Layout(std::size_t count) : half(kSpacing * std::cbrt(static_cast<float>(count)) / 2) {
    std::mt19937 random(1);
    std::uniform_real_distribution<float> any(-half, half);
    for (std::size_t i = 0; i != count; ++i) {
      places.emplace_back(any(random), any(random), any(random));
    }
    for (std::size_t i = 0; i != kRays; ++i) {
      Vec3 from(any(random), any(random), any(random));
      from.Normalize();
      origins.push_back(from * (2.5f * half));
      Vec3 to = Vec3(any(random), any(random), any(random)) * 0.8f - origins.back();
      to.Normalize();
      directions.push_back(to);
    }
  }
};

struct World {
  Layout layout;
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
  boost::intrusive_ptr<domain::scenegraph::tree::NSceneGraphTreeNode> tree =
      trees->CreateNode(NNodeID());
  std::vector<boost::intrusive_ptr<item::NSceneGraphModelNode>> models;
  std::size_t ray = 0, moved = 0;

  explicit World(std::size_t count) : layout(count) {
    auto const geometry = geometries->CreateNode(NNodeID());
    boost::intrusive_ptr<domain::geometry::NPolygonSurface> const surface(
        new domain::geometry::NPolygonSurface);
    auto const coords = MakeCubeCoords({});
    surface->Assign(coords, coords, kCubeIndices, {});
    geometry->AddSurface(*surface);
    auto const root = items->CreateNode<item::NSceneGraphGroupNode>(NNodeID());
    for (Vec3 const& place : layout.places) {
      auto const model = items->CreateNode<item::NSceneGraphModelNode>(NNodeID());
      model->SetGeometryNode(geometry);
      model->SetTranslationX(place.x);
      model->SetTranslationY(place.y);
      model->SetTranslationZ(place.z);
      root->AddChild(*model);
      models.push_back(model);
    }
    tree->SetRoot(root);
    scene->SetSceneGraph(tree);
    for (int i = 0; i != 8; ++i) Pick();
  }

  unsigned long Pick() {
    ray = (ray + 1) % kRays;
    picker::NRayPicker pick;
    pick.SetRay(Line(layout.origins[ray], layout.origins[ray] + layout.directions[ray]));
    scene->Accept(pick);
    pick.SortWithDistance();
    pick.CheckDetail();
    return pick.GetPickCount();
  }
  /// Moves the next model a little.
  void Move() {
    moved = (moved + 7919) % models.size();
    auto& model = *models[moved];
    double const x = static_cast<double>(layout.places[moved].x);
    model.SetTranslationX(model.GetTranslationX() == x ? x + 0.25 : x);
  }
};

World& GetWorld(std::size_t count) {
  static std::unique_ptr<World> world;
  if (!world || world->models.size() != count) {
    world.reset();
    world = std::make_unique<World>(count);
  }
  return *world;
}

void PickCubes(benchmark::State& state) {
  World& world = GetWorld(static_cast<std::size_t>(state.range(0)));
  std::size_t hits = 0;
  for (auto _ : state) hits += world.Pick();
  state.counters["hits"] = static_cast<double>(hits) / static_cast<double>(state.iterations());
}
BENCHMARK(PickCubes)->RangeMultiplier(10)->Range(1000, 1000000);

void BoxAfterOneMoved(benchmark::State& state) {
  World& world = GetWorld(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    world.Move();
    benchmark::DoNotOptimize(domain::scenegraph::tree::GetBoundingBox(*world.tree));
  }
}
BENCHMARK(BoxAfterOneMoved)->RangeMultiplier(10)->Range(1000, 1000000);

void MoveAThousand(benchmark::State& state) {
  World& world = GetWorld(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    for (std::size_t i = 0; i != kMoved; ++i) world.Move();
    state.PauseTiming();
    world.Pick();
    state.ResumeTiming();
  }
}
BENCHMARK(MoveAThousand)->RangeMultiplier(10)->Range(10000, 1000000);

void MoveAThousandAndPick(benchmark::State& state) {
  World& world = GetWorld(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    for (std::size_t i = 0; i != kMoved; ++i) world.Move();
    benchmark::DoNotOptimize(world.Pick());
  }
}
BENCHMARK(MoveAThousandAndPick)->RangeMultiplier(10)->Range(10000, 1000000);

/// The rays of a small picture: 64 by 64 from one point.
std::vector<Line> MakePicture(Layout const& layout) {
  std::vector<Line> rays;
  Vec3 const from(0, 0, 3 * layout.half);
  for (int y = 0; y != 64; ++y) {
    for (int x = 0; x != 64; ++x) {
      Vec3 const to(layout.half * (static_cast<float>(x) / 32 - 1),
                    layout.half * (static_cast<float>(y) / 32 - 1), 0);
      rays.emplace_back(from, to);
    }
  }
  return rays;
}

void PictureRayByRay(benchmark::State& state) {
  World& world = GetWorld(static_cast<std::size_t>(state.range(0)));
  auto const rays = MakePicture(world.layout);
  for (auto _ : state) {
    std::vector<picker::RayHits> hits;
    for (Line const& ray : rays) {
      picker::NRayPicker pick;
      pick.SetRay(ray);
      world.scene->Accept(pick);
      pick.SortWithDistance();
      pick.CheckDetail();
      auto& found = hits.emplace_back();
      for (unsigned long i = 0; i != pick.GetPickCount(); ++i) {
        found.paths.push_back(pick.GetItemPath(i));
        found.points.push_back(pick.GetAbsHitPoint(i));
      }
    }
    benchmark::DoNotOptimize(hits);
  }
}
BENCHMARK(PictureRayByRay)->RangeMultiplier(10)->Range(1000, 1000000);

void PictureAtOnce(benchmark::State& state) {
  World& world = GetWorld(static_cast<std::size_t>(state.range(0)));
  auto const rays = MakePicture(world.layout);
  for (auto _ : state) {
    std::vector<picker::RayHits> hits;
    picker::PickDetail(*world.scene, rays, hits);
    benchmark::DoNotOptimize(hits);
  }
}
BENCHMARK(PictureAtOnce)->RangeMultiplier(10)->Range(1000, 1000000);

void PictureVisible(benchmark::State& state) {
  World& world = GetWorld(static_cast<std::size_t>(state.range(0)));
  std::vector<Vec3> points;
  for (Line const& ray : MakePicture(world.layout)) {
    points.push_back(ray.GetOrigin() + ray.GetDirection() * (4 * world.layout.half));
  }
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        picker::AreVisible(*world.scene, Vec3(0, 0, 3 * world.layout.half), points));
  }
}
BENCHMARK(PictureVisible)->RangeMultiplier(10)->Range(1000, 1000000);

#ifdef CORVANTA_BENCH_EMBREE
void Embree(benchmark::State& state) {
  static std::unique_ptr<corvanta::bench::PickPeer> peer;
  static std::size_t made = 0;
  auto const count = static_cast<std::size_t>(state.range(0));
  Layout const layout(count);
  if (made != count) {
    std::vector<float> coords;
    std::vector<unsigned> indices;
    for (Vec3 const& place : layout.places) {
      auto const first = static_cast<unsigned>(coords.size() / 3);
      auto const cube = MakeCubeCoords(place);
      coords.insert(coords.end(), cube.begin(), cube.end());
      for (unsigned const corner : kCubeIndices) indices.push_back(first + corner);
    }
    peer.reset();
    peer = std::make_unique<corvanta::bench::PickPeer>(coords, indices);
    made = count;
  }
  std::size_t i = 0;
  for (auto _ : state) {
    i = (i + 1) % kRays;
    benchmark::DoNotOptimize(peer->Hit(layout.origins[i], layout.directions[i]));
  }
}
BENCHMARK(Embree)->RangeMultiplier(10)->Range(1000, 1000000);
#endif

}  // namespace

int main(int argc, char** argv) {
  // In order: a scene of a million is made once.
  std::vector<char*> arguments(argv, argv + argc);
  std::string inOrder = "--benchmark_enable_random_interleaving=false";
  arguments.insert(arguments.begin() + 1, inOrder.data());
  corvanta::bench::NRun const run(static_cast<int>(arguments.size()), arguments.data());
  for (std::string const count : {"1000", "10000", "100000", "1000000"}) {
    corvanta::bench::Report("pick among " + count + " cubes", run.GetTime("PickCubes/" + count),
                            {{"Embree", run.GetTime("Embree/" + count)}},
                            "at 100000 at most 2 us and 6 times the peer");
    corvanta::bench::Report("4,096 rays at once among " + count,
                            run.GetTime("PictureAtOnce/" + count),
                            {{"the rays one by one", run.GetTime("PictureRayByRay/" + count)},
                             {"whether they are blocked", run.GetTime("PictureVisible/" + count)}},
                            "at most a third of one by one");
    corvanta::bench::Report("box of " + count + " cubes, one moved",
                            run.GetTime("BoxAfterOneMoved/" + count), {}, "at 100000 at most 3 us");
    corvanta::bench::Report("1,000 of " + count + " moved, and a pick",
                            run.GetTime("MoveAThousandAndPick/" + count),
                            {{"the 1,000 writes", run.GetTime("MoveAThousand/" + count)}},
                            "at 100000 at most twice the writes");
  }
}
