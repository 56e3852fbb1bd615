// Whatever a decoding program answers and leaves in the memory that it shares, what the library
// takes for a picture lies in that memory, is whole, and can be drawn.
#include "corvanta/platform/decoded_picture.h"

#include <algorithm>

#include "fuzz/images.h"
#include "fuzz/support.h"

// The answer's offset, length and kind of pixels, a byte by which the memory is larger than what is
// in it, then that.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace corvanta;
  fuzz::Input input({data, size});
  platform::NDecodeAnswer answer;
  answer.state = platform::kDecodeDone;
  answer.offset = input.Take<std::uint64_t>();
  answer.bytes = input.Take<std::uint64_t>();
  answer.pixelType = input.Take<platform::NPixelType>();
  std::size_t const more = std::size_t{input.Take<std::uint8_t>()} << 15;
  fuzz::Bytes const content = input.GetRest();
  std::size_t const length = std::max<std::size_t>(content.size(), 1) + more;
  platform::NDescriptor const memory = platform::CreateSharedMemory(length);
  fuzz::Require(pwrite(memory.Get(), content.data(), content.size(), 0) ==
                    static_cast<ssize_t>(content.size()),
                "there is shared memory");
  platform::NSharedMapping const mapping(memory.Get(), 0, length);
  auto const picture = platform::TakePicture(memory, mapping, answer);
  if (!picture) return 0;
  fuzz::Require(picture->GetByteLength() == answer.bytes, "a picture is as long as was said");
  fuzz::CheckPicture(*picture);
  return 0;
}
