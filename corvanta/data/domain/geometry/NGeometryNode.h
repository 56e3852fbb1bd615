#pragma once

#include <memory>
#include <set>

#include "corvanta/core/observer/NObservable.h"
#include "corvanta/data/domain/NNode.h"
#include "corvanta/data/domain/geometry/NGeometryChangeListener.h"
#include "corvanta/data/domain/geometry/NSurface.h"

namespace corvanta::data::domain::geometry {

namespace detail {
class NGeometryCache;
}

/// The shape that a model shows: a set of surfaces, which it owns together with whoever else holds
/// them.
class CORVANTA_API NGeometryNode
    : public NNode,
      public core::observer::NObservable<NGeometryNode, NGeometryChangeListener> {
 public:
  NGeometryNode(core::node::NNodeID const& id, core::domain::NDomainBase* domain,
                events::attribute_change::NMultiplexer const* multiplexer);
  ~NGeometryNode() override;

  /// The surfaces in the order of their creation.
  std::set<boost::intrusive_ptr<NSurface>> const& GetSurfaces() const noexcept;
  /// Raises: NGCT_SURFACE_ADDED.
  /// Fails: false, and no change, if the surface is here already.
  bool AddSurface(NSurface& surface);
  /// Raises: NGCT_SURFACE_REMOVED; the surface lives until the signal is over.
  /// Fails: false, and no change, if the surface isn't here.
  bool RemoveSurface(NSurface& surface);

  /// Gives `target` this node's name and attribute values, and adds clones of this node's surfaces
  /// to those that it has.
  void CopyTo(NGeometryNode& target) const;

 private:
  friend class NSurface;
  friend class detail::NGeometryCache;
  struct Block;

  void AcceptImpl(NNodeWatcher& visitor) const override { visitor.Visit(*this); }
  void AcceptImpl(NNodeModifier& visitor) override { visitor.Visit(*this); }

  using Entry = std::set<boost::intrusive_ptr<NSurface>>::node_type;

  static Entry MakeEntry();
  void Enter(NSurface& surface, Entry entry);
  void DropCache() const noexcept;
  std::set<boost::intrusive_ptr<NSurface>>::iterator Find(NSurface& surface) const noexcept;
  // The one way by which observers are notified of a change.
  void OnSurfaceChange(NSurface const& surface, NGeometryChangeType type) const;
  // What remains to be done when a listener's exception ends it: the models mark their boxes.
  void MarkModels(NSurface const& surface, NGeometryChangeType type) const;

  std::unique_ptr<Block> const m_block;
};

}  // namespace corvanta::data::domain::geometry
