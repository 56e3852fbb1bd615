#include "corvanta/importer/neutral/NSceneView.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "corvanta/data/domain/material/NMaterialOptions.h"
#include "corvanta/data/domain/texture/NTextureUse.h"
#include "corvanta/importer/NImportError.h"

namespace corvanta::importer::neutral {

namespace {

void Require(bool isSo, char const* what) {
  if (!isSo) throw NImportError(std::string("the reader's result is damaged: ") + what);
}

// Takes down what is used of each array.
class Checker {
 public:
  explicit Checker(NSceneView const& scene) : m_scene(scene) {}

  void Run() {
    ForEach<NMesh>();
    ForEach<NNode>();
    ForEach<NMaterial>();
    ForEach<NPicture>();
    ForEach<NLight>();
    ForEach<NCamera>();
    ForEach<NAnimation>();
    ForEach<NChannel>();
    ForEach<NText>();
    ForEach<NVariant>();
    ForEach<NSkin>();
    ForEach<NJoint>();
    ForEach<NWeightChannel>();
    Require(Count<NVariant>() <= kMostVariants, "it has too many variants");
    CheckHierarchy();
  }

 private:
  template <class T>
  std::size_t Count() const {
    return m_scene.Get<T>().size();
  }

  template <class T>
  void ForEach() {
    for (T const& element : m_scene.Get<T>()) Check(element);
  }

  // Elements may be named twice, but not so that work multiplies.
  template <class T>
  void Use(NRange<T> const& range) {
    std::size_t const size = Count<T>();
    std::size_t& used = m_used[kKind<T>];
    Require(range.first <= size && range.count <= size - range.first && range.count <= size - used,
            "a range leaves its array");
    used += range.count;
  }
  template <class Named>
  void UseNumbers(NNumbers const& numbers) {
    Use(numbers);
    auto const values = m_scene.Get(numbers);
    Require(std::all_of(values.begin(), values.end(),
                        [this](std::uint32_t number) { return number < Count<Named>(); }),
            "a number names nothing");
    m_itemCount += numbers.count;
  }

  void Check(NText const& text) { Use(text); }
  void Check(NVariant const& variant) { Use(variant.name); }

  void Check(NNode const& node) {
    Use(node.name);
    UseNumbers<NMesh>(node.meshes);
    UseNumbers<NLight>(node.lights);
    UseNumbers<NCamera>(node.cameras);
    Require(AreFinite(node.transform), "a transform isn't finite");
    Use(node.skins);
    Require(node.skins.count == 0 || node.skins.count == node.meshes.count, "a node lacks skins");
    for (std::uint32_t const skin : m_scene.Get(node.skins)) {
      Require(skin == kNone || skin < Count<NSkin>(), "a skin isn't there");
    }
    Use(node.weights);
  }

  void Check(NSkin const& skin) { Use(skin.joints); }
  void Check(NJoint const& joint) {
    Require(joint.node == kNone || joint.node < Count<NNode>(), "a joint has no node");
    Require(AreFinite(joint.bind), "a joint's transform isn't finite");
  }
  void CheckDeformation(NMesh const& mesh) {
    std::size_t const count = mesh.positions.count;
    Use(mesh.influences);
    for (NInfluence const& influence : m_scene.Get(mesh.influences)) {
      Require(influence.vertex < count, "a joint holds no vertex");
      Require(influence.weight > 0.0f && std::isfinite(influence.weight), "a weight is none");
    }
    Use(mesh.targets);
    Require(mesh.targets.count <= kMostTargets, "a mesh has too many targets");
    for (NMorphTarget const& target : m_scene.Get(mesh.targets)) {
      Use(target.offsets);
      for (NOffset const& offset : m_scene.Get(target.offsets)) {
        Require(offset.vertex < count, "a target moves no vertex");
        Require(AreFinite(offset.position) && AreFinite(offset.normal), "an offset isn't finite");
      }
    }
  }

