// Whatever the bytes are, the decoding program gives a whole picture within the limits or a reason,
// and decodes a sound picture next. What takes that program down is no finding.
#include <algorithm>

#include "corvanta/platform/limits.h"
#include "fuzz/images.h"
#include "fuzz/support.h"

namespace corvanta::fuzz {
namespace {

using platform::NPicture;

constexpr std::uint64_t kMostBytes = 16 << 20;

platform::NPictureLimits GetLimits(unsigned milliseconds) {
  platform::NPictureLimits limits;
  limits.bytes = kMostBytes;
  limits.freeBytes = kMostBytes / 4;
  limits.milliseconds = limits.millisecondsBeyond = milliseconds;
  return limits;
}

// Formats that nothing but a name tells are tried one after the other.
std::unique_ptr<NPicture const> Decode(Bytes file, std::string& reason) {
  constexpr char kUnknown[] = "it isn't a picture of a known format";
  for (wchar_t const* const name : {L"", L"a.cut", L"a.wbmp", L"a.koa", L"a.tga"}) {
    reason.clear();
    auto picture = platform::DecodePicture(file.data(), file.size(), name, &reason);
    if (picture || reason != kUnknown) return picture;
  }
  return nullptr;
}

// A busy machine is given the time that it takes.
bool IsSoundPictureDecoded() {
  constexpr unsigned kMilliseconds = 60000;
  platform::SetPictureLimits(GetLimits(kMilliseconds));
  static constexpr std::uint8_t kSound[] = {'P', '5', ' ', '1', ' ', '1',
                                            ' ', '2', '5', '5', ' ', 7};
  std::string reason;
  return Decode(kSound, reason) != nullptr;
}

bool HasDecoder() {
#ifdef CORVANTA_WITH_FREEIMAGE
  return true;
#else
  return false;
#endif
}

}  // namespace
}  // namespace corvanta::fuzz

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace corvanta;
  static bool const isSound = fuzz::IsSoundPictureDecoded();
  fuzz::Require(isSound == fuzz::HasDecoder(), "there is a decoder");
  constexpr unsigned kMilliseconds = 300;
  platform::SetPictureLimits(fuzz::GetLimits(kMilliseconds));
  std::string reason;
  auto const picture = fuzz::Decode({data, size}, reason);
  fuzz::Require(picture == nullptr || picture->GetByteLength() <= fuzz::kMostBytes,
                "a picture is within the limits");
  fuzz::Require(picture != nullptr || !reason.empty(), "there is a reason where there is none");
  fuzz::Require(std::ranges::all_of(reason, [](char c) { return c >= ' ' && c <= '~'; }),
                "a reason is a line of text");
  if (picture) {
    fuzz::CheckPicture(*picture);
  } else {
    fuzz::Require(fuzz::IsSoundPictureDecoded() == fuzz::HasDecoder(), "the next one is decoded");
  }
  return 0;
}
