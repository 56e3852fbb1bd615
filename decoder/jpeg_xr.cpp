#include "decoder/jpeg_xr.h"

#include <FreeImage.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <utility>
#include <vector>

// The last of all: it knows no C++, and defines words that others use. FreeImage.h says that this
// is another system, by which that header would give its identifiers another size than the
// library's.
#undef _WINDOWS_
extern "C" {
#include <JXRGlue.h>

// What readers of the decoder's own allocate with; its public header leaves it out.
FIBITMAP* DLL_CALLCONV FreeImage_AllocateHeaderT(BOOL headerOnly, FREE_IMAGE_TYPE type, int width,
                                                 int height, int bits, unsigned red, unsigned green,
                                                 unsigned blue);
}
#undef min
#undef max

namespace corvanta::decoder {

namespace {

// What a file's pixels become.
struct Target {
  PKPixelFormatGUID const* format;
  FREE_IMAGE_TYPE type;
  unsigned bits;      // a pixel in the bitmap
  unsigned unpacked;  // a pixel as it comes
};

Target ChooseTarget(PKPixelInfo const& info) {
  bool const isGrey = info.cfColorFormat == Y_ONLY;
  bool const hasAlpha = (info.grBit & PK_pixfmtHasAlpha) != 0;
  switch (info.bdBitDepth) {
    case BD_16:
      if (isGrey) return {&GUID_PKPixelFormat16bppGray, FIT_UINT16, 16, 16};
      if (hasAlpha) return {&GUID_PKPixelFormat64bppRGBA, FIT_RGBA16, 64, 64};
      return {&GUID_PKPixelFormat48bppRGB, FIT_RGB16, 48, 48};
    case BD_16S:
    case BD_16F:
    case BD_32:
    case BD_32S:
    case BD_32F:
      if (isGrey) return {&GUID_PKPixelFormat32bppGrayFloat, FIT_FLOAT, 32, 32};
      if (hasAlpha) return {&GUID_PKPixelFormat128bppRGBAFloat, FIT_RGBAF, 128, 128};
      if (info.cbitUnit == 96) return {&GUID_PKPixelFormat96bppRGBFloat, FIT_RGBF, 96, 96};
      return {&GUID_PKPixelFormat128bppRGBFloat, FIT_RGBF, 96, 128};
    default:
      if (isGrey) return {&GUID_PKPixelFormat8bppGray, FIT_BITMAP, 8, 8};
      if (hasAlpha) return {&GUID_PKPixelFormat32bppBGRA, FIT_BITMAP, 32, 32};
      return {&GUID_PKPixelFormat24bppBGR, FIT_BITMAP, 24, 24};
  }
}

template <typename Object>
struct Release {
  void operator()(Object* object) const { object->Release(&object); }
};
template <typename Object>
using Owned = std::unique_ptr<Object, Release<Object>>;

struct CloseStream {
  void operator()(WMPStream* stream) const { stream->Close(&stream); }
};
using Stream = std::unique_ptr<WMPStream, CloseStream>;

struct Unload {
  void operator()(FIBITMAP* bitmap) const { FreeImage_Unload(bitmap); }
};
using Bitmap = std::unique_ptr<FIBITMAP, Unload>;

std::vector<unsigned char> ReadAll(FreeImageIO& io, fi_handle handle) {
  long const begin = io.tell_proc(handle);
  io.seek_proc(handle, 0, SEEK_END);
  std::vector<unsigned char> bytes(
      static_cast<std::size_t>(std::max(io.tell_proc(handle) - begin, 0L)));
  io.seek_proc(handle, begin, SEEK_SET);
  bytes.resize(io.read_proc(bytes.data(), 1, static_cast<unsigned>(bytes.size()), handle));
  return bytes;
}

// An open file; its parts go in the order that they need each other.
class File {
 public:
  explicit File(std::vector<unsigned char> bytes) : m_bytes(std::move(bytes)) {
    PKFactory* factory = nullptr;
    if (m_bytes.empty() || PKCreateFactory(&factory, PK_SDK_VERSION) < 0) return;
    Owned<PKFactory> const owned(factory);
    WMPStream* stream = nullptr;
    if (factory->CreateStreamFromMemory(&stream, m_bytes.data(), m_bytes.size()) < 0) return;
    m_stream.reset(stream);
    void* decoder = nullptr;
    if (PKCodecFactory_CreateCodec(&IID_PKImageWmpDecode, &decoder) < 0) return;
    m_decoder.reset(static_cast<PKImageDecode*>(decoder));
    PKPixelFormatGUID format;
    m_info.pGUIDPixFmt = &format;
    m_isOpen = m_decoder->Initialize(m_decoder.get(), m_stream.get()) >= 0 &&
               m_decoder->GetPixelFormat(m_decoder.get(), &format) >= 0 &&
               PixelFormatLookup(&m_info, LOOKUP_FORWARD) >= 0 &&
               m_decoder->GetSize(m_decoder.get(), &m_width, &m_height) >= 0 && m_width > 0 &&
               m_height > 0;
  }

