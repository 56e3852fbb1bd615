#pragma once

#include <boost/intrusive_ptr.hpp>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "corvanta/core/name/NNamedObject.h"
#include "corvanta/core/observer/NObservable.h"
#include "corvanta/data/animation/NAnimationEngine.h"
#include "corvanta/data/animation/NAnimationKey.h"
#include "corvanta/data/animation/NAnimationListener.h"
#include "corvanta/export.h"

namespace corvanta::data::animation {

/// The editable record of a presentation: named keys at their times, with the engine that plays
/// them, and what starts it. Trigger and shortcut are only stored: the caller looks at them.
///
/// It is no node and needs no manager. Hold it by `boost::intrusive_ptr`.
/// Units: a key's time is a whole number of tenths of the engine's time.
class CORVANTA_API NAnimation : public core::name::NNamedObject,
                                public core::observer::NObservable<NAnimation, NAnimationListener> {
 public:
  using Keys = std::map<boost::intrusive_ptr<NAnimationKey>, int>;
  using Trigger =
      domain::scenegraph::NSceneGraphPath<domain::scenegraph::item::NSceneGraphItemNode>;

  /// Without name and keys.
  NAnimation();
  /// Copies of the keys, the trigger, the shortcut, the engine's end time and repeat flag; without
  /// the name, the selection and the current time.
  NAnimation(NAnimation const& other);
  ~NAnimation() override;

  Keys const& GetKeys() const noexcept;
  /// The key keeps its name also where another one has it.
  /// Raises: SignalModifyAnimation.
  /// Fails: false, and no change, if the key is here.
  bool AddKey(NAnimationKey& key, int time);
  /// Passes over nulls and keys that are here. Returns true.
  /// Raises: SignalModifyAnimation, once, whatever is in the list.
  bool AddKeys(std::vector<std::pair<boost::intrusive_ptr<NAnimationKey>, int>> const& keys);
  /// Raises: SignalModifyAnimation; the key is held until it is over.
  /// Fails: false if the key isn't here.
  bool RemoveKey(NAnimationKey& key);

  /// Raises: nothing. The key isn't held, and needn't be here.
  void SelectKey(NAnimationKey* key) noexcept;
  NAnimationKey* GetSelectedKey() const noexcept;

  /// Fails: -1 if the key isn't here.
  int GetTime(NAnimationKey& key) const;
  /// Raises: SignalModifyAnimation.
  /// Fails: false if the key isn't here.
  bool SetTime(NAnimationKey& key, int time);

  Trigger const& GetTrigger() const noexcept;
  /// Raises: nothing.
  void SetTrigger(Trigger const& trigger);
  bool TriggerIsEnabled() const noexcept;
  void EnableTrigger(bool isEnabled) noexcept;
  /// A character, and a number that goes with it.
  std::pair<char, int> GetShortcutKey() const noexcept;
  void SetShortcutKey(char character, int number) noexcept;
  bool ShortcutIsEnabled() const noexcept;
  void EnableShortcut(bool isEnabled) noexcept;

  /// Makes the changes of keys' fields count.
  /// Raises: SignalModifyAnimation.
  void SignalModification();

  NAnimationEngine& GetEngine() noexcept;
  NAnimationEngine const& GetEngine() const noexcept;

 private:
  struct Block;
  struct Entering;

  void Notify();

  std::unique_ptr<Block> const m_block;
};

}  // namespace corvanta::data::animation
