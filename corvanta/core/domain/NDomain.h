#pragma once

#include <cstddef>
#include <iterator>
#include <string>

#include "corvanta/core/domain/NDomainBase.h"

namespace corvanta::core::domain {

/// A domain whose nodes are of class `Node`, and which is a namespace of their names.
template <class Node, class Namespace>
class CORVANTA_API NDomain : public NDomainBase, public Namespace {
 public:
  /// Walks the nodes in the domain's order, as `Node`.
  class NTypedNodeIterator {
   public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = Node;
    using difference_type = std::ptrdiff_t;
    using reference = Node&;
    using pointer = Node*;

    NTypedNodeIterator() = default;
    explicit NTypedNodeIterator(NodeIterator at) noexcept : m_at(at) {}
    reference operator*() const noexcept { return static_cast<Node&>(*m_at); }
    pointer operator->() const noexcept { return &**this; }
    NTypedNodeIterator& operator++() noexcept {
      ++m_at;
      return *this;
    }
    NTypedNodeIterator operator++(int) noexcept { return NTypedNodeIterator(m_at++); }
    bool operator==(NTypedNodeIterator const& other) const noexcept = default;

   private:
    NodeIterator m_at;
  };

  NTypedNodeIterator GetTypedNodeBegin() const noexcept {
    return NTypedNodeIterator(GetNodeBegin());
  }
  NTypedNodeIterator GetTypedNodeEnd() const noexcept { return NTypedNodeIterator(GetNodeEnd()); }
  /// The same, for `for (Node& node : domain)`.
  NTypedNodeIterator begin() const noexcept { return GetTypedNodeBegin(); }
  NTypedNodeIterator end() const noexcept { return GetTypedNodeEnd(); }

 protected:
  using NDomainBase::NDomainBase;
  ~NDomain() override { ReleaseNodes(); }

  /// Takes in a node that CreateNode has made and initialised.
  bool OnCreateNode(Node& node) { return NDomainBase::AddNode(static_cast<node::NNode&>(node)); }

  bool AddToNamespace(node::NNode& node) override {
    // NDomainBase::AddNode takes a node of any kind; the typed walk relies on the kind.
    return dynamic_cast<Node*>(&node) != nullptr && this->AddUnderFreeName(node);
  }
  bool RemoveFromNamespace(node::NNode& node) override { return this->RemoveNamedObject(node); }
};

}  // namespace corvanta::core::domain
