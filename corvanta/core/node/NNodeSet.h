#pragma once

#include <set>
#include <string>

#include "corvanta/core/name/NNamedObject.h"
#include "corvanta/core/node/NNodeReference.h"

namespace corvanta::core::node {

/// A named set of node references, ordered by their Less.
template <class T>
class CORVANTA_API NNodeSet : public name::NNamedObject {
 public:
  NNodeSet(NNodeSet const& other)
      : reference_countable::NReferenceCountableWithWeakReference(other),
        NNamedObject(other),
        m_nodes(other.m_nodes) {}

  std::set<NNodeReference<T>> const& GetNodes() const noexcept { return m_nodes; }
  /// Fails: false if the reference is in the set already.
  bool AddNode(NNodeReference<T> const& node) { return m_nodes.insert(node).second; }
  /// Fails: false if the reference isn't in the set.
  bool RemoveNode(NNodeReference<T> const& node) { return m_nodes.erase(node) == 1; }
  bool Exists(NNodeReference<T> const& node) const { return m_nodes.count(node) != 0; }

 protected:
  NNodeSet() = default;
  ~NNodeSet() override = default;

 private:
  std::set<NNodeReference<T>> m_nodes;
};

}  // namespace corvanta::core::node
