#pragma once

#include <boost/intrusive_ptr.hpp>

#include "corvanta/core/locator/NLocator.h"
#include "corvanta/core/observer/NObservable.h"
#include "corvanta/core/reference_countable/NReferenceCountableWithWeakReference.h"
#include "corvanta/data/domain/fwd.h"
#include "corvanta/export.h"

namespace corvanta::data::events::material {

/// Is notified of the textures of a material. The change is in place when a signal comes.
/// Held weakly: hold it by `boost::intrusive_ptr`. Rules: docs/events.md.
class CORVANTA_API NListener
    : public virtual core::reference_countable::NReferenceCountableWithWeakReference {
 public:
  void SignalAddTexture(domain::material::NMaterialNode const& material, unsigned int index) {
    OnAddTexture(material, index);
  }
  void SignalRemoveTexture(
      domain::material::NMaterialNode const& material,
      boost::intrusive_ptr<domain::texture::NTextureNode> const& texture,
      boost::intrusive_ptr<domain::material::texture_mapping::NTextureMapping> const& mapping) {
    OnRemoveTexture(material, texture, mapping);
  }
  void SignalSetBrdfTextureLocator(domain::material::NMaterialNode const& material,
                                   core::locator::NLocator const& locator) {
    OnSetBrdfTextureLocator(material, locator);
  }

 protected:
  NListener() noexcept = default;
  NListener(NListener const&) noexcept = default;
  ~NListener() override;

 private:
  virtual void OnAddTexture(domain::material::NMaterialNode const& material,
                            unsigned int index) = 0;
  virtual void OnRemoveTexture(
      domain::material::NMaterialNode const& material,
      boost::intrusive_ptr<domain::texture::NTextureNode> const& texture,
      boost::intrusive_ptr<domain::material::texture_mapping::NTextureMapping> const& mapping) = 0;
  virtual void OnSetBrdfTextureLocator(domain::material::NMaterialNode const& material,
                                       core::locator::NLocator const& locator) = 0;
};

/// Passes every signal of the kind on to whoever registered here. Rules: docs/events.md.
class CORVANTA_API NMultiplexer final
    : public NListener,
      public core::observer::NObservable<NMultiplexer, NListener> {
 public:
  NMultiplexer();

 private:
  ~NMultiplexer() override;

  void OnAddTexture(domain::material::NMaterialNode const& material, unsigned int index) override {
    NotifyObservers([&](NListener& listener) { listener.SignalAddTexture(material, index); });
  }
  void OnRemoveTexture(
      domain::material::NMaterialNode const& material,
      boost::intrusive_ptr<domain::texture::NTextureNode> const& texture,
      boost::intrusive_ptr<domain::material::texture_mapping::NTextureMapping> const& mapping)
      override {
    NotifyObservers(
        [&](NListener& listener) { listener.SignalRemoveTexture(material, texture, mapping); });
  }
  void OnSetBrdfTextureLocator(domain::material::NMaterialNode const& material,
                               core::locator::NLocator const& locator) override {
    // The observers may replace the locator that the reference leads to.
    core::locator::NLocator const copy(locator);
    NotifyObservers(
        [&](NListener& listener) { listener.SignalSetBrdfTextureLocator(material, copy); });
  }
};

}  // namespace corvanta::data::events::material
