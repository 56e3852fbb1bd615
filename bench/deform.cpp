// A frame of a mesh of 100,000 vertices, four bones a vertex, and of one with a morph target that
// moves them all, against writing the same arrays without working anything out.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <memory>
#include <vector>

#include "bench/support.h"
#include "corvanta/data/document/NDocument.h"
#include "corvanta/data/domain/geometry/NGeometryNode.h"
#include "corvanta/importer/NHierarchy.h"
#include "corvanta/importer/NMaterials.h"
#include "corvanta/importer/NPictures.h"
#include "corvanta/importer/neutral/NSceneWriter.h"

namespace {

using namespace corvanta;
namespace neutral = importer::neutral;

constexpr std::uint32_t kSide = 316;
constexpr std::uint32_t kCount = kSide * kSide;
constexpr std::uint32_t kBones = 50;

// A sheet with normals, below a root, and a row of bones beside it.
std::vector<std::uint64_t> MakeScene(bool hasBones) {
  neutral::NSceneWriter writer;
  std::vector<neutral::NTriple> positions, normals(kCount, {0.0f, 0.0f, 1.0f});
  std::vector<neutral::NTriangle> triangles;
  std::vector<neutral::NInfluence> influences;
  std::vector<neutral::NOffset> offsets;
  for (std::uint32_t i = 0; i != kCount; ++i) {
    std::uint32_t const x = i % kSide, y = i / kSide;
    positions.push_back({static_cast<float>(x), static_cast<float>(y), 0.0f});
    for (std::uint32_t k = 0; k != 4; ++k) influences.push_back({i, (x + k) % kBones, 0.25f});
    offsets.push_back({i, {0.0f, 0.0f, 1.0f}, {0.1f, 0.0f, 0.0f}});
    if (x + 1 == kSide || y + 1 == kSide) continue;
    triangles.push_back({i, i + 1, i + kSide});
    triangles.push_back({i + 1, i + kSide + 1, i + kSide});
  }
  neutral::NMesh mesh{};
  mesh.positions = writer.Add(positions);
  mesh.normals = writer.Add(normals);
  mesh.triangles = writer.Add(triangles);
  if (hasBones) {
    mesh.influences = writer.Add(influences);
  } else {
    mesh.targets = writer.Add(std::vector<neutral::NMorphTarget>{{writer.Add(offsets)}});
  }
  writer.Get<neutral::NMesh>().push_back(mesh);
  writer.Get<neutral::NMaterial>().push_back({});
  neutral::NNode node{};
  for (std::size_t i = 0; i < 16; i += 5) node.transform[i] = 1.0f;
  std::vector<neutral::NJoint> joints(kBones);
  for (std::uint32_t i = 0; i != kBones; ++i) joints[i] = {i + 2, node.transform};
  writer.Get<neutral::NSkin>().push_back({writer.Add(joints)});
  std::vector<std::uint32_t> const first{0};
  for (std::uint32_t i = 0; i != kBones + 2; ++i) {
    neutral::NNode own = node;
    if (i == 0) own.childCount = kBones + 1;
    if (i == 1) own.meshes = writer.Add(first);
    if (i == 1 && hasBones) own.skins = writer.Add(first);
    writer.Get<neutral::NNode>().push_back(own);
  }
  std::vector<std::uint64_t> block(writer.GetSize() / 8);
  writer.Write(reinterpret_cast<std::byte*>(block.data()));
  return block;
}

struct Scene {
  explicit Scene(bool hasBones) : block(MakeScene(hasBones)) { hierarchy.Build(*tree, effort); }

  importer::NDeformer& GetDeformer() const { return *hierarchy.GetDeformations().GetDeformer(); }
  data::domain::geometry::NSurface& GetSurface() const {
    return **document.GetGeometries().begin()->GetSurfaces().begin();
  }

  std::vector<std::uint64_t> const block;
  neutral::NSceneView const scene{std::as_bytes(std::span(block))};
  data::document::NDocument document{};
  importer::NImportTarget target{document};
  importer::NEffort effort{};
  importer::NVertexColors const colors{scene};
  importer::NPictures pictures{target, scene, colors, "."};
  importer::NMaterials materials{target, scene, pictures};
  importer::NHierarchy hierarchy{target, scene, materials, colors};
  boost::intrusive_ptr<data::domain::scenegraph::tree::NSceneGraphTreeNode> const tree =
      document.GetTrees().CreateNode();
};

void Bones(benchmark::State& state) {
  Scene const scene(true);
  double angle = 0.0;
  for (auto _ : state) {
    for (std::uint32_t i = 0; i != kBones; ++i) {
      scene.hierarchy.QueryItem(i + 2)->SetRotationX(angle += 0.01);
    }
    scene.GetDeformer().Update();
  }
}
BENCHMARK(Bones);

void Morph(benchmark::State& state) {
  Scene const scene(false);
  auto* const weight = scene.hierarchy.QueryItem(1)->QueryAttribute(L"morph.0");
  for (auto _ : state) {
    weight->SetValue(weight->GetDouble() + 0.001, true);
    scene.GetDeformer().Update();
  }
}
BENCHMARK(Morph);

void Write(benchmark::State& state) {
  Scene const scene(true);
  std::vector<float> const numbers(std::size_t{3} * kCount, 0.5f);
  auto& surface = scene.GetSurface();
  for (auto _ : state) {
    surface.Assign(numbers, numbers, surface.GetIndices(), surface.GetUVWsMap());
  }
}
BENCHMARK(Write);

}  // namespace

int main(int argc, char** argv) {
  bench::NRun const run(argc, argv);
  bench::Report("frame of 100,000 vertices, four bones each", run.GetTime("Bones"),
                {{"floor: the write alone", run.GetTime("Write")}}, "some milliseconds at most");
  bench::Report("frame of 100,000 vertices, a morph target", run.GetTime("Morph"),
                {{"floor: the write alone", run.GetTime("Write")}}, "");
}
