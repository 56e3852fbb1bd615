#pragma once

#include <assimp/scene.h>

#include <boost/intrusive_ptr.hpp>
#include <map>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "app/import/NMaterials.h"
#include "app/import/gltf_nodes.h"
#include "app/scene/NDocument.h"
#include "corvanta/data/domain/geometry/NGeometryNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphCameraNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphItemNode.h"
#include "corvanta/data/domain/scenegraph/tree/NSceneGraphTreeNode.h"

namespace corvanta::app {

/// Builds the items of a model file. A node of the file that holds one mesh, light or camera
/// becomes an item of that kind; one that holds none or several becomes a group, with an item below
/// it for each that it holds.
class NHierarchy {
 public:
  using Cameras = std::vector<std::pair<
      unsigned, boost::intrusive_ptr<data::domain::scenegraph::item::NSceneGraphCameraNode>>>;

  NHierarchy(NDocument& document, aiScene const& scene, NMaterials& materials);

  /// Lights and cameras that stand at further nodes. Before Build.
  void Share(NSharedContent shared) { m_shared = std::move(shared); }
  /// Makes the items and sets the root of `tree`.
  /// Cost: linear in the nodes, however deep they stand; no recursion.
  void Build(data::domain::scenegraph::tree::NSceneGraphTreeNode& tree);

  /// The camera items with the numbers of their cameras in the file, in the file's order.
  Cameras const& GetCameras() const { return m_cameras; }
  /// The item of a node of the file. Fails: null for none, and in a file without animations.
  boost::intrusive_ptr<data::domain::scenegraph::item::NSceneGraphItemNode> QueryItem(
      aiNode const* node) const;
  /// The node of a name; of several, the uppermost and first.
  /// Fails: null if there is none, and in a file without animations.
  aiNode const* QueryNode(std::string const& name) const;

  /// What the file holds and the scene can't, in UTF-8.
  std::vector<std::string> GetNotes() const;

 private:
  using Item = data::domain::scenegraph::item::NSceneGraphItemNode;
  using ItemPointer = boost::intrusive_ptr<Item>;
  using ByName = std::multimap<std::string, unsigned>;

  // What a node of the file holds: numbers in the scene's lists.
  struct Content {
    std::vector<unsigned> meshes;
    std::vector<unsigned> lights;
    std::vector<unsigned> cameras;
    std::size_t Count() const { return meshes.size() + lights.size() + cameras.size(); }
  };

  Content TakeContent(aiNode const& node);
  VX_Math::Matrix GetCameraPlace(unsigned camera, aiNode const& node) const;
  ItemPointer CreateItem(aiNode const& node);
  ItemPointer CreateModel(unsigned mesh);
  ItemPointer CreateLight(unsigned light);
  ItemPointer CreateCamera(unsigned camera);
  void AddBelow(Item& group, ItemPointer const& item, aiString const& name,
                VX_Math::Matrix const& place);
  void Place(Item& item, VX_Math::Matrix const& transform, aiNode const& node);
  void AimCameras(data::domain::scenegraph::tree::NSceneGraphTreeNode const& tree);
  boost::intrusive_ptr<data::domain::geometry::NGeometryNode> GetGeometry(unsigned mesh);

  NDocument& m_document;
  aiScene const& m_scene;
  NMaterials& m_materials;
  ByName m_lightsByNode;
  ByName m_camerasByNode;
  NSharedContent m_shared;
  std::vector<boost::intrusive_ptr<data::domain::geometry::NGeometryNode>> m_geometries;
  std::vector<bool> m_hasNoTriangles;
  Cameras m_cameras;
  std::unordered_map<std::string, aiNode const*> m_nodesByName;
  std::unordered_map<aiNode const*, ItemPointer> m_itemsByNode;
  std::size_t m_shearedCount = 0;
  std::string m_firstSheared;
  std::size_t m_flatCount = 0;  // meshes without a triangle
  std::size_t m_lampCount = 0;  // lights of a kind that has no place here
};

}  // namespace corvanta::app
