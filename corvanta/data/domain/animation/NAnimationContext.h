#pragma once

#include <boost/intrusive_ptr.hpp>
#include <string>

#include "corvanta/data/domain/animation/NAnimationTarget.h"
#include "corvanta/export.h"

namespace corvanta::data::domain::animation {

/// Where a curve acts: an attribute of a target. A value.
struct CORVANTA_API NAnimationContext {
  NAnimationContext();
  NAnimationContext(std::wstring attribute, boost::intrusive_ptr<NAnimationTarget> actedOn);
  NAnimationContext(NAnimationContext const&);
  NAnimationContext& operator=(NAnimationContext const&);
  ~NAnimationContext();

  std::wstring attributeName;
  boost::intrusive_ptr<NAnimationTarget> target;
};

/// Orders by target, none first and the others by creation, then by attribute name. Two targets
/// that refer to one node are two.
CORVANTA_API bool operator<(NAnimationContext const& a, NAnimationContext const& b) noexcept;

}  // namespace corvanta::data::domain::animation
