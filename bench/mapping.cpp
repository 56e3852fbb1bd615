// Texture coordinates of a mesh by projection, per vertex: the projectors' passes against plain
// loops and the vector functions of the C library, and the whole mapping with its seam.
#include <benchmark/benchmark.h>
#if defined(CORVANTA_BENCH_MVEC)
#include <immintrin.h>
#endif

#include <cmath>
#include <cstddef>
#include <random>
#include <vector>

#include "bench/support.h"
#include "corvanta/core/domain/NDomainManager.h"
#include "corvanta/data/domain/material/texture_mapping/NProjectionMapping.h"
#include "corvanta/data/domain/projection/NProjectionDomain.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphItemDomain.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"
#include "corvanta/data/domain/scenegraph/tree/NSceneGraphTreeDomain.h"
#include "corvanta/data/events/NEventMultiplexer.h"
#include "corvanta/data/events/attribute_change/NMultiplexer.h"
#include "corvanta/data/operators/projector/NBoxProjector.h"
#include "corvanta/data/operators/projector/NCylinderProjector.h"
#include "corvanta/data/operators/projector/NSphereProjector.h"

namespace {

using namespace corvanta;
using namespace corvanta::data::domain::operators::projector;
using data::structs::UVW;
using data::structs::XYZ;

// A grid of 500 x 500 vertices: in the cache of the machine, not of one core.
constexpr unsigned kSide = 500;
constexpr unsigned kVertices = kSide * kSide;

struct Mesh {
  Mesh() {
    std::mt19937 random(7);
    std::uniform_real_distribution<float> noise(0.9f, 1.1f);
    for (unsigned i = 0; i != kSide; ++i) {
      for (unsigned j = 0; j != kSide; ++j) {
        float const around = 6.2831853f * static_cast<float>(i) / kSide;
        float const down = 3.1415927f * (static_cast<float>(j) + 0.5f) / kSide;
        float const radius = std::sin(down) * noise(random);
        float const p[3] = {radius * std::sin(around), std::cos(down), radius * std::cos(around)};
        coords.insert(coords.end(), p, p + 3);
        normals.insert(normals.end(), p, p + 3);
        unsigned const at = i * kSide + j;
        unsigned const next = (at + kSide) % kVertices;
        if (j + 1 != kSide) {
          indices.insert(indices.end(), {at, next, at + 1, at + 1, next, next + 1});
        }
      }
    }
  }
  std::vector<float> coords;
  std::vector<float> normals;
  std::vector<unsigned> indices;
};

Mesh const& GetMesh() {
  static Mesh const mesh;
  return mesh;
}

VX_Math::Matrix MakeMatrix() {
  return {1.1f, 0.1f, 0, 0, -0.1f, 0.9f, 0.2f, 0, 0, -0.2f, 1.2f, 0, 0.01f, 0.02f, 0.03f, 1};
}

template <class Projector>
void Pass(benchmark::State& state) {
  Mesh const& mesh = GetMesh();
  std::vector<UVW> coords(kVertices);
  for (auto _ : state) {
    Projector().ProjectVertices(
        {kVertices, mesh.coords.data(), mesh.normals.data(), MakeMatrix(), MakeMatrix()},
        coords.data());
    benchmark::DoNotOptimize(coords.data());
  }
}
void Sphere(benchmark::State& state) { Pass<NSphereProjector>(state); }
void Cylinder(benchmark::State& state) { Pass<NCylinderProjector>(state); }
void Box(benchmark::State& state) { Pass<NBoxProjector>(state); }
BENCHMARK(Sphere);
BENCHMARK(Cylinder);
BENCHMARK(Box);

/// The same vertex by vertex, as the projector's operation for one point has it.
template <class Projector>
void Plain(benchmark::State& state) {
  Mesh const& mesh = GetMesh();
  std::vector<UVW> coords(kVertices);
  VX_Math::Matrix const matrix = MakeMatrix();
  Projector const projector;
  for (auto _ : state) {
    for (std::size_t i = 0; i != kVertices; ++i) {
      VX_Math::Vec3 p(mesh.coords[3 * i], mesh.coords[3 * i + 1], mesh.coords[3 * i + 2]);
      VX_Math::Vec3 n(mesh.normals[3 * i], mesh.normals[3 * i + 1], mesh.normals[3 * i + 2]);
      matrix.MultVecMatrix(p, p);
      if constexpr (std::is_same_v<Projector, NBoxProjector>) {
        matrix.MultDirMatrix(n, n);
        n.Normalize();
      }
      projector.ProjectWithNormal(p.x, p.y, p.z, n.x, n.y, n.z, coords[i].u, coords[i].v,
                                  coords[i].w);
    }
    benchmark::DoNotOptimize(coords.data());
  }
}
void PlainSphere(benchmark::State& state) { Plain<NSphereProjector>(state); }
void PlainCylinder(benchmark::State& state) { Plain<NCylinderProjector>(state); }
void PlainBox(benchmark::State& state) { Plain<NBoxProjector>(state); }
BENCHMARK(PlainSphere);
BENCHMARK(PlainCylinder);
BENCHMARK(PlainBox);

#if defined(CORVANTA_BENCH_MVEC)
extern "C" __m256d _ZGVdN4vv_atan2(__m256d, __m256d);

/// The arc tangents alone, four at a time, from arrays that lie ready: what no pass can do without.
__attribute__((target("avx2"))) void FillAngles(std::vector<double> const& y,
                                                std::vector<double> const& x,
                                                std::vector<float>& angles) {
  for (std::size_t i = 0; i != kVertices; i += 4) {
    __m256d const angle =
        _ZGVdN4vv_atan2(_mm256_loadu_pd(y.data() + i), _mm256_loadu_pd(x.data() + i));
    _mm_storeu_ps(angles.data() + i, _mm256_cvtpd_ps(angle));
  }
}

void ArcTangents(benchmark::State& state) {
  if (!__builtin_cpu_supports("avx2")) {
    state.SkipWithError("no AVX2");
    return;
  }
  Mesh const& mesh = GetMesh();
  std::vector<double> x;
  std::vector<double> y;
  for (std::size_t i = 0; i != kVertices; ++i) {
    x.push_back(mesh.coords[3 * i]);
    y.push_back(mesh.coords[3 * i + 2]);
  }
  std::vector<float> angles(kVertices);
  for (auto _ : state) {
    FillAngles(y, x, angles);
    benchmark::DoNotOptimize(angles.data());
  }
}
BENCHMARK(ArcTangents);
#endif

using data::domain::material::texture_mapping::NProjectionMapping;

struct World {
  core::domain::NDomainManager manager;
  boost::intrusive_ptr<data::events::NEventMultiplexer> events{new data::events::NEventMultiplexer};
  data::events::attribute_change::NMultiplexer* attributes =
      &events->GetAttributeChangeEventMultiplexer();
  boost::intrusive_ptr<data::domain::scenegraph::item::NSceneGraphItemDomain> items{
      new data::domain::scenegraph::item::NSceneGraphItemDomain(
          &manager, attributes, &events->GetSceneGraphModelEventMultiplexer(),
          &events->GetSceneGraphHierarchyEventMultiplexer(),
          &events->GetSceneGraphTreeHostEventMultiplexer())};
  boost::intrusive_ptr<data::domain::scenegraph::tree::NSceneGraphTreeDomain> trees{
      new data::domain::scenegraph::tree::NSceneGraphTreeDomain(
          &manager, attributes, &events->GetSceneGraphTreeEventMultiplexer())};
  boost::intrusive_ptr<data::domain::projection::NProjectionDomain> projections{
      new data::domain::projection::NProjectionDomain(&manager, attributes)};
  boost::intrusive_ptr<NProjectionMapping> mapping{new NProjectionMapping};

