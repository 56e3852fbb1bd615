// What a model names is opened only if it is a regular file in the model's folder, below it, or
// directly in a parent of it, wherever links lead.
#include <sys/stat.h>

#include <fstream>

#include "corvanta/importer/process/NModelFolder.h"
#include "fuzz/support.h"

namespace corvanta::fuzz {
namespace {

namespace fs = std::filesystem;

class Tree : public Folder {
 public:
  Tree() {
    for (char const* const name : {"model/sub", "outside"})
      fs::create_directories(GetPath() / name);
    for (char const* const name : {"model/a.gltf", "model/sub/b.png", "outside/c.png", "d.png"})
      std::ofstream(GetPath() / name) << name;
    fs::create_symlink("../outside", GetPath() / "model/out");
    fs::create_symlink("../outside/c.png", GetPath() / "model/c.png");
    fs::create_symlink("sub", GetPath() / "model/in");
    Require(mkfifo((GetPath() / "model/pipe").c_str(), S_IRWXU) == 0, "a pipe can be had");
  }

  std::string GetModel() const { return GetPath() / "model/a.gltf"; }
};

bool IsBelow(std::string const& folder, std::string const& top) {
  return top == "/" || folder == top || folder.starts_with(top + '/');
}

void CheckOpen(importer::NModelFolder& folder, Tree const& tree, std::string const& path) {
  platform::NDescriptor const file = folder.Open(path);
  if (!file) return;
  struct stat status {};
  Require(fstat(file.Get(), &status) == 0 && S_ISREG(status.st_mode), "it is a regular file");
  std::string const real = fs::read_symlink("/proc/self/fd/" + std::to_string(file.Get()));
  std::string const own = tree.GetPath() / "model", at = fs::path(real).parent_path();
  Require(IsBelow(at, own) || IsBelow(own, at), "it is the model's to name");
}

}  // namespace
}  // namespace corvanta::fuzz

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace corvanta;
  static fuzz::Tree const tree;
  static importer::NModelFolder folder(tree.GetModel());
  std::string const name(fuzz::AsText({data, size}));
  std::string const beside = tree.GetPath() / "model";
  for (std::string const& path : {name, beside + '/' + name, beside + "/sub/../" + name})
    fuzz::CheckOpen(folder, tree, path);
  fuzz::Require(static_cast<bool>(folder.Open(tree.GetModel())), "the model can be opened");
  return 0;
}
