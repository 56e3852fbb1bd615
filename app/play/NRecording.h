#pragma once

#include <cstddef>
#include <vector>

namespace corvanta::app {

/// The values of channels over time, thinned out evenly as they grow more than a picture can show.
class NRecording {
 public:
  explicit NRecording(std::size_t channelCount) : m_values(channelCount) {}

  void Add(double time, std::vector<double> const& values);

  std::vector<double> const& GetTimes() const { return m_times; }
  /// The values of a channel, one a time.
  std::vector<double> const& GetValues(std::size_t channel) const { return m_values[channel]; }

 private:
  std::vector<double> m_times;
  std::vector<std::vector<double>> m_values;
  std::size_t m_step = 1;   // frames from one that is kept to the next
  std::size_t m_count = 0;  // frames seen
};

}  // namespace corvanta::app
