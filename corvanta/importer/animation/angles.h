#pragma once

#include <array>

#include "corvanta/export.h"
#include "corvanta/importer/animation/NEffort.h"
#include "corvanta/importer/animation/keys.h"

namespace corvanta::importer {

/// How far the turn of angles between two keys strays from that of the quaternions, at most.
/// Units: degrees.
inline constexpr double kTurnTolerance = 0.02;

/// The rotations of `keys` as angles about x, then y, then z, such that straight lines between the
/// keys follow the shorter arcs between the quaternions: there are further keys where the angles
/// would stray from the arc by more than kTurnTolerance. Each key has, of all the angles that make
/// its rotation, those nearest to the key before, so that nothing jumps by whole turns; the first
/// has those nearest to `before`.
/// Where an arc passes by a pole of the angles (y at 90 degrees) closer than about 0.001 degrees,
/// it is followed to that nearness only.
/// Units: degrees.
/// Fails: throws NImportError for more keys than `effort` allows.
CORVANTA_API NTripleKeys ToAngles(NTurnKeys const& keys, std::array<double, 3> const& before,
                                  NEffort& effort);

}  // namespace corvanta::importer
