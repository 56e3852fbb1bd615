#pragma once

#include <boost/intrusive_ptr.hpp>
#include <memory>
#include <vector>

#include "corvanta/core/name/NNamespace.h"
#include "corvanta/core/observer/NObservable.h"
#include "corvanta/data/animation/NAnimation.h"
#include "corvanta/data/animation/NAnimationListener.h"
#include "corvanta/export.h"

namespace corvanta::data::animation {

/// The animations of a document: owns them, keeps their names unique, and tells of their coming and
/// going and of the one that is selected.
class CORVANTA_API NAnimationManager
    : public core::observer::NObservable<NAnimationManager, NAnimationListener> {
 public:
  NAnimationManager();
  NAnimationManager(NAnimationManager const&) = delete;
  NAnimationManager& operator=(NAnimationManager const&) = delete;
  ~NAnimationManager();

  /// Raises: SignalAddAnimation.
  /// Fails: false, and no change, for a name that is taken, the empty one among them, and for an
  /// animation that is in a manager.
  bool AddAnimation(NAnimation& animation);
  /// The selection stays, and keeps its animation alive.
  /// Raises: SignalRemoveAnimation, while the animation is in the list; it leaves also when a
  /// listener throws.
  /// Fails: false if the animation isn't here.
  bool RemoveAnimation(NAnimation& animation);
  /// Lets go of the selection, too, and begins a new namespace.
  /// Raises: SignalClearAnimation alone.
  void Clear();

  /// Selects an animation, which needn't be here, or none.
  /// Raises: SignalSelectAnimation, always.
  void Select(NAnimation* animation);
  boost::intrusive_ptr<NAnimation> GetSelectedAnimation() const noexcept;

  std::vector<boost::intrusive_ptr<NAnimation>> const& GetAnimations() const noexcept;
  /// Good until Clear.
  core::name::NNamespace& GetAnimationNamespace() const noexcept;

 private:
  struct Block;
  struct Removal;

  std::shared_ptr<Block> const m_block;  // a running removal keeps it
};

}  // namespace corvanta::data::animation
