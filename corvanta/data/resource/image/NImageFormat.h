#pragma once

namespace corvanta::data::resource::image {

/// How an image is loaded. Attributes hold it; every value without a name means the same as raw.
enum NImageFormat : long {
  NIF_RAW = 0,      ///< the bytes of the file as they are
  NIF_DECODED = 1,  ///< decoded into a bitmap
};

}  // namespace corvanta::data::resource::image
