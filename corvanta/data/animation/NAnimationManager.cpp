#include "corvanta/data/animation/NAnimationManager.h"

#include <algorithm>

#include "corvanta/core/name/NStrictNamespace.h"
#include "corvanta/core/reference_countable/hold.h"

namespace corvanta::data::animation {

struct NAnimationManager::Block {
  // In a default initializer, g++ would leak it on a failure inside.
  Block() : names(new core::name::NStrictNamespace) {}

  boost::intrusive_ptr<core::name::NStrictNamespace> names;
  std::vector<boost::intrusive_ptr<NAnimation>> animations;
  boost::intrusive_ptr<NAnimation> selected;
};

/// Takes an animation out of the list when its signal is over, however it ends. A listener may have
/// entered it anew: the entry that stays is that one.
struct NAnimationManager::Removal {
  Removal(std::shared_ptr<Block> const& changed, NAnimation& removed)
      : block(changed), animation(core::reference_countable::Hold(removed)) {}
  Removal(Removal const&) = delete;
  Removal& operator=(Removal const&) = delete;
  ~Removal() {
    auto& animations = block->animations;
    auto const found = std::find(animations.begin(), animations.end(), animation);
    if (found != animations.end()) animations.erase(found);
  }

  std::shared_ptr<Block> const block;
  boost::intrusive_ptr<NAnimation> const animation;
};

NAnimationManager::NAnimationManager() : m_block(new Block) {}

NAnimationManager::~NAnimationManager() = default;

bool NAnimationManager::AddAnimation(NAnimation& animation) {
  if (!m_block->names->AddNamedObject(animation)) return false;
  try {
    m_block->animations.emplace_back(&animation);
  } catch (...) {
    m_block->names->RemoveNamedObject(animation);
    throw;
  }
  boost::intrusive_ptr<NAnimation> const held(&animation);
  NotifyObservers([&](NAnimationListener& listener) { listener.SignalAddAnimation(animation); });
  return true;
}

bool NAnimationManager::RemoveAnimation(NAnimation& animation) {
  if (!m_block->names->RemoveNamedObject(animation)) return false;
  Removal const removal(m_block, animation);
  NotifyObservers([&](NAnimationListener& listener) { listener.SignalRemoveAnimation(animation); });
  return true;
}

void NAnimationManager::Clear() {
  {
    // What ends here ends when the block is in order, and before the signal.
    boost::intrusive_ptr<core::name::NStrictNamespace> names(new core::name::NStrictNamespace);
    std::vector<boost::intrusive_ptr<NAnimation>> animations;
    boost::intrusive_ptr<NAnimation> selected;
    m_block->names.swap(names);
    m_block->animations.swap(animations);
    m_block->selected.swap(selected);
  }
  NotifyObservers([](NAnimationListener& listener) { listener.SignalClearAnimation(); });
}

void NAnimationManager::Select(NAnimation* animation) {
  boost::intrusive_ptr<NAnimation> const held(animation);
  m_block->selected = held;
  NotifyObservers([&](NAnimationListener& listener) { listener.SignalSelectAnimation(animation); });
}

boost::intrusive_ptr<NAnimation> NAnimationManager::GetSelectedAnimation() const noexcept {
  return m_block->selected;
}

std::vector<boost::intrusive_ptr<NAnimation>> const& NAnimationManager::GetAnimations()
    const noexcept {
  return m_block->animations;
}

core::name::NNamespace& NAnimationManager::GetAnimationNamespace() const noexcept {
  return *m_block->names;
}

}  // namespace corvanta::data::animation
