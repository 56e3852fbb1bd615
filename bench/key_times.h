#pragma once

#include <cmath>
#include <cstddef>
#include <random>
#include <string>
#include <vector>

namespace corvanta::bench {

inline constexpr int kKeys = 1000;

/// Keys of a curve, one apart or at uneven distances, and random times between the first and the
/// last of them.
class KeyTimes {
 public:
  explicit KeyTimes(bool isUneven) {
    std::mt19937 random(1);
    std::uniform_real_distribution<double> distance(0.1, 2.0);
    double time = 0.0;
    for (int i = 0; i != kKeys; ++i) {
      times.push_back(time);
      values.push_back(std::sin(0.1 * time));
      time += isUneven ? distance(random) : 1.0;
    }
    std::uniform_real_distribution<double> between(0.0, times.back());
    for (double& t : m_asked) t = between(random);
  }

  double Next() const noexcept { return m_asked[m_next++ % m_asked.size()]; }

  std::vector<double> times;
  std::vector<double> values;

 private:
  std::vector<double> m_asked = std::vector<double>(4096);
  mutable std::size_t m_next = 0;
};

inline char const* GetSpacing(std::string const& argument) {
  return argument == "0" ? "one apart" : "uneven";
}

}  // namespace corvanta::bench
