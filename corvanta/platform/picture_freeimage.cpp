#ifdef CORVANTA_WITH_FREEIMAGE

#include <FreeImagePlus.h>
#include <dlfcn.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <mutex>
#include <optional>

#include "corvanta/platform/file.h"
#include "corvanta/platform/narrow_path.h"
#include "corvanta/platform/picture.h"
#include "corvanta/platform/picture_size.h"

namespace corvanta::platform {

namespace {

constexpr int kFormats[][2] = {
    {PF_UNKNOWN, FIF_UNKNOWN}, {PF_BMP, FIF_BMP},   {PF_JPEG, FIF_JPEG}, {PF_JNG, FIF_JNG},
    {PF_KOALA, FIF_KOALA},     {PF_PNG, FIF_PNG},   {PF_PPM, FIF_PPM},   {PF_PPMRAW, FIF_PPMRAW},
    {PF_TARGA, FIF_TARGA},     {PF_TIFF, FIF_TIFF}, {PF_WBMP, FIF_WBMP}, {PF_DDS, FIF_DDS},
    {PF_GIF, FIF_GIF},         {PF_HDR, FIF_HDR},   {PF_SGI, FIF_SGI},   {PF_EXR, FIF_EXR},
    {PF_J2K, FIF_J2K},         {PF_JP2, FIF_JP2}};
static_assert(std::ranges::all_of(kFormats, [](auto const& pair) { return pair[0] == pair[1]; }));

constexpr std::uint64_t kMostSide = 16384;
constexpr std::uint64_t kMostPixels = 256ULL * 1024 * 1024;
// Of a file in a format without header-only reading; of EXR files it bounds the header.
constexpr long long kMostBytesWithoutHeader = 16LL * 1024 * 1024;

// Keeps the TIFF library beneath the decoder from writing to the error stream. Its two message
// handlers are process-wide, so they are put back when the last one that is under way ends.
class TiffSilence {
 public:
  TiffSilence() {
    Shared& shared = GetShared();
    std::scoped_lock const lock(shared.mutex);
    if (shared.count++ == 0) Exchange(shared, nullptr, nullptr);
  }
  ~TiffSilence() {
    Shared& shared = GetShared();
    std::scoped_lock const lock(shared.mutex);
    if (--shared.count == 0) Exchange(shared, shared.error, shared.warning);
  }
  TiffSilence(TiffSilence const&) = delete;
  TiffSilence& operator=(TiffSilence const&) = delete;

 private:
  using Handler = void (*)(char const*, char const*, va_list);
  using Setter = Handler (*)(Handler);

  struct Shared {
    std::mutex mutex;
    int count = 0;
    Setter setError = nullptr;
    Setter setWarning = nullptr;
    Handler error = nullptr;
    Handler warning = nullptr;

    Shared() {
      // Looked for from the decoder on: nothing says that this library sees what only that one
      // depends on.
      Dl_info info{};
      if (dladdr(reinterpret_cast<void const*>(&FreeImage_GetVersion), &info) == 0) return;
      if (void* const decoder = dlopen(info.dli_fname, RTLD_LAZY | RTLD_NOLOAD)) {
        setError = reinterpret_cast<Setter>(dlsym(decoder, "TIFFSetErrorHandler"));
        setWarning = reinterpret_cast<Setter>(dlsym(decoder, "TIFFSetWarningHandler"));
        dlclose(decoder);
      }
    }
  };

  static Shared& GetShared() {
    static Shared& shared = *new Shared;
    return shared;
  }

  static void Exchange(Shared& shared, Handler error, Handler warning) {
    if (shared.setError && shared.setWarning) {
      shared.error = shared.setError(error);
      shared.warning = shared.setWarning(warning);
    }
  }
};

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

// A picture file open for decoding, its format judged by content and then by name.
class OpenPicture {
 public:
  explicit OpenPicture(std::wstring const& path)
      : OpenPicture(path, OpenFile(path, "rb"), GetFileSize(path)) {}
  OpenPicture(std::wstring const& path, NFile file, long long length)
      : m_path(path), m_file(std::move(file)), m_length(length), m_format(JudgeFormat()) {
    if (m_format == FIF_EXR) m_io.read_proc = &ReadHandleWithZeros;
  }

  bool IsReadable() const {
    return m_format != FIF_UNKNOWN && FreeImage_FIFSupportsReading(m_format);
  }

