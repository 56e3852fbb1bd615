#pragma once

#include "corvanta/core/reference_countable/NReferenceCountableWithWeakReference.h"
#include "corvanta/data/domain/fwd.h"
#include "corvanta/data/domain/geometry/NGeometryChangeType.h"
#include "corvanta/export.h"

namespace corvanta::data::domain::geometry {

/// Is notified of the surfaces of geometry nodes. The change is in place when a signal comes.
/// Held weakly: hold it by `boost::intrusive_ptr`. Rules: docs/events.md.
class CORVANTA_API NGeometryChangeListener
    : public virtual core::reference_countable::NReferenceCountableWithWeakReference {
 public:
  void OnGeometryChange(NGeometryNode const& geometry, NSurface const& surface,
                        NGeometryChangeType type) {
    OnGeometryChangeImpl(geometry, surface, type);
  }

 protected:
  NGeometryChangeListener() noexcept = default;
  NGeometryChangeListener(NGeometryChangeListener const&) noexcept = default;
  ~NGeometryChangeListener() override;

 private:
  virtual void OnGeometryChangeImpl(NGeometryNode const& geometry, NSurface const& surface,
                                    NGeometryChangeType type) = 0;
};

}  // namespace corvanta::data::domain::geometry
