#include "corvanta/platform/picture_size.h"

#include <algorithm>
#include <cstdint>
#include <string>

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
  for (int i = 0; i < count; ++i) value = value << 8 | (Has(bytes, at + i, 1) ? bytes[at + i] : 0U);
  return value;
}

std::uint32_t ReadLittle(Bytes const& bytes, std::uint64_t at, int count) {
  std::uint32_t value = 0;
  for (int i = count - 1; i >= 0; --i)
    value = value << 8 | (Has(bytes, at + i, 1) ? bytes[at + i] : 0U);
  return value;
}

Size PeekGif(Bytes const& bytes) {
  constexpr unsigned kTablePresent = 0x80;
  auto const tableBytes = [](unsigned flags) {
    return flags & kTablePresent ? 3U << ((flags & 7) + 1) : 0U;
  };
  if (!Has(bytes, 0, 13)) return std::nullopt;
  std::size_t at = 13 + tableBytes(bytes[10]);
  while (Has(bytes, at, 2) && bytes[at] == '!') {
    at += 2;  // an extension: its label, then blocks up to an empty one
    while (Has(bytes, at, 1) && bytes[at] != 0) at += bytes[at] + 1U;
    ++at;
  }
  if (!Has(bytes, at, 10) || bytes[at] != ',') return std::nullopt;
  return NPictureSize{ReadLittle(bytes, at + 5, 2), ReadLittle(bytes, at + 7, 2)};
}

Size PeekWbmp(Bytes const& bytes) {
  if (!Has(bytes, 0, 4) || bytes[0] != 0 || (bytes[1] & 0x80) != 0) return std::nullopt;
  std::size_t at = 2;
  std::uint32_t sides[2] = {0, 0};
  for (std::uint32_t& side : sides) {
    for (bool more = true; more; ++at) {
      if (!Has(bytes, at, 1) || side >= 1U << 24) return std::nullopt;
      side = side << 7 | (bytes[at] & 0x7fU);
      more = (bytes[at] & 0x80) != 0;
    }
  }
  return NPictureSize{sides[0], sides[1]};
}

Size PeekCodestream(Bytes const& bytes, std::uint64_t at) {
  constexpr std::uint32_t kStartAndSize = 0xff4fff51;
  if (!Has(bytes, at, 16) || ReadBig(bytes, at, 4) != kStartAndSize) return std::nullopt;
  return NPictureSize{ReadBig(bytes, at + 8, 4), ReadBig(bytes, at + 12, 4)};
}

Size PeekJp2(Bytes const& bytes) {
  constexpr std::uint32_t kCodestream = 0x6a703263;  // "jp2c"
  std::uint64_t at = 0;
  while (Has(bytes, at, 8)) {
    std::uint64_t length = ReadBig(bytes, at, 4);
    std::uint64_t const header = length == 1 ? 16 : 8;
    if (ReadBig(bytes, at + 4, 4) == kCodestream) return PeekCodestream(bytes, at + header);
    if (length == 1) length = ReadBig(bytes, at + 8, 4) == 0 ? ReadBig(bytes, at + 12, 4) : 0;
    if (length < header) break;
    at += length;
  }
  return std::nullopt;
}

// The texts of an attribute end with a zero; an empty one is a header's end.
std::string ReadText(Bytes const& bytes, std::uint64_t& at) {
  std::string text;
  while (Has(bytes, at, 1) && bytes[at] != 0) text += static_cast<char>(bytes[at++]);
  ++at;
  return text;
}

struct ExrHeader {
  std::uint64_t width = 0;
  std::uint64_t height = 0;
  std::uint64_t tileWidth = 1;  // of scan lines alone: of no account
  std::uint64_t tileHeight = 1;
  bool isTiled = false;
};

// Reads one header and moves `at` behind it; false if it isn't whole. The largest of what it says
// counts.
bool ReadExrHeader(Bytes const& bytes, std::uint64_t& at, ExrHeader& header) {
  for (std::string name = ReadText(bytes, at); !name.empty(); name = ReadText(bytes, at)) {
    std::string const type = ReadText(bytes, at);
    std::uint32_t const length = ReadLittle(bytes, at, 4);
    at += 4;
    if (!Has(bytes, at, length)) return false;
    if (type == "box2i" && name == "dataWindow" && length == 16) {
      auto const side = [&](int low) {
        std::int64_t const from = static_cast<std::int32_t>(ReadLittle(bytes, at + low, 4));
        std::int64_t const to = static_cast<std::int32_t>(ReadLittle(bytes, at + low + 8, 4));
        return to < from ? std::uint64_t{0} : static_cast<std::uint64_t>(to - from) + 1;
      };
      header.width = std::max(header.width, side(0));
      header.height = std::max(header.height, side(4));
    } else if (type == "tiledesc" && length == 9) {
      header.isTiled = true;
      header.tileWidth = ReadLittle(bytes, at, 4);
      header.tileHeight = ReadLittle(bytes, at + 4, 4);
    }
    at += length;
  }
  return Has(bytes, at, 0);
}

// Only of files of one part whose header is whole and whose tiles could be in the file: the decoder
// takes memory for its tables before it looks.
Size PeekExr(Bytes const& bytes, std::uint64_t fileLength) {
  constexpr std::uint32_t kMagic = 20000630;
  constexpr std::uint32_t kSeveralParts = 0x1000;
  ExrHeader header;
  std::uint64_t at = 8;
  if (!Has(bytes, 0, 8) || ReadLittle(bytes, 0, 4) != kMagic ||
      (ReadLittle(bytes, 4, 4) & kSeveralParts) != 0 || !ReadExrHeader(bytes, at, header) ||
      header.width == 0 || header.height == 0 || header.tileWidth == 0 || header.tileHeight == 0)
    return std::nullopt;
  std::uint64_t const tiles =
      ((header.width - 1) / header.tileWidth + 1) * ((header.height - 1) / header.tileHeight + 1);
  constexpr std::uint64_t kTileEntry = 8;
  if (header.isTiled && tiles > fileLength / kTileEntry) return std::nullopt;
  return NPictureSize{
      static_cast<unsigned int>(std::min<std::uint64_t>(header.width, UINT32_MAX)),
      static_cast<unsigned int>(std::min<std::uint64_t>(header.height, UINT32_MAX))};
}

}  // namespace

std::optional<NPictureSize> PeekSize(NPictureFormat format, std::vector<unsigned char> const& bytes,
                                     std::uint64_t fileLength) {
  switch (static_cast<int>(format)) {
    case PF_GIF:
      return PeekGif(bytes);
    case PF_DDS:
      return Has(bytes, 0, 20) ? Size({ReadLittle(bytes, 16, 4), ReadLittle(bytes, 12, 4)})
                               : std::nullopt;
    case PF_SGI:
      return Has(bytes, 0, 10) ? Size({ReadBig(bytes, 6, 2), ReadBig(bytes, 8, 2)}) : std::nullopt;
    case PF_WBMP:
      return PeekWbmp(bytes);
    case PF_EXR:
      return PeekExr(bytes, fileLength);
    case PF_J2K:
      return PeekCodestream(bytes, 0);
    case PF_JP2:
      return PeekJp2(bytes);
    default:
      return std::nullopt;
  }
}

}  // namespace corvanta::platform
