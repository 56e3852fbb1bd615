#include "app/play/NEventCounter.h"

#include <utility>

namespace corvanta::app {

NEventCounter::~NEventCounter() = default;

std::size_t NEventCounter::TakeCount() { return std::exchange(m_count, 0); }

void NEventCounter::OnAttributeChange(core::attribute::NAttributeHost&,
                                      core::attribute::NAttribute const&) {
  ++m_count;
}

}  // namespace corvanta::app
