#include "corvanta/data/resource/image/detail/NFIImageError.h"

#include "corvanta/data/error_code/error_code.h"

namespace corvanta::data::resource::image::detail {

NFIImageError::~NFIImageError() = default;

wchar_t const* NFIImageError::GetErrorCodeImpl() const { return error_code::NE_FIIMAGE; }

}  // namespace corvanta::data::resource::image::detail
