#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <vector>

#include "corvanta/export.h"
#include "corvanta/importer/neutral/scene.h"

namespace corvanta::importer {

/// `N` values that stand at one moment.
template <std::size_t N>
struct NKey {
  double time;
  std::array<double, N> values;
};
using NNumberKeys = std::vector<NKey<1>>;
using NTripleKeys = std::vector<NKey<3>>;
/// Rotations: quaternions of length 1, the vector part first.
using NTurnKeys = std::vector<NKey<4>>;

/// What was wrong with the keys of a file.
struct NKeyFaults {
  std::size_t unusable = 0;  // not finite, a quaternion of no length, or a time beyond all measure
  std::size_t unsorted = 0;  // earlier than the one before
};

/// Whether keys can stand at this time.
/// Units: seconds.
bool IsUsableTime(double seconds);

/// How far rounding may put a time off: files hold floats, and players add up steps.
/// Units: frames.
CORVANTA_API double GetTimeTolerance(double frames);

/// The keys of a channel that can be used, in order of time. Two at one time are a jump, which is
/// over by that time, also where it or a player's frame is rounded: it stands ahead by
/// GetTimeTolerance. Keys between the two go.
/// Units: `ticksPerSecond` of the file, times of the result in frames of `fps`.
CORVANTA_API NTripleKeys ReadKeys(std::span<neutral::NTripleKey const> keys, double ticksPerSecond,
                                  double fps, NKeyFaults& faults);
CORVANTA_API NNumberKeys ReadKeys(std::span<neutral::NWeightKey const> keys, double ticksPerSecond,
                                  double fps, NKeyFaults& faults);
CORVANTA_API NTurnKeys ReadKeys(std::span<neutral::NTurnKey const> keys, double ticksPerSecond,
                                double fps, NKeyFaults& faults);

}  // namespace corvanta::importer
