// A desk lamp is built, painted, swung round and taken away, and one listener hears all of it.
// It observes the event multiplexer of the document, which every domain reports to. An event comes
// inside the call that made the change, and the new value is in place by then.
#include <corvanta/names.h>

#include <iostream>
#include <string>

using namespace corvanta;

namespace {

std::string Name(core::name::NNamedObject const& object) {
  return '"' + core::text::ToNarrow(object.GetName()) + '"';
}

template <class Node>
std::string Name(boost::intrusive_ptr<Node> const& node) {
  return node ? Name(*node) : "nothing";
}

// NEventListener has an operation for each kind of event, and each does nothing until overridden.
class Listener final : public NEventListener {
  void OnAttributeChange(core::attribute::NAttributeHost& host,
                         core::attribute::NAttribute const& attribute) override {
    auto const* const node = dynamic_cast<core::node::NNode const*>(&host);
    std::cout << (node ? Name(*node) : "a host that is no node") << ": "
              << core::text::ToNarrow(attribute.GetName()) << " = " << attribute.GetDouble()
              << '\n';
  }
  void OnMaterialChange(NSceneGraphModelNode const& model,
                        boost::intrusive_ptr<NMaterialNode> const& old) override {
    std::cout << Name(model) << ": material " << Name(old) << " -> "
              << Name(model.GetMaterialNode()) << '\n';
  }
  void OnAddChild(NSceneGraphItemNode const& parent, NSceneGraphItemNode const& child) override {
    std::cout << Name(parent) << ": child " << Name(child) << " came, now "
              << parent.GetChildren().size() << '\n';
  }
  void OnRemoveChild(NSceneGraphItemNode const& parent, NSceneGraphItemNode const& child) override {
    std::cout << Name(parent) << ": child " << Name(child) << " went, now "
              << parent.GetChildren().size() << '\n';
  }
};

}  // namespace

int main() {
  NDocument document;
  auto const desk = document.GetItems().CreateNode<NSceneGraphGroupNode>();
  desk->SetName(L"desk");
  auto const lamp = document.GetItems().CreateNode<NSceneGraphModelNode>();
  lamp->SetName(L"lamp");
  auto const brass = document.GetMaterials().CreateNode();
  brass->SetName(L"brass");

  // Held weakly by the multiplexer: it hears as long as this pointer holds it.
  boost::intrusive_ptr<Listener> listener(new Listener);
  document.GetEvents().AddObserver(*listener);

  desk->AddChild(*lamp);
  lamp->SetMaterial(brass);
  brass->SetDiffuseR(0.75);
  lamp->SetRotationY(30.0);
  lamp->SetIsVisibleFlag(false);
  // Any attribute can be reached by its name, and set without a word to anybody.
  lamp->QueryAttribute(L"translation.x")->SetValue(0.5, true);
  lamp->QueryAttribute(L"translation.y")->SetValue(0.25, false);
  desk->RemoveChild(*lamp);

  listener = nullptr;
  lamp->SetRotationY(0.0);
  std::cout << "in the end " << Name(*lamp) << " stands at x " << lamp->GetTranslationX() << ", y "
            << lamp->GetTranslationY() << ", turned by " << lamp->GetRotationY() << " degrees\n";
}
