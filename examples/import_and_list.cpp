// Model files read into one document, and what they hold as a tree of items: kind, name, and for a
// model its triangles and its material. Notes say what a file holds and the document can't.
#include <corvanta/importer.h>
#include <corvanta/names.h>

#include <iostream>

using namespace corvanta;

static std::string Narrow(std::wstring const& text) { return core::text::ToNarrow(text); }

static std::string Describe(NSceneGraphItemNode const& item) {
  auto const* const model = dynamic_cast<NSceneGraphModelNode const*>(&item);
  if (model == nullptr) return Narrow(item.GetName());
  unsigned triangles = 0;
  if (auto const geometry = model->GetGeometryNode()) {
    for (auto const& surface : geometry->GetSurfaces()) {
      triangles += static_cast<unsigned>(surface->GetIndices().size() / 3);
    }
  }
  auto const material = model->GetMaterialNode();
  return Narrow(item.GetName()) + ": " + core::text::Plural(triangles, "triangle", "triangles") +
         (material ? " of \"" + Narrow(material->GetName()) + '"' : "");
}

// Without recursion: an item may be deep below the root.
static void List(NSceneGraphItemNode const& root) {
  std::vector<std::pair<NSceneGraphItemNode const*, std::size_t>> next{{&root, 1}};
  while (!next.empty()) {
    auto const [item, depth] = next.back();
    next.pop_back();
    std::cout << std::string(2 * depth, ' ') << Describe(*item) << '\n';
    auto const& children = item->GetChildren();
    for (auto child = children.rbegin(); child != children.rend(); ++child) {
      next.emplace_back(child->get(), depth + 1);
    }
  }
}

int main(int argc, char** argv) {
  NDocument document;
  int status = argc > 1 ? 0 : 2;
  if (argc == 1) std::cerr << "usage: import_and_list FILE...\n";
  for (int i = 1; i < argc; ++i) {
    try {
      importer::NImportedModel const model = importer::ImportModel(document, argv[i]);
      std::cout << Narrow(model.tree->GetName()) << '\n';
      if (auto const root = model.tree->GetRoot()) List(*root);
      for (std::string const& note : model.notes) std::cout << "  note: " << note << '\n';
    } catch (std::exception const& error) {
      std::cerr << argv[i] << ": " << error.what() << '\n';
      status = 1;
    }
  }
  std::cout << document.GetMaterials().GetNodeCount() << " materials, "
            << document.GetImages().GetNodeCount() << " images, "
            << document.GetAnimations().GetNodeCount() << " animations\n";
  return status;
}
