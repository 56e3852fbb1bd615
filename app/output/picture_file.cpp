#include "app/output/picture_file.h"

#include <algorithm>
#include <boost/algorithm/string/case_conv.hpp>
#include <boost/algorithm/string/split.hpp>
#include <memory>
#include <stdexcept>

#ifdef CORVANTA_WITH_FREEIMAGE
#include <FreeImage.h>
#endif

#include "app/output/NWholeFile.h"
#include "app/output/text.h"

namespace corvanta::app {

namespace {

/// In lower case, without the point.
std::string GetExtension(std::filesystem::path const& path) {
  std::string const extension = boost::algorithm::to_lower_copy(path.extension().string());
  return extension.empty() ? extension : extension.substr(1);
}

bool IsJpeg(std::filesystem::path const& path) {
  std::string const extension = GetExtension(path);
  return extension == "jpg" || extension == "jpeg";
}

#ifdef CORVANTA_WITH_FREEIMAGE

struct CloseImage {
  void operator()(FIBITMAP* bitmap) const { FreeImage_Unload(bitmap); }
  void operator()(FIMEMORY* memory) const { FreeImage_CloseMemory(memory); }
};

std::string EncodeJpeg(renderer::NPixels const& pixels) {
  constexpr int kQuality = 92;
  auto const width = static_cast<int>(pixels.GetWidth());
  auto const height = static_cast<int>(pixels.GetHeight());
  std::unique_ptr<FIBITMAP, CloseImage> const bitmap(FreeImage_Allocate(width, height, 24));
  std::unique_ptr<FIMEMORY, CloseImage> const memory(FreeImage_OpenMemory());
  if (!bitmap || !memory) throw std::runtime_error("there is too little memory for a JPEG file");
  for (int y = 0; y != height; ++y) {
    unsigned char const* from = pixels.GetRow(static_cast<unsigned>(height - 1 - y));
    BYTE* to = FreeImage_GetScanLine(bitmap.get(), y);
    for (int x = 0; x != width; ++x, from += 3, to += 3) {
      to[FI_RGBA_RED] = from[0];
      to[FI_RGBA_GREEN] = from[1];
      to[FI_RGBA_BLUE] = from[2];
    }
  }
  BYTE* bytes = nullptr;
  DWORD size = 0;
  bool const isSaved = FreeImage_SaveToMemory(FIF_JPEG, bitmap.get(), memory.get(),
                                              kQuality | JPEG_SUBSAMPLING_444) != 0 &&
                       FreeImage_AcquireMemory(memory.get(), &bytes, &size) != 0;
  if (!isSaved) throw std::runtime_error("the encoder of JPEG files gave up");
  return {reinterpret_cast<char const*>(bytes), size};
}

std::vector<NPictureFileFormat> ListDecoded() {
  std::vector<NPictureFileFormat> formats;
  for (int i = 0; i != FreeImage_GetFIFCount(); ++i) {
    auto const format = static_cast<FREE_IMAGE_FORMAT>(i);
    if (FreeImage_FIFSupportsReading(format) == 0) continue;
    NPictureFileFormat& named = formats.emplace_back();
    named.name = FreeImage_GetFIFDescription(format);
    std::string const extensions = FreeImage_GetFIFExtensionList(format);
    boost::algorithm::split(named.extensions, extensions, [](char c) { return c == ','; });
  }
  return formats;
}

#else

std::string EncodeJpeg(renderer::NPixels const&) {
  throw std::runtime_error("this program was built without JPEG");
}

std::vector<NPictureFileFormat> ListDecoded() { return {}; }

#endif

}  // namespace

void WritePicture(std::filesystem::path const& path, renderer::NPixels const& pixels) {
  // It is opened first: a picture takes longer.
  NWholeFile file(path);
  file.GetStream() << (IsJpeg(path) ? EncodeJpeg(pixels) : renderer::EncodePng(pixels));
  file.Commit();
}

std::string FindPictureFault(std::filesystem::path const& path, bool isExact) {
  std::string const extension = GetExtension(path);
  if (extension.empty() || extension == "png") return {};
  if (isExact) return "is a picture whose pixels count: .png is needed";
  auto const written = GetWrittenExtensions();
  if (std::find(written.begin(), written.end(), extension) != written.end()) return {};
  if (IsJpeg(path)) return "is a JPEG file, and this program was built without JPEG";
  return "pictures are written as .png or .jpg, not as ." + OneLine(extension);
}

std::vector<std::string> GetWrittenExtensions() {
#ifdef CORVANTA_WITH_FREEIMAGE
  return {"png", "jpg", "jpeg"};
#else
  return {"png"};
#endif
}

std::vector<NPictureFileFormat> GetPictureFormats() { return ListDecoded(); }

}  // namespace corvanta::app
