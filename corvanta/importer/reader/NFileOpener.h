#pragma once

#include <string>

namespace corvanta::importer::reader {

/// Opens what a model file names: a reader has no right to do so itself.
class NFileOpener {
 public:
  NFileOpener() = default;
  NFileOpener(NFileOpener const&) = delete;
  NFileOpener& operator=(NFileOpener const&) = delete;
  virtual ~NFileOpener() = default;

  /// A descriptor of that regular file, to be read and to be closed by the caller.
  /// Fails: -1.
  virtual int Open(std::string const& path) = 0;
};

}  // namespace corvanta::importer::reader
