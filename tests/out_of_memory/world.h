#pragma once

#include "tests/support/temporary_files.h"
#include "tests/support/world.h"

/// A small document with a node of every kind, and all that can be seen of it as a text.
namespace corvanta::out_of_memory {

namespace domain = data::domain;
namespace mapping = domain::material::texture_mapping;
template <class T>
using Path = NSceneGraphPath<T>;

/// What the listener that a sweep lets throw throws.
struct ListenerError {};

/// Counts what it receives, and allocates nothing. Reacts to one of the calls, if it is told which.
class Counter final : public NForwardingListener {
 public:
  std::array<int, data::events::NSK_LAMP_CHANGE + 1> counts{};
  int callsBefore = -1;  // the reaction; below 0: there is none
  std::function<void()> react;

  void Note() {
    if (callsBefore-- == 0) react();
  }

 private:
  void OnSignal(NSignal const& signal) override {
    // A host that meets its tree late tells of the root whenever it is asked, and the locator is
    // copied for the event when it has changed.
    using namespace data::events;
    bool const isCounted =
        signal.kind != NSK_SHOWN_ROOT_CHANGE && signal.kind != NSK_SET_BRDF_TEXTURE_LOCATOR;
    counts[signal.kind] += isCounted;
    Note();
  }
};

/// Observes trees and geometries themselves, before any host or model does.
class Neighbour final : public domain::scenegraph::tree::NSceneGraphTreeListener,
                        public domain::geometry::NGeometryChangeListener {
 public:
  explicit Neighbour(Counter& counter) : m_counter(counter) {}

 private:
  void OnRootChangeImpl(Item const&) override { m_counter.Note(); }
  void OnControlTransformChangeImpl() override { m_counter.Note(); }
  void OnGeometryChangeImpl(NGeometryNode const&, NSurface const&,
                            domain::geometry::NGeometryChangeType) override {
    m_counter.Note();
  }

  Counter& m_counter;
};

class Args final : public data::animation::NAnimationEngineArgs {
 public:
  Pointer<NSceneNode> scene;
  std::optional<Path<NSceneGraphCameraNode>> camera;

 private:
  void GetCamerasImpl(Cameras& out) const override { out.insert(*camera); }
  void GetScenesImpl(Scenes& out) const override { out.insert(scene); }
};

/// A second node of most kinds.
struct Others {
  explicit Others(support::World const& world) : w(world) {
    lightEnv->CreateLamp(L"a lamp that was there before");
  }

  support::World const& w;
  Model model = w.Make<NSceneGraphModelNode>();
  Tree tree = w.MakeTree();
  Pointer<NCameraNode> camera = w.cameras->CreateNode();
  Pointer<NLightNode> light = w.lights->CreateNode();
  Pointer<NImageNode> image = w.images->CreateNode();
  Pointer<NTextureNode> texture = w.textures->CreateNode();
  Pointer<NMaterialNode> material = w.materials->CreateNode();
  Pointer<NGeometryNode> geometry = w.geometries->CreateNode();
  Pointer<NEnvironmentNode> environment = w.environments->CreateNode();
  Pointer<NLightEnvNode> lightEnv = w.lightEnvs->CreateNode();
  Pointer<NProjectionNode> projection = w.projections->CreateNode();
  Pointer<NAnimationNode> curves = w.animations->CreateNode();
};

struct World : support::World {
  explicit World(support::TemporaryFiles const& files);

  /// Lets every node go, from here and from the domains.
  void LetGo();

  static Pointer<NPolygonSurface> MakeSurface(float size);
  Pointer<NAnimationKey> MakeKey(double x);

  support::TemporaryFiles const& files;
  Pointer<Counter> counter = New<Counter>();
  Pointer<Neighbour> neighbour = New<Neighbour>(*counter);
  Group root = Make(), group = Make(), shownRoot = Make(), loose = Make();
  Model model = Make<NSceneGraphModelNode>(), shownModel = Make<NSceneGraphModelNode>();
  Reference reference = Make<NSceneGraphReferenceNode>();
  Pointer<NSceneGraphLightNode> lightItem = Make<NSceneGraphLightNode>();
  Camera cameraItem = Make<NSceneGraphCameraNode>();
  Tree tree = MakeTree(), shownTree = MakeTree();
  Pointer<NLightNode> light = lights->CreateNode();
  Pointer<NCameraNode> camera = cameras->CreateNode();
  Pointer<NImageNode> image = images->CreateNode();
  Pointer<NTextureNode> texture = textures->CreateNode();
  Pointer<NMaterialNode> material = materials->CreateNode();
  Pointer<NGeometryNode> geometry = geometries->CreateNode(), sharing = geometries->CreateNode();
  Pointer<NPolygonSurface> surface = MakeSurface(1);  // in both
  Pointer<NSceneNode> scene = scenes->CreateNode();
  Pointer<NEnvironmentNode> environment = environments->CreateNode();
  Pointer<NLightEnvNode> lightEnv = lightEnvs->CreateNode();
  Pointer<NProjectionNode> projection = projections->CreateNode();
  Pointer<NAnimationNode> curves = animations->CreateNode();
  std::vector<Pointer<NLightNode>> free;  // in no domain
  std::optional<Others> other;
  Pointer<NKeyFrameAnimation> curve = New<NKeyFrameAnimation>();
  Pointer<NUVWMapping> uvw = New<NUVWMapping>(mapping::NUVWMT_INTERNAL);
  Pointer<NProjectionMapping> projected = New<NProjectionMapping>();
  Pointer<NView> view = New<NView>();
  Pointer<NViewManager> views = New<NViewManager>(nullptr);
  Pointer<NMaterialSwitch> materialSwitch = New<NMaterialSwitch>();
  Pointer<NModelSwitch> modelSwitch = New<NModelSwitch>();
  Pointer<data::switches::detail::NModelSet> set = New<data::switches::detail::NModelSet>();
  Pointer<NAnimation> animation = New<NAnimation>();
  Pointer<NAnimation> copy;  // what an operation has made
  NAnimationManager presentations;
  NTimeLineManager timelines;
  Path<NSceneGraphModelNode> modelPath{*model, *tree};
  Path<NSceneGraphLightNode> lightPath{*lightItem, *tree};
  Path<NSceneGraphCameraNode> cameraPath{*cameraItem, *tree};
  Args args;
  std::vector<float> result;  // of an operation that only reads
  std::vector<data::operators::ray_picker::ModelPath> paths;
  std::vector<Vec3> points;
};

/// All of it; computes what is cached.
std::wstring Describe(World& world);

/// What the library keeps for later reads, as it answers now and as it does once all is marked.
struct Caches {
  std::string boxes, others;

  bool operator==(Caches const&) const = default;
};
Caches ReadCaches(World& world);
void MarkCaches(World& world);
/// Gives the surface 300 triangles, and picks until there are indexes of them.
void MakePickIndexes(World& world);

}  // namespace corvanta::out_of_memory
