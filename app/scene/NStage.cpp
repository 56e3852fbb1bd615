#include "app/scene/NStage.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <utility>
#include <vector>

#include "corvanta/data/domain/light/NLightNode.h"
#include "corvanta/data/domain/light_env/NLamp.h"
#include "corvanta/data/domain/light_env/NLightEnvNode.h"
#include "corvanta/data/domain/scenegraph/NSceneGraphTraverser.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphGroupNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphLightNode.h"
#include "corvanta/data/domain/scenegraph/tree/bounding_box.h"
#include "corvanta/data/internal/internal_data.h"
#include "corvanta/data/operators/convert_to_light_env.h"
#include "corvanta/data/preset/preset.h"

namespace corvanta::app {

namespace {

namespace item = data::domain::scenegraph::item;
using core::node::NNodeID;
using core::node::NNodeReference;

/// Shows the cameras and lights of a tree, in order.
class Finder : public data::domain::scenegraph::NSceneGraphTraverser {
 public:
  template <class Item>
  using Show = std::function<void(data::domain::scenegraph::NSceneGraphPath<Item> const&)>;

  Finder(Show<item::NSceneGraphCameraNode> camera, Show<item::NSceneGraphLightNode> light)
      : m_camera(std::move(camera)), m_light(std::move(light)) {}

 private:
  using NSceneGraphTraverser::Before;
  void Before(item::NSceneGraphCameraNode& camera, void const*,
              NCheckPoints const& checkPoints) override {
    if (m_camera) m_camera({camera, GetTree(), checkPoints});
  }
  void Before(item::NSceneGraphLightNode& light, void const*,
              NCheckPoints const& checkPoints) override {
    if (m_light && light.IsVisible()) m_light({light, GetTree(), checkPoints});
  }

  Show<item::NSceneGraphCameraNode> const m_camera;
  Show<item::NSceneGraphLightNode> const m_light;
};

/// Files give lights in units of their own; the brightest is made the unit.
void Normalize(data::domain::light_env::NLightEnvNode& lightEnv) {
  double brightest = 1.0;
  for (auto const& lamp : lightEnv.GetLamps()) {
    brightest = std::max({brightest, lamp->GetColorR(), lamp->GetColorG(), lamp->GetColorB()});
  }
  lightEnv.SetLampsCoefficient(1 / brightest);
}

}  // namespace

NStage::NStage(data::document::NDocument& document, NOverview::Tree const& tree)
    : m_document(document),
      m_hasInitialized(data::internal::Initialize(document.GetManager(), document.GetEvents())),
      m_tree(tree),
      m_overview(document, tree),
      m_environment(document.GetEnvironments().CreateNode(NNodeID())),
      m_view(new data::view::NView) {
  m_environment->SetName(L"environment");
  GetScene().SetEnvironment(m_environment);
  m_view->SetScene(GetScene());
  m_view->SetCamera(m_overview.GetCamera());
  data::preset::PresetEnvironment(m_environment, m_view, &document.GetItems(),
                                  &document.GetImages());
  // The floor is where the scene stands.
  VX_Math::Box3 const box = data::domain::scenegraph::tree::GetBoundingBox(*tree);
  if (!box.IsEmpty() && std::isfinite(box.min.y)) m_environment->SetFloorHeight(box.min.y);
  Light();
}

NStage::~NStage() {
  if (m_hasInitialized) data::internal::Uninitialize(m_document.GetManager());
}

void NStage::Light() {
  Finder({}, [this](auto const& path) { m_environment->AddLight(path); }).Start(*m_tree, nullptr);
  if (m_environment->GetLights().empty()) AddDefaultLights();
  data::operators::ConvertToLightEnv(*m_environment, m_document.GetLightEnvs());
  for (auto const& lightEnv : m_environment->GetLightEnvs()) Normalize(*lightEnv.Get());
}

// They stand in the environment's own tree.
void NStage::AddDefaultLights() {
  std::vector<boost::intrusive_ptr<data::domain::light::NLightNode>> lights;
  std::vector<boost::intrusive_ptr<item::NSceneGraphLightNode>> placed;
  auto const root = m_document.GetItems().CreateNode<item::NSceneGraphGroupNode>(NNodeID());
  root->SetName(L"lights");
  auto const tree = m_document.GetTrees().CreateNode(NNodeID());
  tree->SetName(L"lights");
  tree->SetRoot(NNodeReference<item::NSceneGraphItemNode>(*root));
  for (unsigned i = 0; i != data::preset::GetDefaultLightCount(); ++i) {
    lights.push_back(m_document.GetLights().CreateNode(NNodeID()));
    placed.push_back(m_document.GetItems().CreateNode<item::NSceneGraphLightNode>(NNodeID()));
    placed.back()->SetLightNode(lights.back());
    root->AddChild(*placed.back());
  }
  data::preset::PresetLight(lights, true);
  data::preset::PresetSceneGraphLight(placed, m_view, tree, true);
  m_environment->SetSceneGraph(tree);
  for (auto const& light : placed) m_environment->AddLight({*light, *tree});
}

NOverview::Camera NStage::FindCamera(std::wstring const& name) const {
  NOverview::Camera found;
  Finder(
      [&](NOverview::Camera const& path) {
        auto const camera = path.GetNode();
        auto const lens = camera->GetCameraNode();
        bool const isNamed = camera->GetName() == name || (lens && lens->GetName() == name);
        if (isNamed && !found.GetNode()) found = path;
      },
      {})
      .Start(*m_tree, nullptr);
  return found;
}

}  // namespace corvanta::app
