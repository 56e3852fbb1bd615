#include "corvanta/data/resource/image/detail/NUnknownImage.h"

#include <limits>

#include "corvanta/core/error/NFileError.h"
#include "corvanta/platform/file.h"

namespace corvanta::data::resource::image::detail {

NUnknownImage::NUnknownImage(core::uri::NPath const& path) {
  constexpr long long kMost = std::numeric_limits<unsigned int>::max();
  if (platform::GetFileSize(path.ToString()) > kMost ||
      !platform::ReadFile(path.ToString(), m_bytes) ||
      m_bytes.size() > static_cast<std::size_t>(kMost))
    throw core::error::NFileError();
}

NUnknownImage::~NUnknownImage() = default;

}  // namespace corvanta::data::resource::image::detail
