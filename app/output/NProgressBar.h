#pragma once

#include <cstddef>

namespace corvanta::app {

/// A bar on stderr that grows with the work done, where stderr is a terminal; elsewhere nothing.
/// Gone at the end.
class NProgressBar {
 public:
  explicit NProgressBar(std::size_t total);
  NProgressBar(NProgressBar const&) = delete;
  NProgressBar& operator=(NProgressBar const&) = delete;
  ~NProgressBar();

  /// Takes the bar away where stdout goes to the same terminal, so that a line can be printed.
  void MakeRoom();
  /// Draws the bar for `done` of the total.
  void Draw(std::size_t done);

 private:
  void Clear();

  std::size_t const m_total;
  bool const m_isShown;
  bool const m_sharesTerminal;
  int m_percent = -1;  // as drawn; -1 when it isn't there
};

}  // namespace corvanta::app
