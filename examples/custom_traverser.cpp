// A parts list of a shelf that is put together from trees: a traverser walks a tree and follows
// every reference, so that a bracket modelled once is counted as often as it is shown. Derive from
// NSceneGraphTraverser and override the hooks that matter.
#include <iostream>
#include <map>
#include <string>

#include "scene.h"

using namespace example;
using item::NSceneGraphReferenceNode;

namespace {

class PartsList final : public domain::scenegraph::NSceneGraphTraverser {
 public:
  void Print() const {
    std::cout << "parts:\n";
    for (auto const& [name, part] : m_parts) {
      std::cout << "  " << part.count << " x " << name << ", " << part.triangles << " triangles\n";
    }
  }

 private:
  struct Part {
    int count = 0;
    std::size_t triangles = 0;
  };

  // These two come for every item, around the hook of its kind. The check points are the references
  // on the way, which make the item's path.
  void BeforeCommon(item::NSceneGraphItemNode& node, void const*,
                    NCheckPoints const& checkPoints) override {
    domain::scenegraph::NSceneGraphPath<item::NSceneGraphItemNode> const path(node, GetTree(),
                                                                              checkPoints);
    Vec3 place;
    path.GetGlobalTransform().MultVecMatrix(Vec3(), place);
    std::cout << std::string(m_depth, ' ') << Name(node) << " at " << Text(place)
              << (node.IsVisible() ? "\n" : ", hidden\n");
    m_depth += 2;
  }
  void AfterCommon(item::NSceneGraphItemNode&, void const*, NCheckPoints const&) override {
    m_depth -= 2;
  }

  using NSceneGraphTraverser::Before;
  // The pointer given to Start is handed through: here it names a reference to stay out of.
  void Before(NSceneGraphReferenceNode& node, void const* data,
              NCheckPoints const& checkPoints) override {
    auto const& skipped = *static_cast<std::wstring const*>(data);
    if (node.GetName() != skipped) TraverseExternal(node, data, checkPoints);
  }
  void Before(item::NSceneGraphModelNode& node, void const*, NCheckPoints const&) override {
    Part& part = m_parts[Name(node)];
    ++part.count;
    for (auto const& surface : node.GetGeometryNode()->GetSurfaces()) {
      part.triangles += surface->GetIndices().size() / 3;
    }
  }

  std::size_t m_depth = 0;
  std::map<std::string, Part> m_parts;
};

void Show(Document& document, NSceneGraphTreeNode const& parent, wchar_t const* name,
          NSceneGraphTreeNode const& tree, double x, double y) {
  auto const shown = document.GetItems().CreateNode<NSceneGraphReferenceNode>();
  shown->SetName(name);
  shown->SetSceneGraph(tree);
  shown->SetTranslationX(x);
  shown->SetTranslationY(y);
  parent.GetRoot()->AddChild(*shown);
}

}  // namespace

int main() {
  Document document;
  auto const screw = CreateTree(document, L"screw");
  AddBox(document, *screw->GetRoot(), L"shaft", {0, 0, -0.03f}, {0.01f, 0.01f, 0.06f});
  auto const head = AddBox(document, *screw->GetRoot(), L"head", {}, {0.02f, 0.02f, 0.01f});
  head->SetGeometryNode(data::internal::GetSphere(document.GetManager()));
  auto const bracket = CreateTree(document, L"bracket");
  AddBox(document, *bracket->GetRoot(), L"angle", {0, 0.15f, 0.1f}, {0.03f, 0.3f, 0.2f});
  Show(document, *bracket, L"upper screw", *screw, 0.0, 0.25);
  Show(document, *bracket, L"lower screw", *screw, 0.0, 0.05);
  auto const shelf = CreateTree(document, L"shelf");
  AddBox(document, *shelf->GetRoot(), L"board", {0, 0.31f, 0.12f}, {1, 0.02f, 0.24f});
  Show(document, *shelf, L"left bracket", *bracket, -0.4, 0.0);
  Show(document, *shelf, L"right bracket", *bracket, 0.4, 0.0);
  auto const tag = AddBox(document, *shelf->GetRoot(), L"price tag", {}, {0.05f, 0.03f, 0.001f});
  tag->SetIsVisibleFlag(false);

  for (std::wstring const skipped : {L"", L"right bracket"}) {
    PartsList list;
    list.Start(*shelf, &skipped);
    list.Print();
  }
}
