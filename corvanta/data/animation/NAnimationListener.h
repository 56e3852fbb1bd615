#pragma once

#include "corvanta/core/reference_countable/NReferenceCountableWithWeakReference.h"
#include "corvanta/export.h"

namespace corvanta::data::animation {

class NAnimation;

/// Is notified of the animations of a manager, or of the changes of one animation. Held weakly:
/// hold it by `boost::intrusive_ptr`. Rules: docs/events.md.
class CORVANTA_API NAnimationListener
    : public virtual core::reference_countable::NReferenceCountableWithWeakReference {
 public:
  void SignalAddAnimation(NAnimation& animation) { OnAddAnimationImpl(animation); }
  /// It has left the manager's namespace and still is in its list.
  void SignalRemoveAnimation(NAnimation& animation) { OnRemoveAnimationImpl(animation); }
  /// Null when nothing is selected any more.
  void SignalSelectAnimation(NAnimation* animation) { OnSelectAnimationImpl(animation); }
  /// Raised by the animation alone, not by a manager.
  void SignalModifyAnimation(NAnimation& animation) { OnModifyAnimationImpl(animation); }
  void SignalClearAnimation() { OnClearAnimationImpl(); }

 protected:
  NAnimationListener() noexcept = default;
  NAnimationListener(NAnimationListener const&) noexcept = default;
  ~NAnimationListener() override;

 private:
  virtual void OnAddAnimationImpl(NAnimation& animation) = 0;
  virtual void OnRemoveAnimationImpl(NAnimation& animation) = 0;
  virtual void OnSelectAnimationImpl(NAnimation* animation) = 0;
  virtual void OnModifyAnimationImpl(NAnimation& animation) = 0;
  virtual void OnClearAnimationImpl() = 0;
};

}  // namespace corvanta::data::animation
