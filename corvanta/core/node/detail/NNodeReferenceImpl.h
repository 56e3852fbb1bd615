#pragma once

#include <boost/intrusive_ptr.hpp>

#include "corvanta/core/reference_countable/NWeakReferenceImpl.h"
#include "corvanta/export.h"

namespace corvanta::core::node {
class NNode;
}

namespace corvanta::core::node {

/// Whether a reference or a path leads to a node, and why not.
enum NReferenceState : int {
  NRS_RESOLVED,
  NRS_NEVER_SET,
  NRS_GONE,             ///< the node has ended, or was removed and can only be brought back
  NRS_OTHER_CLASS,      ///< the node isn't of the class that the reference asks for
  NRS_NO_LONGER_BELOW,  ///< of a path: all is there, but the item isn't below the tree's root
};

/// "resolved", "never set", "gone", "of another class" or "no longer below".
CORVANTA_API wchar_t const* GetText(NReferenceState state) noexcept;

}  // namespace corvanta::core::node

namespace corvanta::core::node::detail {

/// A reference to a node of any class; owns nothing.
class CORVANTA_API NNodeReferenceImpl {
 public:
  /// Fails: null when the reference is empty and when the node has gone: has ended, or was removed
  /// from its domain and is held by none but those who may bring it back.
  boost::intrusive_ptr<NNode const> GetNode() const noexcept;
  /// Whether both refer to the same node, dead or alive, or both to nothing.
  bool Equals(NNodeReferenceImpl const& other) const noexcept { return m_weak == other.m_weak; }
  /// A strict order: by the serial number of the weak reference, the empty reference first.
  bool Less(NNodeReferenceImpl const& other) const noexcept {
    return reference_countable::NWeakReferenceLess()(m_weak, other.m_weak);
  }
  /// Whether it refers to something, also when that has gone.
  explicit operator bool() const noexcept { return m_weak != nullptr; }

 protected:
  NNodeReferenceImpl() noexcept = default;
  explicit NNodeReferenceImpl(NNode const* node);
  NNodeReferenceImpl(NNodeReferenceImpl const&) noexcept = default;
  NNodeReferenceImpl(NNodeReferenceImpl&&) noexcept = default;
  NNodeReferenceImpl& operator=(NNodeReferenceImpl const&) noexcept = default;
  NNodeReferenceImpl& operator=(NNodeReferenceImpl&&) noexcept = default;
  ~NNodeReferenceImpl() = default;

 private:
  boost::intrusive_ptr<reference_countable::NWeakReferenceImpl const> m_weak;
  NNode const* m_node = nullptr;  // the same object as a node, so that resolving needs no cast
};

}  // namespace corvanta::core::node::detail
