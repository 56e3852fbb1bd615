#include "app/play/NRecording.h"

namespace corvanta::app {

namespace {

constexpr std::size_t kMost = 1536;

void HalveValues(std::vector<double>& values) {
  for (std::size_t i = 0; 2 * i < values.size(); ++i) values[i] = values[2 * i];
  values.resize((values.size() + 1) / 2);
}

}  // namespace

void NRecording::Add(double time, std::vector<double> const& values) {
  if (m_count++ % m_step != 0) return;
  m_times.push_back(time);
  for (std::size_t i = 0; i != m_values.size(); ++i) m_values[i].push_back(values[i]);
  if (m_times.size() <= kMost) return;
  HalveValues(m_times);
  for (auto& channel : m_values) HalveValues(channel);
  m_step *= 2;
}

}  // namespace corvanta::app
