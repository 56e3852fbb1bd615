#include "corvanta/importer/reader/formats.h"

#include <assimp/importerdesc.h>

#include <assimp/Importer.hpp>
#include <cstddef>
#include <set>

namespace corvanta::importer::reader {

std::string ListFormats() {
  std::string lines = "glTF 2.0\ttinygltf\tgltf glb\n";
  Assimp::Importer const importer;
  std::set<std::string> known;
  for (std::size_t i = 0; i != importer.GetImporterCount(); ++i) {
    aiImporterDesc const* const description = importer.GetImporterInfo(i);
    if (description == nullptr || description->mFileExtensions == nullptr) continue;
    std::string name = description->mName;
    // The other reader's; this one reads what was before it.
    if (name.rfind("glTF2", 0) == 0) continue;
    if (name.rfind("glTF", 0) == 0) name = "glTF 1.0";
    for (std::string const word : {" Importer", " Reader"}) {
      if (auto const at = name.find(word); at != std::string::npos) name.erase(at, word.size());
    }
    while (!name.empty() && (name.back() == '\n' || name.back() == ' ')) name.pop_back();
    if (known.insert(name).second)
      lines += name + "\tAssimp\t" + description->mFileExtensions + '\n';
  }
  return lines;
}

}  // namespace corvanta::importer::reader
