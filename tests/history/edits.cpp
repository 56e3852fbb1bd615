#include "tests/history/edits.h"

namespace corvanta::history {

using data::domain::material::texture_mapping::NUVWMappingType;

namespace {
constexpr unsigned kKinds = 19;
}  // namespace

Pointer<data::domain::NNode> Editor::Create(unsigned kind) {
  NDocument& d = m_document;
  switch (kind) {
    case 0:
      return d.GetAnimations().CreateNode();
    case 1:
      return d.GetCameras().CreateNode();
    case 2:
      return d.GetEnvironments().CreateNode();
    case 3:
      return d.GetGeometries().CreateNode();
    case 4:
      return d.GetImages().CreateNode();
    case 5:
      return d.GetLights().CreateNode();
    case 6:
      return d.GetLightEnvs().CreateNode();
    case 7:
      return d.GetMaterials().CreateNode();
    case 8:
      return d.GetMovies().CreateNode();
    case 9:
      return d.GetProjections().CreateNode();
    case 10:
      return d.GetScenes().CreateNode();
    case 11:
      return d.GetTrees().CreateNode();
    case 12:
      return d.GetSounds().CreateNode();
    case 13:
      return d.GetTextures().CreateNode();
    case 14:
      return d.GetItems().CreateNode<NSceneGraphCameraNode>();
    case 15:
      return d.GetItems().CreateNode<NSceneGraphLightNode>();
    case 16:
      return d.GetItems().CreateNode<NSceneGraphModelNode>();
    case 17:
      return d.GetItems().CreateNode<NSceneGraphReferenceNode>();
    default:
      return d.GetItems().CreateNode<NSceneGraphGroupNode>();
  }
}

void Editor::Populate() {
  for (unsigned i = 0; i != 2 * kKinds; ++i) Create(i % kKinds);
  for (unsigned i = 0; i != 3; ++i) Create(kKinds - 1);
}

/// Null if the node that was met isn't of that class.
template <class T, class Domain>
Pointer<T> Editor::Any(Domain const& domain) {
  auto node = domain.GetNodeBegin();
  if (node == domain.GetNodeEnd()) return nullptr;
  std::advance(node, Below(domain.GetNodeCount()));
  return dynamic_cast<T*>(&*node);
}

template <class T, class Domain>
NNodeReference<T> Editor::AnyReference(Domain const& domain) {
  return Below(6) == 0 ? NNodeReference<T>() : NNodeReference<T>(Any<T>(domain));
}

Pointer<data::domain::NNode> Editor::AnyNode() {
  auto const& domains = m_document.GetDomains();
  return Any<Node>(*domains[Below(domains.size())]);
}

NVariant Editor::AnyValue(NAttribute const& attribute) {
  switch (Below(12)) {
    case 0:
      return attribute.GetValue();
    case 1:
      return kNaN;
    case 2:
      return -0.0;
    case 3:
      return L"text " + std::to_wstring(Below(3));
    case 4:
      return Below(2) == 0;
    case 5:
      return static_cast<long>(Below(4));
    default:
      return static_cast<double>(Below(7)) / 4;
  }
}

NLocator Editor::AnyLocator() {
  auto const uri = NUri::CreateFileUri(L"/nowhere/" + std::to_wstring(Below(3)) + L".png");
  return Below(3) == 0 ? NLocator() : NLocator(uri);
}

void Editor::WriteAttribute(NAttributeHost& host) {
  std::vector<NAttribute*> attributes;
  for (auto i = host.GetAttributeBegin(); i != host.GetAttributeEnd(); ++i) {
    attributes.push_back(&*i);
  }
  if (attributes.empty()) return;
  NAttribute& written = *attributes[Below(attributes.size())];
  written.SetValue(AnyValue(written), true);
}

void Editor::EditLightly() {
  auto const node = AnyNode();
  if (!node) return;
  if (Below(4) == 0) {
    node->SetName(AnyName());
  } else {
    WriteAttribute(*node);
  }
}

void Editor::EditHierarchy() {
  auto const parent = Any<NSceneGraphItemNode>(m_document.GetItems());
  auto const child = Any<NSceneGraphItemNode>(m_document.GetItems());
  if (!parent || !child) return;
  switch (Below(4)) {
    case 0:
      parent->AddChild(*child);
      break;
    case 1:
      parent->AddChild(*child, Below(3));
      break;
    default:
      if (!parent->GetChildren().empty()) {
        auto const& children = parent->GetChildren();
        parent->RemoveChild(**std::next(children.begin(), Below(children.size())));
      }
  }
}

void Editor::EditItem() {
  auto const item = Any<NSceneGraphItemNode>(m_document.GetItems());
  if (auto* const model = dynamic_cast<NSceneGraphModelNode*>(item.get())) {
    if (Below(2) == 0) {
      model->SetGeometryNode(AnyReference<NGeometryNode>(m_document.GetGeometries()));
    } else {
      model->SetMaterial(AnyReference<NMaterialNode>(m_document.GetMaterials()));
    }
  } else if (auto* const reference = dynamic_cast<NSceneGraphReferenceNode*>(item.get())) {
    reference->SetSceneGraph(AnyReference<NSceneGraphTreeNode>(m_document.GetTrees()));
  } else if (auto* const light = dynamic_cast<NSceneGraphLightNode*>(item.get())) {
    light->SetLightNode(AnyReference<NLightNode>(m_document.GetLights()));
  } else if (auto* const camera = dynamic_cast<NSceneGraphCameraNode*>(item.get())) {
    camera->SetCameraNode(AnyReference<NCameraNode>(m_document.GetCameras()));
  }
}

void Editor::EditScenes() {
  auto const scene = Any<NSceneNode>(m_document.GetScenes());
  auto const shown = Any<NSceneGraphTreeNode>(m_document.GetTrees());
  switch (Below(3)) {
    case 0:
      if (scene) scene->SetSceneGraph(AnyReference<NSceneGraphTreeNode>(m_document.GetTrees()));
      break;
    case 1:
      if (scene)
        scene->SetEnvironment(AnyReference<NEnvironmentNode>(m_document.GetEnvironments()));
      break;
    default:
      if (shown) shown->SetRoot(AnyReference<NSceneGraphItemNode>(m_document.GetItems()));
  }
}

void Editor::EditMaterials() {
  auto const material = Any<NMaterialNode>(m_document.GetMaterials());
  auto const texture = Any<NTextureNode>(m_document.GetTextures());
  auto const image = Any<NImageNode>(m_document.GetImages());
  auto const images = AnyReference<NImageNode>(m_document.GetImages());
  if (Below(4) == 0 && texture) texture->SetImage(images);
  if (Below(4) == 0 && image) image->SetImageLocator(AnyLocator());
  if (!material) return;
  auto const textures = AnyReference<NTextureNode>(m_document.GetTextures());
  auto const count = material->GetTextures().size();
  auto const type = static_cast<data::environment_map::NEnvironmentMapImageType>(Below(3));
  switch (Below(8)) {
    case 0:
      material->RemoveTexture(Below(count + 1));
      break;
    case 1:
      if (count != 0) material->ReplaceTexture(material->GetTextures().front().first, textures);
      break;
    case 2:
      if (Below(3) == 0) material->RemoveAllTextures();
      break;
    case 3:
      material->SetBrdfTextureLocator(AnyLocator());
      break;
    case 4:
      material->SetEnvironmentMap(images, type);
      break;
    case 5:
      material->GetEnvironmentMap().SetImage(images);
      break;
    default:
      material->AddTexture(textures, *New<NUVWMapping>(NUVWMappingType()), Below(count + 1));
  }
}

void Editor::EditEnvironments() {
  auto const environment = Any<NEnvironmentNode>(m_document.GetEnvironments());
  if (!environment) return;
  auto const images = AnyReference<NImageNode>(m_document.GetImages());
  auto const lightEnvs = AnyReference<NLightEnvNode>(m_document.GetLightEnvs());
  auto const models = NNodeReference<NSceneGraphModelNode>(
      AnyReference<NSceneGraphItemNode>(m_document.GetItems()));
  auto const type = static_cast<data::environment_map::NEnvironmentMapImageType>(Below(3));
  NSceneGraphPath<NSceneGraphLightNode> const path(
      NNodeReference<NSceneGraphLightNode const>(
          AnyReference<NSceneGraphItemNode>(m_document.GetItems())),
      AnyReference<NSceneGraphTreeNode>(m_document.GetTrees()));
  switch (Below(11)) {
    case 0:
      environment->SetFloorImage(images);
      break;
    case 1:
      environment->SetFloorGeometry(AnyReference<NGeometryNode>(m_document.GetGeometries()));
      break;
    case 2:
      environment->Set2DImage(images);
      break;
    case 3:
      environment->SetEnvironmentMapModel(models);
      break;
    case 4:
      environment->GetEnvironmentMap().SetImageType(type);
      break;
    case 5:
      environment->GetEnvironmentMap().SetImage(images);
      break;
    case 6:
      environment->SetSceneGraph(AnyReference<NSceneGraphTreeNode>(m_document.GetTrees()));
      break;
    case 7:
      environment->RemoveLightEnv(lightEnvs);
      break;
    case 8:
      environment->AddLight(path);
      break;
    case 9:
      if (!environment->GetLights().empty()) {
        environment->RemoveLight(*environment->GetLights().begin());
      }
      break;
    default:
      environment->AddLightEnv(lightEnvs, Below(environment->GetLightEnvs().size() + 1));
  }
}

void Editor::EditLightEnvs() {
  auto const lightEnv = Any<NLightEnvNode>(m_document.GetLightEnvs());
  if (!lightEnv) return;
  auto const lamps = lightEnv->GetLamps();
  if (lamps.empty() || Below(4) == 0) {
    lightEnv->CreateLamp(AnyName());
    return;
  }
  auto const lamp = lamps[Below(lamps.size())];
  switch (Below(3)) {
    case 0:
      lightEnv->DeleteLamp(lamp);
      break;
    case 1:
      lamp->SetName(AnyName());
      break;
    default:
      WriteAttribute(*lamp);
  }
}

void Editor::EditGeometries() {
  auto const geometry = Any<NGeometryNode>(m_document.GetGeometries());
  auto const other = Any<NGeometryNode>(m_document.GetGeometries());
  if (!geometry || !other) return;
  auto const& surfaces = geometry->GetSurfaces();
  if (surfaces.empty() || Below(4) == 0) {
    geometry->AddSurface(*support::MakeTriangle({0, 0, 0}, {1, 1, 1}));
    return;
  }
  auto const surface = *std::next(surfaces.begin(), Below(surfaces.size()));
  std::vector<float> const coords(3 * Below(5), static_cast<float>(Below(9)));
  switch (Below(3)) {
    case 0:
      geometry->RemoveSurface(*surface);
      break;
    case 1:
      other->AddSurface(*surface);
      break;
    default:
      surface->Assign(coords, coords, {0, 1, 2}, {});
  }
}

void Editor::EditAnimations() {
  auto const animation = Any<NAnimationNode>(m_document.GetAnimations());
  auto const target = AnyNode();
  if (!animation || !target) return;
  if (Below(3) == 0) {
    animation->ClearAnimations();
    return;
  }
  using data::domain::animation::NNodeAnimationTarget;
  animation->AddAnimation({AnyName(), New<NNodeAnimationTarget>(NNodeReference<Node>(*target))},
                          *New<NKeyFrameAnimation>());
}

/// Comings and goings, also at a place of their own.
void Editor::EditDomain() {
  if (Below(5) < 3) {
    Create(Below(kKinds));
    return;
  }
  auto const node = AnyNode();
  if (!node) return;
  auto* const domain = node->GetDomain();
  if (!domain->RemoveNode(*node)) return;
  if (Below(3) == 0) domain->AddNode(*node, Below(4));
}

template <class Domain>
static void CopyIn(Domain const& domain, unsigned from, unsigned to) {
  if (domain.GetNodeCount() == 0) return;
  auto const at = [&domain](unsigned index) -> auto& {
    return *std::next(domain.begin(), static_cast<std::ptrdiff_t>(index % domain.GetNodeCount()));
  };
  at(from).CopyTo(at(to));
}

void Editor::Copy() {
  unsigned const from = Below(9);
  unsigned const to = Below(9);
  switch (Below(8)) {
    case 0:
      return CopyIn(m_document.GetMaterials(), from, to);
    case 1:
      return CopyIn(m_document.GetEnvironments(), from, to);
    case 2:
      return CopyIn(m_document.GetImages(), from, to);
    case 3:
      return CopyIn(m_document.GetTextures(), from, to);
    case 4:
      return CopyIn(m_document.GetTrees(), from, to);
    case 5:
      return CopyIn(m_document.GetAnimations(), from, to);
    case 6:
      // Onto itself it doubles the lamps.
      if (auto const count = std::max<std::size_t>(m_document.GetLightEnvs().GetNodeCount(), 1);
          from % count != to % count) {
        CopyIn(m_document.GetLightEnvs(), from, to);
      }
      return;
    default: {
      auto const source = Any<NSceneGraphModelNode>(m_document.GetItems());
      auto const target = Any<NSceneGraphModelNode>(m_document.GetItems());
      if (source && target) source->CopyTo(*target);
    }
  }
}

void Editor::Edit() {
  switch (Below(20)) {
    case 0:
    case 1:
    case 2:
      return EditHierarchy();
    case 3:
      return EditItem();
    case 4:
    case 5:
      return EditScenes();
    case 6:
    case 7:
      return EditMaterials();
    case 8:
    case 9:
      return EditEnvironments();
    case 10:
      return EditLightEnvs();
    case 11:
      return EditGeometries();
    case 12:
      return EditAnimations();
    case 13:
    case 14:
    case 15:
      return EditDomain();
    case 16:
      return Copy();
    default:
      return EditLightly();
  }
}

}  // namespace corvanta::history
