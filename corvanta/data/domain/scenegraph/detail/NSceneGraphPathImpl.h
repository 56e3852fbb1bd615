#pragma once

#include <boost/intrusive_ptr.hpp>
#include <memory>

#include "corvanta/core/node/NNodeReference.h"
#include "corvanta/data/domain/fwd.h"
#include "corvanta/data/domain/scenegraph/SGPathRelation.h"
#include "corvanta/data/domain/scenegraph/check_points.h"
#include "corvanta/export.h"
#include "corvanta/vx_math/Box3.h"
#include "corvanta/vx_math/Matrix.h"

namespace corvanta::data::domain::scenegraph::detail {

/// The address of an item of any kind: the item, the outermost tree, and the reference items passed
/// on the way down, outermost first. A value that owns nothing.
class CORVANTA_API NSceneGraphPathImpl {
 public:
  using ItemReference = core::node::NNodeReference<item::NSceneGraphItemNode const>;
  using TreeReference = core::node::NNodeReference<tree::NSceneGraphTreeNode const>;
  using CheckPoints = NCheckPoints;

  ItemReference const& GetItemRef() const noexcept;
  TreeReference const& GetTreeRef() const noexcept;
  CheckPoints const& GetCheckPoints() const noexcept;

  /// Units: row vectors; from the item's own frame to global coordinates.
  /// Fails: throws NSceneGraphPathError where a check point, the item or the tree has gone, and
  /// NGetGlobalTransformException where they don't connect.
  VX_Math::Matrix GetGlobalTransform() const;
  VX_Math::Matrix& GetGlobalTransform(VX_Math::Matrix& out) const;
  /// The box of the item's subtree in the item's own frame.
  /// Fails: throws the int 0 where the item or the tree has gone; otherwise as GetGlobalTransform.
  VX_Math::Box3 GetLocalBoundingBox() const;
  /// The same in global coordinates.
  /// Fails: as GetGlobalTransform.
  VX_Math::Box3 GetGlobalBoundingBox() const;

 protected:
  NSceneGraphPathImpl();
  NSceneGraphPathImpl(ItemReference const& item, TreeReference const& tree,
                      CheckPoints const& checkPoints);
  NSceneGraphPathImpl(NSceneGraphPathImpl const& other);
  NSceneGraphPathImpl& operator=(NSceneGraphPathImpl const& other);
  ~NSceneGraphPathImpl();

  /// Orders by item, then tree, then check points.
  bool Less(NSceneGraphPathImpl const& other) const noexcept;
  bool Equals(NSceneGraphPathImpl const& other) const noexcept;
  /// Fails: null when the item has gone.
  boost::intrusive_ptr<item::NSceneGraphItemNode const> GetNode() const;

 private:
  struct Block;

  std::unique_ptr<Block> m_block;
};

/// Whether everything that the path names is there, and the item connects to the outermost tree's
/// root through the check points.
/// Raises: reading a reference's tree may subscribe late, with that event.
CORVANTA_API bool IsValid(NSceneGraphPathImpl const& path);

/// Whether the path is valid, and why not: something in it was never set or has gone, or all is
/// there and the item doesn't connect to the root.
/// Raises: as IsValid.
CORVANTA_API core::node::NReferenceState GetState(NSceneGraphPathImpl const& path);

/// How two paths stand to each other. The same item shown twice is told apart by the check points.
/// Fails: SGPR_UNRELATED where something that both share has gone.
CORVANTA_API SGPathRelation GetPathRelation(NSceneGraphPathImpl const& first,
                                            NSceneGraphPathImpl const& second);

}  // namespace corvanta::data::domain::scenegraph::detail
