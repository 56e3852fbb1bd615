#pragma once

#include <zip.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "corvanta/core/text/convert.h"
#include "corvanta/core/uri/NPath.h"

namespace corvanta::support {

struct ZipEntry {
  std::string name;
  std::string bytes;
  zip_uint16_t encryption = ZIP_EM_NONE;
  std::string pass = {};
};

inline void WriteZip(core::uri::NPath const& path, std::vector<ZipEntry> const& entries) {
  std::string const narrow = core::text::ToNarrow(path.ToString());
  zip_t* const archive = zip_open(narrow.c_str(), ZIP_CREATE | ZIP_TRUNCATE, nullptr);
  for (ZipEntry const& entry : entries) {
    zip_source_t* const source =
        zip_source_buffer(archive, entry.bytes.data(), entry.bytes.size(), 0);
    auto const index = static_cast<zip_uint64_t>(
        zip_file_add(archive, entry.name.c_str(), source, ZIP_FL_ENC_UTF_8));
    if (entry.encryption != ZIP_EM_NONE) {
      zip_file_set_encryption(archive, index, entry.encryption, entry.pass.c_str());
    }
  }
  if (zip_close(archive) != 0) throw std::runtime_error("The test's archive can't be written.");
}

}  // namespace corvanta::support
