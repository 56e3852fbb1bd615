#pragma once

#include "tests/support/temporary_files.h"
#include "tests/support/test.h"

/// A small document with a node of every kind, and all that can be seen of it as a text.
namespace corvanta::out_of_memory {

namespace domain = data::domain;
namespace item = domain::scenegraph::item;
namespace mapping = domain::material::texture_mapping;
template <class T>
using Pointer = boost::intrusive_ptr<T>;
template <class T>
using Path = domain::scenegraph::NSceneGraphPath<T>;

/// Thrown by the listener that a sweep lets throw.
struct Thrown {};

/// Counts what it receives, and allocates nothing. Reacts to one of the calls, if it is told which.
class Counter final : public data::events::NEventListener {
 public:
  int attributes = 0, lamps = 0, structure = 0, content = 0;
  int callsBefore = -1;  // the reaction; below 0: there is none
  std::function<void()> react;

  void Note(int& field, int by) {
    field += by;
    if (callsBefore-- == 0) react();
  }

 private:
  // clang-format off
  void OnAttributeChange(core::attribute::NAttributeHost&, core::attribute::NAttribute const&) override { Note(attributes, 1); }
  void OnFloorImageChange(domain::environment::NEnvironmentNode const&) override { Note(content, 0); }
  void OnFloorGeometryChange(domain::environment::NEnvironmentNode const&) override { Note(content, 0); }
  void OnAddLightEnv(domain::environment::NEnvironmentNode const&, domain::light_env::NLightEnvNode const&) override { Note(content, 0); }
  void OnRemoveLightEnv(domain::environment::NEnvironmentNode const&, domain::light_env::NLightEnvNode const&) override { Note(content, 0); }
  void OnEnvironmentMapImageChange(domain::material::NMaterialNode const&) override { Note(content, 0); }
  void OnEnvironmentMapImageChange(domain::environment::NEnvironmentNode const&) override { Note(content, 0); }
  void OnEnvironmentMapImageTypeChange(domain::material::NMaterialNode const&) override { Note(content, 0); }
  void OnEnvironmentMapImageTypeChange(domain::environment::NEnvironmentNode const&) override { Note(content, 0); }
  void OnSetBrdfTextureLocator(domain::material::NMaterialNode const&, core::locator::NLocator const&) override { Note(content, 0); }
  void OnEnvironmentChange(domain::scene::NSceneNode const&, Pointer<domain::environment::NEnvironmentNode> const&) override { Note(content, 0); }
  void OnSceneGraphTreeRootChange(domain::scenegraph::tree::NSceneGraphTreeHost const&, domain::scenegraph::tree::NSceneGraphTreeNode const&, Pointer<item::NSceneGraphItemNode> const&) override { Note(structure, 0); }
  void OnLampChange(domain::light_env::NLightEnvNode const&, domain::light_env::NLamp const&, data::events::light_env::NLampEventType) override { Note(lamps, 1); }
  void OnAddChild(item::NSceneGraphItemNode const&, item::NSceneGraphItemNode const&) override { Note(structure, 1); }
  void OnRemoveChild(item::NSceneGraphItemNode const&, item::NSceneGraphItemNode const&) override { Note(structure, 100); }
  void OnSceneGraphTreeChange(domain::scenegraph::tree::NSceneGraphTreeHost const&, Pointer<domain::scenegraph::tree::NSceneGraphTreeNode> const&) override { Note(structure, 1000); }
  void OnSceneGraphTreeRootChange(domain::scenegraph::tree::NSceneGraphTreeNode const&, Pointer<item::NSceneGraphItemNode> const&) override { Note(structure, 10000); }
  void OnGeometryChange(item::NSceneGraphModelNode const&, Pointer<domain::geometry::NGeometryNode> const&) override { Note(content, 1); }
  void OnGeometryChange(domain::geometry::NGeometryNode const&, domain::geometry::NSurface const&, domain::geometry::NGeometryChangeType) override { Note(content, 100); }
  void OnMaterialChange(item::NSceneGraphModelNode const&, Pointer<domain::material::NMaterialNode> const&) override { Note(content, 1000); }
  void OnAddTexture(domain::material::NMaterialNode const&, unsigned int) override { Note(content, 10000); }
  void OnRemoveTexture(domain::material::NMaterialNode const&, Pointer<domain::texture::NTextureNode> const&, Pointer<mapping::NTextureMapping> const&) override { Note(content, 100000); }
  void OnTextureImageChange(domain::texture::NTextureNode const&) override { Note(content, 1000000); }
  // clang-format on
};

/// Observes trees and geometries themselves, before any host or model does.
class Neighbour final : public domain::scenegraph::tree::NSceneGraphTreeListener,
                        public domain::geometry::NGeometryChangeListener {
 public:
  explicit Neighbour(Counter& counter) : m_counter(counter) {}

 private:
  // clang-format off
  void OnRootChangeImpl(Pointer<item::NSceneGraphItemNode> const&) override { m_counter.Note(m_counter.structure, 0); }
  void OnControlTransformChangeImpl() override { m_counter.Note(m_counter.structure, 0); }
  void OnGeometryChangeImpl(domain::geometry::NGeometryNode const&, domain::geometry::NSurface const&, domain::geometry::NGeometryChangeType) override { m_counter.Note(m_counter.content, 0); }
  // clang-format on

  Counter& m_counter;
};

class Args final : public data::animation::NAnimationEngineArgs {
 public:
  Pointer<domain::scene::NSceneNode> scene;
  std::optional<Path<item::NSceneGraphCameraNode>> camera;

