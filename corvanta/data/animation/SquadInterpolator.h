#pragma once

#include <boost/shared_ptr.hpp>
#include <vector>

#include "corvanta/data/animation/Interpolator.h"
#include "corvanta/data/animation/KnotMap.h"
#include "corvanta/data/animation/detail/squad.h"
#include "corvanta/export.h"
#include "corvanta/vx_math/Quaternion.h"

namespace corvanta::data::animation {

/// A smooth rotation through keys, over the index of the keys; the first and the last key are their
/// own outer neighbours. Constant outside its keys. Any number of threads may evaluate it.
///
/// The length of a result carries no meaning.
class CORVANTA_API SquadInterpolator : public Interpolator<VX_Math::Quaternion, double> {
 public:
  /// Requires: as many rotations, of length 1, as times, two or more; ascending times. Nothing is
  /// checked.
  SquadInterpolator(std::vector<VX_Math::Quaternion> const& quaternions,
                    boost::shared_ptr<std::vector<double> const> const& times);
  ~SquadInterpolator() override;

  /// Cost: one search and three slerps, no allocation.
  VX_Math::Quaternion Evaluate(double time) const override;

 private:
  KnotMap m_knotMap;
  std::vector<detail::SquadSpan> m_spans;
};

}  // namespace corvanta::data::animation