  Bitmap Load(bool headerOnly) {
    if (!m_isOpen) return nullptr;
    Target const target = ChooseTarget(m_info);
    Bitmap bitmap(FreeImage_AllocateHeaderT(headerOnly, target.type, m_width, m_height,
                                            static_cast<int>(target.bits), FI_RGBA_RED_MASK,
                                            FI_RGBA_GREEN_MASK, FI_RGBA_BLUE_MASK));
    if (!bitmap) return nullptr;
    SetResolution(*bitmap);
    return headerOnly || Decode(target, *bitmap) ? std::move(bitmap) : nullptr;
  }

 private:
  void SetResolution(FIBITMAP& bitmap) {
    Float across = 0, down = 0;
    if (m_decoder->GetResolution(m_decoder.get(), &across, &down) < 0) return;
    auto const perMetre = [](Float perInch) {
      constexpr Float kMetresPerInch = 0.0254f, kMost = 1e6f;
      return static_cast<unsigned>(std::clamp(perInch / kMetresPerInch + 0.5f, 0.0f, kMost));
    };
    FreeImage_SetDotsPerMeterX(&bitmap, perMetre(across));
    FreeImage_SetDotsPerMeterY(&bitmap, perMetre(down));
  }

  bool Decode(Target const& target, FIBITMAP& bitmap) {
    m_decoder->WMP.wmiSCP.uAlphaMode = (m_info.grBit & PK_pixfmtHasAlpha) != 0 ? 2 : 0;
    PKFormatConverter* made = nullptr;
    if (PKCodecFactory_CreateFormatConverter(&made) < 0) return false;
    Owned<PKFormatConverter> const converter(made);
    if (made->Initialize(made, m_decoder.get(), nullptr, *target.format) < 0) return false;
    // Pixels are converted where they come, so that the wider kind has to fit.
    std::size_t const widest = std::max<std::size_t>(target.unpacked, m_info.cbitUnit);
    std::size_t const stride = (static_cast<std::size_t>(m_width) * widest + 127) / 128 * 16;
    std::vector<unsigned char> rows(stride * static_cast<std::size_t>(m_height));
    PKRect const all{0, 0, m_width, m_height};
    if (made->Copy(made, &all, rows.data(), static_cast<U32>(stride)) < 0) return false;
    for (int y = 0; y < m_height; ++y)
      CopyRow(target, rows.data() + stride * static_cast<std::size_t>(y),
              FreeImage_GetScanLine(&bitmap, m_height - 1 - y));
    return true;
  }

  void CopyRow(Target const& target, unsigned char const* from, BYTE* to) const {
    std::size_t const bytes = target.bits / 8, step = target.unpacked / 8;
    for (std::size_t x = 0; x < static_cast<std::size_t>(m_width); ++x)
      std::memcpy(to + x * bytes, from + x * step, bytes);
  }

  std::vector<unsigned char> m_bytes;
  Stream m_stream;
  Owned<PKImageDecode> m_decoder;
  PKPixelInfo m_info{};
  I32 m_width = 0;
  I32 m_height = 0;
  bool m_isOpen = false;
};

FIBITMAP* DLL_CALLCONV Load(FreeImageIO* io, fi_handle handle, int, int flags, void*) {
  try {
    return File(ReadAll(*io, handle)).Load((flags & FIF_LOAD_NOPIXELS) != 0).release();
  } catch (std::bad_alloc const&) {
    return nullptr;
  }
}

BOOL DLL_CALLCONV Validate(FreeImageIO* io, fi_handle handle) {
  unsigned char begin[3] = {};
  io->read_proc(begin, 1, sizeof begin, handle);
  return std::memcmp(begin, "II\xbc", sizeof begin) == 0;
}

char const* DLL_CALLCONV GetFormat() { return "JPEG-XR-2"; }
char const* DLL_CALLCONV GetExtensions() { return "jxr,wdp,hdp"; }
BOOL DLL_CALLCONV Supports() { return TRUE; }

void DLL_CALLCONV Initialize(Plugin* plugin, int) {
  plugin->format_proc = &GetFormat;
  plugin->extension_proc = &GetExtensions;
  plugin->load_proc = &Load;
  plugin->validate_proc = &Validate;
  plugin->supports_no_pixels_proc = &Supports;
}

}  // namespace

void RegisterJpegXr() {
  FreeImage_SetPluginEnabled(FIF_JXR, FALSE);
  FreeImage_RegisterLocalPlugin(&Initialize);
}

}  // namespace corvanta::decoder
