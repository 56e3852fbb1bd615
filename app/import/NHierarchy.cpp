#include "app/import/NHierarchy.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "app/import/lens.h"
#include "app/import/mesh.h"
#include "app/import/placement.h"
#include "app/output/text.h"
#include "corvanta/core/text/convert.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphGroupNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphLightNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"
#include "corvanta/data/domain/scenegraph/transform.h"
#include "corvanta/data/domain/scenegraph/tree/bounding_box.h"
#include "corvanta/vx_math/Box3.h"

namespace corvanta::app {

namespace {

namespace item = data::domain::scenegraph::item;
namespace tree = data::domain::scenegraph::tree;
using core::node::NNodeID;
using core::node::NNodeReference;

void SetName(core::name::NNamedObject& object, aiString const& name) {
  if (name.length != 0) object.SetName(core::text::ToWide(name.C_Str()));
}

// The entry of `name` is used up, so that of several nodes of one name the first gets it.
std::vector<unsigned> Take(std::multimap<std::string, unsigned>& byName, aiString const& name) {
  std::vector<unsigned> numbers;
  if (byName.empty()) return numbers;
  auto const [begin, end] = byName.equal_range(name.C_Str());
  std::transform(begin, end, std::back_inserter(numbers),
                 [](auto const& entry) { return entry.second; });
  byName.erase(begin, end);
  return numbers;
}

}  // namespace

NHierarchy::NHierarchy(NDocument& document, aiScene const& scene, NMaterials& materials)
    : m_document(document),
      m_scene(scene),
      m_materials(materials),
      m_geometries(scene.mNumMeshes),
      m_hasNoTriangles(scene.mNumMeshes) {
  for (unsigned i = 0; i != scene.mNumLights; ++i) {
    m_lightsByNode.emplace(scene.mLights[i]->mName.C_Str(), i);
  }
  for (unsigned i = 0; i != scene.mNumCameras; ++i) {
    m_camerasByNode.emplace(scene.mCameras[i]->mName.C_Str(), i);
  }
}

void NHierarchy::Build(tree::NSceneGraphTreeNode& tree) {
  struct Entry {
    aiNode const* node;
    ItemPointer item;
    std::size_t firstChild;  // they stand one behind the other
  };
  std::vector<Entry> entries{{m_scene.mRootNode, nullptr, 0}};
  for (std::size_t i = 0; i != entries.size(); ++i) {
    aiNode const& node = *entries[i].node;
    entries[i].item = CreateItem(node);
    if (m_scene.mNumAnimations != 0) {
      m_nodesByName.emplace(node.mName.C_Str(), &node);
      m_itemsByNode.emplace(&node, entries[i].item);
    }
    entries[i].firstChild = entries.size();
    for (unsigned child = 0; child != node.mNumChildren; ++child) {
      entries.push_back({node.mChildren[child], nullptr, 0});
    }
  }
  // From the leaves up: a new child is told to all above, and as yet nothing is.
  for (std::size_t i = entries.size(); i-- != 0;) {
    for (unsigned child = 0; child != entries[i].node->mNumChildren; ++child) {
      entries[i].item->AddChild(*entries[entries[i].firstChild + child].item);
    }
  }
  tree.SetRoot(NNodeReference<Item>(*entries.front().item));
  std::sort(m_cameras.begin(), m_cameras.end(),
            [](auto const& a, auto const& b) { return a.first < b.first; });
  AimCameras(tree);
}

NHierarchy::ItemPointer NHierarchy::QueryItem(aiNode const* node) const {
  auto const entry = m_itemsByNode.find(node);
  return entry == m_itemsByNode.end() ? nullptr : entry->second;
}

aiNode const* NHierarchy::QueryNode(std::string const& name) const {
  auto const entry = m_nodesByName.find(name);
  return entry == m_nodesByName.end() ? nullptr : entry->second;
}

NHierarchy::Content NHierarchy::TakeContent(aiNode const& node) {
  Content content;
  for (unsigned i = 0; i != node.mNumMeshes; ++i) {
    if (GetGeometry(node.mMeshes[i])) content.meshes.push_back(node.mMeshes[i]);
  }
  std::vector<unsigned> lights = Take(m_lightsByNode, node.mName);
  if (auto const more = m_shared.lights.find(&node); more != m_shared.lights.end()) {
    lights.push_back(more->second);
  }
  for (unsigned const light : lights) {
    if (HasKind(*m_scene.mLights[light])) {
      content.lights.push_back(light);
    } else {
      ++m_lampCount;
    }
  }
  content.cameras = Take(m_camerasByNode, node.mName);
  if (auto const more = m_shared.cameras.find(&node); more != m_shared.cameras.end()) {
    content.cameras.push_back(more->second);
  }
  return content;
}

// A camera that is shared has the place of another node.
VX_Math::Matrix NHierarchy::GetCameraPlace(unsigned camera, aiNode const& node) const {
  if (m_shared.cameras.count(&node) != 0) return {};
  return GetPlace(*m_scene.mCameras[camera], node);
}

NHierarchy::ItemPointer NHierarchy::CreateItem(aiNode const& node) {
  Content const content = TakeContent(node);
  VX_Math::Matrix const transform = ToMatrix(node.mTransformation);
  VX_Math::Matrix const unmoved;

  ItemPointer item;
  bool const isOne = content.Count() == 1;
  if (isOne && !content.meshes.empty()) {
    item = CreateModel(content.meshes.front());
  } else if (isOne && !content.lights.empty() &&
             GetPlace(*m_scene.mLights[content.lights.front()]) == unmoved) {
    item = CreateLight(content.lights.front());
  } else if (isOne && !content.cameras.empty() &&
             GetCameraPlace(content.cameras.front(), node) == unmoved) {
    item = CreateCamera(content.cameras.front());
  } else {
    item = m_document.GetItems().CreateNode<item::NSceneGraphGroupNode>(NNodeID());
    SetName(*item, node.mName);
    Place(*item, transform, node);
    for (unsigned const mesh : content.meshes) {
      AddBelow(*item, CreateModel(mesh), m_scene.mMeshes[mesh]->mName, unmoved);
    }
    for (unsigned const light : content.lights) {
      aiLight const& source = *m_scene.mLights[light];
      AddBelow(*item, CreateLight(light), source.mName, GetPlace(source));
    }
    for (unsigned const camera : content.cameras) {
      AddBelow(*item, CreateCamera(camera), m_scene.mCameras[camera]->mName,
               GetCameraPlace(camera, node));
    }
    return item;
  }
  SetName(*item, node.mName);
  Place(*item, transform, node);
  return item;
}

void NHierarchy::AddBelow(Item& group, ItemPointer const& item, aiString const& name,
                          VX_Math::Matrix const& place) {
  SetName(*item, name);
  if (place != VX_Math::Matrix()) item::SetTransform(*item, place);
  group.AddChild(*item);
}

NHierarchy::ItemPointer NHierarchy::CreateModel(unsigned mesh) {
  auto const model = m_document.GetItems().CreateNode<item::NSceneGraphModelNode>(NNodeID());
  model->SetGeometryNode(NNodeReference<data::domain::geometry::NGeometryNode>(*GetGeometry(mesh)));
  model->SetMaterial(NNodeReference<data::domain::material::NMaterialNode>(
      *m_materials.GetMaterial(m_scene.mMeshes[mesh]->mMaterialIndex)));
  return model;
}

NHierarchy::ItemPointer NHierarchy::CreateLight(unsigned light) {
  aiLight const& source = *m_scene.mLights[light];
  auto const node = m_document.GetLights().CreateNode(NNodeID());
  SetName(*node, source.mName);
  SetLight(source, *node);
  auto const placed = m_document.GetItems().CreateNode<item::NSceneGraphLightNode>(NNodeID());
  placed->SetLightNode(NNodeReference<data::domain::light::NLightNode>(*node));
  return placed;
}

NHierarchy::ItemPointer NHierarchy::CreateCamera(unsigned camera) {
  auto const node = m_document.GetCameras().CreateNode(NNodeID());
  SetName(*node, m_scene.mCameras[camera]->mName);
  auto const placed = m_document.GetItems().CreateNode<item::NSceneGraphCameraNode>(NNodeID());
  placed->SetCameraNode(NNodeReference<data::domain::camera::NCameraNode>(*node));
  m_cameras.emplace_back(camera, placed);
  return placed;
}

void NHierarchy::Place(Item& item, VX_Math::Matrix const& transform, aiNode const& node) {
  if (transform == VX_Math::Matrix()) return;
  item::SetTransform(item, transform);
  if (IsSameTransform(item.GetTransform(), transform)) return;
  if (m_shearedCount++ == 0) m_firstSheared = node.mName.C_Str();
}

// Interest and up of a camera are global, so they follow when all stands in its place.
void NHierarchy::AimCameras(tree::NSceneGraphTreeNode const& tree) {
  if (m_cameras.empty()) return;
  VX_Math::Box3 const box = tree::GetBoundingBox(tree);
  for (auto const& [camera, placed] : m_cameras) {
    VX_Math::Matrix const global = data::domain::scenegraph::GetGlobalTransform(*placed, tree, {});
    Aim(*m_scene.mCameras[camera], global, box, *placed);
  }
}

boost::intrusive_ptr<data::domain::geometry::NGeometryNode> NHierarchy::GetGeometry(unsigned mesh) {
  auto& node = m_geometries[mesh];
  if (node || m_hasNoTriangles[mesh]) return node;
  auto const surface = CreateSurface(*m_scene.mMeshes[mesh]);
  if (!surface) {
    m_hasNoTriangles[mesh] = true;
    ++m_flatCount;
    return node;
  }
  node = m_document.GetGeometries().CreateNode(NNodeID());
  SetName(*node, m_scene.mMeshes[mesh]->mName);
  node->AddSurface(*surface);
  return node;
}

std::vector<std::string> NHierarchy::GetNotes() const {
  std::vector<std::string> notes;
  if (m_shearedCount != 0) {
    notes.push_back(Plural(m_shearedCount, "transform holds shear, which is lost: that of \"",
                           "transforms hold shear, which is lost; the first is that of \"") +
                    m_firstSheared + '"');
  }
  auto const note = [&notes](std::size_t count, char const* one, char const* many) {
    if (count != 0) notes.push_back(Plural(count, one, many));
  };
  note(m_flatCount, "mesh has no triangles and was left out",
       "meshes have no triangles and were left out");
  note(m_lampCount, "light is neither directional, point nor spot and was left out",
       "lights are neither directional, point nor spot and were left out");
  note(m_lightsByNode.size() + m_camerasByNode.size(),
       "light or camera stands at no node and was left out",
       "lights or cameras stand at no node and were left out");
  return notes;
}

}  // namespace corvanta::app
