#include "app/scene/NStage.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <utility>
#include <vector>

#include "app/scene/NStageLight.h"
#include "corvanta/data/domain/light/NLightNode.h"
#include "corvanta/data/domain/light_env/NLamp.h"
#include "corvanta/data/domain/light_env/NLightEnvNode.h"
#include "corvanta/data/domain/scenegraph/NSceneGraphTraverser.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphGroupNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphLightNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"
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

/// Makes the models of a tree wires.
class Wirer : public data::domain::scenegraph::NSceneGraphTraverser {
  using NSceneGraphTraverser::Before;
  void Before(item::NSceneGraphModelNode& model, void const*, NCheckPoints const&) override {
    model.SetIsWiredFlag(true);
  }
};

/// Files give lights in units of their own; the brightest is made the unit.
void Normalize(data::domain::light_env::NLightEnvNode& lightEnv) {
  double brightest = 1.0;
  for (auto const& lamp : lightEnv.GetLamps()) {
    brightest = std::max({brightest, lamp->GetColorR(), lamp->GetColorG(), lamp->GetColorB()});
  }
  lightEnv.SetLampsCoefficient(1 / brightest);
}

constexpr double kFill = 0.35;  // of the default rig
// What is left for highlights above the brightest shade of a white model.
constexpr double kBrightestShade = 0.7;

}  // namespace

NStage::NStage(data::document::NDocument& document, NOverview::Tree const& tree,
               NStageLights lights)
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
  VX_Math::Box3 const& box = m_overview.GetBox();
  // The floor is where the scene stands.
  if (auto const lowest = m_overview.GetLowest()) m_environment->SetFloorHeight(*lowest);
  Light(lights, box);
}

NStage::~NStage() {
  if (m_hasInitialized) data::internal::Uninitialize(m_document.GetManager());
}

void NStage::Light(NStageLights lights, VX_Math::Box3 const& box) {
  if (lights != NSL_DEFAULT) {
    Finder({}, [this](auto const& path) { m_environment->AddLight(path); }).Start(*m_tree, nullptr);
  }
  bool const hasOwn = !m_environment->GetLights().empty();
  bool const isFinite = !box.IsEmpty() && std::isfinite(box.GetSize().Length());
  if (!hasOwn && lights != NSL_FILE) AddDefaultLights(*m_environment);
  data::operators::ConvertToLightEnv(*m_environment, m_document.GetLightEnvs());
  for (auto const& lightEnv : m_environment->GetLightEnvs()) Normalize(*lightEnv.Get());
  if (hasOwn && lights == NSL_BOTH) {
    AddFill(1);
  } else if (hasOwn && lights == NSL_AUTOMATIC && isFinite &&
             MeasureLight(*m_environment, box, m_overview.GetSight()).darkShare > 0.5) {
    AddFill(kFill);
  }
  if (!isFinite) return;
  double const brightest = MeasureLight(*m_environment, box, m_overview.GetSight()).brightest;
  if (brightest > kBrightestShade) {
    m_environment->SetHdrExposure(std::log2(kBrightestShade / brightest));
  }
}

// They stand in the environment's own tree.
void NStage::AddDefaultLights(data::domain::environment::NEnvironmentNode& environment) {
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
  environment.SetSceneGraph(tree);
  for (auto const& light : placed) environment.AddLight({*light, *tree});
}

// All lights of an environment become one light environment; another environment, which lasts as
// long as that, gives one of its own.
void NStage::AddFill(double strength) {
  auto const fill = m_document.GetEnvironments().CreateNode(NNodeID());
  AddDefaultLights(*fill);
  data::operators::ConvertToLightEnv(*fill, m_document.GetLightEnvs());
  for (auto const& reference : fill->GetLightEnvs()) {
    reference.Get()->SetLampsCoefficient(strength);
    m_environment->AddLightEnv(reference);
  }
  m_document.GetEnvironments().RemoveNode(*fill);
}

void NStage::SetBackground(VX_Math::Vec3 const& color) {
  HideBackground();
  m_environment->SetColorR(color.x);
  m_environment->SetColorG(color.y);
  m_environment->SetColorB(color.z);
}

void NStage::HideBackground() {
  if (auto const model = m_environment->GetEnvironmentMapModel()) model->SetIsVisibleFlag(false);
}

void NStage::SetWired() { Wirer().Start(*m_tree, nullptr); }

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
