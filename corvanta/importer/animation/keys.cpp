#include "corvanta/importer/animation/keys.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace corvanta::importer {

namespace {

constexpr double kLatest = 1e6;  // seconds: eleven days

std::array<double, 1> GetValues(neutral::NWeightKey const& key) { return {key.value}; }

std::array<double, 3> GetValues(neutral::NTripleKey const& key) {
  return {key.value[0], key.value[1], key.value[2]};
}

std::array<double, 4> GetValues(neutral::NTurnKey const& key) {
  std::array<double, 4> turn{key.value[0], key.value[1], key.value[2], key.value[3]};
  double const length = std::hypot(std::hypot(turn[0], turn[1]), std::hypot(turn[2], turn[3]));
  // No length gives a NaN, and with it an unusable key.
  for (double& value : turn) value /= length;
  return turn;
}

template <std::size_t N>
void SortByTime(std::vector<NKey<N>>& keys, NKeyFaults& faults) {
  auto const isEarlier = [](auto const& a, auto const& b) { return a.time < b.time; };
  for (std::size_t i = 1; i < keys.size(); ++i) faults.unsorted += isEarlier(keys[i], keys[i - 1]);
  std::stable_sort(keys.begin(), keys.end(), isEarlier);
}

double Before(double time) {
  return std::nextafter(time, -std::numeric_limits<double>::infinity());
}

// A jump is over by its time, however that was rounded: it stands ahead by the tolerance where
// there is room, and what is linear behind it still begins at the time itself.
template <std::size_t N>
void PartJumps(std::vector<NKey<N>>& keys) {
  std::vector<NKey<N>> parted;
  parted.reserve(keys.size());
  for (std::size_t first = 0; first != keys.size();) {
    std::size_t last = first;
    while (last + 1 != keys.size() && keys[last + 1].time == keys[first].time) ++last;
    NKey<N> reached = keys[last];
    if (last != first) {
      auto const hasRoom = [&] {
        return parted.empty() || parted.back().time < Before(reached.time);
      };
      reached.time -= GetTimeTolerance(reached.time);
      if (!hasRoom()) reached.time = keys[last].time;
      // A curve takes no second key at a time.
      if (hasRoom()) parted.push_back({Before(reached.time), keys[first].values});
      bool const stays = last + 1 == keys.size() || keys[last + 1].values == reached.values;
      if (!stays && reached.time != keys[last].time) parted.push_back(reached);
      if (!stays) reached = keys[last];
    }
    parted.push_back(reached);
    first = last + 1;
  }
  keys.swap(parted);
}

template <std::size_t N, class Key>
std::vector<NKey<N>> Read(std::span<Key const> keys, double ticksPerSecond, double fps,
                          NKeyFaults& faults) {
  std::vector<NKey<N>> read;
  read.reserve(keys.size());
  for (Key const& key : keys) {
    double const seconds = key.time / ticksPerSecond;
    auto const values = GetValues(key);
    if (IsUsableTime(seconds) && std::all_of(values.begin(), values.end(),
                                             [](double value) { return std::isfinite(value); })) {
      read.push_back({seconds * fps, values});
    } else {
      ++faults.unusable;
    }
  }
  SortByTime(read, faults);
  PartJumps(read);
  return read;
}

}  // namespace

bool IsUsableTime(double seconds) { return std::abs(seconds) <= kLatest; }

// A float, and a rate that another float gave, are each off by a relative 6e-8 at most.
double GetTimeTolerance(double frames) { return 1e-4 + 2e-7 * std::abs(frames); }

NTripleKeys ReadKeys(std::span<neutral::NTripleKey const> keys, double ticksPerSecond, double fps,
                     NKeyFaults& faults) {
  return Read<3>(keys, ticksPerSecond, fps, faults);
}

NNumberKeys ReadKeys(std::span<neutral::NWeightKey const> keys, double ticksPerSecond, double fps,
                     NKeyFaults& faults) {
  return Read<1>(keys, ticksPerSecond, fps, faults);
}

NTurnKeys ReadKeys(std::span<neutral::NTurnKey const> keys, double ticksPerSecond, double fps,
                   NKeyFaults& faults) {
  return Read<4>(keys, ticksPerSecond, fps, faults);
}

}  // namespace corvanta::importer
