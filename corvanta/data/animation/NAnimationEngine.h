#pragma once

#include <memory>

#include "corvanta/core/observer/NObservable.h"
#include "corvanta/data/animation/NAnimationEngineListener.h"
#include "corvanta/export.h"

namespace corvanta::data::animation {

class NAnimation;
class NAnimationEngineArgs;

/// Plays an animation by signed steps of time, so that the same code plays forwards, backwards, and
/// round both ends.
///
/// Transforms and camera poses are interpolated and written by every step that touches them;
/// material, model and environment keys fire when a step crosses their time, the start of the step
/// not counted. Keys of one time: the last one holds from that time on.
///
/// A step plays what the last Initialize found; edits and further steps made by listeners during it
/// don't disturb it. It keeps its items, switches and environments alive.
/// Units: the caller's time; a key at the whole number n stands at n / 10.
class CORVANTA_API NAnimationEngine
    : public core::observer::NObservable<NAnimationEngine, NAnimationEngineListener> {
 public:
  /// At time 0, with end time 30, without repeat, playing nothing.
  NAnimationEngine();
  NAnimationEngine(NAnimationEngine const&) = delete;
  NAnimationEngine& operator=(NAnimationEngine const&) = delete;
  ~NAnimationEngine();

  /// Takes over the keys of `animation`: all sorting and solving. Writes nothing to the model; the
  /// times and the repeat flag stay. The result is always false and tells nothing.
  bool Initialize(NAnimation const& animation);

  /// Plays one step. Beyond an end it stops there; with repeat the end time is taken off or added,
  /// once, so that a step beyond twice the end time lies outside until the next one.
  /// Raises: the attribute changes, and SignalSetTime.
  /// Fails: false when it came to an end without repeat. What a listener or a path throws passes
  /// through; before SignalSetTime that leaves the current time as it was. Where memory runs out,
  /// nothing is written, unless by a path through references or a listener.
  bool Update(NAnimationEngineArgs const& args, double delta);
  /// A step back to time 0.
  bool GoToStart(NAnimationEngineArgs const& args);

  bool GetRepeat() const noexcept;
  void SetRepeat(bool repeats) noexcept;
  /// The current time.
  double GetTickCount() const noexcept;
  /// Plays nothing.
  /// Raises: nothing.
  void SetCurrentTime(double time) noexcept;
  double GetEndTime() const noexcept;
  /// The keys don't matter to it.
  void SetEndTime(double time) noexcept;

 private:
  struct Block;

  std::shared_ptr<Block> const m_block;  // a running step keeps it
};

/// A step to `time`, so that the model follows. See NAnimationEngine::Update.
CORVANTA_API bool SetCurrentTime(NAnimationEngine& engine, NAnimationEngineArgs const& args,
                                 double time);

}  // namespace corvanta::data::animation
