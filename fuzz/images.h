#pragma once

#include <boost/intrusive_ptr.hpp>
#include <cstring>
#include <string>
#include <vector>

#include "corvanta/platform/picture.h"
#include "corvanta/renderer/texels.h"
#include "fuzz/support.h"

namespace corvanta::fuzz {

/// The bytes of an image that live elsewhere.
class Image : public data::resource::image::NImage {
 public:
  Image(void const* data, std::size_t length, data::resource::image::NImageType type)
      : m_data(data), m_length(static_cast<unsigned>(length)), m_type(type) {}

 private:
  void const* GetDataImpl() const override { return m_data; }
  unsigned GetDataByteLengthImpl() const override { return m_length; }
  data::resource::image::NImageType GetTypeImpl() const override { return m_type; }

  void const* const m_data;
  unsigned const m_length;
  data::resource::image::NImageType const m_type;
};

inline std::vector<renderer::NTexels> Draw(void const* data, std::size_t length,
                                           data::resource::image::NImageType type) {
  boost::intrusive_ptr<Image> const image(new Image(data, length, type));
  return renderer::ReadTexels(*image, L".dds");
}

/// What the head of a picture says, which has all the rows and the masks that it tells of.
struct Head {
  std::uint32_t length, width, height;
  std::uint16_t planes, bits;
};

/// Reads all of a picture, and draws it if it isn't large.
inline Head CheckPicture(platform::NPicture const& picture) {
  std::uint64_t const length = picture.GetByteLength();
  Head head{};
  Require(length >= 40, "a picture has a head");
  std::memcpy(&head, picture.GetInfoHeader(), sizeof head);
  Require(head.length == 40 && head.width != 0 && head.height != 0, "a picture has a head");
  std::uint64_t const pitch = (std::uint64_t{head.width} * head.bits + 31) / 32 * 4;
  Require(pitch <= (length - 40) / head.height, "a picture has all its rows");
  Require(picture.GetMasksByteLength() <= length - 40, "the masks are in the picture");
  auto const* const bytes = static_cast<unsigned char const*>(picture.GetInfoHeader());
  [[maybe_unused]] unsigned volatile sum = 0;  // all of it can be read
  for (std::uint64_t i = 0; i != length; ++i) sum = sum + bytes[i];
  constexpr std::uint64_t kMostPixels = 1 << 16;
  if (std::uint64_t{head.width} * head.height > kMostPixels) return head;
  for (auto const& texels : Draw(bytes, length, data::resource::image::NIT_BITMAP)) {
    Require(texels.width == head.width && texels.height == head.height &&
                std::max(texels.bytes.size(), texels.floats.size()) ==
                    std::size_t{4} * texels.width * texels.height,
            "all of it is drawn");
  }
  return head;
}

}  // namespace corvanta::fuzz
