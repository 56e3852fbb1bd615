// A frame of a million triangles at 1920 x 1080: what the library and the taking over of changes
// cost, and what the drawing does.

#include <time.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>
#include <vector>

#include "app/scene/NStage.h"
#include "bench/support.h"
#include "corvanta/data/document/NDocument.h"
#include "corvanta/data/domain/geometry/NPolygonSurface.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphGroupNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"
#include "corvanta/data/domain/scenegraph/item/view_clip_distances.h"
#include "corvanta/renderer/NContext.h"
#include "corvanta/renderer/NPreview.h"
#include "corvanta/renderer/NRenderError.h"
#include "corvanta/renderer/NRenderer.h"
#include "corvanta/renderer/NTarget.h"
#include "corvanta/renderer/NViewpoint.h"
#include "corvanta/renderer/scene/NLamps.h"
#include "tests/support/ball.h"

namespace {

namespace app = corvanta::app;
namespace data = corvanta::data;
namespace renderer = corvanta::renderer;
namespace item = corvanta::data::domain::scenegraph::item;
using corvanta::core::node::NNodeID;
using corvanta::core::node::NNodeReference;

constexpr unsigned kGroups = 100, kModels = 100;  // in each group
constexpr unsigned kWidth = 1920, kHeight = 1080;

/// A ball of 100 triangles: 5 rings of 10 pairs.
boost::intrusive_ptr<corvanta::data::domain::geometry::NGeometryNode> MakeBall(
    corvanta::data::document::NDocument& document) {
  corvanta::support::Ball const ball(10, 5);
  auto const geometry = document.GetGeometries().CreateNode(NNodeID());
  boost::intrusive_ptr<corvanta::data::domain::geometry::NSurface> const surface(
      new corvanta::data::domain::geometry::NPolygonSurface);
  surface->Assign(ball.coords, ball.coords, ball.indices, {});
  geometry->AddSurface(*surface);
  return geometry;
}

/// 10,000 models of 100 triangles under 100 groups, in a cube, and what draws them.
class World {
 public:
  World() {
    auto const root = m_document.GetItems().CreateNode<item::NSceneGraphGroupNode>(NNodeID());
    auto const ball = MakeBall(m_document);
    material = m_document.GetMaterials().CreateNode(NNodeID());
    material->SetDiffuseR(0.8);
    material->SetDiffuseG(0.7);
    material->SetDiffuseB(0.6);
    for (unsigned i = 0; i != kGroups; ++i) {
      auto const group = m_document.GetItems().CreateNode<item::NSceneGraphGroupNode>(NNodeID());
      group->SetTranslationX(i % 10);
      group->SetTranslationY(i / 10);
      for (unsigned j = 0; j != kModels; ++j) {
        auto const model = m_document.GetItems().CreateNode<item::NSceneGraphModelNode>(NNodeID());
        model->SetGeometryNode(ball);
        model->SetMaterial(material);
        model->SetTranslationX(j % 10 * 0.1);
        model->SetTranslationY(j / 10 * 0.1);
        model->SetTranslationZ((i * 7 + j * 13) % 100 * 0.1);
        for (auto const& scale : {item::AN_SCALE_X, item::AN_SCALE_Y, item::AN_SCALE_Z}) {
          model->QueryAttribute(scale)->SetValue(0.045, true);
        }
        group->AddChild(*model);
        moved = model;
      }
      root->AddChild(*group);
    }
    auto const tree = m_document.GetTrees().CreateNode(NNodeID());
    tree->SetRoot(NNodeReference<item::NSceneGraphItemNode>(*root));
    stage = std::make_unique<app::NStage>(m_document, tree);
    renderer = std::make_unique<renderer::NRenderer>(m_context, m_document.GetEvents());
    target = std::make_unique<renderer::NTarget>(m_context, kWidth, kHeight,
                                                 renderer::NTarget::NTK_PICTURE);
  }

  renderer::NViewpoint GetViewpoint() const {
    auto const& camera = stage->GetView().GetCamera();
    auto const [near, far] = item::GetClipDistances(camera, stage->GetView());
    return renderer::GetViewpoint(camera, static_cast<double>(kWidth) / kHeight, {near, far});
  }

