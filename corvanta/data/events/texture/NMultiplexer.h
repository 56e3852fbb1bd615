#pragma once

#include "corvanta/core/observer/NObservable.h"
#include "corvanta/data/events/texture/NListener.h"

namespace corvanta::data::events::texture {

/// Passes every signal of the kind on to whoever registered here. Rules: docs/events.md.
class CORVANTA_API NMultiplexer final
    : public NListener,
      public core::observer::NObservable<NMultiplexer, NListener> {
 public:
  NMultiplexer();

 private:
  ~NMultiplexer() override;

  void OnTextureImageChange(domain::texture::NTextureNode const& texture) override;
};

}  // namespace corvanta::data::events::texture
