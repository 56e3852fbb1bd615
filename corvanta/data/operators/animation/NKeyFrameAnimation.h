#pragma once

#include <map>
#include <memory>
#include <vector>

#include "corvanta/core/reference_countable/NReferenceCountable.h"
#include "corvanta/data/operators/animation/NKeyData.h"
#include "corvanta/data/operators/animation/detail/NTimeIndex.h"
#include "corvanta/export.h"

namespace corvanta::data::operators::animation {

/// A curve: one double over another, straight between its keys and constant outside them.
///
/// Keys stand under handles that don't change when keys move, so that an editor can change or
/// remove a key without knowing where it stands. One curve serves one thread at a time, also for
/// evaluating. Hold it by `boost::intrusive_ptr`.
class CORVANTA_API NKeyFrameAnimation : public core::reference_countable::NReferenceCountable {
 public:
  /// The handle of no key. Real ones start at 1, grow with each key, and aren't given out again.
  static constexpr unsigned int INVALID_KEY_HANDLE = 0;

  NKeyFrameAnimation();
  NKeyFrameAnimation(NKeyFrameAnimation const&) = delete;
  NKeyFrameAnimation& operator=(NKeyFrameAnimation const&) = delete;
  ~NKeyFrameAnimation() override;

  /// Fails: INVALID_KEY_HANDLE if a key of exactly this time exists, and for a NaN time.
  /// Cost: logarithmic; the next evaluation sorts the keys, once for a run of changes.
  unsigned int AddKey(NKeyData const& data);
  /// Fails: false for an unknown handle.
  bool RemoveKey(unsigned int handle);
  /// Replaces the key's whole data. Doesn't look for another key at the new time: two keys that
  /// share one make every evaluation fail until one of them is moved or removed.
  /// Fails: false for an unknown handle, and for a NaN time.
  bool ModifyKey(unsigned int handle, NKeyData const& data);

  /// The curve at `time`: the first key's value up to that key and for NaN, the last one's beyond
  /// the last. Exactly at a key the span that ends there counts.
  /// Fails: throws a `char*` to "NKeyFrameAnimation::CalculateValue" without keys, and
  /// NInterpolatorError while two keys share a time.
  /// Cost: constant for times that spread; allocates only after a change of keys.
  double CalculateValue(double time) const;

  /// The keys by handle.
  std::map<unsigned int, NKeyData> const& GetKeyData() const noexcept;

 private:
  struct Block;

  void UpdateSpans() const;
  double SearchValue(double time) const;

  // The keys in order of time, while they are fresh: span i lies between the keys i and i + 1. They
  // stand here and not in the block, so that an evaluation touches little memory.
  mutable bool m_isFresh = false;
  mutable detail::NTimeIndex m_index;
  mutable std::vector<double> m_values;
  std::unique_ptr<Block> const m_block;
};

}  // namespace corvanta::data::operators::animation