 private:
  void GetCamerasImpl(Cameras& out) const override { out.insert(*camera); }
  void GetScenesImpl(Scenes& out) const override { out.insert(scene); }
};

struct World {
  explicit World(support::TemporaryFiles const& files);

  /// Lets every node go, from here and from the domains.
  void LetGo();

  template <class T>
  Pointer<T> Make() {
    return document.GetItems().CreateNode<T>(NNodeID());
  }
  static Pointer<domain::geometry::NPolygonSurface> MakeSurface(float size);
  Pointer<data::animation::NAnimationKey> MakeKey(double x);

  support::TemporaryFiles const& files;
  data::document::NDocument document;
  Pointer<Counter> counter{new Counter};
  Pointer<Neighbour> neighbour{new Neighbour(*counter)};
  Pointer<item::NSceneGraphGroupNode> root = Make<item::NSceneGraphGroupNode>();
  Pointer<item::NSceneGraphGroupNode> group = Make<item::NSceneGraphGroupNode>();
  Pointer<item::NSceneGraphGroupNode> shownRoot = Make<item::NSceneGraphGroupNode>();
  Pointer<item::NSceneGraphGroupNode> loose = Make<item::NSceneGraphGroupNode>();
  Pointer<item::NSceneGraphModelNode> model = Make<item::NSceneGraphModelNode>();
  Pointer<item::NSceneGraphModelNode> shownModel = Make<item::NSceneGraphModelNode>();
  Pointer<item::NSceneGraphReferenceNode> reference = Make<item::NSceneGraphReferenceNode>();
  Pointer<item::NSceneGraphLightNode> lightItem = Make<item::NSceneGraphLightNode>();
  Pointer<item::NSceneGraphCameraNode> cameraItem = Make<item::NSceneGraphCameraNode>();
  Pointer<domain::scenegraph::tree::NSceneGraphTreeNode> tree =
      document.GetTrees().CreateNode(NNodeID());
  Pointer<domain::scenegraph::tree::NSceneGraphTreeNode> shownTree =
      document.GetTrees().CreateNode(NNodeID());
  Pointer<domain::light::NLightNode> light = document.GetLights().CreateNode(NNodeID());
  Pointer<domain::camera::NCameraNode> camera = document.GetCameras().CreateNode(NNodeID());
  Pointer<domain::image::NImageNode> image = document.GetImages().CreateNode(NNodeID());
  Pointer<domain::texture::NTextureNode> texture = document.GetTextures().CreateNode(NNodeID());
  Pointer<domain::material::NMaterialNode> material = document.GetMaterials().CreateNode(NNodeID());
  Pointer<domain::geometry::NGeometryNode> geometry =
      document.GetGeometries().CreateNode(NNodeID());
  Pointer<domain::geometry::NGeometryNode> sharing = document.GetGeometries().CreateNode(NNodeID());
  Pointer<domain::geometry::NPolygonSurface> surface = MakeSurface(1);  // in both
  Pointer<domain::scene::NSceneNode> scene = document.GetScenes().CreateNode(NNodeID());
  Pointer<domain::environment::NEnvironmentNode> environment =
      document.GetEnvironments().CreateNode(NNodeID());
  Pointer<domain::light_env::NLightEnvNode> lightEnv =
      document.GetLightEnvs().CreateNode(NNodeID());
  Pointer<domain::projection::NProjectionNode> projection =
      document.GetProjections().CreateNode(NNodeID());
  Pointer<domain::animation::NAnimationNode> curves =
      document.GetAnimations().CreateNode(NNodeID());
  Pointer<data::operators::animation::NKeyFrameAnimation> curve{
      new data::operators::animation::NKeyFrameAnimation};
  Pointer<mapping::NUVWMapping> uvw{new mapping::NUVWMapping(mapping::NUVWMT_INTERNAL)};
  Pointer<mapping::NProjectionMapping> projected{new mapping::NProjectionMapping};
  Pointer<data::view::NView> view{new data::view::NView};
  Pointer<data::view::NViewManager> views{new data::view::NViewManager(nullptr)};
  Pointer<data::switches::NMaterialSwitch> materials{new data::switches::NMaterialSwitch};
  Pointer<data::switches::NModelSwitch> models{new data::switches::NModelSwitch};
  Pointer<data::animation::NAnimation> animation{new data::animation::NAnimation};
  Pointer<data::animation::NAnimation> copy;  // what an operation has made
  data::animation::NAnimationManager animations;
  data::timeline::NTimeLineManager timelines;
  Path<item::NSceneGraphModelNode> modelPath{*model, *tree};
  Path<item::NSceneGraphLightNode> lightPath{*lightItem, *tree};
  Path<item::NSceneGraphCameraNode> cameraPath{*cameraItem, *tree};
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
