#include "corvanta/data/domain/NNode.h"

#include "corvanta/core/attribute/NAttributeValues.h"
#include "corvanta/core/reference_countable/hold.h"
#include "corvanta/data/events/attribute_change/NMultiplexer.h"
#include "corvanta/data/events/detail/NModelRecorder.h"

namespace corvanta::data::domain {

NNode::NNode(core::node::NNodeID const& id, core::domain::NDomainBase* domain,
             events::attribute_change::NMultiplexer const* multiplexer, std::wstring const& name)
    : core::node::NNode(id, domain, name), m_multiplexer(multiplexer) {}

NNode::~NNode() = default;

void NNode::CopyNodeTo(NNode& target) const {
  auto const held = core::reference_countable::Hold(*this);
  auto const heldTarget = core::reference_countable::Hold(target);
  core::attribute::NAttributeValues values(*this);
  target.SetName(GetName());
  values.MoveTo(target);
}

events::detail::NModelRecorder* NNode::GetRecorder() const noexcept {
  return m_multiplexer ? m_multiplexer->GetRecorder() : nullptr;
}

void NNode::OnAttributeChangeImpl(core::attribute::NAttribute const& attribute) {
  if (!m_multiplexer) return;
  auto* const recorder = m_multiplexer->GetRecorder();
  if (recorder == nullptr) [[likely]] {
    m_multiplexer->OnAttributeChange(*this, attribute);
  } else {
    core::detail::NChangeScope const change(recorder);
    recorder->OnAttribute(*this, attribute);
    m_multiplexer->OnAttributeChange(*this, attribute);
  }
}

}  // namespace corvanta::data::domain
