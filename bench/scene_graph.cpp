// Global transforms along a known path, and the box of a large tree after one leaf has moved.

#include <vector>

#include "bench/support.h"
#include "corvanta/core/domain/NDomainManager.h"
#include "corvanta/data/domain/scenegraph/NSceneGraphPath.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphGroupNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphItemDomain.h"
#include "corvanta/data/domain/scenegraph/transform.h"
#include "corvanta/data/domain/scenegraph/tree/NSceneGraphTreeDomain.h"
#include "corvanta/data/domain/scenegraph/tree/bounding_box.h"

namespace {

namespace item = corvanta::data::domain::scenegraph::item;
namespace scenegraph = corvanta::data::domain::scenegraph;
namespace tree = corvanta::data::domain::scenegraph::tree;
using corvanta::core::node::NNodeID;
using VX_Math::Box3;
using VX_Math::Matrix;
using VX_Math::Vec3;

constexpr int kLevels = 64;
constexpr int kFanOut = 10;
constexpr int kDepth = 5;  // 111,111 items

/// A group that has a box of its own, so that the tree's box isn't empty.
class Leaf : public item::NSceneGraphGroupNode {
 public:
  using NSceneGraphGroupNode::NSceneGraphGroupNode;

 private:
  void CalculateBoundingBox(Box3& box, Matrix const& accumulated,
                            Matrix const& base) const override {
    NSceneGraphGroupNode::CalculateBoundingBox(box, accumulated, base);
    box.ExtendBy(Box3(Vec3(0, 0, 0), Vec3(1, 1, 1)));
  }
};

struct World {
  corvanta::core::domain::NDomainManager manager;
  boost::intrusive_ptr<item::NSceneGraphItemDomain> items{
      new item::NSceneGraphItemDomain(&manager, nullptr, nullptr, nullptr, nullptr)};
  boost::intrusive_ptr<tree::NSceneGraphTreeDomain> trees{
      new tree::NSceneGraphTreeDomain(&manager, nullptr, nullptr)};

  boost::intrusive_ptr<tree::NSceneGraphTreeNode> MakeTree(item::NSceneGraphItemNode& root) {
    auto made = trees->CreateNode(NNodeID());
    made->SetRoot(root);
    return made;
  }
};

Matrix SomeMatrix(int i) {
  return item::CalcTransformMatrix({1, 1, 1}, {}, {0, static_cast<float>(i), 0}, {0, 0.01f, 0});
}

void GlobalTransform(benchmark::State& state) {
  World world;
  auto last = world.items->CreateNode<item::NSceneGraphGroupNode>(NNodeID());
  auto const shown = world.MakeTree(*last);
  for (int i = 1; i != kLevels; ++i) {
    auto next = world.items->CreateNode<item::NSceneGraphGroupNode>(NNodeID());
    item::SetTransform(*next, SomeMatrix(i));
    last->AddChild(*next);
    last = next;
  }
  Matrix out;
  for (auto _ : state) {
    benchmark::DoNotOptimize(scenegraph::GetGlobalTransform(*last, *shown, {}, out));
  }
}
BENCHMARK(GlobalTransform);

void MatrixProducts(benchmark::State& state) {
  std::vector<Matrix> matrices;
  for (int i = 0; i != kLevels; ++i) matrices.push_back(SomeMatrix(i));
  for (auto _ : state) {
    Matrix out;
    for (Matrix const& m : matrices) out.MultRight(m);
    benchmark::DoNotOptimize(out);
  }
}
BENCHMARK(MatrixProducts);

void MovedLeaf(benchmark::State& state) {
  World world;
  auto const root = world.items->CreateNode<item::NSceneGraphGroupNode>(NNodeID());
  auto const shown = world.MakeTree(*root);
  std::vector<boost::intrusive_ptr<item::NSceneGraphItemNode>> level{root};
  for (int depth = 1; depth <= kDepth; ++depth) {
    std::vector<boost::intrusive_ptr<item::NSceneGraphItemNode>> next;
    for (auto const& parent : level) {
      for (int i = 0; i != kFanOut; ++i) {
        auto made = depth == kDepth
                        ? world.items->CreateNode<Leaf>(NNodeID())
                        : world.items->CreateNode<item::NSceneGraphGroupNode>(NNodeID());
        made->SetTranslationX(i);
        parent->AddChild(*made);
        next.push_back(made);
      }
    }
    level.swap(next);
  }
  auto const& leaf = level[level.size() / 2];
  double x = 0;
  benchmark::DoNotOptimize(tree::GetBoundingBox(*shown));
  for (auto _ : state) {
    leaf->SetTranslationX(x += 0.001);
    benchmark::DoNotOptimize(tree::GetBoundingBox(*shown));
  }
}
BENCHMARK(MovedLeaf);

/// The work that can't be spared: on each level the boxes of ten children through their matrices,
/// from arrays, and one local matrix.
void MovedLeafFloor(benchmark::State& state) {
  std::vector<Matrix> matrices;
  std::vector<Box3> boxes;
  for (int i = 0; i != kDepth * kFanOut; ++i) {
    matrices.push_back(SomeMatrix(i));
    boxes.emplace_back(Vec3(0, 0, 0), Vec3(1, 1, 1));
  }
  float x = 0;
  for (auto _ : state) {
    matrices[7] = item::CalcTransformMatrix({1, 1, 1}, {}, {}, {x += 0.001f, 0, 0});
    for (int depth = 0; depth != kDepth; ++depth) {
      Box3 all;
      for (int i = depth * kFanOut; i != (depth + 1) * kFanOut; ++i) {
        Box3 box = boxes[static_cast<std::size_t>(i)];
        box.Transform(matrices[static_cast<std::size_t>(i)]);
        all.ExtendBy(box);
      }
      boxes[static_cast<std::size_t>(((depth + 1) * kFanOut) % (kDepth * kFanOut))] = all;
    }
    benchmark::DoNotOptimize(boxes.data());
  }
}
BENCHMARK(MovedLeafFloor);

}  // namespace

int main(int argc, char** argv) {
  corvanta::bench::NRun const run(argc, argv);
  corvanta::bench::Report("global transform, per level", run.GetTime("GlobalTransform") / kLevels,
                          {{"product of 4x4 floats", run.GetTime("MatrixProducts") / kLevels}},
                          "must be below 15 ns");
  corvanta::bench::Report("box of 111,111 items after one leaf moved", run.GetTime("MovedLeaf"),
                          {{"the same from arrays", run.GetTime("MovedLeafFloor")}},
                          "must be below 2.9 us");
}
