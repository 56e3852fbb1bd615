#pragma once

#include <boost/intrusive_ptr.hpp>
#include <memory>
#include <vector>

#include "corvanta/data/document/NDocument.h"
#include "corvanta/export.h"
#include "corvanta/importer/NTemporaryArchive.h"

namespace corvanta::importer {

/// The document that a model file is read into, and what was added to it so far: nodes, and the
/// archive of the pictures that are in the file itself. All of it is removed again with this
/// object, unless it is kept, so that a file that is refused late leaves the document as it was.
class CORVANTA_API NImportTarget {
 public:
  explicit NImportTarget(data::document::NDocument& document) : m_document(document) {}
  NImportTarget(NImportTarget const&) = delete;
  NImportTarget& operator=(NImportTarget const&) = delete;
  ~NImportTarget();

  data::document::NDocument& GetDocument() const { return m_document; }

  /// A node of a domain of one kind.
  /// Fails: throws as its CreateNode does.
  template <class Domain>
  auto Create(Domain& domain) {
    return Add([&domain] { return domain.CreateNode(); });
  }
  /// A node of the class `Node` in a domain of several kinds.
  template <class Node, class Domain>
  boost::intrusive_ptr<Node> Create(Domain& domain) {
    return Add([&domain] { return domain.template CreateNode<Node>(); });
  }

  void SetArchive(std::unique_ptr<NTemporaryArchive const> archive) {
    m_archive = std::move(archive);
  }

  /// What was added stays, and the archive lives as long as the document.
  void Keep();

 private:
  // The entry is made first: a node that memory is lacking to note would stay in the document.
  template <class Creation>
  auto Add(Creation const& create) {
    m_nodes.emplace_back();
    auto node = create();
    m_nodes.back() = node;
    return node;
  }

  data::document::NDocument& m_document;
  std::vector<boost::intrusive_ptr<core::node::NNode>> m_nodes;  // null where making one failed
  std::unique_ptr<NTemporaryArchive const> m_archive;
};

}  // namespace corvanta::importer
