#pragma once

#include <boost/intrusive_ptr.hpp>
#include <string>

#include "corvanta/core/domain/NDomain.h"
#include "corvanta/core/name/NStrictNamespace.h"
#include "corvanta/core/observer/NObservable.h"
#include "corvanta/data/domain/NNode.h"
#include "corvanta/data/events/attribute_change/NMultiplexer.h"
#include "corvanta/data/modification_counter/NModificationCounter.h"

namespace corvanta::data::domain {

/// The base of every domain: makes nodes, gives each the attribute multiplexer, and attaches to it
/// the multiplexers of its kind.
template <class Node, class Namespace>
class CORVANTA_API NDomain : public core::domain::NDomain<Node, Namespace>,
                             public modification_counter::NModificationCounter {
 public:
  /// Makes a `T` (under a new id if none is given), attaches the multiplexers and takes it in. `T`
  /// is the domain's class of nodes, or the concrete class where that one is abstract.
  /// Fails: null, and no change, if a multiplexer can't be attached or the domain refuses the node.
  template <class T = Node>
  boost::intrusive_ptr<T> CreateNode(core::node::NNodeID const& id = core::node::NNodeID()) {
    boost::intrusive_ptr<T> node(new T(id, this, m_multiplexer.get()));
    if (!InitializeNode(*node) || !this->OnCreateNode(*node)) return nullptr;
    return node;
  }
  /// Takes in a node that was made elsewhere, and attaches nothing.
  /// Fails: see core::domain::NDomainBase.
  bool AddNode(Node& node) { return core::domain::NDomainBase::AddNode(node); }
  bool AddNode(Node& node, unsigned int position) {
    return core::domain::NDomainBase::AddNode(node, position);
  }
  bool RemoveNode(Node& node) { return core::domain::NDomainBase::RemoveNode(node); }

 protected:
  NDomain(core::domain::NDomainManager const* manager,
          events::attribute_change::NMultiplexer const* multiplexer, std::wstring const& name)
      : core::domain::NDomain<Node, Namespace>(manager, name), m_multiplexer(multiplexer) {}
  ~NDomain() override = default;

  /// Attaches the kind's multiplexers to a node that is being created.
  virtual bool InitializeNode(Node&) const { return true; }

  /// Makes `multiplexer` an observer of the node's `Listener` side; null attaches nothing.
  /// Fails: false if it is one already.
  template <class Listener, class Multiplexer, class T>
  static bool Attach(boost::intrusive_ptr<Multiplexer> const& multiplexer, T& node) {
    return !multiplexer ||
           static_cast<core::observer::NObservable<T, Listener>&>(node).AddObserver(*multiplexer);
  }

 private:
  boost::intrusive_ptr<events::attribute_change::NMultiplexer const> const m_multiplexer;
};

}  // namespace corvanta::data::domain
