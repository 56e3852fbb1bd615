#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "corvanta/export.h"

/// The one way to the picture decoder. A build without a decoder knows the formats' names and
/// decodes nothing.
namespace corvanta::platform {

/// A format of picture files. The numbers are the decoder's; it knows more than have a name here.
enum NPictureFormat : int {
  PF_UNKNOWN = -1,
  PF_BMP = 0,
  PF_JPEG = 2,
  PF_JNG = 3,
  PF_KOALA = 4,
  PF_PNG = 13,
  PF_PPM = 14,
  PF_PPMRAW = 15,
  PF_TARGA = 17,
  PF_TIFF = 18,
  PF_WBMP = 19,
  PF_DDS = 24,
  PF_GIF = 25,
  PF_HDR = 26,
  PF_SGI = 28,
  PF_EXR = 29,
  PF_J2K = 30,
  PF_JP2 = 31,
};

/// A decoded picture: a device-independent bitmap in memory.
class CORVANTA_API NPicture {
 public:
  NPicture() = default;
  NPicture(NPicture const&) = delete;
  NPicture& operator=(NPicture const&) = delete;
  virtual ~NPicture();

  /// The info header, which the palette and the rows follow.
  virtual void const* GetInfoHeader() const = 0;
  /// All of it, from the header on.
  virtual unsigned int GetByteLength() const = 0;
};

/// The format that the name of a file tells; the file isn't looked at.
CORVANTA_API NPictureFormat GetFIFFromFilename(std::wstring const& path);

/// Decodes the file at `path`, whatever its name says.
/// Fails: null if it isn't a picture, is broken, or is beyond the limits: 16,384 pixels a side, 256
/// megapixels, 16 MiB in a format without a way to read the size alone. What is beyond them costs
/// no memory. IFF, MNG, JNG, PICT and XBM files count as unreadable, since they can't be held to
/// that, and so do ICO, PSD and JPEG XR files, whose decoders end the program over a damaged one.
CORVANTA_API std::unique_ptr<NPicture const> LoadPicture(std::wstring const& path);

/// The same for the content of a file in memory; `name` is what the file's path would tell of its
/// format.
CORVANTA_API std::unique_ptr<NPicture const> DecodePicture(void const* bytes, std::size_t length,
                                                           std::wstring const& name);

/// Reads the size of the picture in the file at `path`, in pixels.
/// Fails: false, with nothing written, where `LoadPicture` gives null for the file's kind or
/// limits.
CORVANTA_API bool GetPictureSize(std::wstring const& path, unsigned int& width,
                                 unsigned int& height);

}  // namespace corvanta::platform
