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

/// Counts what it receives, and allocates nothing.
class Counter final : public data::events::NEventListener {
 public:
  int attributes = 0, lamps = 0, structure = 0, content = 0;

 private:
  // clang-format off
  void OnAttributeChange(core::attribute::NAttributeHost&, core::attribute::NAttribute const&) override { ++attributes; }
  void OnLampChange(domain::light_env::NLightEnvNode const&, domain::light_env::NLamp const&, data::events::light_env::NLampEventType) override { ++lamps; }
  void OnAddChild(item::NSceneGraphItemNode const&, item::NSceneGraphItemNode const&) override { ++structure; }
  void OnRemoveChild(item::NSceneGraphItemNode const&, item::NSceneGraphItemNode const&) override { structure += 100; }
  void OnSceneGraphTreeChange(domain::scenegraph::tree::NSceneGraphTreeHost const&, Pointer<domain::scenegraph::tree::NSceneGraphTreeNode> const&) override { structure += 1000; }
  void OnSceneGraphTreeRootChange(domain::scenegraph::tree::NSceneGraphTreeNode const&, Pointer<item::NSceneGraphItemNode> const&) override { structure += 10000; }
  void OnGeometryChange(item::NSceneGraphModelNode const&, Pointer<domain::geometry::NGeometryNode> const&) override { ++content; }
  void OnGeometryChange(domain::geometry::NGeometryNode const&, domain::geometry::NSurface const&, domain::geometry::NGeometryChangeType) override { content += 100; }
  void OnMaterialChange(item::NSceneGraphModelNode const&, Pointer<domain::material::NMaterialNode> const&) override { content += 1000; }
  void OnAddTexture(domain::material::NMaterialNode const&, unsigned int) override { content += 10000; }
  void OnRemoveTexture(domain::material::NMaterialNode const&, Pointer<domain::texture::NTextureNode> const&, Pointer<mapping::NTextureMapping> const&) override { content += 100000; }
  void OnTextureImageChange(domain::texture::NTextureNode const&) override { content += 1000000; }
  // clang-format on
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

  template <class T>
  Pointer<T> Make() {
    return document.GetItems().CreateNode<T>(NNodeID());
  }
  static Pointer<domain::geometry::NPolygonSurface> MakeSurface(float size);
  Pointer<data::animation::NAnimationKey> MakeKey(double x);

  support::TemporaryFiles const& files;
  data::document::NDocument document;
  Pointer<Counter> counter{new Counter};
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
  Pointer<domain::geometry::NPolygonSurface> surface = MakeSurface(1);
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
};

/// All of it; computes what is cached.
std::wstring Describe(World& world);

}  // namespace corvanta::out_of_memory
