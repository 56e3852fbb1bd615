#include "corvanta/platform/picture_header.h"

#include <algorithm>
#include <limits>
#include <string_view>
#include <utility>
#include <vector>

namespace corvanta::platform {

namespace {

using Claim = std::optional<NPictureClaim>;

// The bytes of a file at any place, read in windows.
class Bytes {
 public:
  Bytes(std::FILE& file, std::uint64_t length) : m_file(file), m_length(length) {}

  bool Has(std::uint64_t at, std::uint64_t count) const {
    return at <= m_length && m_length - at >= count;
  }

  // 0 past the end; the callers ask Has where that matters.
  unsigned operator[](std::uint64_t at) {
    if (at - m_begin >= m_window.size() && !Load(at)) return 0;
    return m_window[static_cast<std::size_t>(at - m_begin)];
  }

  // The next place from `at` on with that byte; the end if there is none.
  std::uint64_t Find(std::uint64_t at, unsigned char wanted) {
    for (; at < m_length; at = m_begin + m_window.size()) {
      if (at - m_begin >= m_window.size() && !Load(at)) break;
      auto const from = m_window.begin() + static_cast<std::ptrdiff_t>(at - m_begin);
      auto const found = std::find(from, m_window.end(), wanted);
      if (found != m_window.end())
        return m_begin + static_cast<std::uint64_t>(found - m_window.begin());
    }
    return m_length;
  }

  std::uint32_t Big(std::uint64_t at, int count) {
    std::uint32_t value = 0;
    for (int i = 0; i < count; ++i) value = value << 8 | (*this)[at + static_cast<unsigned>(i)];
    return value;
  }

  std::uint32_t Little(std::uint64_t at, int count) {
    std::uint32_t value = 0;
    for (int i = count - 1; i >= 0; --i)
      value = value << 8 | (*this)[at + static_cast<unsigned>(i)];
    return value;
  }

 private:
  bool Load(std::uint64_t at) {
    constexpr std::size_t kWindow = 16 * 1024;
    if (at >= m_length) return false;
    m_begin = at;
    m_window.resize(kWindow);
    bool const sought = fseeko(&m_file, static_cast<off_t>(at), SEEK_SET) == 0;
    m_window.resize(sought ? std::fread(m_window.data(), 1, kWindow, &m_file) : 0);
    // Somebody has cut the file short: that isn't found out again for each byte.
    if (m_window.empty()) m_length = at;
    return !m_window.empty();
  }

