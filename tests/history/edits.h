#pragma once

#include "tests/support/world.h"

namespace corvanta::history {

/// Makes random edits of a document: of everything that a setter can change, on nodes of every
/// kind, of which some come and go.
class Editor {
 public:
  explicit Editor(NDocument& document, Random& random) : m_document(document), m_random(random) {}

  /// A node of every kind, twice.
  void Populate();
  /// One edit, which may be refused.
  void Edit();
  /// An attribute or a name: what listeners do in answer.
  void EditLightly();

 private:
  using Node = data::domain::NNode;

  unsigned Below(std::size_t count) {
    return static_cast<unsigned>(m_random() % std::max<std::size_t>(count, 1));
  }
  template <class T, class Domain>
  Pointer<T> Any(Domain const& domain);
  template <class T, class Domain>
  NNodeReference<T> AnyReference(Domain const& domain);
  Pointer<Node> AnyNode();
  NVariant AnyValue(NAttribute const& attribute);
  std::wstring AnyName() { return L"name " + std::to_wstring(Below(5)); }
  NLocator AnyLocator();
  Pointer<Node> Create(unsigned kind);
  void WriteAttribute(NAttributeHost& host);
  void EditHierarchy();
  void EditItem();
  void EditScenes();
  void EditMaterials();
  void EditEnvironments();
  void EditLightEnvs();
  void EditGeometries();
  void EditAnimations();
  void EditDomain();
  void Copy();

  NDocument& m_document;
  Random& m_random;
};

}  // namespace corvanta::history
