#include "corvanta/data/resource/image/detail/NFIImage.h"

#include "corvanta/data/error_code/error_code.h"
#include "corvanta/data/resource/image/detail/NFIImageError.h"
#include "corvanta/platform/picture.h"

namespace corvanta::data::resource::image::detail {

namespace {

std::unique_ptr<platform::NPicture const> Load(core::uri::NPath const& path) {
  std::string reason;
  auto picture = platform::LoadPicture(path.ToString(), &reason);
  if (!picture) throw NFIImageError(reason);
  return picture;
}

}  // namespace

NFIImage::NFIImage(core::uri::NPath const& path) : m_picture(Load(path)) {}

NFIImage::~NFIImage() = default;

void const* NFIImage::GetDataImpl() const { return m_picture->GetInfoHeader(); }

// The masks of a picture of 16 bits aren't in the count, as they never were: its header tells of
// them.
unsigned int NFIImage::GetDataByteLengthImpl() const {
  return m_picture->GetByteLength() - m_picture->GetMasksByteLength();
}

NFIImageError::~NFIImageError() = default;

wchar_t const* NFIImageError::GetErrorCodeImpl() const { return error_code::NE_FIIMAGE; }

}  // namespace corvanta::data::resource::image::detail
