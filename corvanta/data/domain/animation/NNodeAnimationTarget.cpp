#include "corvanta/data/domain/animation/NNodeAnimationTarget.h"

namespace corvanta::data::domain::animation {

NNodeAnimationTarget::NNodeAnimationTarget(core::node::NNodeReference<NNode> const& target)
    : m_target(target) {}

NNodeAnimationTarget::NNodeAnimationTarget(NNodeAnimationTarget const& other) = default;
NNodeAnimationTarget& NNodeAnimationTarget::operator=(NNodeAnimationTarget const& other) = default;
NNodeAnimationTarget::~NNodeAnimationTarget() = default;

boost::intrusive_ptr<core::attribute::NAttributeHost> NNodeAnimationTarget::GetTargetImpl() const {
  return m_target.Get();
}

}  // namespace corvanta::data::domain::animation
