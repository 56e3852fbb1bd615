#include "corvanta/data/animation/NAnimation.h"

#include <utility>

#include "corvanta/core/name/NStrictNamespace.h"
#include "corvanta/core/reference_countable/NUncounted.h"
#include "corvanta/data/animation/KnotMap.h"
#include "corvanta/data/animation/NAnimationListener.h"

namespace corvanta::data::animation {

using Uncounted = core::reference_countable::NUncounted<NAnimationKey>;

struct NAnimation::Block {
  // In a default initializer, g++ would leak it on a failure inside.
  Block() : names(new core::name::NStrictNamespace) {}

  boost::intrusive_ptr<core::name::NStrictNamespace> names;
  Keys keys;
  NAnimationKey* selectedKey = nullptr;
  NAnimationEngine engine;
  Trigger trigger;
  std::pair<char, int> shortcut{};
  bool isTriggerEnabled = false;
  bool isShortcutEnabled = false;
};

/// Enters keys, and takes them out again unless all went well.
struct NAnimation::Entering {
  explicit Entering(Block& changed) : block(changed) {}
  Entering(Entering const&) = delete;
  Entering& operator=(Entering const&) = delete;
  ~Entering() {
    for (NAnimationKey* const key : entered) {
      if (key == nullptr) continue;
      block.names->RemoveNamedObject(*key);
      block.keys.erase(Uncounted(*key));
    }
  }

  /// Fails: false for a key that is there.
  bool Enter(NAnimationKey& key, int time) {
    if (block.keys.count(Uncounted(key)) != 0) return false;
    entered.push_back(nullptr);  // not the key: it may end with a failure of the next line
    block.keys.emplace(&key, time);
    entered.back() = &key;
    // A key whose name is taken stays, outside the namespace.
    block.names->AddNamedObject(key);
    return true;
  }
  void Keep() noexcept { entered.clear(); }

  Block& block;
  std::vector<NAnimationKey*> entered;
};

NAnimation::NAnimation() : m_block(new Block) {}

NAnimation::NAnimation(NAnimation const& other)
    : NReferenceCountableWithWeakReference(other),
      NNamedObject(),
      NObservable(other),
      m_block(new Block) {
  Block const& source = *other.m_block;
  m_block->trigger = source.trigger;
  m_block->shortcut = source.shortcut;
  m_block->isTriggerEnabled = source.isTriggerEnabled;
  m_block->isShortcutEnabled = source.isShortcutEnabled;
  Entering entering(*m_block);
  for (auto const& [key, time] : source.keys) {
    boost::intrusive_ptr<NAnimationKey> const copy(new NAnimationKey(*key));
    entering.Enter(*copy, time);
  }
  entering.Keep();
  m_block->engine.Initialize(*this);
  m_block->engine.SetEndTime(source.engine.GetEndTime());
  m_block->engine.SetRepeat(source.engine.GetRepeat());
}

NAnimation::~NAnimation() = default;

NAnimation::Keys const& NAnimation::GetKeys() const noexcept { return m_block->keys; }

bool NAnimation::AddKey(NAnimationKey& key, int time) {
  Entering entering(*m_block);
  if (!entering.Enter(key, time)) return false;
  m_block->engine.Initialize(*this);
  entering.Keep();
  Notify();
  return true;
}

bool NAnimation::AddKeys(
    std::vector<std::pair<boost::intrusive_ptr<NAnimationKey>, int>> const& keys) {
  Entering entering(*m_block);
  for (auto const& [key, time] : keys) {
    if (key) entering.Enter(*key, time);
  }
  m_block->engine.Initialize(*this);
  entering.Keep();
  Notify();
  return true;
}

bool NAnimation::RemoveKey(NAnimationKey& key) {
  auto const found = m_block->keys.find(Uncounted(key));
  if (found == m_block->keys.end()) return false;
  boost::intrusive_ptr<NAnimationKey> const held = found->first;
  auto entry = m_block->keys.extract(found);
  try {
    m_block->engine.Initialize(*this);
  } catch (...) {
    m_block->keys.insert(std::move(entry));
    throw;
  }
  m_block->names->RemoveNamedObject(key);
  if (m_block->selectedKey == &key) m_block->selectedKey = nullptr;
  Notify();
  return true;
}

void NAnimation::SelectKey(NAnimationKey* key) noexcept { m_block->selectedKey = key; }

NAnimationKey* NAnimation::GetSelectedKey() const noexcept { return m_block->selectedKey; }

int NAnimation::GetTime(NAnimationKey& key) const {
  auto const found = m_block->keys.find(Uncounted(key));
  return found == m_block->keys.end() ? -1 : found->second;
}

bool NAnimation::SetTime(NAnimationKey& key, int time) {
  auto const found = m_block->keys.find(Uncounted(key));
  if (found == m_block->keys.end()) return false;
  int const before = std::exchange(found->second, time);
  try {
    m_block->engine.Initialize(*this);
  } catch (...) {
    found->second = before;
    throw;
  }
  Notify();
  return true;
}

NAnimation::Trigger const& NAnimation::GetTrigger() const noexcept { return m_block->trigger; }

void NAnimation::SetTrigger(Trigger const& trigger) { m_block->trigger = trigger; }

bool NAnimation::TriggerIsEnabled() const noexcept { return m_block->isTriggerEnabled; }

void NAnimation::EnableTrigger(bool isEnabled) noexcept { m_block->isTriggerEnabled = isEnabled; }

std::pair<char, int> NAnimation::GetShortcutKey() const noexcept { return m_block->shortcut; }

void NAnimation::SetShortcutKey(char character, int number) noexcept {
  m_block->shortcut = {character, number};
}

bool NAnimation::ShortcutIsEnabled() const noexcept { return m_block->isShortcutEnabled; }

void NAnimation::EnableShortcut(bool isEnabled) noexcept { m_block->isShortcutEnabled = isEnabled; }

void NAnimation::SignalModification() {
  m_block->engine.Initialize(*this);
  Notify();
}

void NAnimation::Notify() {
  NotifyObservers([&](NAnimationListener& listener) { listener.SignalModifyAnimation(*this); });
}

NAnimationEngine& NAnimation::GetEngine() noexcept { return m_block->engine; }

NAnimationEngine const& NAnimation::GetEngine() const noexcept { return m_block->engine; }

KnotMap::KnotMap(std::vector<double> const& times) : m_index(times) {}

NAnimationListener::~NAnimationListener() = default;

}  // namespace corvanta::data::animation
