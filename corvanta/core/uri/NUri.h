#pragma once

#include "corvanta/core/uri/NPath.h"

namespace corvanta::core::uri {

/// What the path of a URI means.
enum NUriType : int {
  UT_FILE = 0,      ///< a file
  UT_INTERNAL = 1,  ///< something inside the program; no file
  UT_SYSTEM = 2,    ///< a picture that comes with the library
};

/// A path and what it means. A default one is of type file with an empty path.
class CORVANTA_API NUri {
 public:
  NUri() = default;
  static NUri CreateFileUri(NPath const& path) { return {UT_FILE, path}; }
  static NUri CreateInternalUri(NPath const& path) { return {UT_INTERNAL, path}; }
  static NUri CreateSystemUri(NPath const& path) { return {UT_SYSTEM, path}; }

  NUriType GetType() const { return m_type; }
  NPath const& GetPath() const { return m_path; }

  friend bool operator==(NUri const&, NUri const&) = default;
  friend std::strong_ordering operator<=>(NUri const&, NUri const&) = default;

 private:
  NUri(NUriType type, NPath path) : m_type(type), m_path(std::move(path)) {}

  NUriType m_type = UT_FILE;
  NPath m_path;
};

/// The file that `uri` names, whether it is there or not. "/Resource" at the begin of a system URI
/// stands for the resource folder; other system paths lie below that folder.
/// Fails: an empty path for an internal URI and for an empty path.
CORVANTA_API NPath GetFile(NUri const& uri);

/// Whether a file or folder stands at `path`.
CORVANTA_API bool Exists(NPath const& path);

/// The folder of the pictures that come with the library: where `SetResourceFolder` put it, or else
/// share/corvanta/resource one or two folders above the library's own. May be called from any
/// thread.
CORVANTA_API NPath GetResourceFolder();

/// Sets another resource folder; an empty path goes back to the one beside the library.
CORVANTA_API void SetResourceFolder(NPath const& folder);

}  // namespace corvanta::core::uri
