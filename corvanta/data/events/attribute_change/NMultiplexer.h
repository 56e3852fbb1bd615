#pragma once

#include "corvanta/core/observer/NObservable.h"
#include "corvanta/core/reference_countable/NReferenceCountable.h"
#include "corvanta/data/events/attribute_change/NListener.h"

namespace corvanta::data::events::attribute_change {

/// Passes every attribute change on to whoever registered here. Nodes hold and call it directly.
/// Rules: docs/events.md.
class CORVANTA_API NMultiplexer final : public core::observer::NObservable<NMultiplexer, NListener>,
                                        public core::reference_countable::NReferenceCountable {
 public:
  NMultiplexer();

  void OnAttributeChange(core::attribute::NAttributeHost& host,
                         core::attribute::NAttribute const& attribute) const;

 private:
  ~NMultiplexer() override;
};

}  // namespace corvanta::data::events::attribute_change
