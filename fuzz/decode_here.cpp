// Where a host forbids the decoding program, three formats are decoded in this process: a whole
// picture within the limits, no larger than its header claims, or a reason.
#include "corvanta/platform/limits.h"
#include "corvanta/platform/picture_header.h"
#include "fuzz/images.h"
#include "fuzz/support.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace corvanta;
  static platform::NPictureLimits const limits = [] {
    platform::NPictureLimits made;
    made.bytes = 4 << 20;
    made.freeBytes = 1 << 20;
    platform::SetPictureLimits(made);
    platform::SetDecoderProgramAllowed(false);
    return made;
  }();
  std::string reason;
  auto const picture = platform::DecodePicture(data, size, L"", &reason);
  fuzz::Require(picture != nullptr || !reason.empty(), "there is a reason where there is none");
  if (!picture) return 0;
  fuzz::Require(picture->GetByteLength() <= limits.bytes, "a picture is within the limits");
  fuzz::Head const head = fuzz::CheckPicture(*picture);
  fuzz::MemoryFile const memory({data, size});
  std::FILE* const file = fdopen(dup(memory.Get()), "rb");
  auto const claim = platform::PeekClaim(platform::JudgeContent(*file), *file, size);
  std::fclose(file);
  fuzz::Require(claim && claim->width == head.width && claim->height == head.height,
                "a picture is as large as its header claims");
  constexpr std::uint64_t kHead = 40 + 4 * 256 + 12;
  fuzz::Require(picture->GetByteLength() <= claim->GetBytes() + kHead,
                "a picture has no more bytes than its header claims");
  return 0;
}
