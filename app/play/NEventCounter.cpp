#include "app/play/NEventCounter.h"

#include <utility>

namespace corvanta::app {

NEventCounter::~NEventCounter() = default;

std::size_t NEventCounter::TakeCount() { return std::exchange(m_count, 0); }

void NEventCounter::OnSignal(data::events::NSignal const& signal) {
  m_count += signal.kind == data::events::NSK_ATTRIBUTE_CHANGE;
}

}  // namespace corvanta::app