  NProjectionMapping::ModelPath Add() {
    using data::domain::scenegraph::item::NSceneGraphModelNode;
    auto const model = items->CreateNode<NSceneGraphModelNode>(core::node::NNodeID());
    auto const tree = trees->CreateNode(core::node::NNodeID());
    auto const node = projections->CreateNode(core::node::NNodeID());
    tree->SetRoot(*model);
    node->SetProjectionMethod(data::domain::projection::PM_SPHERE);
    node->SetRepeatU(2);
    NProjectionMapping::ModelPath const path(*model, *tree);
    node->AddModel(path);
    mapping->AddProjectionData(path, node);
    return path;
  }
};

void Mapping(benchmark::State& state) {
  World world;
  auto const path = world.Add();
  Mesh const& mesh = GetMesh();
  std::vector<UVW> coords;
  std::vector<unsigned> indices;
  std::vector<unsigned> vertexMap;
  for (auto _ : state) {
    world.mapping->ComputeTextureCoords(
        path, {kVertices, mesh.coords.data(), mesh.normals.data()},
        {static_cast<unsigned>(mesh.indices.size()), mesh.indices.data()}, coords, indices,
        vertexMap);
  }
}
BENCHMARK(Mapping);

void Tangents(benchmark::State& state) {
  World world;
  auto const path = world.Add();
  Mesh const& mesh = GetMesh();
  std::vector<XYZ> tangents;
  std::vector<XYZ> binormals;
  for (auto _ : state) {
    world.mapping->ComputeTangents(path, {kVertices, mesh.coords.data(), mesh.normals.data()},
                                   tangents, binormals);
  }
}
BENCHMARK(Tangents);

}  // namespace

int main(int argc, char** argv) {
  bench::NRun const run(argc, argv);
  auto const time = [&](char const* name) { return run.GetTime(name) / kVertices; };
  double const angle = time("ArcTangents");
  bench::Report(
      "sphere projection, per vertex", time("Sphere"),
      {{"two arc tangents of libmvec", 2 * angle}, {"vertex by vertex", time("PlainSphere")}},
      "must be below 1.67 of one vectorised pass");
  bench::Report("cylinder projection, per vertex", time("Cylinder"),
                {{"an arc tangent of libmvec", angle}, {"vertex by vertex", time("PlainCylinder")}},
                "");
  bench::Report("box projection, per vertex", time("Box"), {{"vertex by vertex", time("PlainBox")}},
                "");
  bench::Report("mapping by a sphere, with seam, per vertex", time("Mapping"),
                {{"its projection vertex by vertex", time("PlainSphere")}}, "");
  bench::Report("tangents by a sphere, per vertex", time("Tangents"), {}, "");
}
