#include "corvanta/core/zip/NUnzipToTemporary.h"

#include <algorithm>
#include <vector>

#include <zip.h>

#include "corvanta/core/text/convert.h"
#include "corvanta/core/zip/NZipError.h"
#include "corvanta/platform/limits.h"
#include "corvanta/platform/narrow_path.h"
#include "corvanta/platform/temporary.h"

namespace corvanta::core::zip {

namespace {

struct ArchiveCloser {
  void operator()(zip_t* archive) const { zip_discard(archive); }
};
struct EntryCloser {
  void operator()(zip_file_t* entry) const { zip_fclose(entry); }
};
using Archive = std::unique_ptr<zip_t, ArchiveCloser>;
using Entry = std::unique_ptr<zip_file_t, EntryCloser>;

// Formats are judged by the name, so the extension is all that is kept of it.
std::wstring GetSafeExtension(uri::NPath const& entry) {
  std::wstring const extension = entry.GetExtension();
  auto const isSafe = [](wchar_t c) {
    return (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z') || (c >= L'0' && c <= L'9');
  };
  bool const keep = extension.size() >= 2 && extension.size() <= 9 &&
                    std::all_of(extension.begin() + 1, extension.end(), isSafe);
  return keep ? extension : std::wstring();
}

Archive OpenArchive(uri::NPath const& path) {
  std::optional<std::string> const narrow = platform::ToNarrowPath(path.ToString());
  if (!narrow || platform::GetFileSize(path.ToString()) < 0) throw NZipError();
  Archive archive(zip_open(narrow->c_str(), ZIP_RDONLY, nullptr));
  if (!archive) throw NZipError();
  return archive;
}

// With traditional encryption one wrong pass in 256 is only found out by the unpacked bytes.
[[noreturn]] void ThrowUnreadable(bool encrypted) {
  if (encrypted) throw NZipPassError();
  throw NZipError();
}

Entry OpenEntry(zip_t& archive, zip_uint64_t index, bool encrypted, std::wstring const& pass) {
  if (!encrypted) return Entry(zip_fopen_index(&archive, index, 0));
  if (pass.empty()) throw NZipPassError();
  return Entry(zip_fopen_index_encrypted(&archive, index, 0, text::ToNarrow(pass).c_str()));
}

// An entry may claim any packed size, but no more of it is packed than the archive has.
zip_uint64_t GetMostBytes(uri::NPath const& archive, zip_uint64_t packed) {
  platform::NArchiveLimits const limits = platform::GetArchiveLimits();
  long long const length = platform::GetFileSize(archive.ToString());
  zip_uint64_t const present = std::min(packed, static_cast<zip_uint64_t>(std::max(length, 0LL)));
  zip_uint64_t unpacked = 0;
  if (__builtin_mul_overflow(present, limits.ratio, &unpacked)) unpacked = limits.bytes;
  return std::min(std::max(unpacked, limits.freeBytes), limits.bytes);
}

void Unpack(uri::NPath const& archivePath, uri::NPath const& entryPath, std::wstring const& pass,
            platform::NTemporaryFile& file) {
  Archive const archive = OpenArchive(archivePath);
  std::optional<std::string> const name = platform::ToNarrowPath(entryPath.ToString());
  zip_stat_t status;
  zip_stat_init(&status);
  constexpr zip_uint64_t kNeeded =
      ZIP_STAT_INDEX | ZIP_STAT_SIZE | ZIP_STAT_COMP_SIZE | ZIP_STAT_ENCRYPTION_METHOD;
  if (!name || zip_stat(archive.get(), name->c_str(), 0, &status) != 0 ||
      (status.valid & kNeeded) != kNeeded)
    throw NZipError();
  // The sizes are what the archive claims, so the bytes are counted as they come.
  zip_uint64_t const most = GetMostBytes(archivePath, status.comp_size);
  if (status.size > most) throw NZipError();
  bool const encrypted = status.encryption_method != ZIP_EM_NONE;
  Entry const entry = OpenEntry(*archive, status.index, encrypted, pass);
  if (!entry) ThrowUnreadable(encrypted);
  std::vector<unsigned char> buffer(256 * 1024);
  zip_uint64_t length = 0;
  for (;;) {
    zip_int64_t const count = zip_fread(entry.get(), buffer.data(), buffer.size());
    if (count < 0) ThrowUnreadable(encrypted);
    if (count == 0) break;
    length += static_cast<zip_uint64_t>(count);
    if (length > most || !file.Write(buffer.data(), static_cast<std::size_t>(count)))
      throw NZipError();
  }
  if (!file.Close()) throw NZipError();
}

}  // namespace

NUnzipToTemporary::NUnzipToTemporary(uri::NPath const& archive, uri::NPath const& entry,
                                     std::wstring const& pass)
    : m_file(std::make_unique<platform::NTemporaryFile>(GetSafeExtension(entry))),
      m_path(m_file->GetPath()) {
  Unpack(archive, entry, pass, *m_file);
}

NUnzipToTemporary::~NUnzipToTemporary() = default;

NZipError::~NZipError() = default;

wchar_t const* NZipError::GetErrorCodeImpl() const { return L"Zip Error"; }

NZipPassError::~NZipPassError() = default;

wchar_t const* NZipPassError::GetErrorCodeImpl() const { return L"Zip Pass Error"; }

}  // namespace corvanta::core::zip
