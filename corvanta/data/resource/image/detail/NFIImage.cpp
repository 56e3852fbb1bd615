#include "corvanta/data/resource/image/detail/NFIImage.h"

#include "corvanta/data/resource/image/detail/NFIImageError.h"
#include "corvanta/platform/picture.h"

namespace corvanta::data::resource::image::detail {

NFIImage::NFIImage(core::uri::NPath const& path)
    : m_picture(platform::LoadPicture(path.ToString())) {
  if (!m_picture) throw NFIImageError();
}

NFIImage::~NFIImage() = default;

void const* NFIImage::GetDataImpl() const { return m_picture->GetInfoHeader(); }

unsigned int NFIImage::GetDataByteLengthImpl() const { return m_picture->GetByteLength(); }

}  // namespace corvanta::data::resource::image::detail
