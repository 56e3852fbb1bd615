#pragma once

#include <memory>
#include <vector>

#include "corvanta/data/document/NDocument.h"

namespace corvanta::app {

class NTemporaryArchive;

/// A document of the library, and the archives on disk that its pictures lie in.
class NDocument : public data::document::NDocument {
 public:
  NDocument();
  ~NDocument();

  /// Keeps an archive on disk as long as this document lives.
  void KeepArchive(std::unique_ptr<NTemporaryArchive> archive);

 private:
  std::vector<std::unique_ptr<NTemporaryArchive>> m_archives;
};

}  // namespace corvanta::app
