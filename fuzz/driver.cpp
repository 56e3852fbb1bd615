// Runs a fuzz target over all files of its corpus, where the compiler has no fuzzer: DRIVER PATH...
// A path is a file or a folder; one that isn't there is skipped.
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <set>
#include <string>

#include "fuzz/support.h"

namespace {

namespace fs = std::filesystem;

std::set<fs::path> FindFiles(fs::path const& path) {
  if (!fs::is_directory(path)) return fs::exists(path) ? std::set{path} : std::set<fs::path>{};
  std::set<fs::path> files;
  for (auto const& entry : fs::directory_iterator(path))
    if (entry.is_regular_file()) files.insert(entry.path());
  return files;
}

}  // namespace

int main(int count, char** arguments) {
  std::set<std::string> inputs{""};
  for (int i = 1; i < count; ++i) {
    for (fs::path const& path : FindFiles(arguments[i])) {
      std::ifstream file(path, std::ios::binary);
      std::string const input{std::istreambuf_iterator<char>(file), {}};
      // The same content often comes from two folders.
      if (!inputs.insert(input).second) continue;
      std::cerr << path.string() << std::endl;  // before it runs: it may be the last
      LLVMFuzzerTestOneInput(reinterpret_cast<std::uint8_t const*>(input.data()), input.size());
    }
  }
  LLVMFuzzerTestOneInput(nullptr, 0);
  if (inputs.size() < 2) std::cerr << "no input: name a folder with some\n";
  return inputs.size() < 2 ? 1 : 0;
}
