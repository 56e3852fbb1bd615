#pragma once

#include <unordered_map>

#include "corvanta/core/node/NNode.h"
#include "corvanta/data/document/NDocument.h"

namespace corvanta::app {

/// Which node of a document is which of another one: the one of the same kind and id, or else of
/// the same kind and name that has no counterpart by its id.
class NMatching {
 public:
  /// Requires: the documents' nodes stay as they are.
  NMatching(data::document::NDocument const& before, data::document::NDocument const& after);

  /// The counterpart of a node of the earlier document, and of one of the later.
  /// Fails: null if it has none.
  core::node::NNode const* GetAfter(core::node::NNode const& node) const {
    return Find(m_after, node);
  }
  core::node::NNode const* GetBefore(core::node::NNode const& node) const {
    return Find(m_before, node);
  }

 private:
  using Map = std::unordered_map<core::node::NNode const*, core::node::NNode const*>;

  static core::node::NNode const* Find(Map const& map, core::node::NNode const& node) {
    auto const found = map.find(&node);
    return found == map.end() ? nullptr : found->second;
  }
  void Match(core::domain::NDomainBase const& before, core::domain::NDomainBase const& after);
  void Add(core::node::NNode const& before, core::node::NNode const& after);

  Map m_after;   // by nodes of the earlier document
  Map m_before;  // by nodes of the later one
};

}  // namespace corvanta::app
