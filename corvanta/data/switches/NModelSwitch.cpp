#include "corvanta/data/switches/NModelSwitch.h"

#include <algorithm>
#include <iterator>

#include "corvanta/core/reference_countable/hold.h"
#include "corvanta/data/switches/NModelSwitchListener.h"
#include "corvanta/data/switches/detail/NModelSet.h"

namespace corvanta::data::switches {

using detail::NModelSet;

namespace {
constexpr unsigned int kNoModel = 0xFFFFFFFF;
}  // namespace

struct NModelSwitch::Block {
  std::list<boost::intrusive_ptr<NModelSet>> sets;
};

/// Takes a set out of the list when its signal is over, however it ends. A listener may have
/// entered it anew: the entry that stays is that one.
struct NModelSwitch::Removal {
  Removal(Block& changed, NModelSet& removed)
      : block(changed),
        set(core::reference_countable::Hold(removed)),
        entry(std::find(block.sets.begin(), block.sets.end(), &removed)) {}
  Removal(Removal const&) = delete;
  Removal& operator=(Removal const&) = delete;
  ~Removal() {
    if (entry != block.sets.end()) block.sets.erase(entry);
  }

  Block& block;
  boost::intrusive_ptr<NModelSet> const set;
  std::list<boost::intrusive_ptr<NModelSet>>::iterator const entry;
};

NModelSwitch::NModelSwitch() : m_block(new Block) {}

NModelSwitch::~NModelSwitch() = default;

bool NModelSwitch::AddModelSet(NModelSet& set, unsigned int index) {
  auto& sets = m_block->sets;
  if (index > sets.size()) return false;
  if (!AddNamedObject(set)) return false;
  try {
    sets.insert(std::next(sets.begin(), index), &set);
  } catch (...) {
    RemoveNamedObject(set);
    throw;
  }
  boost::intrusive_ptr<NModelSet> const held(&set);
  NotifyObservers([&](NModelSwitchListener& listener) { listener.SignalAddModelSet(set); });
  return true;
}

bool NModelSwitch::RemoveModelSet(NModelSet& set) {
  if (m_block->sets.empty() || !RemoveNamedObject(set)) return false;
  auto const held = core::reference_countable::Hold(*this);
  Removal const removal(*m_block, set);
  NotifyObservers([&](NModelSwitchListener& listener) { listener.SignalRemoveModelSet(set); });
  return true;
}

bool NModelSwitch::RemoveModelSet(unsigned int index) {
  if (index >= m_block->sets.size()) return false;
  return RemoveModelSet(**std::next(m_block->sets.begin(), index));
}

unsigned int NModelSwitch::GetModelSetIndex(NModelSet const& set) const {
  unsigned int position = 0;
  for (auto const& entry : m_block->sets) {
    if (entry.get() == &set) return position;
    ++position;
  }
  return kNoModel;
}

unsigned int NModelSwitch::GetModelSetCount() const {
  return static_cast<unsigned int>(m_block->sets.size());
}

std::list<boost::intrusive_ptr<NModelSet>> const& NModelSwitch::GetModelSets() const noexcept {
  return m_block->sets;
}

boost::intrusive_ptr<NModelSet> FindModelSet(NModelSwitch const& modelSwitch,
                                             std::wstring const& name) {
  for (auto const& set : modelSwitch.GetModelSets()) {
    if (set->GetName() == name) return set;
  }
  return nullptr;
}

NModelSwitchListener::~NModelSwitchListener() = default;

}  // namespace corvanta::data::switches

namespace corvanta::data::switches::detail {

NModelSet::NModelSet() = default;
NModelSet::NModelSet(NModelSet const& other) = default;
NModelSet::~NModelSet() = default;

}  // namespace corvanta::data::switches::detail
