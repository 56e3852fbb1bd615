#include "corvanta/data/environment_map/NEnvironmentMap.h"

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

void NEnvironmentMap::SetImageType(NEnvironmentMapImageType type) {
  m_block->type = type;
  NotifyObservers(
      [&](NEnvironmentMapListener& listener) { listener.SignalImageTypeChange(*this); });
}

boost::intrusive_ptr<domain::image::NImageNode> NEnvironmentMap::GetImage() const {
  return m_block->image.Get();
}

ImageReference const& NEnvironmentMap::GetImageRef() const { return m_block->image; }

void NEnvironmentMap::SetImage(ImageReference const& image) {
  m_block->image = image;
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
