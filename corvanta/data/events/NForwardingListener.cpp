#include "corvanta/data/events/NForwardingListener.h"

namespace corvanta::data::events {

NForwardingListener::NForwardingListener() noexcept = default;
NForwardingListener::~NForwardingListener() = default;

}  // namespace corvanta::data::events