  void Check(NMesh const& mesh) {
    Use(mesh.name);
    Use(mesh.positions);
    Use(mesh.normals);
    Use(mesh.colors);
    Use(mesh.triangles);
    std::size_t const count = mesh.positions.count;
    Require(mesh.normals.count == 0 || mesh.normals.count == count, "a mesh lacks normals");
    Require(mesh.colors.count == 0 || mesh.colors.count == count, "a mesh lacks colours");
    Require(mesh.uvSetCount <= kMostUvSets, "a mesh has too many texture coordinates");
    for (std::size_t i = 0; i != mesh.uvSetCount; ++i) {
      Use(mesh.uvs[i]);
      Require(mesh.uvs[i].count == count, "a mesh lacks texture coordinates");
    }
    Require(mesh.material < Count<NMaterial>(), "a mesh has no material");
    Use(mesh.variants);
    for (NVariantUse const& use : m_scene.Get(mesh.variants)) {
      Require(use.variant < Count<NVariant>() && use.material < Count<NMaterial>(),
              "a variant names nothing");
    }
    std::uint32_t largest = 0;
    for (NTriangle const& t : m_scene.Get(mesh.triangles)) {
      largest = std::max({largest, t[0], t[1], t[2]});
    }
    Require(mesh.triangles.count == 0 || largest < count, "an index is out of range");
    auto const positions = m_scene.Get(mesh.positions);
    Require(std::all_of(positions.begin(), positions.end(), &AreFinite<3>),
            "a position isn't finite");
    CheckDeformation(mesh);
  }

  void Check(NMaterial const& material) {
    Use(material.name);
    Use(material.textures);
    for (NTexture const& texture : m_scene.Get(material.textures)) {
      Require(texture.picture == kNone || texture.picture < Count<NPicture>(),
              "a texture has no picture");
      Require(texture.use <= data::domain::texture::NTU_OTHER, "a texture has no use");
      Require(texture.operation <= data::domain::material::kMostOperation &&
                  std::isfinite(texture.scale),
              "a texture's operation isn't one");
    }
  }

  void Check(NPicture const& picture) {
    Use(picture.name);
    Use(picture.extension);
    Use(picture.bytes);
  }
  void Check(NLight const& light) { Use(light.name); }
  void Check(NCamera const& camera) { Use(camera.name); }
  void Check(NAnimation const& animation) {
    Use(animation.name);
    Use(animation.channels);
    Use(animation.firstUnread);
    Use(animation.weights);
  }
  void Check(NWeightChannel const& channel) {
    Use(channel.nodeName);
    Use(channel.keys);
    Require(channel.node == kNone || channel.node < Count<NNode>(), "a channel has no node");
  }
  void Check(NChannel const& channel) {
    Use(channel.nodeName);
    Use(channel.positions);
    Use(channel.rotations);
    Use(channel.scales);
    Require(channel.node == kNone || channel.node < Count<NNode>(), "a channel has no node");
  }

  // Each node but the root is the child of one that stands before it.
  void CheckHierarchy() const {
    std::size_t const count = Count<NNode>();
    std::size_t known = 1;
    for (std::size_t i = 0; i != count; ++i) {
      std::uint64_t const children = m_scene.Get<NNode>()[i].childCount;
      Require(i < known && children <= count - known, "the nodes aren't a tree");
      known += children;
    }
    Require(known == count, "the nodes aren't a tree");
    Require(count <= kMostItems && m_itemCount <= kMostItems - count, "it has too many items");
  }

  template <std::size_t N>
  static bool AreFinite(std::array<float, N> const& values) {
    return std::all_of(values.begin(), values.end(), [](float v) { return std::isfinite(v); });
  }

  NSceneView const& m_scene;
  std::array<std::size_t, std::tuple_size_v<NElements>> m_used{};
  std::uint64_t m_itemCount = 0;
};

template <class... Kinds>
constexpr std::array<std::size_t, sizeof...(Kinds)> GetSizes(std::tuple<Kinds...> const*) {
  return {sizeof(Kinds)...};
}

}  // namespace

NSceneView::NSceneView(std::span<std::byte const> block)
    : m_block(block), m_header(reinterpret_cast<NHeader const*>(block.data())) {
  Require(block.size() >= sizeof(NHeader) && m_header->mark == NHeader::kMark, "it isn't a scene");
  Require(m_header->up <= NUA_Z, "its up axis isn't one");
  Require(m_header->unit >= 1e-9 && m_header->unit <= 1e9, "its unit isn't one");
  constexpr auto kSizes = GetSizes(static_cast<NElements const*>(nullptr));
  for (std::size_t i = 0; i != kSizes.size(); ++i) {
    auto const& array = m_header->arrays[i];
    Require(array.offset % 8 == 0 && array.offset <= block.size() &&
                array.count <= (block.size() - array.offset) / kSizes[i],
            "an array leaves it");
  }
  Checker(*this).Run();
}

}  // namespace corvanta::importer::neutral
