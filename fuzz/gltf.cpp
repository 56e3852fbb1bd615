// A glTF 2 file of any content is refused, or becomes a scene that passes the host's checks;
// reading it twice gives the same scene. Meshes that are packed are unpacked in the reading program
// alone.
#include <algorithm>
#include <exception>
#include <vector>

#include "corvanta/importer/NImportError.h"
#include "corvanta/importer/neutral/NSceneView.h"
#include "corvanta/importer/reader/NGltfConverter.h"
#include "corvanta/importer/reader/NGltfFile.h"
#include "fuzz/support.h"

namespace corvanta::fuzz {
namespace {

using namespace importer::neutral;

class Opener : public importer::reader::NFileOpener {
 public:
  explicit Opener(Bytes model) : m_model(model) {}

  int Open(std::string const& path) override {
    return path == "model" ? dup(MemoryFile(m_model).Get()) : -1;
  }

 private:
  Bytes const m_model;
};

std::vector<std::uint64_t> Read(Bytes bytes) {
  constexpr std::size_t kMostBytes = 256 << 20;
  Opener opener(bytes);
  importer::reader::NGltfFile const file(opener, "model");
  if (file.IsOld()) throw importer::NImportError("another version");
  NSceneWriter writer;
  importer::reader::NGltfConverter converter(file.GetModel(), writer);
  converter.Convert();
  for (std::string const& note : converter.GetNotes())
    Require(!note.empty(), "a note says something");
  if (writer.GetSize() > kMostBytes) throw importer::NImportError("too large for this target");
  std::vector<std::uint64_t> block(writer.GetSize() / 8);
  writer.Write(reinterpret_cast<std::byte*>(block.data()));
  return block;
}

template <class T>
bool AreSame(NSceneView const& a, NSceneView const& b) {
  auto const first = std::as_bytes(a.Get<T>()), second = std::as_bytes(b.Get<T>());
  return std::equal(first.begin(), first.end(), second.begin(), second.end());
}

void Check(std::vector<std::uint64_t> const& block, std::vector<std::uint64_t> const& again) {
  try {
    NSceneView const scene(std::as_bytes(std::span(block)));
    NSceneView const other(std::as_bytes(std::span(again)));
    Require(AreSame<char>(scene, other) && AreSame<NTriple>(scene, other) &&
                AreSame<NTriangle>(scene, other) && AreSame<std::uint32_t>(scene, other) &&
                AreSame<NInfluence>(scene, other) && AreSame<NOffset>(scene, other) &&
                scene.Get<NNode>().size() == other.Get<NNode>().size(),
            "a file says the same twice");
    for (NAnimation const& animation : scene.Get<NAnimation>()) {
      for (NChannel const& channel : scene.Get(animation.channels)) {
        Require(channel.positions.count + channel.rotations.count + channel.scales.count != 0,
                "a channel has keys");
      }
    }
  } catch (importer::NImportError const& error) {
    Require(false, error.what());
  }
}

}  // namespace
}  // namespace corvanta::fuzz

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace corvanta::fuzz;
  Bytes const bytes(data, size);
  if (AsText(bytes).find("draco") != std::string_view::npos) return 0;
  std::vector<std::uint64_t> block;
  try {
    block = Read(bytes);
  } catch (std::exception const&) {
    return 0;
  }
  Check(block, Read(bytes));
  return 0;
}
