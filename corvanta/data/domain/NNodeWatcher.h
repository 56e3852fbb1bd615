#pragma once

#include "corvanta/data/domain/fwd.h"
#include "corvanta/export.h"

namespace corvanta::data::domain {

/// Visits nodes to read them. NNode::Accept calls the one VisitImpl of the node's exact class.
class CORVANTA_API NNodeWatcher {
 public:
#define CORVANTA_KIND(SPACE, CLASS) \
  void Visit(SPACE::CLASS const& node) { VisitImpl(node); }
#include "corvanta/data/domain/node_kinds.def"

 protected:
  NNodeWatcher() noexcept = default;
  NNodeWatcher(NNodeWatcher const&) noexcept = default;
  NNodeWatcher& operator=(NNodeWatcher const&) noexcept = default;
  ~NNodeWatcher() = default;

 private:
#define CORVANTA_KIND(SPACE, CLASS) virtual void VisitImpl(SPACE::CLASS const& node) = 0;
#include "corvanta/data/domain/node_kinds.def"
};

}  // namespace corvanta::data::domain
