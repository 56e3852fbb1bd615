#include "app/scene/NDocument.h"

#include <utility>

#include "app/scene/NTemporaryArchive.h"

namespace corvanta::app {

NDocument::NDocument() = default;

NDocument::~NDocument() = default;

void NDocument::KeepArchive(std::unique_ptr<NTemporaryArchive> archive) {
  m_archives.push_back(std::move(archive));
}

}  // namespace corvanta::app
