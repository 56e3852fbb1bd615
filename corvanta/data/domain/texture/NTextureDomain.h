#pragma once

#include "corvanta/data/domain/NDomain.h"
#include "corvanta/data/domain/texture/NTextureNode.h"
#include "corvanta/data/events/texture/NMultiplexer.h"

namespace corvanta::data::domain::texture {

/// The domain of type "texture". Attaches the texture multiplexer to its nodes.
class CORVANTA_API NTextureDomain : public NDomain<NTextureNode, core::name::NStrictNamespace> {
 public:
  /// `textures` may be null.
  NTextureDomain(core::domain::NDomainManager const* manager,
                 events::attribute_change::NMultiplexer const* multiplexer,
                 events::texture::NMultiplexer* textures);
  ~NTextureDomain() override;

 private:
  wchar_t const* GetTypeImpl() const override;
  bool InitializeNode(NTextureNode& node) const override;

  boost::intrusive_ptr<events::texture::NMultiplexer> const m_textures;
};

}  // namespace corvanta::data::domain::texture
