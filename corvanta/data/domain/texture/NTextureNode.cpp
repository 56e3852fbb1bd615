#include "corvanta/data/domain/texture/NTextureNode.h"

#include <utility>

#include "corvanta/core/attribute/NTypedAttribute.h"
#include "corvanta/core/reference_countable/hold.h"
#include "corvanta/core/string_table/string_table.h"
#include "corvanta/data/domain/domain_types.h"
#include "corvanta/data/domain/texture/NTextureDomain.h"
#include "corvanta/data/events/detail/NModelRecorder.h"

namespace corvanta::data::domain::texture {

using ImageReference = core::node::NNodeReference<image::NImageNode>;

struct NTextureNode::Block {
  core::attribute::NAttributeHost& host;
#define CORVANTA_ROWS_SLOTS
#include "corvanta/data/domain/texture/texture_attributes.def"
  ImageReference image = {};
};

#define CORVANTA_ROWS_BODIES NTextureNode
#include "corvanta/data/domain/texture/texture_attributes.def"

NTextureNode::NTextureNode(core::node::NNodeID const& id, core::domain::NDomainBase* domain,
                           events::attribute_change::NMultiplexer const* multiplexer)
    : NNode(id, domain, multiplexer,
            core::string_table::GetString(core::string_table::DATA_TEXTURE)),
      m_block(new Block{*this}) {}

NTextureNode::~NTextureNode() = default;

boost::intrusive_ptr<image::NImageNode> NTextureNode::GetImage() const {
  return m_block->image.Get();
}

ImageReference const& NTextureNode::GetImageRef() const { return m_block->image; }

void NTextureNode::SetImage(ImageReference const& image) {
  ImageReference const previous = m_block->image;
  m_block->image = image;
  auto* const recorder = GetRecorder();
  core::detail::NChangeScope const change(recorder);
  if (recorder) recorder->OnReference(*this, events::NRK_TEXTURE_IMAGE, previous, m_block->image);
  NotifyObservers(
      [&](events::texture::NListener& listener) { listener.SignalTextureImageChange(*this); });
}

void NTextureNode::CopyTo(NTextureNode& target) const {
  auto const held = core::reference_countable::Hold(target);
  ImageReference const image = m_block->image;
  auto* const recorder = target.GetRecorder();
  core::detail::NChangeGroup const group(recorder);
  CopyNodeTo(target);
  ImageReference const previous = target.m_block->image;
  target.m_block->image = image;
  core::detail::NChangeScope const change(recorder);
  if (recorder) recorder->OnReference(target, events::NRK_TEXTURE_IMAGE, previous, image);
}

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
