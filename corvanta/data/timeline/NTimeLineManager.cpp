#include "corvanta/data/timeline/NTimeLineManager.h"

#include "corvanta/core/reference_countable/NUncounted.h"

namespace corvanta::data::timeline {

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
