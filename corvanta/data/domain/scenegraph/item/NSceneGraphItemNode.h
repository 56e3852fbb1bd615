#pragma once

#include <boost/intrusive_ptr.hpp>
#include <list>
#include <memory>
#include <string>

#include "corvanta/core/observer/NObservable.h"
#include "corvanta/data/domain/NNode.h"
#include "corvanta/data/domain/scenegraph/item/item_types.h"
#include "corvanta/data/events/scene_graph_hierarchy/NListener.h"
#include "corvanta/vx_math/Box3.h"
#include "corvanta/vx_math/Matrix.h"

namespace corvanta::data::domain::scenegraph::detail {
class NItemAccess;
}
namespace corvanta::data::history::detail {
class NChangeAccess;
}

namespace corvanta::data::domain::scenegraph::item {

#define CORVANTA_ROWS_CONSTANTS
#include "corvanta/data/domain/scenegraph/item/item_attributes.def"

/// What every object placed in a scene is: a transform, flags, a parent and children, and a cached
/// bounding box of its subtree.
///
/// A parent owns its children. The local matrix and the box are computed when they are asked for
/// and kept until an attribute they depend on was set with notification, or a child came or went.
/// These do not mark them dirty: a silent write, an insert by index (the old parent), CopyTo (it
/// hands the box over), an ancestor's move above an absolute item, and the end of a geometry, tree
/// or root. A listener of an attribute that reads a cache inside the event gets the
/// value from before: rules 27 to 31 of docs/events.md.
///
/// Units: row vectors; single precision; rotations in degrees.
class CORVANTA_API NSceneGraphItemNode
    : public NNode,
      public core::observer::NObservable<NSceneGraphItemNode,
                                         events::scene_graph_hierarchy::NListener> {
 public:
  using Children = std::list<boost::intrusive_ptr<NSceneGraphItemNode>>;

  ~NSceneGraphItemNode() override;

#define CORVANTA_ROWS_ACCESSORS
#include "corvanta/data/domain/scenegraph/item/item_attributes.def"

  /// One of the SGIT_ pointers.
  wchar_t const* GetSceneGraphItemType() const { return GetSceneGraphItemTypeImpl(); }

  /// The local matrix: see CalcTransformMatrix.
  /// Cost: a load while it is clean.
  VX_Math::Matrix const& GetTransform() const;
  /// The box of this item's subtree in its own frame, that is before its own transform. Hidden
  /// children are excluded; the item's own visibility has no effect.
  /// Units: `accumulated` is the item's global matrix, `base` the control transform of its tree.
  /// While the box is clean it is returned whatever they are.
  /// Cost: nothing while it is clean. Else a look at each child, and from the second time on, where
  /// there are 64 or more, only at those that changed and those that are absolute.
  VX_Math::Box3 const& GetBoundingBox(VX_Math::Matrix const& accumulated,
                                      VX_Math::Matrix const& base) const;

  /// Appends `child` and owns it.
  /// Raises: SignalAddChild.
  /// Fails: false, and no change, for a child that is here, that has a parent, or that is this item
  /// or stands above it.
  /// Cost: twice the fewer of the items above this one and of those below `child`.
  bool AddChild(NSceneGraphItemNode& child);
  /// Inserts `child` before position `index`; beyond the last it appends as above. Doesn't look at
  /// the parent that the child has: take it out there first, or it is in both lists.
  /// Raises: SignalAddChild.
  /// Fails: false, and no change, for a child that is here, that is of another domain, or that is
  /// this item or stands above it.
  bool AddChild(NSceneGraphItemNode& child, unsigned int index);
  /// Lets go of `child`.
  /// Raises: SignalRemoveChild; the child is held until it is over.
  /// Fails: false, and no change, for an item that is no child.
  bool RemoveChild(NSceneGraphItemNode& child);
  Children const& GetChildren() const;
  /// Null for an item without a parent.
  boost::intrusive_ptr<NSceneGraphItemNode> GetParent() const;
  /// Whether this item is the root that `reference` shows.
  bool IsReferredFrom(NSceneGraphReferenceNode const& reference) const;

  /// Offers the translation, rotation and scale of `matrix` to the nine attributes, silently.
  void TryTransform(VX_Math::Matrix const& matrix);

 protected:
  /// The node's name is made of `typeName`, the text of its kind.
  NSceneGraphItemNode(core::node::NNodeID const& id, core::domain::NDomainBase* domain,
                      events::attribute_change::NMultiplexer const* multiplexer,
                      std::wstring const& typeName);

  /// Marks this box and every box that contains it, through parents and references.
  /// Cost: each item above is visited once.
  void DirtyBoundingBox() noexcept;
  /// Gives `target` the name, the attributes, the caches and the referrers; no children.
  void CopyTo(NSceneGraphItemNode& target) const;

  void OnAttributeChangeImpl(core::attribute::NAttribute const& attribute) final;
  /// Extends `box` by what this item holds; see GetBoundingBox.
  virtual void CalculateBoundingBox(VX_Math::Box3& box, VX_Math::Matrix const& accumulated,
                                    VX_Math::Matrix const& base) const;

  /// Records that `reference` shows this item as the root of its tree.
  /// Fails: false if it is recorded already.
  bool AddReferrer(NSceneGraphReferenceNode const& reference) const;
  /// Fails: false if it isn't recorded.
  bool RemoveReferrer(NSceneGraphReferenceNode const& reference) const;
  /// Removes the references whose tree has another root, or that have none. Reaches no listener.
  void RemoveStrayReferrers() const noexcept;

 private:
  friend class history::detail::NChangeAccess;
  friend class scenegraph::detail::NItemAccess;
  friend class NSceneGraphReferenceNode;
  friend class tree::NSceneGraphTreeNode;

  struct Block;
  struct BoxWalk;
  class Descent;

  virtual wchar_t const* GetSceneGraphItemTypeImpl() const = 0;

  bool IsChild(NSceneGraphItemNode const& child) const;
  bool IsOrStandsBelow(NSceneGraphItemNode const& item) const;
  Children::const_iterator FindChild(NSceneGraphItemNode const& child) const;
  void Insert(NSceneGraphItemNode& child, Children::const_iterator before,
              NSceneGraphItemNode* newParent);
  void TakeOut(NSceneGraphItemNode& child, NSceneGraphItemNode* newParent);
  void ExtendByChild(VX_Math::Box3& box, NSceneGraphItemNode const& child,
                     VX_Math::Matrix const& accumulated, VX_Math::Matrix const& base) const;
  bool IsReferrer(NSceneGraphReferenceNode const& reference) const;
  static void NoteCleaning() noexcept;

  std::unique_ptr<Block> const m_block;
};

/// The position of `child` among the children of `parent`, from 0.
/// Fails: 0xFFFFFFFF if it isn't there.
CORVANTA_API unsigned int GetChildIndex(NSceneGraphItemNode& parent, NSceneGraphItemNode& child);

/// Sets translation, rotation and scale from `matrix`; the pivot stays, so that with a pivot the
/// matrix doesn't read back.
/// Raises: nine attribute changes: translation x y z, rotation x y z, scale x y z.
CORVANTA_API void SetTransform(NSceneGraphItemNode& item, VX_Math::Matrix const& matrix);

/// Scales about the origin, then rotates about `pivot`, then translates.
/// Units: `rotation` in degrees, about x, then y, then z.
CORVANTA_API VX_Math::Matrix CalcTransformMatrix(VX_Math::Vec3 const& scale,
                                                 VX_Math::Vec3 const& pivot,
                                                 VX_Math::Vec3 const& rotation,
                                                 VX_Math::Vec3 const& translation);

}  // namespace corvanta::data::domain::scenegraph::item
