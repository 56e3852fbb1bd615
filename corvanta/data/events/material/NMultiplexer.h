#pragma once

#include "corvanta/core/observer/NObservable.h"
#include "corvanta/data/events/material/NListener.h"

namespace corvanta::data::events::material {

/// Passes every signal of the kind on to whoever registered here. Rules: docs/events.md.
class CORVANTA_API NMultiplexer final
    : public NListener,
      public core::observer::NObservable<NMultiplexer, NListener> {
 public:
  NMultiplexer();

 private:
  ~NMultiplexer() override;

  void OnAddTexture(domain::material::NMaterialNode const& material, unsigned int index) override;
  void OnRemoveTexture(
      domain::material::NMaterialNode const& material,
      boost::intrusive_ptr<domain::texture::NTextureNode> const& texture,
      boost::intrusive_ptr<domain::material::texture_mapping::NTextureMapping> const& mapping)
      override;
  void OnSetBrdfTextureLocator(domain::material::NMaterialNode const& material,
                               core::locator::NLocator const& locator) override;
};

}  // namespace corvanta::data::events::material
