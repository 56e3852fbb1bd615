#include "corvanta/data/operators/animation/detail/NTimeIndex.h"

#include <algorithm>
#include <utility>

namespace corvanta::data::operators::animation::detail {

NTimeIndex::NTimeIndex(std::vector<double> times) : m_times(std::move(times)) {
  if (m_times.size() <= kCrowd) return;
  std::size_t const cellCount = m_times.size() - 1;  // times at even distances get one each
  m_scale = static_cast<double>(cellCount) / (m_times.back() - m_times.front());
  m_lastCell = static_cast<double>(cellCount - 1);
  m_starts.assign(cellCount + 1, static_cast<std::uint32_t>(m_times.size()));
  std::size_t next = 0;  // the cells before it have their start
  for (std::size_t i = 0; i != m_times.size(); ++i) {
    // Times that don't ascend find a cell, too.
    std::size_t const cell = GetCell(std::max(m_times.front(), m_times[i]));
    for (; next <= cell; ++next) {
      m_starts[next] = static_cast<std::uint32_t>(i);
    }
  }
}

}  // namespace corvanta::data::operators::animation::detail
