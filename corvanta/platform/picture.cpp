#include "corvanta/platform/picture.h"

#include <cstdint>
#include <cstring>

namespace corvanta::platform {

NPicture::~NPicture() = default;

unsigned int NPicture::GetMasksByteLength() const {
  constexpr std::size_t kBits = 14, kCompression = 16;
  auto const* const header = static_cast<unsigned char const*>(GetInfoHeader());
  std::uint16_t bits = 0;
  std::uint32_t compression = 0;
  std::memcpy(&bits, header + kBits, sizeof bits);
  std::memcpy(&compression, header + kCompression, sizeof compression);
  constexpr std::uint32_t kByMasks = 3;
  return bits == 16 && compression == kByMasks ? 12 : 0;
}

}  // namespace corvanta::platform
