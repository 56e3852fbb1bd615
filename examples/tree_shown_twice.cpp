// A desk lamp is modelled once, in centimetres, and shown twice in an office that counts in metres:
// a reference item shows a whole tree at its own place. What changes in the lamp changes in both
// showings. A path, which names the references on the way, tells one showing from the other.
#include <iostream>
#include <vector>

#include "scene.h"

using namespace example;
using ModelPath = domain::scenegraph::NSceneGraphPath<item::NSceneGraphModelNode>;

namespace {

void PrintShowings(std::vector<ModelPath> const& paths) {
  for (ModelPath const& path : paths) {
    VX_Math::Box3 const box = path.GetGlobalBoundingBox();
    std::cout << "  " << Name(*path.GetCheckPoints().front().Get()) << ": " << Name(*path.GetNode())
              << " from " << Text(box.min) << " to " << Text(box.max) << '\n';
  }
}

}  // namespace

int main() {
  Document document;
  auto const lamp = CreateTree(document, L"lamp");
  lamp->SetUnit(0.01);
  AddBox(document, *lamp->GetRoot(), L"foot", {0, 1, 0}, {20, 2, 20});
  AddBox(document, *lamp->GetRoot(), L"arm", {0, 22, 0}, {2, 40, 2});
  auto const shade = AddBox(document, *lamp->GetRoot(), L"shade", {10, 45, 0}, {30, 6, 12});

  auto const office = CreateTree(document, L"office");
  AddBox(document, *office->GetRoot(), L"desk", {0, 0.4f, 0}, {2, 0.8f, 1});
  std::vector<ModelPath> paths;
  for (double const side : {-1.0, 1.0}) {
    auto const shown = document.GetItems().CreateNode<item::NSceneGraphReferenceNode>();
    shown->SetName(side < 0 ? L"left lamp" : L"right lamp");
    shown->SetSceneGraph(lamp);
    shown->SetTranslationX(0.75 * side);
    shown->SetTranslationY(0.8);
    shown->SetRotationY(side < 0 ? 0.0 : 180.0);
    office->GetRoot()->AddChild(*shown);
    paths.emplace_back(shade, office, std::vector<ModelPath::CheckPoints::value_type>{shown});
  }

  std::cout << "items in the office's own tree: " << office->GetRoot()->GetChildren().size()
            << ", one shade in two places:\n";
  PrintShowings(paths);
  VX_Math::Box3 const box = domain::scenegraph::tree::GetBoundingBox(*office);
  std::cout << "the office takes " << Text(box.GetSize()) << "\n\n";

  shade->SetTranslationY(65.0);
  std::cout << "the shade is pushed up by 20 cm:\n";
  PrintShowings(paths);
  VX_Math::Box3 const higher = domain::scenegraph::tree::GetBoundingBox(*office);
  std::cout << "the office takes " << Text(higher.GetSize()) << "\n\n";

  office->GetRoot()->RemoveChild(*office->GetRoot()->GetChildren().back());
  for (ModelPath const& path : paths) {
    std::cout << Name(*path.GetCheckPoints().front().Get()) << ": the path to the shade is "
              << (IsValid(path) ? "valid" : "not valid any more") << '\n';
  }
}
