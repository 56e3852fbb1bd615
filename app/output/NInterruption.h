#pragma once

#include <csignal>

namespace corvanta::app {

/// While it lives, the signals that ask the program to end are only noted, so that what was begun
/// can be cleared away. One at a time.
class NInterruption {
 public:
  NInterruption();
  NInterruption(NInterruption const&) = delete;
  NInterruption& operator=(NInterruption const&) = delete;
  ~NInterruption();

  /// The signal that came; 0 for none.
  static int GetSignal();

 private:
  struct sigaction m_interrupt, m_terminate, m_hangup;
};

}  // namespace corvanta::app
