// A DDS file is drawn as the sizes in its header say and from its own bytes alone, and what is
// taken for a cube map is drawn as one.
#include <cstring>

#include "corvanta/data/environment_map/guess_image_type.h"
#include "corvanta/platform/limits.h"
#include "fuzz/images.h"
#include "fuzz/support.h"

// The input follows the four bytes that every DDS file begins with, if it doesn't bring them.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace corvanta;
  platform::SetDecoderProgramAllowed(false);  // other formats are other targets'
  std::string bytes(fuzz::AsText({data, size}));
  if (!bytes.starts_with("DDS ")) bytes.insert(0, "DDS ");
  auto const faces = fuzz::Draw(bytes.data(), bytes.size(), data::resource::image::NIT_RAW);

  fuzz::MemoryFile const file({reinterpret_cast<std::uint8_t const*>(bytes.data()), bytes.size()});
  std::wstring const path = file.GetPath();
  auto const type = data::environment_map::GuessEnvironmentMapImageType(path.c_str());
  unsigned width = 0, height = 0;
  bool const hasSize = platform::GetPictureSize(path, width, height);
  if (faces.empty()) return 0;
  fuzz::Require(faces.size() == 1 || faces.size() == 6, "there is a picture or a cube of six");
  fuzz::Require(hasSize, "what can be drawn has a size");
  std::size_t pixels = 0;
  for (auto const& face : faces) {
    fuzz::Require(face.width == width && face.height == height, "it is drawn in its size");
    fuzz::Require(face.floats.empty() && face.bytes.size() == std::size_t{4} * width * height,
                  "all of it is drawn");
    pixels += face.bytes.size() / 4;
  }
  fuzz::Require(3 * pixels + 128 <= bytes.size(), "each pixel has bytes of its own");
  fuzz::Require(type != data::environment_map::NEMIT_CUBE || faces.size() == 6,
                "it is drawn as a cube where it is taken for one");
  return 0;
}
