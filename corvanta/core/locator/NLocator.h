#pragma once

#include "corvanta/core/uri/NUri.h"

namespace corvanta::core::locator {

/// Where something lies: a URI and, for an entry of a zip archive, the path inside it. A default
/// one names nothing.
class CORVANTA_API NLocator {
 public:
  NLocator() = default;
  /// An empty `zippedPath` means the file itself.
  NLocator(uri::NUri uri, uri::NPath zippedPath = {})
      : m_uri(std::move(uri)), m_zippedPath(std::move(zippedPath)) {}

  uri::NUri const& GetUri() const { return m_uri; }
  bool IsZipped() const { return !m_zippedPath.IsEmpty(); }
  uri::NPath const& GetZippedPath() const { return m_zippedPath; }

  friend bool operator==(NLocator const&, NLocator const&) = default;
  friend std::strong_ordering operator<=>(NLocator const&, NLocator const&) = default;

 private:
  uri::NUri m_uri;
  uri::NPath m_zippedPath;
};

}  // namespace corvanta::core::locator
