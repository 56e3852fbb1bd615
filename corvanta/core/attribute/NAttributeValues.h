#pragma once

#include <utility>
#include <vector>

#include "corvanta/core/attribute/NAttributeHost.h"
#include "corvanta/export.h"

namespace corvanta::core::attribute {

/// What the attributes of a host hold at one moment, to be given to another host. Whoever copies
/// more than attributes makes it first, so that nothing is changed yet if memory runs out.
class CORVANTA_API NAttributeValues {
 public:
  explicit NAttributeValues(NAttributeHost const& source);

  /// Sets each attribute of `target` that has a value here; this holds nothing then.
  /// Raises: the target's change hook for each, in the source's order of creation.
  /// Cost: no memory.
  void MoveTo(NAttributeHost& target);

 private:
  std::vector<std::pair<detail::NNameIndex, variant::NVariant>> m_values;
};

}  // namespace corvanta::core::attribute
