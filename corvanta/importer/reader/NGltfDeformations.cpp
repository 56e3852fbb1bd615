#include "corvanta/importer/reader/NGltfDeformations.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <utility>

#include "corvanta/core/text/message.h"
#include "corvanta/importer/NImportError.h"

namespace corvanta::importer::reader {

namespace {

using neutral::NTriple;

constexpr std::array<float, 16> kIdentity{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
constexpr std::size_t kMostSets = 64;  // of joints and weights, four each

template <class Values>
bool AreFinite(Values const& values) {
  return std::all_of(values.begin(), values.end(), [](float v) { return std::isfinite(v); });
}

int Find(std::map<std::string, int> const& attributes, std::string const& name) {
  auto const found = attributes.find(name);
  return found == attributes.end() ? -1 : found->second;
}

// The vertices of a primitive: their numbers in the accessors.
struct Corners {
  std::shared_ptr<std::vector<std::uint32_t> const> numbers;
  std::size_t count;

  std::size_t operator[](std::size_t i) const { return numbers ? (*numbers)[i] : i; }
};

}  // namespace

// The joints and weights of a primitive.
struct NGltfDeformations::Weights {
  struct Set {
    NGltfNumbers joints, weights;
  };

  template <class Use>
  void ForEach(Use const& use) const {
    for (std::uint32_t i = 0; i != corners.count; ++i) {
      for (Set const& set : sets) {
        for (std::size_t k = 0; k != 4; ++k) {
          float const weight = set.weights.Get(corners[i], k);
          if (!(weight > 0.0f) || !std::isfinite(weight)) continue;
          float const joint = set.joints.Get(corners[i], k);
          bool const isOne = joint >= 0.0f && joint <= 65535.0f;
          use(neutral::NInfluence{i, isOne ? static_cast<std::uint32_t>(joint) : neutral::kNone,
                                  weight});
        }
      }
    }
  }

  Corners corners{};
  std::vector<Set> sets{};
};

struct NGltfDeformations::Target {
  template <class Use>
  void ForEach(Use const& use) const {
    auto const get = [](std::optional<NGltfNumbers> const& numbers, std::size_t i) {
      NTriple triple{};
      if (numbers) numbers->Copy<3>(i, triple.data());
      return AreFinite(triple) ? triple : NTriple{};
    };
    for (std::uint32_t i = 0; i != corners.count; ++i) {
      neutral::NOffset const offset{i, get(positions, corners[i]), get(normals, corners[i])};
      if (offset.position != NTriple{} || offset.normal != NTriple{}) use(offset);
    }
  }

