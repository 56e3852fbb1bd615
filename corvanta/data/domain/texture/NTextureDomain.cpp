#include "corvanta/data/domain/texture/NTextureDomain.h"

#include "corvanta/core/string_table/string_table.h"
#include "corvanta/data/domain/domain_types.h"

namespace corvanta::data::domain::texture {

NTextureDomain::NTextureDomain(core::domain::NDomainManager const* manager,
                               events::attribute_change::NMultiplexer const* multiplexer,
                               events::texture::NMultiplexer* textures)
    : NDomain(manager, multiplexer,
              core::string_table::GetString(core::string_table::DATA_TEXTURE)),
      m_textures(textures) {}

NTextureDomain::~NTextureDomain() = default;

wchar_t const* NTextureDomain::GetTypeImpl() const { return DT_TEXTURE; }

bool NTextureDomain::InitializeNode(NTextureNode& node) const {
  return Attach<events::texture::NListener>(m_textures, node);
}

}  // namespace corvanta::data::domain::texture
