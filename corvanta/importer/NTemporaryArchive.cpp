#include "corvanta/importer/NTemporaryArchive.h"

#include <zip.h>

#include <memory>
#include <stdexcept>
#include <system_error>

#include "corvanta/core/node/NNodeID.h"
#include "corvanta/core/text/convert.h"
#include "corvanta/platform/temporary.h"

namespace corvanta::importer {

namespace {

// What isn't closed is given up, and leaves nothing on disk.
using Archive = std::unique_ptr<zip_t, decltype(&zip_discard)>;

void Add(zip_t* archive, NTemporaryArchive::Entry const& entry) {
  zip_source_t* const source =
      zip_source_buffer(archive, entry.bytes.data(), entry.bytes.size(), 0);
  zip_int64_t const index =
      source == nullptr ? -1 : zip_file_add(archive, entry.name.c_str(), source, ZIP_FL_ENC_UTF_8);
  if (index < 0) {
    zip_source_free(source);
    throw std::runtime_error("can't write the archive of its pictures");
  }
  zip_set_file_compression(archive, static_cast<zip_uint64_t>(index), ZIP_CM_STORE, 0);
}

}  // namespace

NTemporaryArchive::NTemporaryArchive(std::vector<Entry> const& entries) {
  std::wstring const folder = platform::GetTemporaryFolder();
  if (folder.empty()) throw std::runtime_error("there is no temporary folder for its pictures");
  // An id is a name that nobody else has.
  std::wstring const name = core::node::NNodeID().ToString() + L".zip";
  m_path = std::filesystem::path(core::text::ToNarrow(folder)) / core::text::ToNarrow(name);

  Archive archive(zip_open(m_path.c_str(), ZIP_CREATE | ZIP_EXCL, nullptr), &zip_discard);
  if (!archive) throw std::runtime_error("can't write the archive of its pictures");
  for (Entry const& entry : entries) Add(archive.get(), entry);
  if (zip_close(archive.get()) != 0) {
    throw std::runtime_error(std::string("can't write the archive of its pictures: ") +
                             zip_strerror(archive.get()));
  }
  archive.release();
}

NTemporaryArchive::~NTemporaryArchive() {
  std::error_code ignored;
  std::filesystem::remove(m_path, ignored);
}

}  // namespace corvanta::importer
