#include "corvanta/data/resource/image/NImage.h"

namespace corvanta::data::resource::image {

NImage::~NImage() = default;

}  // namespace corvanta::data::resource::image
