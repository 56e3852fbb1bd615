#include <sys/stat.h>

#include <optional>
#include <vector>

#include "corvanta/platform/convert.h"
#include "corvanta/platform/decode_here.h"
#include "corvanta/platform/decoder_client.h"
#include "corvanta/platform/file.h"
#include "corvanta/platform/picture_header.h"
#include "corvanta/platform/shared_memory.h"

namespace corvanta::platform {

namespace {

// The length of an open regular file.
std::optional<std::uint64_t> GetLength(std::FILE* file) {
  struct stat status;
  if (!file || fstat(fileno(file), &status) != 0) return std::nullopt;
  return static_cast<std::uint64_t>(status.st_size);
}

bool Write(int to, void const* bytes, std::size_t length) {
  auto const* at = static_cast<unsigned char const*>(bytes);
  while (length != 0) {
    ssize_t const count = write(to, at, length);
    if (count <= 0) return false;
    at += count;
    length -= static_cast<std::size_t>(count);
  }
  return lseek(to, 0, SEEK_SET) == 0;
}

}  // namespace

std::unique_ptr<NPicture const> LoadPicture(std::wstring const& path, std::string* reason) {
  std::string unused;
  std::string& why = reason ? *reason : unused;
  std::unique_ptr<NPicture const> picture;
  NFile const file = OpenFile(path);
  std::optional<std::uint64_t> const length = GetLength(file.get());
  if (!length) {
    why = "the file can't be opened";
    return nullptr;
  }
  NDecoderOutcome const outcome =
      AskForPicture(fileno(file.get()), ToNarrow(path), *length, picture, why);
  if (outcome != kDecoderUnavailable) return picture;
  std::vector<unsigned char> bytes;
  if (*length <= GetMostBytes(GetPictureLimits()) && ReadFile(path, bytes))
    return DecodeHere(std::move(bytes), why);
  why = "the file is too large or can't be read";
  return nullptr;
}

std::unique_ptr<NPicture const> DecodePicture(void const* bytes, std::size_t length,
                                              std::wstring const& name, std::string* reason) {
  std::string unused;
  std::string& why = reason ? *reason : unused;
  std::unique_ptr<NPicture const> picture;
  NDescriptor const file(length != 0 ? CreateSharedMemory(length) : NDescriptor());
  if (!file || !Write(file.Get(), bytes, length)) {
    why = length != 0 ? "there is no shared memory" : "the file is empty";
    return nullptr;
  }
  if (AskForPicture(file.Get(), ToNarrow(name), length, picture, why) != kDecoderUnavailable)
    return picture;
  auto const* const begin = static_cast<unsigned char const*>(bytes);
  return DecodeHere({begin, begin + length}, why);
}

bool GetPictureSize(std::wstring const& path, unsigned int& width, unsigned int& height) {
  NFile const file = OpenFile(path);
  std::optional<std::uint64_t> const length = GetLength(file.get());
  if (!length) return false;
  NPictureFormat const format = JudgeContent(*file);
  std::optional<NPictureClaim> claim = PeekClaim(format, *file, *length);
  NDecodeAnswer answer;
  std::string reason;
  if (!claim && AskForSize(fileno(file.get()), ToNarrow(path), answer, reason) == kDecoderAnswered)
    claim = NPictureClaim{answer.width, answer.height};
  if (!claim || claim->width == 0 || claim->height == 0) return false;
  width = claim->width;
  height = claim->height;
  return true;
}

}  // namespace corvanta::platform
