#include "app/play/NPlayback.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "app/play/NEventCounter.h"
#include "app/play/NPlayer.h"

namespace corvanta::app {

NPlayback::NPlayback(data::document::NDocument& document, NPlayer& player, NPace const& pace)
    : m_document(document), m_player(player), m_fps(pace.fps), m_counter(new NEventCounter) {
  double const length = player.GetLength();
  m_seconds = pace.seconds.value_or(pace.repeats ? 2.0 * length : length);
  if (!pace.repeats) m_seconds = std::min(m_seconds, length);
  // What rounding leaves over is no frame: files hold floats.
  double const frames = m_seconds * m_fps;
  m_frameCount =
      1 + static_cast<std::size_t>(std::max(0.0, std::ceil(frames - 1e-6 - 2e-7 * frames)));
  document.GetEvents().AddObserver(*m_counter);
}

NPlayback::~NPlayback() { m_document.GetEvents().RemoveObserver(*m_counter); }

double NPlayback::GetTime(std::size_t frame) const {
  if (frame == 0) return 0.0;
  return frame + 1 == m_frameCount ? m_seconds : static_cast<double>(frame) / m_fps;
}

void NPlayback::Run(std::function<bool(NFrame const&)> const& show) {
  std::vector<double> before = m_player.Sample();
  for (std::size_t i = 0; i != m_frameCount; ++i) {
    m_counter->TakeCount();
    if (i == 0) {
      m_player.Begin();
    } else {
      m_player.Advance(GetTime(i) - GetTime(i - 1));
    }
    std::size_t const eventCount = m_counter->TakeCount();
    std::vector<double> now = m_player.Sample();
    NFrame const frame{i,          GetTime(i), m_player.GetMoment(), CountMoved(before, now),
                       eventCount, now};
    if (!show(frame)) return;
    before.swap(now);
  }
}

std::size_t NPlayback::CountMoved(std::vector<double> const& before,
                                  std::vector<double> const& now) const {
  auto const& channels = m_player.GetChannels();
  std::size_t count = 0;
  for (std::size_t i = 0; i != channels.size();) {
    std::size_t const first = i;
    bool isMoved = false;
    for (; i != channels.size() && channels[i].item == channels[first].item; ++i) {
      isMoved |= before[i] != now[i] && !(std::isnan(before[i]) && std::isnan(now[i]));
    }
    count += isMoved;
  }
  return count;
}

NPlayer::~NPlayer() = default;

bool NPlayer::IsReached(double step, double left) {
  return left > 0.0 && std::abs(step - left) <= 1e-6 + 1e-12 * left;
}

NEventCounter::~NEventCounter() = default;

std::size_t NEventCounter::TakeCount() { return std::exchange(m_count, 0); }

void NEventCounter::OnSignal(data::events::NSignal const& signal) {
  m_count += signal.kind == data::events::NSK_ATTRIBUTE_CHANGE;
}

}  // namespace corvanta::app
