#include "corvanta/data/animation/NAnimationEngine.h"

#include "corvanta/data/animation/NAnimationEngineListener.h"
#include "corvanta/data/animation/detail/Players.h"

namespace corvanta::data::animation {

struct NAnimationEngine::Block {
  NAnimationEngine* engine;  // null when it has gone
  double currentTime = 0.0;
  double endTime = 30.0;
  bool repeats = false;
  std::shared_ptr<detail::Players const> players = std::make_shared<detail::Players>();
};

NAnimationEngine::NAnimationEngine() : m_block(new Block{this}) {}

NAnimationEngine::~NAnimationEngine() { m_block->engine = nullptr; }

bool NAnimationEngine::Initialize(NAnimation const& animation) {
  m_block->players = std::make_shared<detail::Players>(animation);
  return false;
}

bool NAnimationEngine::Update(NAnimationEngineArgs const& args, double delta) {
  auto const block = m_block;
  auto const players = block->players;
  double const start = block->currentTime;
  double const end = block->endTime;
  double time = start + delta;
  bool isAtEnd = false;
  if (delta > 0.0 && time > end) {
    isAtEnd = !block->repeats;
    delta = isAtEnd ? end - start : delta - end;
    // A step that comes to an end comes there exactly, whatever the sum would round to.
    time = isAtEnd ? end : start + delta;
  }
  if (delta <= 0.0 && time < 0.0) {
    isAtEnd = !block->repeats;
    time = isAtEnd ? 0.0 : start + (delta + end);
  }
  players->Play(args, {start, time});
  block->currentTime = time;
  if (block->engine == nullptr) return !isAtEnd;
  block->engine->NotifyObservers([&](NAnimationEngineListener& listener) {
    if (block->engine != nullptr) listener.SignalSetTime(*block->engine, time);
  });
  return !isAtEnd;
}

bool NAnimationEngine::GoToStart(NAnimationEngineArgs const& args) {
  return Update(args, -m_block->currentTime);
}

bool NAnimationEngine::GetRepeat() const noexcept { return m_block->repeats; }

void NAnimationEngine::SetRepeat(bool repeats) noexcept { m_block->repeats = repeats; }

double NAnimationEngine::GetTickCount() const noexcept { return m_block->currentTime; }

void NAnimationEngine::SetCurrentTime(double time) noexcept { m_block->currentTime = time; }

double NAnimationEngine::GetEndTime() const noexcept { return m_block->endTime; }

void NAnimationEngine::SetEndTime(double time) noexcept { m_block->endTime = time; }

bool SetCurrentTime(NAnimationEngine& engine, NAnimationEngineArgs const& args, double time) {
  return engine.Update(args, time - engine.GetTickCount());
}

NAnimationEngineListener::~NAnimationEngineListener() = default;

}  // namespace corvanta::data::animation
