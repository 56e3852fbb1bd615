// An entry of any archive becomes a file of exactly what it unpacks to, within the limits, or an
// NZipError; nothing is left behind.
#include <zip.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <optional>
#include <vector>

#include "corvanta/core/text/convert.h"
#include "corvanta/core/zip/NUnzipToTemporary.h"
#include "corvanta/core/zip/NZipError.h"
#include "corvanta/platform/limits.h"
#include "fuzz/support.h"

// The zip library loses some memory with archives that it finds broken.
extern "C" char const* __lsan_default_suppressions() { return "leak:libzip"; }

namespace corvanta::fuzz {
namespace {

using core::text::ToNarrow;
using core::text::ToWide;

constexpr char kPass[] = "pass";

platform::NArchiveLimits GetLimits() {
  platform::NArchiveLimits limits;
  limits.bytes = 1 << 20;
  limits.freeBytes = 1 << 16;
  limits.ratio = 20;
  return limits;
}

struct Found {
  std::string name;
  std::optional<std::string> bytes = {};  // none if it can't be unpacked
  bool isRead = true;
};

// The first entries as another reading has them.
std::vector<Found> ReadEntries(std::string const& path) {
  std::vector<Found> found;
  zip_t* const archive = zip_open(path.c_str(), ZIP_RDONLY, nullptr);
  if (!archive) return found;
  constexpr zip_int64_t kMostEntries = 3;
  for (zip_int64_t i = 0; i < std::min(zip_get_num_entries(archive, 0), kMostEntries); ++i) {
    auto const index = static_cast<zip_uint64_t>(i);
    char const* const name = zip_get_name(archive, index, 0);
    if (!name || zip_name_locate(archive, name, 0) != i) continue;
    found.push_back({name});
    zip_file_t* const entry = zip_fopen_index_encrypted(archive, index, 0, kPass);
    if (!entry) continue;
    std::string bytes(GetLimits().bytes + 1, '\0');
    auto const length = zip_fread(entry, bytes.data(), bytes.size());
    // The end of an entry is where its checksum is looked at.
    char more = 0;
    bool const isWhole = length >= 0 && zip_fread(entry, &more, 1) == 0;
    if (isWhole) found.back().bytes = bytes.substr(0, static_cast<std::size_t>(length));
    zip_fclose(entry);
  }
  zip_discard(archive);
  return found;
}

std::ptrdiff_t CountDescriptors() {
  return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

void CheckEntry(std::wstring const& archive, Found const& entry, Folder const& folder) {
  std::wstring const name = ToWide(entry.name);
  for (std::wstring const& pass : {ToWide(kPass), std::wstring(L"other"), std::wstring()}) {
    try {
      core::zip::NUnzipToTemporary const unzipped(archive, name, pass);
      std::filesystem::path const path = ToNarrow(unzipped.GetTemporaryFilePath().ToString());
      Require(folder.CountFiles() == 1 && path.string().starts_with(folder.GetPath().string()),
              "there is one file, in the temporary folder");
      std::wstring const extension = core::uri::NPath(name).GetExtension();
      Require(path.extension().empty() || path.extension() == ToNarrow(extension),
              "its extension is the entry's, or none");
      std::ifstream file(path, std::ios::binary);
      std::string const bytes{std::istreambuf_iterator<char>(file), {}};
      Require(bytes.size() <= GetLimits().bytes, "it is within the limits");
      // Another pass may open it too, to other bytes.
      bool const isOpened = pass == ToWide(kPass) || (pass.empty() && entry.bytes);
      if (entry.isRead && isOpened) Require(bytes == entry.bytes, "it is what is packed");
    } catch (core::zip::NZipError const&) {
    }
    Require(folder.CountFiles() == 0, "nothing is left");
  }
}

}  // namespace
}  // namespace corvanta::fuzz

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace corvanta;
  static fuzz::Folder const folder;
  platform::SetArchiveLimits(fuzz::GetLimits());
  fuzz::MemoryFile const file({data, size});
  std::wstring const path = file.GetPath();
  auto entries = fuzz::ReadEntries(core::text::ToNarrow(path));
  entries.push_back({"a.png", {}, false});
  auto const before = fuzz::CountDescriptors();
  for (auto const& entry : entries) fuzz::CheckEntry(path, entry, folder);
  fuzz::Require(fuzz::CountDescriptors() == before, "no file is left open");
  return 0;
}
