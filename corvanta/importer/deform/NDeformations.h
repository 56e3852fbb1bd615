#pragma once

#include <boost/intrusive_ptr.hpp>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "corvanta/data/domain/geometry/NGeometryNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"
#include "corvanta/export.h"
#include "corvanta/importer/NImportTarget.h"
#include "corvanta/importer/deform/NDeformer.h"
#include "corvanta/importer/mesh.h"
#include "corvanta/importer/neutral/NSceneView.h"

namespace corvanta::importer {

class NShape;

/// Gives the models of a model file that bones or morph targets move a geometry of their own each,
/// and a deformer that moves it.
class CORVANTA_API NDeformations {
 public:
  using Item = NDeformer::Item;
  using GeometryPointer = boost::intrusive_ptr<data::domain::geometry::NGeometryNode>;

  /// `crease` is that of CreateSurface. `mostCopied` limits what the models beyond the first of
  /// each mesh take together: vertices, corners, influences, offsets and joints.
  NDeformations(NImportTarget& target, neutral::NSceneView const& scene,
                std::optional<double> crease, std::size_t mostCopied = 20'000'000);

  /// A geometry for a model of the scene's mesh `mesh` at the scene's node `node`, where `skin` may
  /// be neutral::kNone; `getColor` is that of CreateSurface. Requires: the mesh has triangles.
  /// Fails: null where nothing moves it, or it would be too much.
  GeometryPointer AddModel(data::domain::scenegraph::item::NSceneGraphModelNode& model,
                           std::size_t mesh, std::uint32_t skin, std::size_t node,
                           NCornerColors const& getColor);

  /// Leads the models to their bones and weights, and moves them there.
  /// `items` are by the scene's nodes, and stand in their tree.
  void Bind(std::vector<boost::intrusive_ptr<Item>> const& items);

  /// Fails: null where it moves nothing.
  std::shared_ptr<NDeformer> const& GetDeformer() const { return m_deformer; }
  /// What couldn't be as the file has it, in UTF-8.
  std::vector<std::string> GetNotes() const;

 private:
  struct Pending {
    NDeformer::Part part;
    std::uint32_t skin;
    std::size_t node;
  };

  bool Take(neutral::NMesh const& mesh, std::uint32_t skin, bool isFirst);
  void AddWeights(Item& item, neutral::NNode const& node, std::size_t count);
  void AddJoints(Pending& pending, std::vector<boost::intrusive_ptr<Item>> const& items);

  NImportTarget& m_target;
  neutral::NSceneView const& m_scene;
  std::optional<double> const m_crease;
  std::size_t m_left;
  std::map<std::size_t, std::shared_ptr<NShape const>> m_shapes;  // by meshes
  std::vector<Pending> m_pending;
  std::shared_ptr<NDeformer> m_deformer;
  std::size_t m_unevenCount = 0;         // meshes whose weights don't sum to one
  std::size_t m_stiffCount = 0;          // models beyond the most
  std::vector<bool> m_hasMissingJoints;  // by skins
};

}  // namespace corvanta::importer