  Corners corners{};
  std::optional<NGltfNumbers> positions{}, normals{};
};

void NGltfDeformations::AddSkins(NGltfNodes const& nodes) {
  for (tinygltf::Skin const& skin : m_model.skins) {
    std::optional<NGltfNumbers> matrices;
    try {
      if (skin.inverseBindMatrices >= 0) {
        matrices = m_accessors.GetNumbers(skin.inverseBindMatrices, 16, NGltfAccessors::kFractions);
      }
    } catch (NImportError const&) {
      ++m_unboundCount;
    }
    bool isUnbound = false;
    std::vector<neutral::NJoint> joints;
    for (int const number : skin.joints) {
      neutral::NJoint joint{neutral::kNone, kIdentity};
      if (IsIn(m_model.nodes, number)) {
        joint.node = nodes.GetFirstPlace(static_cast<std::size_t>(number));
      }
      if (matrices && joints.size() < matrices->GetCount()) {
        matrices->Copy<16>(joints.size(), joint.bind.data());
      }
      isUnbound |= matrices && joints.size() >= matrices->GetCount();
      if (!AreFinite(joint.bind)) {
        joint.bind = kIdentity;
        isUnbound = true;
      }
      joints.push_back(joint);
    }
    m_unboundCount += isUnbound;
    m_writer.Get<neutral::NSkin>().push_back({m_writer.Add(joints)});
  }
}

void NGltfDeformations::AddTo(tinygltf::Primitive const& primitive,
                              std::shared_ptr<Vertices const> const& vertices, std::size_t count,
                              neutral::NMesh& mesh) {
  Corners const corners{vertices, count};
  // Shorter accessors than the positions' are none.
  std::size_t const needed =
      vertices && !vertices->empty()
          ? std::size_t{*std::max_element(vertices->begin(), vertices->end())} + 1
          : count;
  auto const read = [&](int accessor, std::size_t width) {
    auto numbers = m_accessors.GetNumbers(accessor, width, NGltfAccessors::kAnyIntegers);
    if (numbers.GetCount() < needed) throw NImportError("an accessor of another length");
    return numbers;
  };
  try {
    auto const weights = std::make_shared<Weights>();
    weights->corners = corners;
    for (std::size_t set = 0; set != kMostSets; ++set) {
      int const joints = Find(primitive.attributes, "JOINTS_" + std::to_string(set));
      if (joints < 0) break;
      int const own = Find(primitive.attributes, "WEIGHTS_" + std::to_string(set));
      weights->sets.push_back({read(joints, 4), read(own, 4)});
    }
    if (!weights->sets.empty()) AddInfluences(weights, mesh);
  } catch (NImportError const&) {
    ++m_unheldCount;
  }
  std::vector<neutral::NMorphTarget> targets;
  std::size_t const targetCount = std::min(primitive.targets.size(), neutral::kMostTargets);
  m_surplusCount += primitive.targets.size() - targetCount;
  for (std::size_t i = 0; i != targetCount; ++i) {
    auto const& source = primitive.targets[i];
    auto const target = std::make_shared<Target>();
    target->corners = corners;
    try {
      int const positions = Find(source, "POSITION"), normals = Find(source, "NORMAL");
      if (positions >= 0) target->positions = read(positions, 3);
      if (normals >= 0) target->normals = read(normals, 3);
    } catch (NImportError const&) {
      *target = {};  // moves nothing, so that those behind it keep their numbers
      ++m_unlikeCount;
    }
    m_uncoloredCount += std::any_of(source.begin(), source.end(), [](auto const& attribute) {
      return attribute.first.compare(0, 5, "COLOR") == 0 ||
             attribute.first.compare(0, 8, "TEXCOORD") == 0;
    });
    targets.push_back({AddOffsets(target)});
  }
  mesh.targets = m_writer.Add(targets);
}

void NGltfDeformations::AddInfluences(std::shared_ptr<Weights const> const& weights,
                                      neutral::NMesh& mesh) {
  std::size_t count = 0;
  weights->ForEach([&count](auto const&) { ++count; });
  mesh.influences = m_writer.Reserve<neutral::NInfluence>(count, [weights](auto* to) {
    weights->ForEach([&to](neutral::NInfluence const& influence) { *to++ = influence; });
  });
}

neutral::NRange<neutral::NOffset> NGltfDeformations::AddOffsets(
    std::shared_ptr<Target const> const& target) {
  std::size_t count = 0;
  target->ForEach([&count](auto const&) { ++count; });
  return m_writer.Reserve<neutral::NOffset>(count, [target](neutral::NOffset* to) {
    target->ForEach([&to](neutral::NOffset const& offset) { *to++ = offset; });
  });
}

void NGltfDeformations::SetUp(tinygltf::Node const& source, neutral::NNode& node) {
  if (IsIn(m_model.skins, source.skin)) {
    node.skins = m_writer.Add(
        std::vector<std::uint32_t>(node.meshes.count, static_cast<std::uint32_t>(source.skin)));
  } else {
    m_missingCount += source.skin >= 0;
  }
  auto const& weights = source.weights.empty() && IsIn(m_model.meshes, source.mesh)
                            ? m_model.meshes[static_cast<std::size_t>(source.mesh)].weights
                            : source.weights;
  node.weights = m_writer.Add(std::vector<float>(weights.begin(), weights.end()));
}

std::vector<std::string> NGltfDeformations::GetNotes() const {
  std::vector<std::string> notes;
  auto const note = [&notes](std::size_t count, char const* one, char const* many) {
    if (count != 0) notes.push_back(core::text::Plural(count, one, many));
  };
  note(m_missingCount, "node has a skin that isn't there", "nodes have skins that aren't there");
  note(m_unboundCount, "skin lacks inverse bind matrices, and has the identity",
       "skins lack inverse bind matrices, and have the identity");
  note(m_unheldCount, "mesh has joints and weights that can't be read, and stands still",
       "meshes have joints and weights that can't be read, and stand still");
  note(m_unlikeCount, "morph target can't be read or has another length, and was left out",
       "morph targets can't be read or have another length, and were left out");
  note(m_surplusCount, "morph target is beyond the 4096th of its mesh, and was left out",
       "morph targets are beyond the 4096th of their mesh, and were left out");
  note(m_uncoloredCount, "morph target changes colours or texture coordinates, which stay",
       "morph targets change colours or texture coordinates, which stay");
  return notes;
}

}  // namespace corvanta::importer::reader
