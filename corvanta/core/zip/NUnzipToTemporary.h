#pragma once

#include <memory>
#include <string>

#include "corvanta/core/uri/NPath.h"

namespace corvanta::platform {
class NTemporaryFile;
}

namespace corvanta::core::zip {

/// An entry of a zip archive as a file of its own, which lasts as long as the object.
class CORVANTA_API NUnzipToTemporary {
 public:
  /// Unpacks `entry`, named as in the archive; `pass` is for an encrypted one. An entry may grow to
  /// 512 MiB, and above 64 MiB to 200 times its packed size and the archive's length
  /// (corvanta/platform/limits.h sets other limits).
  /// Fails: throws NZipPassError for a missing or wrong pass, NZipError for all else; the file is
  /// gone then.
  NUnzipToTemporary(uri::NPath const& archive, uri::NPath const& entry, std::wstring const& pass);
  ~NUnzipToTemporary();
  NUnzipToTemporary(NUnzipToTemporary const&) = delete;
  NUnzipToTemporary& operator=(NUnzipToTemporary const&) = delete;

  /// Ends like the entry's name, if its extension has one to eight letters or digits.
  uri::NPath const& GetTemporaryFilePath() const { return m_path; }

 private:
  std::unique_ptr<platform::NTemporaryFile> const m_file;
  uri::NPath const m_path;
};

}  // namespace corvanta::core::zip