  std::FILE& m_file;
  std::uint64_t m_length;
  std::uint64_t m_begin = 0;
  std::vector<unsigned char> m_window;
};

Claim PeekPng(Bytes& bytes) {
  constexpr std::uint32_t kPerPixel[] = {1, 0, 3, 1, 4, 0, 4, 0};
  constexpr std::uint32_t kHeader = 0x49484452;  // "IHDR"
  if (!bytes.Has(8, 25) || bytes.Big(12, 4) != kHeader) return std::nullopt;
  return NPictureClaim{bytes.Big(16, 4), bytes.Big(20, 4), kPerPixel[bytes[25] & 7] * bytes[24]};
}

// What the chunks with packed text and profiles unpack to, at most: the decoder unpacks them whole.
std::uint64_t CountPngText(Bytes& bytes) {
  constexpr std::uint64_t kMostRatio = 1032;
  constexpr std::uint32_t kPacked[] = {0x7a545874, 0x69545874, 0x69434350};  // zTXt, iTXt, iCCP
  std::uint64_t count = 0;
  for (std::uint64_t at = 8; bytes.Has(at, 12); at += 12 + std::uint64_t{bytes.Big(at, 4)}) {
    if (std::ranges::find(kPacked, bytes.Big(at + 4, 4)) != std::end(kPacked))
      count += kMostRatio * bytes.Big(at, 4);
  }
  return count;
}

enum JpegMarker : unsigned { kJpegEnd = 0xd9, kJpegScan = 0xda };

bool IsJpegFrame(unsigned code) {
  return code >= 0xc0 && code <= 0xcf && code != 0xc4 && code != 0xc8 && code != 0xcc;
}

// The next marker with content from `at` on, and its code; false at the end of the picture.
bool FindJpegMarker(Bytes& bytes, std::uint64_t& at, unsigned& code) {
  for (at = bytes.Find(at, 0xff); bytes.Has(at, 4); at = bytes.Find(at + 1, 0xff)) {
    code = bytes[at + 1];
    if (code == kJpegEnd) return false;
    if (HasJpegContent(code)) return true;
  }
  return false;
}

std::uint64_t GetJpegSegmentEnd(Bytes& bytes, std::uint64_t at) {
  return at + 2 + bytes.Big(at + 2, 2);
}

Claim PeekJpeg(Bytes& bytes) {
  unsigned code = 0;
  for (std::uint64_t at = 2; FindJpegMarker(bytes, at, code); at = GetJpegSegmentEnd(bytes, at)) {
    if (code == kJpegScan) break;
    if (!IsJpegFrame(code) || !bytes.Has(at, 10)) continue;
    std::uint32_t const components = bytes[at + 9] == 1 ? 1 : std::max(3u, bytes[at + 9]);
    return NPictureClaim{bytes.Big(at + 7, 2), bytes.Big(at + 5, 2), components * 8};
  }
  return std::nullopt;
}

// One for a file whose first scan holds all that there is.
std::uint32_t CountJpegScans(Bytes& bytes) {
  std::uint32_t scans = 0;
  unsigned code = 0, components = 0;
  bool isProgressive = false;
  for (std::uint64_t at = 2; FindJpegMarker(bytes, at, code); at = GetJpegSegmentEnd(bytes, at)) {
    if (IsJpegFrame(code)) {
      components = bytes[at + 9];
      isProgressive = (code & 3) == 2;
    } else if (code == kJpegScan) {
      ++scans;
      if (!isProgressive && bytes[at + 4] >= components) break;
    }
  }
  return std::max(scans, 1u);
}

Claim PeekBmp(Bytes& bytes) {
  constexpr std::uint32_t kOldHeader = 12;
  if (!bytes.Has(0, 26)) return std::nullopt;
  if (bytes.Little(14, 4) == kOldHeader)
    return NPictureClaim{bytes.Little(18, 2), bytes.Little(20, 2), bytes.Little(24, 2)};
  auto const side = [&bytes](std::uint64_t at) {
    std::uint32_t const value = bytes.Little(at, 4);
    return static_cast<std::int32_t>(value) < 0 ? 0 - value : value;
  };
  return NPictureClaim{side(18), side(22), bytes.Little(28, 2)};
}

Claim PeekGif(Bytes& bytes) {
  constexpr unsigned kTablePresent = 0x80;
  auto const tableBytes = [](unsigned flags) {
    return flags & kTablePresent ? 3U << ((flags & 7) + 1) : 0U;
  };
  if (!bytes.Has(0, 13)) return std::nullopt;
  std::uint64_t at = 13 + tableBytes(bytes[10]);
  while (bytes.Has(at, 2) && bytes[at] == '!') {
    at += 2;  // an extension: its label, then blocks up to an empty one
    while (bytes.Has(at, 1) && bytes[at] != 0) at += bytes[at] + 1U;
    ++at;
  }
  if (!bytes.Has(at, 10) || bytes[at] != ',') return std::nullopt;
  return NPictureClaim{bytes.Little(at + 5, 2), bytes.Little(at + 7, 2)};
}

Claim PeekWbmp(Bytes& bytes) {
  if (!bytes.Has(0, 4) || bytes[0] != 0 || (bytes[1] & 0x80) != 0) return std::nullopt;
  std::uint64_t at = 2;
  std::uint32_t sides[2] = {0, 0};
  for (std::uint32_t& side : sides) {
    for (bool more = true; more; ++at) {
      if (!bytes.Has(at, 1) || side >= 1U << 24) return std::nullopt;
      side = side << 7 | (bytes[at] & 0x7f);
      more = (bytes[at] & 0x80) != 0;
    }
  }
  return NPictureClaim{sides[0], sides[1], 1};
}

// Every component counts as if it had the grid's size: so it is unpacked.
Claim PeekCodestream(Bytes& bytes, std::uint64_t at) {
  constexpr std::uint32_t kStartAndSize = 0xff4fff51;
  if (!bytes.Has(at, 45) || bytes.Big(at, 4) != kStartAndSize) return std::nullopt;
  std::uint32_t const right = bytes.Big(at + 8, 4), bottom = bytes.Big(at + 12, 4);
  std::uint32_t const left = bytes.Big(at + 16, 4), top = bytes.Big(at + 20, 4);
  if (left >= right || top >= bottom) return std::nullopt;
  std::uint32_t const depth = (bytes[at + 42] & 0x7f) < 8 ? 8 : 16;
  return NPictureClaim{right - left, bottom - top, bytes.Big(at + 40, 2) * depth};
}

Claim PeekJp2(Bytes& bytes) {
  constexpr std::uint32_t kCodestream = 0x6a703263;  // "jp2c"
  std::uint64_t at = 0;
  while (bytes.Has(at, 8)) {
    std::uint64_t length = bytes.Big(at, 4);
    std::uint64_t const header = length == 1 ? 16 : 8;
    if (bytes.Big(at + 4, 4) == kCodestream) return PeekCodestream(bytes, at + header);
    if (length == 1) length = bytes.Big(at + 8, 4) == 0 ? bytes.Big(at + 12, 4) : 0;
    if (length < header) break;
    at += length;
  }
  return std::nullopt;
}

// The texts of an attribute end with a zero; an empty one is a header's end.
std::string ReadText(Bytes& bytes, std::uint64_t& at) {
  constexpr std::size_t kMost = 255;
  std::string text;
  while (bytes.Has(at, 1) && bytes[at] != 0 && text.size() < kMost)
    text += static_cast<char>(bytes[at++]);
  ++at;
  return text;
}

struct ExrHeader {
  std::uint64_t width = 0;
  std::uint64_t height = 0;
  std::uint64_t tileWidth = 1;  // of scan lines alone: of no account
  std::uint64_t tileHeight = 1;
  bool isTiled = false;
  std::uint32_t channels = 0;
};

// Reads one header and moves `at` behind it; false if it isn't whole. The largest of what it says
// counts.
bool ReadExrHeader(Bytes& bytes, std::uint64_t& at, ExrHeader& header) {
  for (std::string name = ReadText(bytes, at); !name.empty(); name = ReadText(bytes, at)) {
    std::string const type = ReadText(bytes, at);
    std::uint32_t const length = bytes.Little(at, 4);
    at += 4;
    if (!bytes.Has(at, length)) return false;
    if (type == "box2i" && name == "dataWindow" && length == 16) {
      auto const side = [&](unsigned low) {
        std::int64_t const from = static_cast<std::int32_t>(bytes.Little(at + low, 4));
        std::int64_t const to = static_cast<std::int32_t>(bytes.Little(at + low + 8, 4));
        return to < from ? std::uint64_t{0} : static_cast<std::uint64_t>(to - from) + 1;
      };
      header.width = std::max(header.width, side(0));
      header.height = std::max(header.height, side(4));
    } else if (type == "chlist") {
      constexpr std::uint64_t kEntry = 16;  // behind each name
      std::uint64_t entry = at;
      while (entry < at + length && !ReadText(bytes, entry).empty()) {
        entry += kEntry;
        ++header.channels;
      }
    } else if (type == "tiledesc" && length == 9) {
      header.isTiled = true;
      header.tileWidth = bytes.Little(at, 4);
      header.tileHeight = bytes.Little(at + 4, 4);
    }
    at += length;
  }
  return bytes.Has(at, 0);
}

// Only of files of one part whose header is whole and whose tiles could be in the file: the decoder
// takes memory for its tables before it looks.
Claim PeekExr(Bytes& bytes, std::uint64_t fileLength) {
  constexpr std::uint32_t kMagic = 20000630;
  constexpr std::uint32_t kSeveralParts = 0x1000;
  ExrHeader header;
  std::uint64_t at = 8;
  if (!bytes.Has(0, 8) || bytes.Little(0, 4) != kMagic ||
      (bytes.Little(4, 4) & kSeveralParts) != 0 || !ReadExrHeader(bytes, at, header) ||
      header.width == 0 || header.height == 0 || header.tileWidth == 0 || header.tileHeight == 0)
    return std::nullopt;
  std::uint64_t const tiles =
      ((header.width - 1) / header.tileWidth + 1) * ((header.height - 1) / header.tileHeight + 1);
  constexpr std::uint64_t kTileEntry = 8;
  if (header.isTiled && tiles > fileLength / kTileEntry) return std::nullopt;
  std::uint32_t const bits = 32 * (header.channels == 1 ? 1 : std::clamp(header.channels, 3u, 4u));
  return NPictureClaim{
      static_cast<std::uint32_t>(std::min<std::uint64_t>(header.width, UINT32_MAX)),
      static_cast<std::uint32_t>(std::min<std::uint64_t>(header.height, UINT32_MAX)), bits};
}

Claim PeekSgi(Bytes& bytes) {
  if (!bytes.Has(0, 12)) return std::nullopt;
  std::uint32_t const components = std::clamp(bytes.Big(10, 2), 1u, 4u);
  return NPictureClaim{bytes.Big(6, 2), bytes.Big(8, 2), 8 * components * bytes[3]};
}

// Saturating: what is beyond every limit may be anything.
std::uint64_t Multiply(std::uint64_t left, std::uint64_t right) {
  std::uint64_t product = 0;
  return __builtin_mul_overflow(left, right, &product) ? UINT64_MAX : product;
}

}  // namespace

std::uint64_t NPictureClaim::GetBytes() const {
  constexpr std::uint64_t kBitsPerWord = 32, kWord = 4;
  std::uint64_t const row = Multiply(width, bits);
  std::uint64_t const rows = Multiply(row / kBitsPerWord + (row % kBitsPerWord != 0), kWord);
  std::uint64_t const pixels = Multiply(rows, height);
  return pixels > UINT64_MAX - otherBytes ? UINT64_MAX : pixels + otherBytes;
}

bool HasJpegContent(unsigned code) {
  constexpr unsigned kTables[] = {0xc4, 0xcc, 0xda, 0xdb, 0xdc, 0xdd, 0xfe};
  return IsJpegFrame(code) || code == 0xc8 || (code >= 0xe0 && code <= 0xef) ||
         std::ranges::find(kTables, code) != std::end(kTables);
}

NPictureFormat JudgeContent(std::FILE& file) {
  using namespace std::string_view_literals;
  constexpr std::pair<std::string_view, NPictureFormat> kBegins[] = {
      {"\x89PNG\r\n\x1a\n"sv, PF_PNG},
      {"\xff\xd8\xff"sv, PF_JPEG},
      {"BM"sv, PF_BMP},
      {"GIF8"sv, PF_GIF},
      {"DDS "sv, PF_DDS},
      {"\x01\xda"sv, PF_SGI},
      {"\x76\x2f\x31\x01"sv, PF_EXR},
      {"\xff\x4f\xff\x51"sv, PF_J2K},
      {"\0\0\0\x0cjP  \r\n\x87\n"sv, PF_JP2}};
  char begin[12];
  std::rewind(&file);
  std::string_view const text(begin, std::fread(begin, 1, sizeof begin, &file));
  for (auto const& [wanted, format] : kBegins)
    if (text.starts_with(wanted)) return format;
  return PF_UNKNOWN;
}

std::optional<NPictureClaim> PeekClaim(NPictureFormat format, std::FILE& file,
                                       std::uint64_t length) {
  Bytes bytes(file, length);
  switch (static_cast<int>(format)) {
    case PF_PNG:
      return PeekPng(bytes);
    case PF_JPEG:
      return PeekJpeg(bytes);
    case PF_BMP:
      return PeekBmp(bytes);
    case PF_GIF:
      return PeekGif(bytes);
    case PF_DDS:
      return bytes.Has(0, 20) ? Claim({bytes.Little(16, 4), bytes.Little(12, 4), 32})
                              : std::nullopt;
    case PF_SGI:
      return PeekSgi(bytes);
    case PF_WBMP:
      return PeekWbmp(bytes);
    case PF_EXR:
      return PeekExr(bytes, length);
    case PF_J2K:
      return PeekCodestream(bytes, 0);
    case PF_JP2:
      return PeekJp2(bytes);
    default:
      return std::nullopt;
  }
}

void AddWork(NPictureFormat format, std::FILE& file, std::uint64_t length, NPictureClaim& claim) {
  Bytes bytes(file, length);
  if (format == PF_PNG) claim.otherBytes = CountPngText(bytes);
  if (format == PF_JPEG) claim.scans = CountJpegScans(bytes);
}

std::string JudgeClaim(NPictureClaim const& claim, std::uint64_t length,
                       NPictureLimits const& limits) {
  if (claim.width == 0 || claim.height == 0) return "it has no pixels";
  if (Multiply(claim.width, claim.height) > limits.pixels)
    return std::to_string(claim.width) + " x " + std::to_string(claim.height) +
           " pixels are too many";
  std::uint64_t const bytes = claim.GetBytes();
  if (bytes > GetMostBytes(limits)) return "decoded it would be too large";
  std::uint64_t const times = (claim.scans - 1) / std::max(limits.scans, 1u) + 1;
  if (Multiply(bytes, times) > GetMostBytes(limits)) return "it has too many scans";
  if (bytes > std::max(Multiply(length, limits.ratio), limits.freeBytes))
    return "it claims more than a file of its length holds";
  return {};
}

std::uint64_t GetMostBytes(NPictureLimits const& limits) {
  return std::min<std::uint64_t>(limits.bytes, std::numeric_limits<std::uint32_t>::max());
}

}  // namespace corvanta::platform
