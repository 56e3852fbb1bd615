#include "corvanta/platform/picture_size.h"

#include <algorithm>
#include <cstdint>
#include <string_view>

namespace corvanta::platform {

namespace {

using Bytes = std::vector<unsigned char>;
using Size = std::optional<NPictureSize>;

bool Has(Bytes const& bytes, std::uint64_t at, std::size_t count) {
  return at <= bytes.size() && bytes.size() - at >= count;
}

// Reads past the end as zeros; the callers ask Has where that matters.
std::uint32_t ReadBig(Bytes const& bytes, std::uint64_t at, int count) {
  std::uint32_t value = 0;
  for (int i = 0; i < count; ++i) {
    value = value << 8 | (Has(bytes, at + i, 1) ? bytes[at + i] : 0U);
  }
  return value;
}

std::uint32_t ReadLittle(Bytes const& bytes, std::uint64_t at, int count) {
  std::uint32_t value = 0;
  for (int i = count - 1; i >= 0; --i) {
    value = value << 8 | (Has(bytes, at + i, 1) ? bytes[at + i] : 0U);
  }
  return value;
}

Size PeekGif(Bytes const& bytes) {
  constexpr unsigned kTablePresent = 0x80;
  auto const tableBytes = [](unsigned flags) {
    return flags & kTablePresent ? 3U << ((flags & 7) + 1) : 0U;
  };
  if (!Has(bytes, 0, 13)) {
    return std::nullopt;
  }
  std::size_t at = 13 + tableBytes(bytes[10]);
  while (Has(bytes, at, 2) && bytes[at] == '!') {
    at += 2;  // an extension: its label, then blocks up to an empty one
    while (Has(bytes, at, 1) && bytes[at] != 0) {
      at += bytes[at] + 1U;
    }
    ++at;
  }
  if (!Has(bytes, at, 10) || bytes[at] != ',') {
    return std::nullopt;
  }
  return NPictureSize{ReadLittle(bytes, at + 5, 2), ReadLittle(bytes, at + 7, 2)};
}

// The largest header: the decoder takes any that it comes to.
Size PeekIff(Bytes const& bytes) {
  constexpr std::string_view kHeader = "BMHD";
  Size largest;
  for (auto at = bytes.begin();; ++at) {
    at = std::search(at, bytes.end(), kHeader.begin(), kHeader.end());
    if (at == bytes.end()) {
      return largest;
    }
    auto const offset = static_cast<std::size_t>(at - bytes.begin());
    NPictureSize const before = largest.value_or(NPictureSize{});
    largest = {std::max(before.width, ReadBig(bytes, offset + 8, 2)),
               std::max(before.height, ReadBig(bytes, offset + 10, 2))};
  }
}

Size PeekWbmp(Bytes const& bytes) {
  if (!Has(bytes, 0, 4) || bytes[0] != 0 || (bytes[1] & 0x80) != 0) {
    return std::nullopt;
  }
  std::size_t at = 2;
  std::uint32_t sides[2] = {0, 0};
  for (std::uint32_t& side : sides) {
    for (bool more = true; more; ++at) {
      if (!Has(bytes, at, 1) || side >= 1U << 24) {
        return std::nullopt;
      }
      side = side << 7 | (bytes[at] & 0x7fU);
      more = (bytes[at] & 0x80) != 0;
    }
  }
  return NPictureSize{sides[0], sides[1]};
}

Size PeekCodestream(Bytes const& bytes, std::uint64_t at) {
  constexpr std::uint32_t kStartAndSize = 0xff4fff51;
  if (!Has(bytes, at, 16) || ReadBig(bytes, at, 4) != kStartAndSize) {
    return std::nullopt;
  }
  return NPictureSize{ReadBig(bytes, at + 8, 4), ReadBig(bytes, at + 12, 4)};
}

Size PeekJp2(Bytes const& bytes) {
  constexpr std::uint32_t kCodestream = 0x6a703263;  // "jp2c"
  std::uint64_t at = 0;
  while (Has(bytes, at, 8)) {
    std::uint64_t length = ReadBig(bytes, at, 4);
    std::uint64_t const header = length == 1 ? 16 : 8;
    if (ReadBig(bytes, at + 4, 4) == kCodestream) {
      return PeekCodestream(bytes, at + header);
    }
    if (length == 1) {
      length = ReadBig(bytes, at + 8, 4) == 0 ? ReadBig(bytes, at + 12, 4) : 0;
    }
    if (length < header) {
      break;
    }
    at += length;
  }
  return std::nullopt;
}

}  // namespace

std::optional<NPictureSize> PeekSize(NPictureFormat format,
                                     std::vector<unsigned char> const& bytes) {
  switch (static_cast<int>(format)) {
    case PF_GIF:
      return PeekGif(bytes);
    case PF_DDS:
      return Has(bytes, 0, 20) ? Size({ReadLittle(bytes, 16, 4), ReadLittle(bytes, 12, 4)})
                               : std::nullopt;
    case PF_SGI:
      return Has(bytes, 0, 10) ? Size({ReadBig(bytes, 6, 2), ReadBig(bytes, 8, 2)}) : std::nullopt;
    case PF_IFF:
      return PeekIff(bytes);
    case PF_WBMP:
      return PeekWbmp(bytes);
    case PF_J2K:
      return PeekCodestream(bytes, 0);
    case PF_JP2:
      return PeekJp2(bytes);
    default:
      return std::nullopt;
  }
}

}  // namespace corvanta::platform
