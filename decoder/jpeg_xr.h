#pragma once

namespace corvanta::decoder {

/// Gives the decoder a reader of JPEG XR over the library for that format. Its own one gives
/// identifiers another size than that library does, and so reads no file.
void RegisterJpegXr();

}  // namespace corvanta::decoder
