#ifdef CORVANTA_WITH_FREEIMAGE

#include "corvanta/platform/decode_here.h"

#include <FreeImage.h>

#include <optional>

#include "corvanta/platform/decode_file.h"
#include "corvanta/platform/file.h"
#include "corvanta/platform/narrow_path.h"

namespace corvanta::platform {

namespace {

// A JPEG without the segments of cameras and editors, whose readers are written less carefully than
// that of the picture itself. The two that say how the colours are meant, and the density, stay.
void RemoveExtras(std::vector<unsigned char>& bytes) {
  constexpr unsigned kFirst = 0xe0, kLast = 0xef, kAdobe = 0xee, kComment = 0xfe, kScan = 0xda;
  std::size_t from = 2, to = 2;
  while (from + 4 <= bytes.size() && bytes[from] == 0xff && bytes[from + 1] != kScan) {
    unsigned const code = bytes[from + 1];
    if (code == 0xff || code < 0xc0) break;
    std::size_t const length = std::min<std::size_t>(
        2 + (std::size_t{bytes[from + 2]} << 8 | bytes[from + 3]), bytes.size() - from);
    bool const isExtra = (code > kFirst && code <= kLast && code != kAdobe) || code == kComment;
    if (!isExtra) {
      std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(from), length,
                  bytes.begin() + static_cast<std::ptrdiff_t>(to));
      to += length;
    }
    from += length;
  }
  bytes.erase(bytes.begin() + static_cast<std::ptrdiff_t>(to),
              bytes.begin() + static_cast<std::ptrdiff_t>(from));
}

}  // namespace

NPictureFormat GetFIFFromFilename(std::wstring const& path) {
  std::optional<std::string> const narrow = ToNarrowPath(path);
  return narrow ? static_cast<NPictureFormat>(FreeImage_GetFIFFromFilename(narrow->c_str()))
                : PF_UNKNOWN;
}

std::unique_ptr<NPicture const> DecodeHere(std::vector<unsigned char> bytes, std::string& reason) {
  NFile file(bytes.empty() ? nullptr : fmemopen(bytes.data(), bytes.size(), "rb"));
  NPictureFormat const format = file ? JudgeContent(*file) : PF_UNKNOWN;
  if (format == PF_JPEG) {
    RemoveExtras(bytes);
    file.reset(fmemopen(bytes.data(), bytes.size(), "rb"));
  }
  if (file && (format == PF_PNG || format == PF_JPEG || format == PF_BMP))
    return DecodeFile(format, *file, bytes.size(), GetPictureLimits(), {}, reason);
  reason += "; without it PNG, JPEG and BMP alone are decoded";
  return nullptr;
}

}  // namespace corvanta::platform

#endif
