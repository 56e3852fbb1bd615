// A model file of any content becomes a tree, or an NImportError of one line. What takes the
// program that reads it down is no finding.
#include <sys/stat.h>

#include <fstream>

#include "corvanta/importer/NImportError.h"
#include "corvanta/importer/import.h"
#include "corvanta/importer/limits.h"
#include "fuzz/support.h"

namespace corvanta::fuzz {
namespace {

// The reader that the content is for.
std::string GetExtension(std::string_view content) {
  static constexpr std::pair<std::string_view, char const*> kBegins[] = {
      {"{", ".gltf"},   {"glTF", ".glb"},      {"OFF", ".off"},       {"ply", ".ply"},
      {"<", ".dae"},    {"solid", ".stl"},     {"xof ", ".x"},        {"Kaydara", ".fbx"},
      {"MM", ".3ds"},   {"mtllib", ".obj"},    {"v ", ".obj"},        {"o ", ".obj"},
      {"#", ".obj"},    {"AC3D", ".ac"},       {"FORM", ".lwo"},      {"*3DSMAX", ".ase"},
      {"IDP3", ".md3"}, {"HIERARCHY", ".bvh"}, {"BLENDER", ".blend"}, {"0\n", ".dxf"}};
  for (auto const& [begin, extension] : kBegins)
    if (content.starts_with(begin)) return extension;
  return ".raw";
}

}  // namespace
}  // namespace corvanta::fuzz

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace corvanta;
  static fuzz::Folder const folder;
  static bool const prepared = [] {
    constexpr std::uint64_t kMemory = 512 << 20;
    importer::SetImportLimits({kMemory, std::chrono::seconds(2)});
    // What some of the files name.
    fuzz::Require(mkfifo((folder.GetPath() / "ff").c_str(), S_IRWXU) == 0, "a pipe can be had");
    return true;
  }();
  static_cast<void>(prepared);
  std::string_view const content = fuzz::AsText({data, size});
  std::filesystem::path const path = folder.GetPath() / ("model" + fuzz::GetExtension(content));
  std::ofstream(path, std::ios::binary) << content;
  try {
    data::document::NDocument document;
    auto const model = importer::ImportModel(document, path.string());
    fuzz::Require(model.tree != nullptr, "there is a tree");
  } catch (importer::NImportError const& error) {
    fuzz::Require(error.what()[0] != 0, "there is a reason where there is none");
  }
  std::filesystem::remove(path);
  fuzz::Require(folder.CountFiles() == 1, "nothing is left but the pipe");
  return 0;
}
