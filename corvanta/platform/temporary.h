#pragma once

#include <string>

#include "corvanta/export.h"
#include "corvanta/platform/file.h"

namespace corvanta::platform {

/// A folder for temporary files that belongs to this user alone; made if it isn't there. Where
/// something of another user is in its place it is one of this process alone, with a new name,
/// which goes with all in it at the process's end.
/// Fails: empty if it can't be made.
CORVANTA_API std::wstring GetTemporaryFolder();

/// Writes a file called `name` in the temporary folder and gives its path. A file of that name is
/// replaced at once: who reads it sees the old or the new content, whole.
/// Fails: empty, with nothing changed, if it can't be written.
CORVANTA_API std::wstring WriteTemporaryFile(std::wstring const& name, void const* bytes,
                                             std::size_t length);

/// A file of its own name in the temporary folder, gone when the object goes.
class CORVANTA_API NTemporaryFile {
 public:
  /// `extension` ends the name; empty, or a point and letters.
  explicit NTemporaryFile(std::wstring const& extension);
  ~NTemporaryFile();
  NTemporaryFile(NTemporaryFile const&) = delete;
  NTemporaryFile& operator=(NTemporaryFile const&) = delete;

  /// Empty if the file couldn't be made.
  std::wstring const& GetPath() const { return m_path; }

  /// Appends; nothing can be appended after `Close`.
  /// Fails: false.
  bool Write(void const* bytes, std::size_t length);

  /// Puts what was written into the file.
  /// Fails: false if a part of it couldn't be written.
  bool Close();

 private:
  std::string m_narrowPath;  // for the end, which can't convert
  std::wstring m_path;
  NFile m_file;
};

}  // namespace corvanta::platform