  void Draw() const {
    renderer->DrawPicture(stage->GetScene(), GetViewpoint(), *target, {0, 0, kWidth, kHeight});
    renderer->Finish();
  }

  std::string GetRendererName() const { return m_context.GetRendererName(); }

 private:
  renderer::NContext m_context;
  corvanta::data::document::NDocument m_document;

 public:
  boost::intrusive_ptr<item::NSceneGraphModelNode> moved;
  boost::intrusive_ptr<data::domain::material::NMaterialNode> material;
  std::unique_ptr<app::NStage> stage;
  std::unique_ptr<renderer::NRenderer> renderer;
  std::unique_ptr<renderer::NTarget> target;
};

World& GetWorld() {
  static World& world = *new World;
  return world;
}

/// All that a frame asks the library: the event of one moved item, its place, the clip distances,
/// which read the scene's box, the matrices of the viewpoint, and what each item says of itself.
void Ask(World& world) {
  world.renderer->Update(world.stage->GetScene());
  benchmark::DoNotOptimize(world.GetViewpoint());
  benchmark::DoNotOptimize(renderer::ReadLamps(world.stage->GetEnvironment()));
  for (renderer::NDrawItem const& drawn : world.renderer->GetItems()) {
    benchmark::DoNotOptimize(drawn.model->IsWired());
    benchmark::DoNotOptimize(drawn.model->GetBillboardType());
    benchmark::DoNotOptimize(drawn.model->GetBoundingBoxWithoutChildren());
  }
}

void LibraryOneMoved(benchmark::State& state) {
  World& world = GetWorld();
  world.Draw();
  double x = 0;
  for (auto _ : state) {
    world.moved->SetTranslationX(x += 1e-6);
    Ask(world);
  }
}
BENCHMARK(LibraryOneMoved)->Unit(benchmark::kMicrosecond);

/// The walk over all items, with a global transform for each.
void LibraryAll(benchmark::State& state) {
  World& world = GetWorld();
  world.Draw();
  bool isVisible = false;
  for (auto _ : state) {
    world.moved->SetIsVisibleFlag(isVisible = !isVisible);
    Ask(world);
  }
  world.moved->SetIsVisibleFlag(true);
}
BENCHMARK(LibraryAll)->Unit(benchmark::kMillisecond);

/// Units: nanoseconds.
struct Frame {
  double clock;
  double processors;  // of all threads
};

double Now(clockid_t clock) {
  timespec time{};
  clock_gettime(clock, &time);
  return static_cast<double>(time.tv_sec) * 1e9 + static_cast<double>(time.tv_nsec);
}

/// The median of seven whole frames. Several threads draw.
Frame MeasureFrame() {
  World& world = GetWorld();
  world.Draw();
  std::vector<double> clocks, processors;
  for (int i = 0; i != 7; ++i) {
    world.moved->SetTranslationX(i * 1e-6);
    double const clock = Now(CLOCK_MONOTONIC), processor = Now(CLOCK_PROCESS_CPUTIME_ID);
    world.Draw();
    clocks.push_back(Now(CLOCK_MONOTONIC) - clock);
    processors.push_back(Now(CLOCK_PROCESS_CPUTIME_ID) - processor);
  }
  std::nth_element(clocks.begin(), clocks.begin() + 3, clocks.end());
  std::nth_element(processors.begin(), processors.begin() + 3, processors.end());
  return {clocks[3], processors[3]};
}

/// The same where the material has highlights, is rough and has a clear coat.
Frame MeasureRichFrame() {
  auto const material = GetWorld().material;
  material->SetSpecularR(0.5);
  material->SetRoughness(0.3);
  material->SetClearcoatIndex(1.5);
  Frame const frame = MeasureFrame();
  material->SetSpecularR(0);
  material->SetRoughness(0);
  material->SetClearcoatIndex(1.8);
  return frame;
}

/// 100,000 balls of 24 triangles in a cube, as items of one mesh or as one mesh of them all.
class Balls {
 public:
  explicit Balls(bool areItems) {
    auto const root = m_document.GetItems().CreateNode<item::NSceneGraphGroupNode>(NNodeID());
    corvanta::support::Ball const ball(4, 3);
    std::vector<float> coords;
    std::vector<unsigned> indices;
    auto const shared = MakeGeometry(ball.coords, ball.indices);
    for (unsigned i = 0; i != kCount; ++i) {
      float const place[] = {static_cast<float>(i % kSide), static_cast<float>(i / kSide % kSide),
                             static_cast<float>(i / kSide / kSide)};
      if (areItems) {
        AddModel(*root, shared, place);
        continue;
      }
      auto const first = static_cast<unsigned>(coords.size() / 3);
      for (unsigned const index : ball.indices) indices.push_back(first + index);
      for (std::size_t c = 0; c != ball.coords.size(); ++c) {
        coords.push_back(kRadius * ball.coords[c] + place[c % 3]);
      }
    }
    if (!areItems) AddModel(*root, MakeGeometry(coords, indices), nullptr);
    auto const tree = m_document.GetTrees().CreateNode(NNodeID());
    tree->SetRoot(NNodeReference<item::NSceneGraphItemNode>(*root));
    m_stage = std::make_unique<app::NStage>(m_document, tree);
  }

