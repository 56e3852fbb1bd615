// Whatever a picture file says of itself, reading it ends, gives the same twice, and a claim that
// passes is within the limits by exact arithmetic.
#include "corvanta/platform/picture_header.h"

#include "fuzz/support.h"

namespace corvanta::platform {
namespace {

using fuzz::Require;
__extension__ using Exact = unsigned __int128;

constexpr NPictureFormat kFormats[] = {PF_PNG, PF_JPEG, PF_BMP, PF_GIF, PF_DDS,
                                       PF_SGI, PF_WBMP, PF_EXR, PF_J2K, PF_JP2};

std::optional<NPictureClaim> Read(NPictureFormat format, std::FILE& file, std::uint64_t length) {
  auto claim = PeekClaim(format, file, length);
  if (claim) AddWork(format, file, length, *claim);
  return claim;
}

void CheckClaim(NPictureClaim const& claim, std::uint64_t length) {
  Exact const words = (Exact{claim.width} * claim.bits + 31) / 32;
  Exact const exact = words * 4 * claim.height + claim.otherBytes;
  Require(exact > UINT64_MAX ? claim.GetBytes() == UINT64_MAX : claim.GetBytes() == exact,
          "the bytes of a claim are exact, or all that a number holds");
  NPictureLimits const limits;
  if (!JudgeClaim(claim, length, limits).empty()) return;
  Require(claim.width != 0 && claim.height != 0 && claim.scans != 0, "what passes has pixels");
  Require(Exact{claim.width} * claim.height <= limits.pixels, "what passes has few enough pixels");
  Exact const times = (claim.scans + limits.scans - 1) / limits.scans;
  Require(exact * times <= limits.bytes, "what passes is small enough");
  Require(exact <= limits.freeBytes || exact <= Exact{length} * limits.ratio,
          "what passes can be in a file of its length");
}

}  // namespace
}  // namespace corvanta::platform

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace corvanta::platform;
  corvanta::fuzz::MemoryFile const memory({data, size});
  std::FILE* const file = fdopen(dup(memory.Get()), "rb");
  for (NPictureFormat const format : kFormats) {
    auto const claim = Read(format, *file, size);
    if (claim) CheckClaim(*claim, size);
    auto const again = Read(format, *file, size);
    corvanta::fuzz::Require(
        claim.has_value() == again.has_value() &&
            (!claim || (claim->width == again->width && claim->height == again->height &&
                        claim->GetBytes() == again->GetBytes() && claim->scans == again->scans)),
        "a file says the same twice");
    // Somebody may cut the file short meanwhile.
    constexpr std::uint64_t kMissing = 100000;
    if (auto const longer = Read(format, *file, size + kMissing)) CheckClaim(*longer, size);
  }
  std::fclose(file);
  return 0;
}
