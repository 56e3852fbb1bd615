#ifdef CORVANTA_WITH_FREEIMAGE

#include "corvanta/platform/decode_here.h"

#include <FreeImage.h>

#include <mutex>
#include <optional>

#include "corvanta/platform/decode_file.h"
#include "corvanta/platform/file.h"
#include "corvanta/platform/narrow_path.h"

namespace corvanta::platform {

namespace {

// A JPEG without the segments of cameras and editors, wherever they are, whose readers are written
// less carefully than that of the picture itself. The two that say how the colours are meant, and
// the density, stay.
void RemoveExtras(std::vector<unsigned char>& bytes) {
  constexpr unsigned kFirst = 0xe0, kLast = 0xef, kAdobe = 0xee, kComment = 0xfe;
  auto const begin = bytes.begin();
  auto const end = bytes.end();
  auto to = begin;
  for (auto from = begin; from != end;) {
    auto next = from + 1;
    if (*from == 0xff && end - from >= 4 && HasJpegContent(from[1])) {
      unsigned const code = from[1];
      std::ptrdiff_t const length = 2 + (from[2] << 8 | from[3]);
      next = from + std::min(std::max<std::ptrdiff_t>(length, 4), end - from);
      bool const isExtra = (code > kFirst && code <= kLast && code != kAdobe) || code == kComment;
      if (isExtra) from = next;
    }
    to = std::copy(from, next, to);
    from = next;
  }
  bytes.erase(to, end);
}

}  // namespace

NPictureFormat GetFIFFromFilename(std::wstring const& path) {
  std::optional<std::string> const narrow = ToNarrowPath(path);
  if (!narrow) return PF_UNKNOWN;
  // It takes its list of extensions apart with strtok, whose state is the process's.
  static std::mutex& mutex = *new std::mutex;
  std::lock_guard const lock(mutex);
  return static_cast<NPictureFormat>(FreeImage_GetFIFFromFilename(narrow->c_str()));
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
