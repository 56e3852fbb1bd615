#include "corvanta/importer/NImportTarget.h"

#include "corvanta/core/domain/NDomainBase.h"

namespace corvanta::importer {

NImportTarget::~NImportTarget() {
  for (; !m_nodes.empty(); m_nodes.pop_back()) {
    core::node::NNode& node = *m_nodes.back();
    if (node.GetDomain() != nullptr) node.GetDomain()->RemoveNode(node);
  }
}

void NImportTarget::Keep() {
  if (m_archive) m_document.Keep(std::move(m_archive));
  m_nodes.clear();
}

}  // namespace corvanta::importer
