#pragma once

#include "corvanta/data/domain/fwd.h"
#include "corvanta/export.h"

namespace corvanta::data::domain {

/// Visits nodes to change them. NNode::Accept calls the one VisitImpl of the node's exact class.
class CORVANTA_API NNodeModifier {
 public:
#define CORVANTA_KIND(SPACE, CLASS) \
  void Visit(SPACE::CLASS& node) { VisitImpl(node); }
#include "corvanta/data/domain/node_kinds.def"

 protected:
  NNodeModifier() noexcept = default;
  NNodeModifier(NNodeModifier const&) noexcept = default;
  NNodeModifier& operator=(NNodeModifier const&) noexcept = default;
  ~NNodeModifier() = default;

 private:
#define CORVANTA_KIND(SPACE, CLASS) virtual void VisitImpl(SPACE::CLASS& node) = 0;
#include "corvanta/data/domain/node_kinds.def"
};

}  // namespace corvanta::data::domain
