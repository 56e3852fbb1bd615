// The animations of any glTF file: each node that moves has keys of all kinds, what can't be
// read is counted or the file refused, and reading it twice gives the same.
#include <algorithm>
#include <exception>
#include <memory>

#include "corvanta/importer/reader/NGltfAnimations.h"
#include "fuzz/support.h"

namespace corvanta::fuzz {
namespace {

using importer::reader::NGltfAnimations;
using importer::reader::NGltfFile;
using importer::reader::NGltfNodes;
using nlohmann::json;

class Opener : public importer::reader::NFileOpener {
 public:
  explicit Opener(Bytes model) : m_model(model) {}

  int Open(std::string const& path) override {
    return path == "model" ? dup(MemoryFile(m_model).Get()) : -1;
  }

 private:
  Bytes const m_model;
};

// The nodes that the file's scene shows, as a reader of the whole file has them.
class Scene {
 public:
  explicit Scene(json const& root) : m_nodes(root.at("nodes")) {
    auto const& tops = root.at("scenes").at(root.value("scene", std::size_t(0))).at("nodes");
    if (tops.size() == 1) {
      m_scene.mRootNode = Make(tops[0].get<std::size_t>()).release();
    } else {
      m_scene.mRootNode = new aiNode("ROOT");
      AddChildren(*m_scene.mRootNode, tops);
    }
    m_scene.mNumAnimations = static_cast<unsigned>(root.at("animations").size());
  }
  ~Scene() { m_scene.mNumAnimations = 0; }
  Scene(Scene const&) = delete;
  Scene& operator=(Scene const&) = delete;

  aiScene const& Get() const { return m_scene; }

 private:
  std::unique_ptr<aiNode> Make(std::size_t number) {
    constexpr std::size_t kMostNodes = 1000;
    if (++m_count > kMostNodes) throw std::length_error("too many nodes for this target");
    json const& source = m_nodes.at(number);
    auto node = std::make_unique<aiNode>(importer::reader::GetNodeName(source, number));
    if (auto const children = source.find("children"); children != source.end())
      AddChildren(*node, *children);
    return node;
  }

  void AddChildren(aiNode& parent, json const& numbers) {
    for (json const& number : numbers) {
      aiNode* child = Make(number.get<std::size_t>()).release();
      parent.addChildren(1, &child);
    }
  }

  json const& m_nodes;
  aiScene m_scene;
  std::size_t m_count = 0;
};

std::size_t CountKeys(NGltfAnimations const& animations, std::size_t count) {
  std::size_t keys = 0;
  for (std::size_t i = 0; i != count; ++i) {
    for (auto const& channel : animations.GetChannels(i)) {
      Require(!channel.positions.empty() && !channel.rotations.empty() && !channel.scales.empty(),
              "a channel has keys of all kinds");
      Require(!channel.node || channel.nodeName == channel.node->mName.C_Str(),
              "a channel has its node's name");
      keys += channel.positions.size() + channel.rotations.size() + channel.scales.size();
    }
  }
  return keys;
}

void Read(Bytes bytes) {
  Opener opener(bytes);
  NGltfFile file(opener, "model");
  importer::reader::CheckItemCount(file.GetRoot());
  static_cast<void>(file.GetMended());
  Scene const scene(file.GetRoot());
  NGltfNodes const nodes = importer::reader::MatchNodes(file.GetRoot(), scene.Get());
  static_cast<void>(importer::reader::FindShared(file.GetRoot(), nodes, scene.Get()));
  NGltfAnimations const animations(file, nodes, scene.Get());
  std::size_t const count = scene.Get().mNumAnimations;
  std::size_t const keys = CountKeys(animations, count);
  std::size_t sources = 0;
  for (json const& animation : file.GetRoot().at("animations"))
    sources += animation.value("channels", json::array()).size();
  Require(animations.GetFaultCount() <= sources, "a channel is unreadable once");
  NGltfAnimations const again(file, nodes, scene.Get());
  Require(CountKeys(again, count) == keys && again.GetFaultCount() == animations.GetFaultCount(),
          "a file says the same twice");
}

}  // namespace
}  // namespace corvanta::fuzz

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  try {
    corvanta::fuzz::Read({data, size});
  } catch (std::exception const&) {
  }
  return 0;
}
