#pragma once

#include <boost/intrusive_ptr.hpp>

#include "corvanta/core/node/NNodeID.h"

namespace corvanta::data::internal::detail {

/// An exception for where something that the internal data is made of is refused; caught by
/// Initialize.
struct NRefusal {};

inline void Require(bool isAccepted) {
  if (!isAccepted) throw NRefusal();
}

template <class T, class Domain>
boost::intrusive_ptr<T> CreateNode(Domain& domain, wchar_t const* id) {
  boost::intrusive_ptr<T> node = domain.template CreateNode<T>(core::node::NNodeID(id));
  Require(node != nullptr);
  return node;
}

}  // namespace corvanta::data::internal::detail
