// A delivery truck is built with one of three bodies. A model switch lists the variants, each a
// named set of models that are shown or hidden together; the program applies a choice, and the
// boxes of the scene leave out what is hidden.
#include <iostream>

#include "scene.h"

using namespace example;
using data::switches::NModelSwitch;
using data::switches::detail::NModelSet;

namespace {

Pointer<NModelSet> AddVariant(
    NModelSwitch& bodies, wchar_t const* name,
    std::initializer_list<Pointer<item::NSceneGraphModelNode>> const& models) {
  Pointer<NModelSet> const set(new NModelSet);
  set->SetName(name);
  for (auto const& model : models) set->AddNode(model);
  bodies.AddModelSet(*set, bodies.GetModelSetCount());
  return set;
}

// Hides every other set first: a model may stand in several.
void Choose(NModelSwitch const& bodies, NModelSet const& chosen) {
  for (auto const& set : bodies.GetModelSets()) {
    for (auto const& model : set->GetNodes()) {
      if (auto const node = model.Get()) node->SetIsVisibleFlag(false);
    }
  }
  for (auto const& model : chosen.GetNodes()) {
    if (auto const node = model.Get()) node->SetIsVisibleFlag(true);
  }
}

void Print(NModelSwitch const& bodies, NModelSet const& chosen, NSceneGraphTreeNode const& truck) {
  VX_Math::Box3 const box = domain::scenegraph::tree::GetBoundingBox(truck);
  std::cout << bodies.GetModelSetIndex(chosen) << ' ' << Name(chosen) << ':';
  for (auto const& child : truck.GetRoot()->GetChildren()) {
    if (child->IsVisible()) std::cout << ' ' << Name(*child);
  }
  std::cout << "; " << Text(box.GetSize().x) << " m long, " << Text(box.GetSize().y) << " m high\n";
}

}  // namespace

int main() {
  Document document;
  auto const truck = CreateTree(document, L"truck");
  item::NSceneGraphItemNode& root = *truck->GetRoot();
  AddBox(document, root, L"cab", {2.5f, 1.5f, 0}, {1.8f, 2, 2.2f});
  AddBox(document, root, L"chassis", {0, 0.4f, 0}, {6.8f, 0.4f, 2});
  auto const bed = AddBox(document, root, L"bed", {-1, 0.7f, 0}, {5, 0.2f, 2.2f});
  auto const crane = AddBox(document, root, L"crane", {1.2f, 1.9f, 0}, {0.4f, 2.2f, 0.4f});
  auto const container = AddBox(document, root, L"container", {-1, 2, 0}, {5, 2.4f, 2.4f});
  auto const lift = AddBox(document, root, L"lift", {-3.8f, 1.6f, 0}, {0.6f, 1.6f, 2.4f});

  Pointer<NModelSwitch> const bodies(new NModelSwitch);
  bodies->SetName(L"body");
  AddVariant(*bodies, L"flatbed", {bed});
  AddVariant(*bodies, L"flatbed with crane", {bed, crane});
  AddVariant(*bodies, L"box body", {bed, container, lift});

  std::cout << Name(*bodies) << " has " << bodies->GetModelSetCount() << " variants\n";
  for (auto const& set : bodies->GetModelSets()) {
    Choose(*bodies, *set);
    Print(*bodies, *set, *truck);
  }

  // Names are unique in a switch, so a variant can be asked for by its name.
  Pointer<NModelSet> const again(new NModelSet);
  again->SetName(L"flatbed");
  std::cout << "a second \"flatbed\" is " << (bodies->AddModelSet(*again, 0) ? "taken" : "refused")
            << '\n';
  auto const found = FindModelSet(*bodies, L"flatbed with crane");
  Choose(*bodies, *found);
  Print(*bodies, *found, *truck);
}
