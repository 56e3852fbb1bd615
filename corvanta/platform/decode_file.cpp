#ifdef CORVANTA_WITH_FREEIMAGE

#include "corvanta/platform/decode_file.h"

#include <FreeImage.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <optional>

namespace corvanta::platform {

namespace {

constexpr int kNumbers[][2] = {
    {PF_UNKNOWN, FIF_UNKNOWN}, {PF_BMP, FIF_BMP},       {PF_JPEG, FIF_JPEG},
    {PF_JNG, FIF_JNG},         {PF_KOALA, FIF_KOALA},   {PF_PNG, FIF_PNG},
    {PF_PPM, FIF_PPM},         {PF_PPMRAW, FIF_PPMRAW}, {PF_TARGA, FIF_TARGA},
    {PF_TIFF, FIF_TIFF},       {PF_WBMP, FIF_WBMP},     {PF_DDS, FIF_DDS},
    {PF_GIF, FIF_GIF},         {PF_HDR, FIF_HDR},       {PF_SGI, FIF_SGI},
    {PF_EXR, FIF_EXR},         {PF_J2K, FIF_J2K},       {PF_JP2, FIF_JP2},
    {PT_BITMAP, FIT_BITMAP},   {PT_UINT16, FIT_UINT16}, {PT_FLOAT, FIT_FLOAT},
    {PT_COMPLEX, FIT_COMPLEX}, {PT_RGB16, FIT_RGB16},   {PT_RGBAF, FIT_RGBAF}};
static_assert(std::ranges::all_of(kNumbers, [](auto const& pair) { return pair[0] == pair[1]; }));

unsigned ReadHandle(void* buffer, unsigned size, unsigned count, fi_handle handle) {
  return static_cast<unsigned>(std::fread(buffer, size, count, static_cast<std::FILE*>(handle)));
}

// What lies past the end reads as zeros: the EXR decoder doesn't look at the count, and goes on for
// ever with what stood in its buffer before.
unsigned ReadHandleWithZeros(void* buffer, unsigned size, unsigned count, fi_handle handle) {
  std::size_t const length = std::size_t{size} * count;
  std::size_t const read = std::fread(buffer, 1, length, static_cast<std::FILE*>(handle));
  std::memset(static_cast<char*>(buffer) + read, 0, length - read);
  return size == 0 ? 0 : static_cast<unsigned>(read / size);
}

unsigned WriteHandle(void*, unsigned, unsigned, fi_handle) { return 0; }

int SeekHandle(fi_handle handle, long offset, int origin) {
  return std::fseek(static_cast<std::FILE*>(handle), offset, origin);
}

long TellHandle(fi_handle handle) { return std::ftell(static_cast<std::FILE*>(handle)); }

struct Unload {
  void operator()(FIBITMAP* bitmap) const { FreeImage_Unload(bitmap); }
};
using Bitmap = std::unique_ptr<FIBITMAP, Unload>;

Bitmap Decode(NPictureFormat format, std::FILE& file, int flags) {
  FreeImageIO io{&ReadHandle, &WriteHandle, &SeekHandle, &TellHandle};
  if (format == PF_EXR) io.read_proc = &ReadHandleWithZeros;
  std::rewind(&file);
  return Bitmap(
      FreeImage_LoadFromHandle(static_cast<FREE_IMAGE_FORMAT>(format), &io, &file, flags));
}

NPictureClaim GetClaim(FIBITMAP& bitmap) {
  return {FreeImage_GetWidth(&bitmap), FreeImage_GetHeight(&bitmap), FreeImage_GetBPP(&bitmap)};
}

class DecodedPicture : public NPicture {
 public:
  // The decoder leaves a gap of up to 15 bytes before the rows: what stands before it is moved up.
  explicit DecodedPicture(Bitmap bitmap) : m_bitmap(std::move(bitmap)) {
    auto* const header = reinterpret_cast<unsigned char*>(FreeImage_GetInfoHeader(m_bitmap.get()));
    m_pixelType = static_cast<NPixelType>(FreeImage_GetImageType(m_bitmap.get()));
    constexpr DWORD kBitFields = 3;
    bool const hasMasks = FreeImage_GetBPP(m_bitmap.get()) == 16 &&
                          FreeImage_GetInfoHeader(m_bitmap.get())->biCompression == kBitFields;
    std::size_t const masks = hasMasks ? 3 * sizeof(std::uint32_t) : 0;
    std::size_t const head = sizeof(BITMAPINFOHEADER) + masks +
                             sizeof(RGBQUAD) * FreeImage_GetColorsUsed(m_bitmap.get());
    std::uint64_t const rows =
        std::uint64_t{FreeImage_GetPitch(m_bitmap.get())} * FreeImage_GetHeight(m_bitmap.get());
    m_length = head + rows;
    m_header = FreeImage_GetBits(m_bitmap.get()) - head;
    std::memmove(m_header, header, head);
  }

  std::uint64_t GetLength() const { return m_length; }
  void const* GetInfoHeader() const override { return m_header; }
  unsigned int GetByteLength() const override { return static_cast<unsigned int>(m_length); }
  NPixelType GetPixelType() const override { return m_pixelType; }

