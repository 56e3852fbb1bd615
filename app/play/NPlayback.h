#pragma once

#include <boost/intrusive_ptr.hpp>
#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

#include "app/play/NEventCounter.h"
#include "app/play/NPlayer.h"
#include "corvanta/data/document/NDocument.h"

namespace corvanta::app {

/// What a frame did.
struct NFrame {
  std::size_t number;                 // from 0
  double time;                        // seconds since the begin
  double moment;                      // of what is played, in seconds
  std::size_t movedCount;             // items of which a channel changed
  std::size_t eventCount;             // that a listener heard
  std::vector<double> const& values;  // of the player's channels
};

/// How a player is driven.
/// Units: frames a second, and seconds; both above 0.
struct NPace {
  double fps = 25.0;
  std::optional<double> seconds;  // without it as long as the player's run, and twice with repeat
  bool repeats = false;           // without it no longer than the run
};

/// Drives a player frame by frame and shows each frame to the caller, while the document stands as
/// it is in that frame.
class NPlayback {
 public:
  NPlayback(data::document::NDocument& document, NPlayer& player, NPace const& pace);
  NPlayback(NPlayback const&) = delete;
  NPlayback& operator=(NPlayback const&) = delete;
  ~NPlayback();

  /// With the first, at time 0, and the last, at the end.
  std::size_t GetFrameCount() const { return m_frameCount; }

  /// Plays until the end or until `show` gives false.
  void Run(std::function<bool(NFrame const&)> const& show);

 private:
  double GetTime(std::size_t frame) const;
  std::size_t CountMoved(std::vector<double> const& before, std::vector<double> const& now) const;

  data::document::NDocument& m_document;
  NPlayer& m_player;
  double const m_fps;
  double m_seconds;
  std::size_t m_frameCount;
  boost::intrusive_ptr<NEventCounter> const m_counter;
};

}  // namespace corvanta::app
