#pragma once

#include <boost/intrusive_ptr.hpp>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "corvanta/data/domain/geometry/NGeometryNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphCameraNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphItemNode.h"
#include "corvanta/data/domain/scenegraph/tree/NSceneGraphTreeNode.h"
#include "corvanta/export.h"
#include "corvanta/importer/NImportTarget.h"
#include "corvanta/importer/NMaterials.h"
#include "corvanta/importer/NVariants.h"
#include "corvanta/importer/animation/NEffort.h"
#include "corvanta/importer/deform/NDeformations.h"
#include "corvanta/importer/neutral/NSceneView.h"

namespace corvanta::importer {

/// Builds the items of a model file. A node of the file that holds one mesh, light or camera
/// becomes an item of that kind; one that holds none or several becomes a group, with an item below
/// it for each that it holds.
class CORVANTA_API NHierarchy {
 public:
  using Cameras = std::vector<std::pair<
      std::size_t, boost::intrusive_ptr<data::domain::scenegraph::item::NSceneGraphCameraNode>>>;

  /// `crease` is that of CreateSurface.
  NHierarchy(NImportTarget& target, neutral::NSceneView const& scene, NMaterials& materials,
             NVertexColors const& colors, std::optional<double> crease = std::nullopt);

  /// Makes the items and sets the root of `tree`, with `isXUp` below one that turns x to y.
  /// Fails: throws NImportError for more cameras at such depths than NEffort has left.
  /// Cost: linear in the nodes and in the depths of the cameras; no recursion.
  void Build(data::domain::scenegraph::tree::NSceneGraphTreeNode& tree, NEffort& effort,
             bool isXUp = false);

  /// The camera items with the numbers of their cameras in the file, in the file's order.
  Cameras const& GetCameras() const { return m_cameras; }
  /// The item of the scene's node `number`.
  /// Fails: null for neutral::kNone.
  boost::intrusive_ptr<data::domain::scenegraph::item::NSceneGraphItemNode> QueryItem(
      std::uint64_t number) const;

  NVariants const& GetVariants() const { return m_variants; }
  NDeformations const& GetDeformations() const { return m_deformations; }

  /// What the file holds and the scene can't, in UTF-8.
  std::vector<std::string> GetNotes() const;

 private:
  using Item = data::domain::scenegraph::item::NSceneGraphItemNode;
  using ItemPointer = boost::intrusive_ptr<Item>;

  // What a node of the file holds: numbers in the scene's lists.
  struct Content {
    std::vector<std::uint32_t> meshes;
    std::vector<std::uint32_t> skins;  // one a mesh; neutral::kNone for none
    std::vector<std::uint32_t> lights;
    std::vector<std::uint32_t> cameras;
    std::size_t Count() const { return meshes.size() + lights.size() + cameras.size(); }
  };

  template <class T>
  T const& Get(std::size_t number) const {
    return m_scene.Get<T>()[number];
  }

  Content TakeContent(neutral::NNode const& node);
  ItemPointer CreateItem(neutral::NNode const& node);
  ItemPointer CreateModel(Content const& content, std::size_t i);
  ItemPointer CreateLight(std::size_t light);
  ItemPointer CreateCamera(std::size_t camera);
  void AddBelow(Item& group, ItemPointer const& item, neutral::NText const& name,
                VX_Math::Matrix const& place);
  void Place(Item& item, VX_Math::Matrix const& transform, neutral::NNode const& node);
  void AimCameras(data::domain::scenegraph::tree::NSceneGraphTreeNode const& tree);
  bool HasTriangles(std::size_t mesh);
  boost::intrusive_ptr<data::domain::geometry::NGeometryNode> GetGeometry(std::size_t mesh);

  NImportTarget& m_target;
  neutral::NSceneView const& m_scene;
  NMaterials& m_materials;
  NVertexColors const& m_colors;
  std::optional<double> const m_crease;
  NVariants m_variants;
  NDeformations m_deformations;
  std::vector<bool> m_isLightPlaced;
  std::vector<bool> m_isCameraPlaced;
  std::vector<boost::intrusive_ptr<data::domain::geometry::NGeometryNode>> m_geometries;
  std::vector<bool> m_hasNoTriangles;
  Cameras m_cameras;
  std::vector<ItemPointer> m_items;  // by the numbers of the nodes
  std::size_t m_shearedCount = 0;
  std::string m_firstSheared;
  std::size_t m_meshesWithoutTriangles = 0;  // meshes without a triangle
  std::size_t m_unsupportedLights = 0;       // lights of a kind that has no place here
};

}  // namespace corvanta::importer