 private:
  Bitmap m_bitmap;
  NPixelType m_pixelType;
  std::uint64_t m_length;
  unsigned char* m_header;
};

void const* GetEnd(FIBITMAP& bitmap) {
  return FreeImage_GetBits(&bitmap) +
         std::size_t{FreeImage_GetPitch(&bitmap)} * FreeImage_GetHeight(&bitmap);
}

bool (*isIntactPicture)(void const* end) = nullptr;

// What the decoder said last, of this thread's decoding.
thread_local std::string lastMessage;

void OnMessage(FREE_IMAGE_FORMAT, char const* message) { lastMessage = message ? message : ""; }

std::string GetMessage() {
  return lastMessage.empty() ? "it isn't a picture, or a broken one" : lastMessage;
}

bool IsReadable(NPictureFormat format, std::string& reason) {
  bool const readable =
      format != PF_UNKNOWN && FreeImage_FIFSupportsReading(static_cast<FREE_IMAGE_FORMAT>(format));
  if (!readable) reason = "it isn't a picture of a known format";
  return readable;
}

// By our own reading first, since that counts what the decoder's would unpack; 0 x 0 if only
// decoding tells.
NPictureClaim ReadHeader(NPictureFormat format, std::FILE& file, std::uint64_t length) {
  if (auto const claim = PeekClaim(format, file, length)) return *claim;
  if (!FreeImage_FIFSupportsNoPixels(static_cast<FREE_IMAGE_FORMAT>(format))) return {};
  Bitmap const header = Decode(format, file, FIF_LOAD_NOPIXELS);
  return header ? GetClaim(*header) : NPictureClaim{};
}

}  // namespace

void WatchOverruns(bool (*isIntact)(void const* end)) {
  // It is to be asked only if the decoder's pictures end where their blocks do.
  constexpr int kSide = 3, kBits = 24;
  Bitmap const bitmap(FreeImage_Allocate(kSide, kSide, kBits));
  if (bitmap && isIntact(GetEnd(*bitmap))) isIntactPicture = isIntact;
}

void ListenToDecoder() { FreeImage_SetOutputMessage(&OnMessage); }

NPictureFormat JudgeFormat(std::FILE& file, std::string const& name) {
  FreeImageIO io{&ReadHandle, &WriteHandle, &SeekHandle, &TellHandle};
  std::rewind(&file);
  FREE_IMAGE_FORMAT const format = FreeImage_GetFileTypeFromHandle(&io, &file, 0);
  return static_cast<NPictureFormat>(
      format != FIF_UNKNOWN ? format : FreeImage_GetFIFFromFilename(name.c_str()));
}

std::optional<NPictureClaim> ReadClaim(NPictureFormat format, std::FILE& file, std::uint64_t length,
                                       NPictureLimits const& limits, std::string& reason) {
  if (!IsReadable(format, reason)) return std::nullopt;
  NPictureClaim const claim = ReadHeader(format, file, length);
  if (claim.width != 0 && claim.height != 0) return claim;
  if (FreeImage_FIFSupportsNoPixels(static_cast<FREE_IMAGE_FORMAT>(format))) {
    reason = GetMessage();
    return std::nullopt;
  }
  auto const picture = DecodeFile(format, file, length, limits, {}, reason);
  if (!picture) return std::nullopt;
  BITMAPINFOHEADER header;
  std::memcpy(&header, picture->GetInfoHeader(), sizeof header);
  return NPictureClaim{static_cast<std::uint32_t>(header.biWidth),
                       static_cast<std::uint32_t>(header.biHeight), header.biBitCount};
}

std::unique_ptr<NPicture const> DecodeFile(NPictureFormat format, std::FILE& file,
                                           std::uint64_t length, NPictureLimits const& limits,
                                           NClaimListener const& tell, std::string& reason) {
  if (!IsReadable(format, reason)) return nullptr;
  lastMessage.clear();
  NPictureClaim claim = ReadHeader(format, file, length);
  if (claim.width != 0 && claim.height != 0) {
    AddWork(format, file, length, claim);
    reason = JudgeClaim(claim, length, limits);
    if (!reason.empty()) return nullptr;
  }
  if (tell) tell(claim);
  Bitmap bitmap = Decode(format, file, 0);
  if (!bitmap || !FreeImage_HasPixels(bitmap.get())) {
    reason = GetMessage();
    return nullptr;
  }
  if (isIntactPicture && !isIntactPicture(GetEnd(*bitmap))) std::abort();
  // A file may hold another picture than it claimed.
  reason = JudgeClaim(GetClaim(*bitmap), UINT64_MAX, limits);
  if (!reason.empty()) return nullptr;
  auto picture = std::make_unique<DecodedPicture>(std::move(bitmap));
  if (picture->GetLength() <= GetMostBytes(limits)) return picture;
  reason = "decoded it is too large";
  return nullptr;
}

}  // namespace corvanta::platform

#endif
