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

/// What a pixel of a decoded picture is. The numbers are the decoder's.
enum NPixelType : int {
  PT_UNKNOWN = 0,
  PT_BITMAP =
      1,  ///< 1 to 8 bits of a palette, 16 bits by masks, blue green red, with a fourth byte
  PT_UINT16 = 2,
  PT_INT16 = 3,
  PT_UINT32 = 4,
  PT_INT32 = 5,
  PT_FLOAT = 6,
  PT_DOUBLE = 7,
  PT_COMPLEX = 8,  ///< two doubles
  PT_RGB16 = 9,
  PT_RGBA16 = 10,
  PT_RGBF = 11,
  PT_RGBAF = 12,
};

/// A decoded picture: a device-independent bitmap in memory, as the decoder made it.
class CORVANTA_API NPicture {
 public:
  NPicture() = default;
  NPicture(NPicture const&) = delete;
  NPicture& operator=(NPicture const&) = delete;
  virtual ~NPicture();

  /// The info header, which the palette, three masks in a picture of 16 bits that has them, and the
  /// rows follow without a gap. The first row's address is divisible by 16.
  virtual void const* GetInfoHeader() const = 0;
  /// All of it, from the header on.
  virtual unsigned int GetByteLength() const = 0;
  virtual NPixelType GetPixelType() const = 0;
  /// 12 in a picture that has masks, else 0.
  unsigned int GetMasksByteLength() const;
};

/// The format that the name of a file tells; the file isn't looked at.
CORVANTA_API NPictureFormat GetFIFFromFilename(std::wstring const& path);

/// Decodes the file at `path`, whatever its name says, in a process of its own; PNG, JPEG and BMP
/// in this one where that can't be (limits.h has the setters and the limits).
/// Fails: null, with `reason` set in a few words, if it isn't a picture, is broken, is beyond the
/// limits, or takes its decoder down.
/// Cost: a picture beyond the limits costs no memory, a damaged one at most the time limit.
CORVANTA_API std::unique_ptr<NPicture const> LoadPicture(std::wstring const& path,
                                                         std::string* reason = nullptr);

/// The same for the content of a file in memory; `name` is what the file's path would tell of its
/// format.
CORVANTA_API std::unique_ptr<NPicture const> DecodePicture(void const* bytes, std::size_t length,
                                                           std::wstring const& name,
                                                           std::string* reason = nullptr);

/// Reads the size of the picture in the file at `path`, in pixels; no limit on it holds. The
/// headers of PNG, JPEG, BMP, GIF, DDS, SGI, EXR and JPEG 2000 are read in this process, others by
/// the decoding program.
/// Fails: false, with nothing written, if the file tells none.
CORVANTA_API bool GetPictureSize(std::wstring const& path, unsigned int& width,
                                 unsigned int& height);

}  // namespace corvanta::platform