  /// Of the first picture, without the scene and the context.
  /// Units: nanoseconds of all processors.
  double MeasurePicture() {
    renderer::NContext const context;
    double const begin = Now(CLOCK_PROCESS_CPUTIME_ID);
    renderer::NPreview preview(context, m_document, m_stage->GetView(), 800, 600);
    benchmark::DoNotOptimize(preview.TakePicture());
    return Now(CLOCK_PROCESS_CPUTIME_ID) - begin;
  }

 private:
  static constexpr unsigned kCount = 100000, kSide = 47;
  static constexpr float kRadius = 0.3f;

  boost::intrusive_ptr<data::domain::geometry::NGeometryNode> MakeGeometry(
      std::vector<float> const& coords, std::vector<unsigned> const& indices) {
    auto const geometry = m_document.GetGeometries().CreateNode(NNodeID());
    boost::intrusive_ptr<data::domain::geometry::NSurface> const surface(
        new data::domain::geometry::NPolygonSurface);
    surface->Assign(coords, coords, indices, {});
    geometry->AddSurface(*surface);
    return geometry;
  }

  void AddModel(item::NSceneGraphGroupNode& root,
                boost::intrusive_ptr<data::domain::geometry::NGeometryNode> const& geometry,
                float const* place) {
    auto const model = m_document.GetItems().CreateNode<item::NSceneGraphModelNode>(NNodeID());
    model->SetGeometryNode(geometry);
    if (place != nullptr) {
      model->SetTranslationX(double{place[0]});
      model->SetTranslationY(double{place[1]});
      model->SetTranslationZ(double{place[2]});
      for (auto const& scale : {item::AN_SCALE_X, item::AN_SCALE_Y, item::AN_SCALE_Z}) {
        model->QueryAttribute(scale)->SetValue(double{kRadius}, true);
      }
    }
    root.AddChild(*model);
  }

  data::document::NDocument m_document;
  std::unique_ptr<app::NStage> m_stage;
};

}  // namespace

int main(int argc, char** argv) {
  try {
    std::printf("drawn by %s\n", GetWorld().GetRendererName().c_str());
  } catch (renderer::NRenderError const& error) {
    std::printf("left out: %s\n", error.what());
    return 0;
  }
  corvanta::bench::NRun const run(argc, argv);
  double const library = run.GetTime("LibraryOneMoved");
  Frame const frame = MeasureFrame();
  corvanta::bench::Report("library's share of a frame, one of 10,000 items moved", library,
                          {{"the whole frame", frame.clock}}, "must be below 5 ms");
  corvanta::bench::Report("the same, all items walked anew", run.GetTime("LibraryAll"),
                          {{"the whole frame", frame.clock}}, "");
  corvanta::bench::Report(
      "drawing of 1,000,000 triangles at 1920 x 1080", frame.clock - library,
      {{"by all processors", frame.processors - library},
       {"with highlights, rough and coated", MeasureRichFrame().clock - library}},
      "must be below 350 ms, and well below what isn't plain");
  corvanta::bench::Report("first picture of 100,000 items of one mesh",
                          Balls(true).MeasurePicture(),
                          {{"the same triangles as one mesh", Balls(false).MeasurePicture()}},
                          "must be below twice that");
}
