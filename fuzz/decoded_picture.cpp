// Whatever a decoding program answers and leaves in the memory that it shares, what the library
// takes for a picture lies in that memory, is whole, and can be drawn.
#include "corvanta/platform/decoded_picture.h"

#include <algorithm>
#include <boost/intrusive_ptr.hpp>
#include <cstring>

#include "corvanta/renderer/texels.h"
#include "fuzz/support.h"

namespace corvanta::fuzz {
namespace {

namespace image = data::resource::image;

class Image : public image::NImage {
 public:
  explicit Image(platform::NPicture const& picture) : m_picture(picture) {}

 private:
  void const* GetDataImpl() const override { return m_picture.GetInfoHeader(); }
  unsigned GetDataByteLengthImpl() const override { return m_picture.GetByteLength(); }
  image::NImageType GetTypeImpl() const override { return image::NIT_BITMAP; }

  platform::NPicture const& m_picture;
};

struct Header {
  std::uint32_t length, width, height;
  std::uint16_t planes, bits;
};

void CheckPicture(platform::NPicture const& picture, platform::NDecodeAnswer const& answer) {
  Require(picture.GetByteLength() == answer.bytes, "a picture is as long as was said");
  Header header;
  std::memcpy(&header, picture.GetInfoHeader(), sizeof header);
  std::uint64_t const pitch = (std::uint64_t{header.width} * header.bits + 31) / 32 * 4;
  std::uint64_t const rows = answer.bytes - 40;
  Require(header.length == 40 && header.width != 0 && header.height != 0, "a picture has a head");
  Require(pitch <= rows / header.height, "a picture has all its rows");
  Require(picture.GetMasksByteLength() <= answer.bytes - 40, "the masks are in the picture");
  auto const* const bytes = static_cast<unsigned char const*>(picture.GetInfoHeader());
  [[maybe_unused]] unsigned volatile sum = 0;  // all of it can be read
  for (std::uint64_t i = 0; i != answer.bytes; ++i) sum = sum + bytes[i];
  // Only the sides of a picture that isn't drawn may be beyond this.
  constexpr std::uint64_t kMostPixels = 1 << 20;
  if (std::uint64_t{header.width} * header.height > kMostPixels) return;
  boost::intrusive_ptr<Image> const drawn(new Image(picture));
  for (renderer::NTexels const& texels : renderer::ReadTexels(*drawn, L"")) {
    Require(texels.width == header.width && texels.height == header.height, "it is drawn whole");
    Require(std::max(texels.bytes.size(), texels.floats.size()) ==
                std::size_t{4} * texels.width * texels.height,
            "all of it is drawn");
  }
}

}  // namespace
}  // namespace corvanta::fuzz

// The answer's offset, length and kind of pixels, one byte by which larger memory is tried, then
// what is in the memory.
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
  if (picture) fuzz::CheckPicture(*picture, answer);
  return 0;
}
