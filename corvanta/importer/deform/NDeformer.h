#pragma once

#include <boost/intrusive_ptr.hpp>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "corvanta/core/node/NNodeReference.h"
#include "corvanta/data/domain/geometry/NSurface.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphItemNode.h"
#include "corvanta/export.h"
#include "corvanta/vx_math/Matrix.h"

namespace corvanta::importer {

class NShape;

/// Moves the vertices of a model file's meshes with the items that are their bones and with the
/// weights of their morph targets: attributes "morph.0", "morph.1" and so on of the item that
/// stands for the mesh's node.
///
/// Items, surfaces and this may end in any order.
class CORVANTA_API NDeformer {
 public:
  using Item = data::domain::scenegraph::item::NSceneGraphItemNode;

  /// The attribute with the weight of a target; a double.
  static std::wstring GetWeightName(std::size_t target);
  static bool IsWeightName(std::wstring const& name);

  NDeformer();
  NDeformer(NDeformer const&) = delete;
  NDeformer& operator=(NDeformer const&) = delete;
  ~NDeformer();

  /// Brings all surfaces to where bones and weights are now. Of a surface whose bones stand still
  /// relative to its model, and whose weights are the same as before, nothing is written; nor of
  /// one that has no longer as many vertices, or where something isn't finite.
  /// Raises: what NSurface::Assign does.
  /// Fails: throws what a listener throws; the surfaces behind aren't written.
  /// Cost: linear in what moves the vertices of surfaces that are written, and in all that stands
  /// above the bones.
  void Update();

  /// How many surfaces it moves.
  std::size_t GetCount() const { return m_parts.size(); }

  /// What moves a surface.
  struct Part {
    struct Joint {
      core::node::NNodeReference<Item> item;  // empty for one that isn't there
      VX_Math::Matrix bind;                   // from the frame of the mesh to that of the joint
    };

    std::shared_ptr<NShape const> shape;
    boost::intrusive_ptr<data::domain::geometry::NSurface> surface;
    core::node::NNodeReference<Item> model;
    core::node::NNodeReference<Item> weights;  // has the attributes
    std::vector<Joint> joints;
  };
  /// Has another surface moved from the next Update on.
  void Add(Part part);

 private:
  struct Entry;
  class Places;

  static void Update(Entry& entry, Places& places);

  std::vector<std::unique_ptr<Entry>> m_parts;
};

}  // namespace corvanta::importer
