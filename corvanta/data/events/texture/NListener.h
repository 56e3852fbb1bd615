#pragma once

#include "corvanta/core/observer/NObservable.h"
#include "corvanta/core/reference_countable/NReferenceCountableWithWeakReference.h"
#include "corvanta/data/domain/fwd.h"
#include "corvanta/export.h"

namespace corvanta::data::events::texture {

/// Is notified of the image of a texture. The change is in place when a signal comes.
/// Held weakly: hold it by `boost::intrusive_ptr`. Rules: docs/events.md.
class CORVANTA_API NListener
    : public virtual core::reference_countable::NReferenceCountableWithWeakReference {
 public:
  void SignalTextureImageChange(domain::texture::NTextureNode const& texture) {
    OnTextureImageChange(texture);
  }

 protected:
  NListener() noexcept = default;
  NListener(NListener const&) noexcept = default;
  ~NListener() override;

 private:
  virtual void OnTextureImageChange(domain::texture::NTextureNode const& texture) = 0;
};

/// Passes every signal of the kind on to whoever registered here. Rules: docs/events.md.
class CORVANTA_API NMultiplexer final
    : public NListener,
      public core::observer::NObservable<NMultiplexer, NListener> {
 public:
  NMultiplexer();

 private:
  ~NMultiplexer() override;

  void OnTextureImageChange(domain::texture::NTextureNode const& texture) override {
    NotifyObservers([&](NListener& listener) { listener.SignalTextureImageChange(texture); });
  }
};

}  // namespace corvanta::data::events::texture
