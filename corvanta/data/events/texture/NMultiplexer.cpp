#include "corvanta/data/events/texture/NMultiplexer.h"

namespace corvanta::data::events::texture {

NMultiplexer::NMultiplexer() = default;
NMultiplexer::~NMultiplexer() = default;

void NMultiplexer::OnTextureImageChange(domain::texture::NTextureNode const& texture) {
  NotifyObservers([&](NListener& listener) { listener.SignalTextureImageChange(texture); });
}

}  // namespace corvanta::data::events::texture
