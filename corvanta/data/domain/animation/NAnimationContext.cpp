#include "corvanta/data/domain/animation/NAnimationContext.h"

#include <utility>

namespace corvanta::data::domain::animation {

NAnimationContext::NAnimationContext() = default;

NAnimationContext::NAnimationContext(std::wstring attribute,
                                     boost::intrusive_ptr<NAnimationTarget> actedOn)
    : attributeName(std::move(attribute)), target(std::move(actedOn)) {}

NAnimationContext::NAnimationContext(NAnimationContext const&) = default;
NAnimationContext& NAnimationContext::operator=(NAnimationContext const&) = default;
NAnimationContext::~NAnimationContext() = default;

bool operator<(NAnimationContext const& a, NAnimationContext const& b) noexcept {
  if (a.target != b.target) {
    return b.target && (!a.target || a.target->GetCreationNumber() < b.target->GetCreationNumber());
  }
  return a.attributeName < b.attributeName;
}

}  // namespace corvanta::data::domain::animation
