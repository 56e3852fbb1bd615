#include "corvanta/importer/NHierarchy.h"

#include <algorithm>
#include <utility>

#include "corvanta/core/text/message.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphGroupNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphLightNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"
#include "corvanta/data/domain/scenegraph/transform.h"
#include "corvanta/data/domain/scenegraph/tree/bounding_box.h"
#include "corvanta/importer/animation/lens.h"
#include "corvanta/importer/mesh.h"
#include "corvanta/importer/placement.h"
#include "corvanta/vx_math/Box3.h"

namespace corvanta::importer {

namespace {

namespace item = data::domain::scenegraph::item;
namespace tree = data::domain::scenegraph::tree;
using core::node::NNodeReference;

std::size_t CountFalse(std::vector<bool> const& flags) {
  return static_cast<std::size_t>(std::count(flags.begin(), flags.end(), false));
}

}  // namespace

NHierarchy::NHierarchy(NImportTarget& target, neutral::NSceneView const& scene,
                       NMaterials& materials, NVertexColors const& colors,
                       std::optional<double> crease)
    : m_target(target),
      m_scene(scene),
      m_materials(materials),
      m_colors(colors),
      m_crease(crease),
      m_variants(scene, materials, colors),
      m_deformations(target, scene, crease),
      m_isLightPlaced(scene.Get<neutral::NLight>().size()),
      m_isCameraPlaced(scene.Get<neutral::NCamera>().size()),
      m_geometries(scene.Get<neutral::NMesh>().size()),
      m_hasNoTriangles(m_geometries.size()) {}

void NHierarchy::Build(tree::NSceneGraphTreeNode& tree, NEffort& effort, bool isXUp) {
  auto const nodes = m_scene.Get<neutral::NNode>();
  m_items.reserve(nodes.size());
  // A camera is aimed by the transforms of all that it stands below.
  std::vector<std::uint32_t> depths{1};
  for (neutral::NNode const& node : nodes) {
    std::uint32_t const depth = depths[m_items.size()];
    effort.AddTransforms(depth * node.cameras.count);
    depths.insert(depths.end(), node.childCount, depth + 1);
    m_items.push_back(CreateItem(node));
  }
  // From the leaves up: all above are notified of a new child, and as yet nothing is above.
  std::size_t firstChild = nodes.size();
  for (std::size_t i = nodes.size(); i-- != 0;) {
    firstChild -= nodes[i].childCount;
    for (std::size_t child = 0; child != nodes[i].childCount; ++child) {
      m_items[i]->AddChild(*m_items[firstChild + child]);
    }
  }
  ItemPointer root = m_items.front();
  if (isXUp) {
    root = m_target.Create<item::NSceneGraphGroupNode>(m_target.GetDocument().GetItems());
    root->SetName(L"x up");
    root->SetRotationZ(90.0);
    root->AddChild(*m_items.front());
  }
  tree.SetRoot(NNodeReference<Item>(*root));
  std::stable_sort(m_cameras.begin(), m_cameras.end(),
                   [](auto const& a, auto const& b) { return a.first < b.first; });
  m_deformations.Bind(m_items);
  AimCameras(tree);
}

NHierarchy::ItemPointer NHierarchy::QueryItem(std::uint64_t number) const {
  return number == neutral::kNone ? nullptr : m_items[number];
}

NHierarchy::Content NHierarchy::TakeContent(neutral::NNode const& node) {
  Content content;
  auto const meshes = m_scene.Get(node.meshes), skins = m_scene.Get(node.skins);
  for (std::size_t i = 0; i != meshes.size(); ++i) {
    if (!HasTriangles(meshes[i])) continue;
    content.meshes.push_back(meshes[i]);
    content.skins.push_back(skins.empty() ? neutral::kNone : skins[i]);
  }
  for (std::uint32_t const light : m_scene.Get(node.lights)) {
    m_isLightPlaced[light] = true;
    if (HasKind(Get<neutral::NLight>(light))) {
      content.lights.push_back(light);
    } else {
      ++m_unsupportedLights;
    }
  }
  for (std::uint32_t const camera : m_scene.Get(node.cameras)) {
    m_isCameraPlaced[camera] = true;
    content.cameras.push_back(camera);
  }
  return content;
}

NHierarchy::ItemPointer NHierarchy::CreateItem(neutral::NNode const& node) {
  Content const content = TakeContent(node);
  VX_Math::Matrix const transform = ToMatrix(node.transform);
  VX_Math::Matrix const unmoved;

  ItemPointer item;
  bool const isOne = content.Count() == 1;
  if (isOne && !content.meshes.empty()) {
    item = CreateModel(content, 0);
  } else if (isOne && !content.lights.empty() &&
             GetPlace(Get<neutral::NLight>(content.lights.front())) == unmoved) {
    item = CreateLight(content.lights.front());
  } else if (isOne && !content.cameras.empty() &&
             GetPlace(Get<neutral::NCamera>(content.cameras.front())) == unmoved) {
    item = CreateCamera(content.cameras.front());
  } else {
    item = m_target.Create<item::NSceneGraphGroupNode>(m_target.GetDocument().GetItems());
    SetName(*item, m_scene.GetText(node.name));
    Place(*item, transform, node);
    for (std::size_t i = 0; i != content.meshes.size(); ++i) {
      AddBelow(*item, CreateModel(content, i), Get<neutral::NMesh>(content.meshes[i]).name,
               unmoved);
    }
    for (std::uint32_t const light : content.lights) {
      auto const& source = Get<neutral::NLight>(light);
      AddBelow(*item, CreateLight(light), source.name, GetPlace(source));
    }
    for (std::uint32_t const camera : content.cameras) {
      auto const& source = Get<neutral::NCamera>(camera);
      AddBelow(*item, CreateCamera(camera), source.name, GetPlace(source));
    }
    return item;
  }
  SetName(*item, m_scene.GetText(node.name));
  Place(*item, transform, node);
  return item;
}

void NHierarchy::AddBelow(Item& group, ItemPointer const& item, neutral::NText const& name,
                          VX_Math::Matrix const& place) {
  SetName(*item, m_scene.GetText(name));
  if (place != VX_Math::Matrix()) item::SetTransform(*item, place);
  group.AddChild(*item);
}

// That of the mesh `i` of what is `m_items`' next.
NHierarchy::ItemPointer NHierarchy::CreateModel(Content const& content, std::size_t i) {
  std::size_t const mesh = content.meshes[i];
  auto const model = m_target.Create<item::NSceneGraphModelNode>(m_target.GetDocument().GetItems());
  auto geometry = m_deformations.AddModel(*model, mesh, content.skins[i], m_items.size(),
                                          m_colors.GetCornerColors(mesh));
  if (!geometry) geometry = GetGeometry(mesh);
  model->SetGeometryNode(NNodeReference<data::domain::geometry::NGeometryNode>(*geometry));
  model->SetMaterial(NNodeReference<data::domain::material::NMaterialNode>(
      *m_materials.GetMaterial(Get<neutral::NMesh>(mesh).material, m_colors.Has(mesh))));
  m_variants.AddModel(mesh, *model);
  return model;
}

NHierarchy::ItemPointer NHierarchy::CreateLight(std::size_t light) {
  auto const& source = Get<neutral::NLight>(light);
  auto const node = m_target.Create(m_target.GetDocument().GetLights());
  SetName(*node, m_scene.GetText(source.name));
  SetLight(source, *node);
  auto const placed =
      m_target.Create<item::NSceneGraphLightNode>(m_target.GetDocument().GetItems());
  placed->SetLightNode(NNodeReference<data::domain::light::NLightNode>(*node));
  return placed;
}

NHierarchy::ItemPointer NHierarchy::CreateCamera(std::size_t camera) {
  auto const node = m_target.Create(m_target.GetDocument().GetCameras());
  SetName(*node, m_scene.GetText(Get<neutral::NCamera>(camera).name));
  auto const placed =
      m_target.Create<item::NSceneGraphCameraNode>(m_target.GetDocument().GetItems());
  placed->SetCameraNode(NNodeReference<data::domain::camera::NCameraNode>(*node));
  m_cameras.emplace_back(camera, placed);
  return placed;
}

void NHierarchy::Place(Item& item, VX_Math::Matrix const& transform, neutral::NNode const& node) {
  if (transform == VX_Math::Matrix()) return;
  item::SetTransform(item, transform);
  if (IsSameTransform(item.GetTransform(), transform)) return;
  if (m_shearedCount++ == 0) m_firstSheared = m_scene.GetString(node.name);
}

// Interest and up of a camera are global, so they follow when all is in its place.
void NHierarchy::AimCameras(tree::NSceneGraphTreeNode const& tree) {
  if (m_cameras.empty()) return;
  VX_Math::Box3 const box = tree::GetBoundingBox(tree);
  for (auto const& [camera, placed] : m_cameras) {
    VX_Math::Matrix const global = data::domain::scenegraph::GetGlobalTransform(*placed, tree, {});
    Aim(Get<neutral::NCamera>(camera), global, box, *placed);
  }
}

bool NHierarchy::HasTriangles(std::size_t mesh) {
  if (Get<neutral::NMesh>(mesh).triangles.count != 0) return true;
  if (!m_hasNoTriangles[mesh]) ++m_meshesWithoutTriangles;
  m_hasNoTriangles[mesh] = true;
  return false;
}

boost::intrusive_ptr<data::domain::geometry::NGeometryNode> NHierarchy::GetGeometry(
    std::size_t mesh) {
  auto& node = m_geometries[mesh];
  if (node) return node;
  auto const surface = CreateSurface(m_scene, Get<neutral::NMesh>(mesh), m_crease, nullptr,
                                     m_colors.GetCornerColors(mesh));
  node = m_target.Create(m_target.GetDocument().GetGeometries());
  SetName(*node, m_scene.GetText(Get<neutral::NMesh>(mesh).name));
  node->AddSurface(*surface);
  return node;
}

std::vector<std::string> NHierarchy::GetNotes() const {
  std::vector<std::string> notes;
  if (m_shearedCount != 0) {
    notes.push_back(
        core::text::Plural(m_shearedCount, "transform holds shear, which is lost: that of \"",
                           "transforms hold shear, which is lost; the first is that of \"") +
        m_firstSheared + '"');
  }
  auto const note = [&notes](std::size_t count, char const* one, char const* many) {
    if (count != 0) notes.push_back(core::text::Plural(count, one, many));
  };
  note(m_meshesWithoutTriangles, "mesh has no triangles and was left out",
       "meshes have no triangles and were left out");
  note(m_unsupportedLights, "light is neither directional, point nor spot and was left out",
       "lights are neither directional, point nor spot and were left out");
  note(CountFalse(m_isLightPlaced) + CountFalse(m_isCameraPlaced),
       "light or camera stands at no node and was left out",
       "lights or cameras stand at no node and were left out");
  auto const more = m_deformations.GetNotes();
  notes.insert(notes.end(), more.begin(), more.end());
  return notes;
}

}  // namespace corvanta::importer
