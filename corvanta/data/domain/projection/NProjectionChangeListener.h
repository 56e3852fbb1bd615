#pragma once

#include "corvanta/core/reference_countable/NReferenceCountableWithWeakReference.h"
#include "corvanta/data/domain/fwd.h"
#include "corvanta/export.h"

namespace corvanta::data::domain::projection {

/// Is notified of another method of a projection node that it observes. The change is in place.
/// Rules: docs/events.md.
class CORVANTA_API NProjectionChangeListener
    : public virtual core::reference_countable::NReferenceCountableWithWeakReference {
 public:
  void OnProjectionChange(NProjectionNode const& projection) { OnProjectionChangeImpl(projection); }

 protected:
  NProjectionChangeListener() noexcept = default;
  NProjectionChangeListener(NProjectionChangeListener const&) noexcept = default;
  ~NProjectionChangeListener() override;

 private:
  virtual void OnProjectionChangeImpl(NProjectionNode const& projection) = 0;
};

}  // namespace corvanta::data::domain::projection
