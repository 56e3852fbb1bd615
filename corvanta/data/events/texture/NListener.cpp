#include "corvanta/data/events/texture/NListener.h"

namespace corvanta::data::events::texture {

NListener::~NListener() = default;

NMultiplexer::NMultiplexer() = default;
NMultiplexer::~NMultiplexer() = default;

void NMultiplexer::OnTextureImageChange(domain::texture::NTextureNode const& texture) {
  NotifyObservers([&](NListener& listener) { listener.SignalTextureImageChange(texture); });
}

}  // namespace corvanta::data::events::texture
