#pragma once

#include "corvanta/core/node/NNodeSet.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"
#include "corvanta/export.h"

namespace corvanta::data::switches::detail {

/// A named set of models that are shown or hidden together. Hold it by `boost::intrusive_ptr`.
class CORVANTA_API NModelSet
    : public core::node::NNodeSet<domain::scenegraph::item::NSceneGraphModelNode> {
 public:
  NModelSet();
  NModelSet(NModelSet const& other);
  ~NModelSet() override;
};

}  // namespace corvanta::data::switches::detail
