#pragma once

#include <cstddef>
#include <unordered_set>

#include "app/output/record.h"
#include "corvanta/core/node/NNode.h"
#include "corvanta/data/document/NDocument.h"

namespace corvanta::app {

/// The nodes that are in a document at one moment, to tell them from those that come later.
class NNodeSet {
 public:
  NNodeSet() = default;
  explicit NNodeSet(data::document::NDocument const& document);

  bool Has(core::node::NNode const& node) const { return m_nodes.count(&node) != 0; }
  /// How many of the nodes of `domain` aren't among them.
  std::size_t CountOthers(core::domain::NDomainBase const& domain) const;

 private:
  std::unordered_set<core::node::NNode const*> m_nodes;
};

/// Numbers by name of what those of the document's nodes that are in `nodes` make together: items,
/// models, meshes, surfaces, triangles and so on. "triangles" are those of the meshes,
/// "trianglesShown" count as often as models show them.
NRecord CountTotals(data::document::NDocument const& document, NNodeSet const& nodes);

}  // namespace corvanta::app
