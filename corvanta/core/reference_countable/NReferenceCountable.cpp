#include "corvanta/core/reference_countable/NReferenceCountable.h"

#include <limits>

namespace corvanta::core::reference_countable {

NReferenceCountable::~NReferenceCountable() = default;

void NReferenceCountable::Destroy() const noexcept {
  m_count.store(std::numeric_limits<int>::min() / 2, std::memory_order_relaxed);
  delete this;
}

}  // namespace corvanta::core::reference_countable
