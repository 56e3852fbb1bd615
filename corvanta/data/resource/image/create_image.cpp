#include "corvanta/data/resource/image/create_image.h"

#include <exception>
#include <new>
#include <optional>
#include <string_view>

#include <boost/thread/locks.hpp>
#include <boost/thread/mutex.hpp>

#include "corvanta/core/text/convert.h"
#include "corvanta/core/zip/NUnzipToTemporary.h"
#include "corvanta/core/zip/pass.h"
#include "corvanta/data/internal/built_in_images.h"
#include "corvanta/data/resource/image/NImage.h"
#include "corvanta/data/resource/image/NNestedCreationError.h"
#include "corvanta/data/resource/image/detail/NFIImage.h"
#include "corvanta/data/resource/image/detail/NFIImageError.h"
#include "corvanta/data/resource/image/detail/NUnknownImage.h"
#include "corvanta/platform/picture.h"

namespace corvanta::data::resource::image {

namespace {

boost::mutex& GetCreationMutex() {
  static boost::mutex& mutex = *new boost::mutex;
  return mutex;
}

// Marks this thread as loading; a second time it throws, where the mutex would wait for itself.
class NestingGuard {
 public:
  NestingGuard() {
    if (m_loading) throw NNestedCreationError();
    m_loading = true;
  }
  ~NestingGuard() { m_loading = false; }
  NestingGuard(NestingGuard const&) = delete;
  NestingGuard& operator=(NestingGuard const&) = delete;

 private:
  static thread_local bool m_loading;
};

thread_local bool NestingGuard::m_loading = false;

// The file to read for a locator: its own, or an unpacked one that lasts as long as the object.
class SourceFile {
 public:
  explicit SourceFile(core::locator::NLocator const& locator)
      : m_path(core::uri::GetFile(locator.GetUri())) {
    if (locator.IsZipped()) {
      m_unzipped.emplace(m_path, locator.GetZippedPath(),
                         core::zip::GetPass(m_path, core::zip::NPT_ARCHIVE));
    }
  }

  core::uri::NPath const& GetPath() const {
    return m_unzipped ? m_unzipped->GetTemporaryFilePath() : m_path;
  }

 private:
  core::uri::NPath const m_path;
  std::optional<core::zip::NUnzipToTemporary> m_unzipped;
};

std::wstring Explain(std::exception_ptr const& error) {
  try {
    std::rethrow_exception(error);
  } catch (detail::NFIImageError const& decoding) {
    if (!decoding.GetReason().empty()) return core::text::ToWide(decoding.GetReason());
  } catch (std::bad_alloc const&) {
    return L"there is too little memory";
  } catch (...) {
  }
  return L"the file can't be read";
}

boost::intrusive_ptr<NImage> LoadImage(core::uri::NPath const& path, NImageFormat format,
                                       std::wstring& reason) {
  reason.clear();
  try {
    if (format == NIF_DECODED) return boost::intrusive_ptr<NImage>(new detail::NFIImage(path));
    return boost::intrusive_ptr<NImage>(new detail::NUnknownImage(path));
  } catch (...) {
    reason = Explain(std::current_exception());
    core::uri::NPath const notFound = core::uri::GetFile(internal::GetNotFoundImage().GetUri());
    return boost::intrusive_ptr<NImage>(new detail::NUnknownImage(notFound));
  }
}

}  // namespace

boost::intrusive_ptr<NImage> CreateImage(core::locator::NLocator const& locator,
                                         NImageFormat format, std::wstring& reason) {
  NestingGuard const guard;
  boost::mutex::scoped_lock const lock(GetCreationMutex());
  SourceFile const file(locator);
  return LoadImage(file.GetPath(), format, reason);
}

boost::intrusive_ptr<NImage> CreateImage(core::locator::NLocator const& locator,
                                         NImageFormat format) {
  std::wstring reason;
  return CreateImage(locator, format, reason);
}

NImageFormat LocatorToFormat(core::locator::NLocator const& locator) {
  if (!core::uri::Exists(core::uri::GetFile(locator.GetUri()))) return NIF_RAW;
  SourceFile const file(locator);
  switch (static_cast<int>(platform::GetFIFFromFilename(file.GetPath().ToString()))) {
    case platform::PF_UNKNOWN:
      return ExtensionToFormat(file.GetPath().GetExtension().c_str());
    case platform::PF_BMP:
    case platform::PF_PNG:
    case platform::PF_PPM:
    case platform::PF_PPMRAW:
    case platform::PF_TARGA:
    case platform::PF_DDS:
    case platform::PF_HDR:
      return NIF_RAW;
    default:
      return NIF_DECODED;
  }
}

NImageFormat ExtensionToFormat(wchar_t const* extension) {
  std::wstring lower = extension == nullptr ? L"" : extension;
  for (wchar_t& c : lower) c = c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c - L'A' + L'a') : c;
  return lower == L".tif" || lower == L".tiff" ? NIF_DECODED : NIF_RAW;
}

NImage::~NImage() = default;

NNestedCreationError::~NNestedCreationError() = default;

wchar_t const* NNestedCreationError::GetErrorCodeImpl() const { return L"Nested Creation Error"; }

}  // namespace corvanta::data::resource::image