  // The size, without taking memory for pixels; none for a format that is refused.
  std::optional<NPictureSize> GetSize() {
    switch (m_format) {
      case FIF_ICO:
      case FIF_IFF:
      case FIF_MNG:
      case FIF_JNG:
      case FIF_PICT:
      case FIF_PSD:
      case FIF_XBM:
      case FIF_JXR:
        return std::nullopt;
      case FIF_KOALA:
        return NPictureSize{320, 200};
      case FIF_EXR:
        return ReadSize();
      default:
        return FreeImage_FIFSupportsNoPixels(m_format) ? DecodeSize() : ReadSize();
    }
  }

  FIBITMAP* Decode(int flags) {
    std::rewind(m_file.get());
    return FreeImage_LoadFromHandle(m_format, &m_io, m_file.get(), flags);
  }

 private:
  std::optional<NPictureSize> DecodeSize() {
    fipImage header;
    header = Decode(FIF_LOAD_NOPIXELS);
    if (!header.isValid()) return std::nullopt;
    return NPictureSize{header.getWidth(), header.getHeight()};
  }

  std::optional<NPictureSize> ReadSize() {
    if (m_length < 0 ||
        (m_length > kMostBytesWithoutHeader && !FreeImage_FIFSupportsNoPixels(m_format)))
      return std::nullopt;
    std::vector<unsigned char> bytes(
        static_cast<std::size_t>(std::min(m_length, kMostBytesWithoutHeader)));
    std::rewind(m_file.get());
    bytes.resize(std::fread(bytes.data(), 1, bytes.size(), m_file.get()));
    return PeekSize(static_cast<NPictureFormat>(m_format), bytes,
                    static_cast<std::uint64_t>(m_length));
  }

  FREE_IMAGE_FORMAT JudgeFormat() {
    if (!m_file) return FIF_UNKNOWN;
    FREE_IMAGE_FORMAT const format = FreeImage_GetFileTypeFromHandle(&m_io, m_file.get(), 0);
    return format != FIF_UNKNOWN ? format
                                 : static_cast<FREE_IMAGE_FORMAT>(GetFIFFromFilename(m_path));
  }

  TiffSilence const m_silence;
  std::wstring const m_path;
  FreeImageIO m_io{&ReadHandle, &WriteHandle, &SeekHandle, &TellHandle};
  NFile const m_file;
  long long const m_length;
  FREE_IMAGE_FORMAT const m_format;
};

std::optional<NPictureSize> GetSizeWithinLimits(OpenPicture& picture) {
  std::optional<NPictureSize> const size = picture.IsReadable() ? picture.GetSize() : std::nullopt;
  bool const within = size && size->width <= kMostSide && size->height <= kMostSide &&
                      std::uint64_t{size->width} * size->height <= kMostPixels;
  return within ? size : std::nullopt;
}

bool Load(fipImage& image, OpenPicture& picture) {
  if (!GetSizeWithinLimits(picture)) return false;
  image = picture.Decode(0);
  return image.isValid();
}

class DecodedPicture : public NPicture {
 public:
  fipImage& GetImage() { return m_image; }
  void const* GetInfoHeader() const override { return m_image.getInfoHeader(); }
  unsigned int GetByteLength() const override { return m_image.getImageSize(); }

 private:
  fipImage m_image{FIT_BITMAP, 0, 0};
};

}  // namespace

NPictureFormat GetFIFFromFilename(std::wstring const& path) {
  std::optional<std::string> const narrow = ToNarrowPath(path);
  return narrow ? static_cast<NPictureFormat>(FreeImage_GetFIFFromFilename(narrow->c_str()))
                : PF_UNKNOWN;
}

std::unique_ptr<NPicture const> LoadPicture(std::wstring const& path) {
  auto picture = std::make_unique<DecodedPicture>();
  OpenPicture open(path);
  if (!Load(picture->GetImage(), open)) return nullptr;
  return picture;
}

std::unique_ptr<NPicture const> DecodePicture(void const* bytes, std::size_t length,
                                              std::wstring const& name) {
  if (length == 0) return nullptr;
  // Only read from.
  NFile file(fmemopen(const_cast<void*>(bytes), length, "rb"));
  auto picture = std::make_unique<DecodedPicture>();
  OpenPicture open(name, std::move(file), static_cast<long long>(length));
  if (!Load(picture->GetImage(), open)) return nullptr;
  return picture;
}

bool GetPictureSize(std::wstring const& path, unsigned int& width, unsigned int& height) {
  OpenPicture picture(path);
  std::optional<NPictureSize> const size = GetSizeWithinLimits(picture);
  if (size) {
    width = size->width;
    height = size->height;
  }
  return size.has_value();
}

}  // namespace corvanta::platform

#endif
