// A bicycle is offered in several frame colours. A material switch lists the colours and the models
// that they are for; the program applies a choice, and a listener of model events hears which
// models changed. The library counts where each material is used.
#include <iostream>
#include <string>

#include "scene.h"

using namespace example;
using data::switches::NMaterialSwitch;
using domain::material::NMaterialNode;

namespace {

class Listener final : public data::events::scene_graph_model::NListener {
  void OnMaterialChange(item::NSceneGraphModelNode const& model,
                        Pointer<NMaterialNode> const& old) override {
    std::cout << "  " << Name(model) << ": " << (old ? Name(*old) : "no paint") << " -> "
              << Name(*model.GetMaterialNode()) << '\n';
  }
  void OnGeometryChange(item::NSceneGraphModelNode const&,
                        Pointer<domain::geometry::NGeometryNode> const&) override {}
};

Pointer<NMaterialNode> CreatePaint(Document& document, wchar_t const* name, double r, double g,
                                   double b) {
  auto const paint = document.GetMaterials().CreateNode();
  paint->SetName(name);
  paint->SetDiffuseR(r);
  paint->SetDiffuseG(g);
  paint->SetDiffuseB(b);
  return paint;
}

// The switch only says what there is to choose; what a choice does is the caller's.
void Choose(NMaterialSwitch const& colors, Pointer<NMaterialNode> const& paint) {
  std::cout << Name(colors) << ": number " << colors.GetMaterialIndex(*paint) << " of "
            << colors.GetMaterials().size() << ", " << Name(*paint) << '\n';
  for (auto const& model : colors.GetModels()) {
    if (auto const node = model.Get()) node->SetMaterial(paint);
  }
}

void PrintUse(NMaterialSwitch const& colors) {
  for (auto const& material : colors.GetMaterials()) {
    auto const paint = material.Get();
    std::cout << "  " << Name(*paint) << " (" << Text(paint->GetDiffuseR()) << ", "
              << Text(paint->GetDiffuseG()) << ", " << Text(paint->GetDiffuseB()) << ") is "
              << (IsUsed(*paint) ? "used" : "not used") << '\n';
  }
}

}  // namespace

int main() {
  Document document;
  auto const bicycle = CreateTree(document, L"bicycle");
  item::NSceneGraphItemNode& root = *bicycle->GetRoot();
  auto const frame = AddBox(document, root, L"frame", {0, 0.6f, 0}, {0.9f, 0.5f, 0.04f});
  auto const fork = AddBox(document, root, L"fork", {0.5f, 0.5f, 0}, {0.04f, 0.6f, 0.1f});
  auto const saddle = AddBox(document, root, L"saddle", {-0.3f, 0.95f, 0}, {0.25f, 0.06f, 0.14f});
  auto const leather = CreatePaint(document, L"brown leather", 0.3, 0.15, 0.05);
  auto const red = CreatePaint(document, L"signal red", 0.8, 0.1, 0.1);
  auto const green = CreatePaint(document, L"racing green", 0.0, 0.25, 0.15);
  saddle->SetMaterial(leather);

  Pointer<NMaterialSwitch> const colors(new NMaterialSwitch);
  colors->SetName(L"frame color");
  colors->AddMaterial(red, 0);
  colors->AddMaterial(green, 1);
  colors->AddModel(frame);
  colors->AddModel(fork);

  Pointer<Listener> const listener(new Listener);
  document.GetEvents().GetSceneGraphModelEventMultiplexer().AddObserver(*listener);
  Choose(*colors, red);
  Choose(*colors, green);
  PrintUse(*colors);

  // A late offer goes to the top of the list; what is chosen stays.
  auto const night = CreatePaint(document, L"night blue", 0.05, 0.05, 0.3);
  colors->AddMaterial(night, 0);
  colors->RemoveMaterial(colors->GetMaterialIndex(*red));
  Choose(*colors, night);
  PrintUse(*colors);
  std::cout << "the saddle is still of " << Name(*saddle->GetMaterialNode()) << '\n';
}
