#pragma once

#include <boost/intrusive_ptr.hpp>
#include <cstddef>
#include <iterator>
#include <string>

#include "corvanta/core/detail/intrusive_table.h"
#include "corvanta/core/domain/detail/link.h"
#include "corvanta/core/domain/fwd.h"
#include "corvanta/core/name/NNamedObject.h"
#include "corvanta/core/node/NNode.h"
#include "corvanta/core/observer/detail/NObservableImpl.h"
#include "corvanta/export.h"

namespace corvanta::core::detail {
class NChangeRecorder;
}

namespace corvanta::core::domain {

class NDomainListener;

/// A named container that owns nodes, in an order, each under an id of its own.
class CORVANTA_API NDomainBase : public name::NNamedObject {
 public:
  /// Walks the nodes in the domain's order.
  class NodeIterator {
   public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = node::NNode;
    using difference_type = std::ptrdiff_t;
    using reference = node::NNode&;
    using pointer = node::NNode*;

    NodeIterator() = default;
    explicit NodeIterator(node::NNode* at) noexcept : m_at(at) {}
    reference operator*() const noexcept { return *m_at; }
    pointer operator->() const noexcept { return m_at; }
    NodeIterator& operator++() noexcept {
      m_at = m_at->m_next;
      return *this;
    }
    NodeIterator operator++(int) noexcept {
      NodeIterator const before = *this;
      ++*this;
      return before;
    }
    bool operator==(NodeIterator const& other) const noexcept = default;

   private:
    node::NNode* m_at = nullptr;
  };

  /// The type string of the domain's kind: one of the DT_ pointers, which compare by address.
  wchar_t const* GetType() const { return GetTypeImpl(); }
  /// Null without a manager, and when it has gone.
  NDomainManager const* GetManager() const noexcept;

  /// Takes `node` in, at the end. A name that is taken gets a number behind it: "light (2)".
  /// Raises: SignalNodeAdded.
  /// Fails: false, and no change, for an id that is there, for a node that is in this domain or
  /// belongs to another one, for a node of another kind, and for one that is in a namespace.
  bool AddNode(node::NNode& node);
  /// The same, before the node now at `position` in the domain's order; beyond the end it appends.
  /// Cost: linear in the position.
  bool AddNode(node::NNode& node, unsigned int position);
  /// The same, before `next` in the domain's order; null appends.
  /// Fails: false also if `next` isn't here.
  bool AddNodeBefore(node::NNode& node, node::NNode* next);
  /// Gives `node` up, which ends when the last strong reference goes.
  /// Raises: SignalNodeRemoved.
  /// Fails: false for a node that isn't here or is sealed.
  bool RemoveNode(node::NNode& node);
  /// Fails: null if no node has that id.
  boost::intrusive_ptr<node::NNode> QueryNode(node::NNodeID const& id) const;
  std::size_t GetNodeCount() const noexcept { return m_nodeCount; }

  /// A listener whose count is 0 receives nothing until somebody holds it by
  /// `boost::intrusive_ptr`.
  /// Fails: false if `listener` is registered already.
  bool AddDomainListener(NDomainListener& listener);
  /// Fails: false if `listener` isn't registered.
  bool RemoveDomainListener(NDomainListener& listener) noexcept;
  /// Who is notified before all listeners; null for nobody. Isn't owned.
  void SetRecorder(core::detail::NChangeRecorder* recorder) noexcept { m_recorder = recorder; }

  NodeIterator GetNodeBegin() const noexcept { return NodeIterator(m_first); }
  NodeIterator GetNodeEnd() const noexcept { return NodeIterator(); }

  /// `true` seals the nodes that are here now: RemoveNode refuses them. Others may come and go.
  /// `false` unseals all.
  void SetIsReadOnlyFlag(bool isReadOnly);
  bool IsReadOnly() const noexcept { return m_isReadOnly; }

  /// What the nodes of this domain hold to find it.
  detail::NLinkPointer<NDomainBase> const& GetLink() const noexcept { return m_link; }

 protected:
  NDomainBase(NDomainManager const* manager, std::wstring const& name);
  ~NDomainBase() override;

  /// Lets go of all nodes, while the derived class can still be asked; for its destructor.
  void ReleaseNodes() noexcept;

 private:
  struct Traits {
    static node::NNode*& Next(node::NNode& node) noexcept { return node.m_nextById; }
    static std::size_t Hash(node::NNode const& node) noexcept { return node.m_id.GetHash(); }
    static std::size_t Hash(node::NNodeID const& id) noexcept { return id.GetHash(); }
    static bool Matches(node::NNode const& node, node::NNodeID const& id) noexcept {
      return node.m_id == id;
    }
  };

  virtual wchar_t const* GetTypeImpl() const = 0;
  virtual bool AddToNamespace(node::NNode& node) = 0;
  virtual bool RemoveFromNamespace(node::NNode& node) = 0;

  bool Enter(node::NNode& node, node::NNode* before);
  void Link(node::NNode& node, node::NNode* before) noexcept;
  void SignalAdded(node::NNode& node);
  void SignalRemoved(node::NNode& node, node::NNode* next);
  boost::intrusive_ptr<node::NNode> Unlink(node::NNode& node) noexcept;

  detail::NLinkPointer<NDomainManager const> m_manager;
  detail::NLinkPointer<NDomainBase> const m_link;
  node::NNode* m_first = nullptr;
  node::NNode* m_last = nullptr;
  std::size_t m_nodeCount = 0;
  core::detail::NIntrusiveTable<node::NNode, Traits> m_ids;
  bool m_isReadOnly = false;
  core::detail::NChangeRecorder* m_recorder = nullptr;
  observer::detail::NObservableImpl m_listeners;
};

}  // namespace corvanta::core::domain
