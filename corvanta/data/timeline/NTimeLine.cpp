#include "corvanta/data/timeline/NTimeLine.h"

#include <atomic>

#include "corvanta/core/attribute/NTypedAttribute.h"
#include "corvanta/core/reference_countable/NUncounted.h"
#include "corvanta/data/timeline/NTimeLineManager.h"

namespace corvanta::data::timeline {

using domain::animation::NAnimationNode;

namespace {
std::atomic<std::uint64_t> g_lastCreationNumber{0};
}  // namespace

struct NTimeLine::Block {
  core::attribute::NAttributeHost& host;
#define CORVANTA_ROWS_SLOTS
#include "corvanta/data/timeline/timeline_attributes.def"
  core::node::NNodeReference<NAnimationNode> animation{};
  bool isReverse = false;
};

#define CORVANTA_ROWS_BODIES NTimeLine
#include "corvanta/data/timeline/timeline_attributes.def"

NTimeLine::NTimeLine(core::node::NNodeReference<NAnimationNode> const& animation)
    : m_creationNumber(++g_lastCreationNumber), m_block(new Block{*this}) {
  m_block->animation = animation;
}

NTimeLine::~NTimeLine() = default;

boost::intrusive_ptr<NAnimationNode> NTimeLine::GetAnimation() const {
  return m_block->animation.Get();
}

core::node::NNodeReference<NAnimationNode> const& NTimeLine::GetAnimationRef() const {
  return m_block->animation;
}

bool NTimeLine::IsReverse() const noexcept { return m_block->isReverse; }

void NTimeLine::SetIsReverseFlag(bool isReverse) noexcept { m_block->isReverse = isReverse; }

void NTimeLine::OnAttributeChangeImpl(core::attribute::NAttribute const& attribute) {
  if (!m_block->AN_CURRENT_FRAME.Is(attribute)) return;
  if (auto const animation = GetAnimation()) animation->SetFrame(attribute.GetDouble());
}

bool Update(NTimeLine& timeline, double seconds) {
  auto const animation = timeline.GetAnimation();
  if (!animation) return false;
  double const step = animation->GetFps() * seconds;
  double const start = static_cast<double>(animation->GetStartFrame());
  double const end = static_cast<double>(animation->GetEndFrame());
  bool const isReverse = timeline.IsReverse();
  double frame = timeline.GetCurrentFrame() + (isReverse ? -step : step);
  bool goesOn = isReverse ? frame > start : frame < end;
  if (!goesOn && timeline.Repeats()) {
    frame = isReverse ? frame + (end - start) : frame - (end - start);
    goesOn = true;
  } else if (!goesOn) {
    frame = isReverse ? start : end;
  }
  timeline.SetCurrentFrame(frame);
  return goesOn;
}

NTimeLineManager::NTimeLineManager() = default;
NTimeLineManager::~NTimeLineManager() = default;

bool NTimeLineManager::AddTimeLine(NTimeLine& timeline) {
  return m_timelines.insert(&timeline).second;
}

bool NTimeLineManager::RemoveTimeLine(NTimeLine& timeline) {
  return m_timelines.erase(core::reference_countable::NUncounted<NTimeLine>(timeline)) == 1;
}

void NTimeLineManager::ClearAll() { m_timelines.clear(); }

}  // namespace corvanta::data::timeline
