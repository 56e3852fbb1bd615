#include "corvanta/data/events/attribute_change/NListener.h"

namespace corvanta::data::events::attribute_change {

NListener::~NListener() = default;

NMultiplexer::NMultiplexer() = default;
NMultiplexer::~NMultiplexer() = default;

void NMultiplexer::OnAttributeChange(core::attribute::NAttributeHost& host,
                                     core::attribute::NAttribute const& attribute) const {
  NotifyObservers([&](NListener& listener) { listener.OnAttributeChange(host, attribute); });
}

}  // namespace corvanta::data::events::attribute_change
