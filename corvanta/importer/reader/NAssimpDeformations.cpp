#include "corvanta/importer/reader/NAssimpDeformations.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <map>

#include "corvanta/core/text/message.h"

namespace corvanta::importer::reader {

namespace {

using neutral::NTriple;

std::string ToString(aiString const& text) {
  return std::string(text.data, strnlen(text.data, std::min<std::size_t>(text.length, MAXLEN)));
}

std::array<float, 16> ToArray(aiMatrix4x4 const& m) {
  std::array<float, 16> array{m.a1, m.b1, m.c1, m.d1, m.a2, m.b2, m.c2, m.d2,
                              m.a3, m.b3, m.c3, m.d3, m.a4, m.b4, m.c4, m.d4};
  if (!std::all_of(array.begin(), array.end(), [](float v) { return std::isfinite(v); })) {
    array = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
  }
  return array;
}

template <class Use>
void ForEachInfluence(aiMesh const& mesh, Use const& use) {
  for (std::uint32_t joint = 0; joint != mesh.mNumBones; ++joint) {
    aiBone const& bone = *mesh.mBones[joint];
    for (unsigned i = 0; i != bone.mNumWeights; ++i) {
      auto const& [vertex, weight] = bone.mWeights[i];
      bool const isOne = vertex < mesh.mNumVertices && weight > 0.0f && std::isfinite(weight);
      if (isOne) use(neutral::NInfluence{vertex, joint, weight});
    }
  }
}

// The arrays of a target stand in the place of the mesh's, unless they are relative.
NTriple GetOffset(aiVector3D const* target, aiVector3D const* mesh, bool isRelative, unsigned i) {
  if (target == nullptr || mesh == nullptr) return {};
  aiVector3D const way = isRelative ? target[i] : target[i] - mesh[i];
  bool const isFinite = std::isfinite(way.x) && std::isfinite(way.y) && std::isfinite(way.z);
  return isFinite ? NTriple{way.x, way.y, way.z} : NTriple{};
}

template <class Use>
void ForEachOffset(aiMesh const& mesh, aiAnimMesh const& target, Use const& use) {
  bool const isRelative = mesh.mMethod == aiMorphingMethod_MORPH_RELATIVE;
  for (unsigned i = 0; i != mesh.mNumVertices; ++i) {
    neutral::NOffset const offset{i, GetOffset(target.mVertices, mesh.mVertices, isRelative, i),
                                  GetOffset(target.mNormals, mesh.mNormals, isRelative, i)};
    if (offset.position != NTriple{} || offset.normal != NTriple{}) use(offset);
  }
}

// The keys of each target. One that a key doesn't name has the weight 0 there.
std::map<std::uint32_t, std::vector<neutral::NWeightKey>> GetKeys(aiMeshMorphAnim const& source) {
  std::map<std::uint32_t, std::vector<neutral::NWeightKey>> keys;
  auto const forEach = [&source](auto const& use) {
    for (unsigned i = 0; i != source.mNumKeys; ++i) {
      aiMeshMorphKey const& key = source.mKeys[i];
      for (unsigned k = 0; k != key.mNumValuesAndWeights; ++k) {
        if (key.mValues[k] < neutral::kMostTargets) use(i, key.mValues[k], key.mWeights[k]);
      }
    }
  };
  forEach([&keys](unsigned, unsigned target, double) { keys[target]; });
  for (auto& [target, list] : keys) {
    for (unsigned i = 0; i != source.mNumKeys; ++i) list.push_back({source.mKeys[i].mTime, 0.0});
  }
  forEach([&keys](unsigned i, unsigned target, double weight) { keys[target][i].value = weight; });
  return keys;
}

}  // namespace

void NAssimpDeformations::AddTo(aiMesh const& source, neutral::NMesh& mesh) {
  std::size_t const number = m_meshCount++;
  std::size_t count = 0;
  ForEachInfluence(source, [&count](auto const&) { ++count; });
  if (count != 0) {
    m_skins[number] = static_cast<std::uint32_t>(m_skinned.size());
    m_skinned.push_back(&source);
    mesh.influences = m_writer.Reserve<neutral::NInfluence>(count, [&source](auto* to) {
      ForEachInfluence(source, [&to](neutral::NInfluence const& influence) { *to++ = influence; });
    });
  }
  std::vector<neutral::NMorphTarget> targets;
  std::size_t const targetCount =
      std::min<std::size_t>(source.mNumAnimMeshes, neutral::kMostTargets);
  m_surplusCount += source.mNumAnimMeshes - targetCount;
  for (std::size_t i = 0; i != targetCount; ++i) {
    targets.push_back(AddTarget(source, *source.mAnimMeshes[i]));
  }
  mesh.targets = m_writer.Add(targets);
}

neutral::NMorphTarget NAssimpDeformations::AddTarget(aiMesh const& mesh, aiAnimMesh const& target) {
  if (target.mNumVertices != mesh.mNumVertices) {
    ++m_unlikeCount;
    return {};
  }
  std::size_t count = 0;
  ForEachOffset(mesh, target, [&count](auto const&) { ++count; });
  return {m_writer.Reserve<neutral::NOffset>(count, [&mesh, &target](neutral::NOffset* to) {
    ForEachOffset(mesh, target, [&to](neutral::NOffset const& offset) { *to++ = offset; });
  })};
}

void NAssimpDeformations::SetUp(aiNode const& source, neutral::NNode& node) {
  std::vector<std::uint32_t> skins;
  aiMesh const* morphed = nullptr;
  for (unsigned i = 0; i != source.mNumMeshes; ++i) {
    skins.push_back(m_skins[source.mMeshes[i]]);
    aiMesh const& mesh = *m_scene.mMeshes[source.mMeshes[i]];
    if (morphed == nullptr || mesh.mNumAnimMeshes > morphed->mNumAnimMeshes) morphed = &mesh;
  }
  if (std::any_of(skins.begin(), skins.end(), [](auto skin) { return skin != neutral::kNone; })) {
    node.skins = m_writer.Add(skins);
  }
  if (morphed == nullptr || !m_hasWeights) return;
  std::vector<float> weights;
  for (unsigned i = 0; i != morphed->mNumAnimMeshes; ++i) {
    weights.push_back(morphed->mAnimMeshes[i]->mWeight);
  }
  node.weights = m_writer.Add(weights);
}

void NAssimpDeformations::AddSkins(NodesByName const& nodes) {
  for (aiMesh const* const mesh : m_skinned) {
    std::vector<neutral::NJoint> joints;
    for (unsigned i = 0; i != mesh->mNumBones; ++i) {
      aiBone const& bone = *mesh->mBones[i];
      auto const node = nodes.find(ToString(bone.mName));
      joints.push_back(
          {node == nodes.end() ? neutral::kNone : node->second, ToArray(bone.mOffsetMatrix)});
    }
    m_writer.Get<neutral::NSkin>().push_back({m_writer.Add(joints)});
  }
}

// A channel names a node or a mesh, some with "*" and a number behind it.
std::vector<std::uint32_t> NAssimpDeformations::FindNodes(
    std::string name, NodesByName const& byName, std::vector<aiNode const*> const& nodes) const {
  for (int attempt = 0; attempt != 2; ++attempt) {
    if (auto const node = byName.find(name); node != byName.end()) return {node->second};
    std::vector<std::uint32_t> found;
    for (std::uint32_t i = 0; i != nodes.size(); ++i) {
      auto const hasName = [&](unsigned mesh) {
        return ToString(m_scene.mMeshes[mesh]->mName) == name;
      };
      if (std::any_of(nodes[i]->mMeshes, nodes[i]->mMeshes + nodes[i]->mNumMeshes, hasName)) {
        found.push_back(i);
      }
    }
    if (!found.empty()) return found;
    name = name.substr(0, name.find_last_of('*'));
  }
  return {};
}

NAssimpDeformations::Channels NAssimpDeformations::AddChannels(
    aiAnimation const& source, NodesByName const& byName, std::vector<aiNode const*> const& nodes) {
  Channels channels;
  auto const fail = [&](aiString const& name, char const* reason) {
    if (channels.faultCount++ != 0) return;
    channels.firstFault = "that of \"" + ToString(name) + "\": " + reason;
  };
  for (unsigned i = 0; i != source.mNumMorphMeshChannels; ++i) {
    aiMeshMorphAnim const& channel = *source.mMorphMeshChannels[i];
    auto const found = FindNodes(ToString(channel.mName), byName, nodes);
    if (found.empty()) fail(channel.mName, "no node or mesh has that name");
    auto const keys = GetKeys(channel);
    for (std::uint32_t const node : found) {
      for (auto const& [target, list] : keys) {
        channels.weights.push_back(
            {m_writer.AddText(ToString(channel.mName)), node, target, m_writer.Add(list)});
      }
    }
  }
  for (unsigned i = 0; i != source.mNumMeshChannels; ++i) {
    fail(source.mMeshChannels[i]->mName, "it puts one mesh in the place of another");
  }
  return channels;
}

std::vector<std::string> NAssimpDeformations::GetNotes() const {
  std::vector<std::string> notes;
  auto const note = [&notes](std::size_t count, char const* one, char const* many) {
    if (count != 0) notes.push_back(core::text::Plural(count, one, many));
  };
  note(m_unlikeCount, "morph target has another length, and was left out",
       "morph targets have another length, and were left out");
  note(m_surplusCount, "morph target is beyond the 4096th of its mesh, and was left out",
       "morph targets are beyond the 4096th of their mesh, and were left out");
  return notes;
}

}  // namespace corvanta::importer::reader
