#pragma once

#include "corvanta/core/node/NNodeReference.h"
#include "corvanta/data/domain/NNode.h"
#include "corvanta/data/domain/animation/NAnimationTarget.h"

namespace corvanta::data::domain::animation {

/// A target that refers to a node and doesn't keep it alive.
class CORVANTA_API NNodeAnimationTarget : public NAnimationTarget {
 public:
  explicit NNodeAnimationTarget(core::node::NNodeReference<NNode> const& target);
  NNodeAnimationTarget(NNodeAnimationTarget const& other);
  NNodeAnimationTarget& operator=(NNodeAnimationTarget const& other);
  ~NNodeAnimationTarget() override;

  core::node::NNodeReference<NNode> const& GetTargetRef() const noexcept { return m_target; }

 private:
  boost::intrusive_ptr<core::attribute::NAttributeHost> GetTargetImpl() const override;

  core::node::NNodeReference<NNode> m_target;
};

}  // namespace corvanta::data::domain::animation
