#pragma once

#include "corvanta/core/reference_countable/NReferenceCountableWithWeakReference.h"
#include "corvanta/export.h"

namespace corvanta::data::view {

class NView;
class NViewManager;

/// Is notified of the views of a view manager. The change is in place when a signal comes.
/// Held weakly: hold it by `boost::intrusive_ptr`. Rules: docs/events.md.
class CORVANTA_API NViewManagerListener
    : public virtual core::reference_countable::NReferenceCountableWithWeakReference {
 public:
  void SignalAddView(NViewManager const& manager, NView& view, unsigned int index) {
    OnAddView(manager, view, index);
  }
  void SignalRemoveAllViews(NViewManager const& manager) { OnRemoveAllViews(manager); }

 protected:
  NViewManagerListener() noexcept = default;
  NViewManagerListener(NViewManagerListener const&) noexcept = default;
  ~NViewManagerListener() override;

 private:
  virtual void OnAddView(NViewManager const& manager, NView& view, unsigned int index) = 0;
  virtual void OnRemoveAllViews(NViewManager const& manager) = 0;
};

}  // namespace corvanta::data::view
