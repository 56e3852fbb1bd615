#include "corvanta/data/events/material/NListener.h"

#include "corvanta/core/locator/NLocator.h"

namespace corvanta::data::events::material {

NListener::~NListener() = default;

NMultiplexer::NMultiplexer() = default;
NMultiplexer::~NMultiplexer() = default;

void NMultiplexer::OnAddTexture(domain::material::NMaterialNode const& material,
                                unsigned int index) {
  NotifyObservers([&](NListener& listener) { listener.SignalAddTexture(material, index); });
}

void NMultiplexer::OnRemoveTexture(
    domain::material::NMaterialNode const& material,
    boost::intrusive_ptr<domain::texture::NTextureNode> const& texture,
    boost::intrusive_ptr<domain::material::texture_mapping::NTextureMapping> const& mapping) {
  NotifyObservers(
      [&](NListener& listener) { listener.SignalRemoveTexture(material, texture, mapping); });
}

void NMultiplexer::OnSetBrdfTextureLocator(domain::material::NMaterialNode const& material,
                                           core::locator::NLocator const& locator) {
  // The observers may replace the locator that the reference leads to.
  core::locator::NLocator const copy(locator);
  NotifyObservers(
      [&](NListener& listener) { listener.SignalSetBrdfTextureLocator(material, copy); });
}

}  // namespace corvanta::data::events::material
