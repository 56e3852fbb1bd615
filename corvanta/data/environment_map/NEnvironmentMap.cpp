#include "corvanta/data/environment_map/NEnvironmentMap.h"

#include <utility>

#include "corvanta/core/detail/previous_value.h"
#include "corvanta/data/environment_map/NEnvironmentMapListener.h"
#include "corvanta/data/environment_map/NEnvironmentMapTransform.h"

namespace corvanta::data::environment_map {

using ImageReference = core::node::NNodeReference<domain::image::NImageNode>;

struct NEnvironmentMap::Block {
  NEnvironmentMapImageType type = NEMIT_CUBE;
  ImageReference image;
  boost::intrusive_ptr<NEnvironmentMapTransform const> transform;
};

NEnvironmentMap::NEnvironmentMap() : m_block(new Block) {}

NEnvironmentMap::~NEnvironmentMap() = default;

NEnvironmentMapImageType NEnvironmentMap::GetImageType() const { return m_block->type; }

NEnvironmentMapImageType NEnvironmentMap::GetPreviousImageType() const noexcept {
  void const* const previous = core::detail::NPreviousValue::Find(&m_block->type);
  return previous == nullptr ? m_block->type
                             : *static_cast<NEnvironmentMapImageType const*>(previous);
}

void NEnvironmentMap::SetImageType(NEnvironmentMapImageType type) {
  NEnvironmentMapImageType const previous = m_block->type;
  m_block->type = type;
  core::detail::NPreviousValue const listed(&m_block->type, &previous);
  NotifyObservers(
      [&](NEnvironmentMapListener& listener) { listener.SignalImageTypeChange(*this); });
}

boost::intrusive_ptr<domain::image::NImageNode> NEnvironmentMap::GetImage() const {
  return m_block->image.Get();
}

ImageReference const& NEnvironmentMap::GetImageRef() const { return m_block->image; }

ImageReference const& NEnvironmentMap::GetPreviousImageRef() const noexcept {
  void const* const previous = core::detail::NPreviousValue::Find(&m_block->image);
  return previous == nullptr ? m_block->image : *static_cast<ImageReference const*>(previous);
}

void NEnvironmentMap::SetImage(ImageReference const& image) {
  ImageReference const previous = m_block->image;
  m_block->image = image;
  core::detail::NPreviousValue const listed(&m_block->image, &previous);
  NotifyObservers([&](NEnvironmentMapListener& listener) { listener.SignalImageChange(*this); });
}

boost::intrusive_ptr<NEnvironmentMapTransform const> NEnvironmentMap::GetTransform() const {
  return m_block->transform;
}

void NEnvironmentMap::SetTransform(NEnvironmentMapTransform const& transform) {
  m_block->transform = &transform;
}

NEnvironmentMapListener::~NEnvironmentMapListener() = default;

NEnvironmentMapTransform::~NEnvironmentMapTransform() = default;

}  // namespace corvanta::data::environment_map
