#include "corvanta/data/domain/image/NImageNode.h"

#include <mutex>
#include <utility>

#include "corvanta/core/attribute/NAttributeContainerError.h"
#include "corvanta/core/attribute/NTypedAttribute.h"
#include "corvanta/core/reference_countable/hold.h"
#include "corvanta/core/string_table/string_table.h"
#include "corvanta/data/domain/domain_types.h"
#include "corvanta/data/domain/image/NImageDomain.h"
#include "corvanta/data/events/detail/NModelRecorder.h"
#include "corvanta/data/resource/image/create_image.h"

namespace corvanta::data::domain::image {

using core::locator::NLocator;

struct NImageNode::Block {
  core::attribute::NAttributeHost& host;
#define CORVANTA_ROWS_SLOTS
#include "corvanta/data/domain/image/image_attributes.def"
  NLocator locator = {};
  std::mutex mutex = {};  // of the error alone: images are loaded from any thread
  std::wstring error = {};
};

#define CORVANTA_ROWS_BODIES NImageNode
#include "corvanta/data/domain/image/image_attributes.def"
wchar_t const* const AN_LOCATOR = L"locator";

NImageNode::NImageNode(core::node::NNodeID const& id, core::domain::NDomainBase* domain,
                       events::attribute_change::NMultiplexer const* multiplexer)
    : NNode(id, domain, multiplexer, core::string_table::GetString(core::string_table::DATA_IMAGE)),
      m_block(new Block{*this}) {
  if (AddAttribute(AN_LOCATOR, false) == nullptr) throw core::attribute::NAttributeContainerError();
}

NImageNode::~NImageNode() = default;

NLocator const& NImageNode::GetImageLocator() const { return m_block->locator; }

void NImageNode::SetImageLocator(NLocator const& locator) {
  // Who is asked for the pass of an archive may let go of the node, and edit it.
  auto const held = core::reference_countable::Hold(*this);
  NLocator const judged = locator;
  core::detail::NChangeGroup const group(GetRecorder());
  ExchangeLocator(NLocator(judged));
  m_block->AN_FORMAT_HINT.Set(resource::image::LocatorToFormat(judged));
}

void NImageNode::SetImageLocator(NLocator&& locator, resource::image::NImageFormat format) {
  auto const held = core::reference_countable::Hold(*this);
  core::detail::NChangeGroup const group(GetRecorder());
  ExchangeLocator(std::move(locator));
  m_block->AN_FORMAT_HINT.Set(format);
}

void NImageNode::ExchangeLocator(NLocator&& locator) {
  NLocator const previous = std::exchange(m_block->locator, std::move(locator));
  auto* const recorder = GetRecorder();
  core::detail::NChangeScope const change(recorder);
  if (recorder) recorder->OnLocator(*this, previous, m_block->locator);
}

boost::intrusive_ptr<resource::image::NImage> NImageNode::GetImage() const {
  std::wstring error;
  auto image = resource::image::CreateImage(m_block->locator, m_block->AN_FORMAT_HINT.Get(), error);
  std::scoped_lock const lock(m_block->mutex);
  m_block->error.swap(error);
  return image;
}

std::wstring NImageNode::GetImageError() const {
  std::scoped_lock const lock(m_block->mutex);
  return m_block->error;
}

void NImageNode::CopyTo(NImageNode& target) const {
  auto const held = core::reference_countable::Hold(target);
  NLocator locator = m_block->locator;
  core::detail::NChangeGroup const group(target.GetRecorder());
  CopyNodeTo(target);
  target.ExchangeLocator(std::move(locator));
}

NImageDomain::NImageDomain(core::domain::NDomainManager const* manager,
                           events::attribute_change::NMultiplexer const* multiplexer)
    : NDomain(manager, multiplexer, core::string_table::GetString(core::string_table::DATA_IMAGE)) {
}

NImageDomain::~NImageDomain() = default;

wchar_t const* NImageDomain::GetTypeImpl() const { return DT_IMAGE; }

}  // namespace corvanta::data::domain::image
