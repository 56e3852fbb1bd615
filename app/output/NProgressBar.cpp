#include "app/output/NProgressBar.h"

#include <unistd.h>

#include <iostream>
#include <string>

namespace corvanta::app {

NProgressBar::NProgressBar(std::size_t total)
    : m_total(total),
      m_isShown(total != 0 && isatty(STDERR_FILENO) == 1),
      m_sharesTerminal(m_isShown && isatty(STDOUT_FILENO) == 1) {}

NProgressBar::~NProgressBar() { Clear(); }

void NProgressBar::MakeRoom() {
  if (m_sharesTerminal) Clear();
}

void NProgressBar::Draw(std::size_t done) {
  if (!m_isShown) return;
  int const percent =
      static_cast<int>(100.0 * static_cast<double>(done) / static_cast<double>(m_total));
  if (percent == m_percent) return;
  m_percent = percent;
  if (m_sharesTerminal) std::cout.flush();
  constexpr std::size_t kWidth = 40;
  std::size_t const filled = kWidth * static_cast<std::size_t>(percent) / 100;
  std::cerr << "\r[" << std::string(filled, '#') << std::string(kWidth - filled, '.') << "] "
            << percent << " %\033[K" << std::flush;
}

void NProgressBar::Clear() {
  if (m_percent < 0) return;
  m_percent = -1;
  std::cerr << "\r\033[K" << std::flush;
}

}  // namespace corvanta::app
