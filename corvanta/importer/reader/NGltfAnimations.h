#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "corvanta/importer/neutral/scene.h"
#include "corvanta/importer/reader/NGltfAccessors.h"
#include "corvanta/importer/reader/gltf_model.h"

namespace corvanta::importer::reader {

/// The animations of a glTF 2 file.
///
/// Each channel has linear keys: a step is a jump, two keys at one time; a cubic spline is sampled
/// as finely as it bends, to a ten-thousandth of what it spans (rotations: of the quaternion). What
/// the file doesn't animate of a node that moves has one key, its rest; but for weights, which
/// stay. A pointer (KHR_animation_pointer) to such a part of a node is as good as the channel of
/// it.
class NGltfAnimations {
 public:
  struct Channel {
    int node;                                    // a number of the file's
    std::vector<neutral::NTripleKey> positions;  // times in milliseconds
    std::vector<neutral::NTurnKey> rotations;
    std::vector<neutral::NTripleKey> scales;
  };
  struct Weights {
    int node;
    std::uint32_t target;
    std::vector<neutral::NWeightKey> keys;
  };
  struct Animation {
    std::vector<Channel> channels;  // one for each node that moves, in order of the file's nodes
    std::vector<Weights> weights;   // one for each morph target of such a node, in order of both
    std::size_t faultCount = 0;     // channels that can't be played and were left out
    std::string firstFault;         // which is the first of them, and why
  };

  /// Requires: `model` and `accessors` stay.
  NGltfAnimations(tinygltf::Model const& model, NGltfAccessors const& accessors);

  /// In the file's order.
  std::vector<Animation> const& GetAnimations() const { return m_animations; }

 private:
  using WeightsByNode = std::map<int, std::vector<Weights>>;

  Animation ReadAnimation(tinygltf::Animation const& animation, std::string const& name) const;
  void ReadChannel(tinygltf::Animation const& animation, tinygltf::AnimationChannel const& source,
                   std::map<int, Channel>& channels, WeightsByNode& weights) const;
  std::vector<Weights> ReadWeights(tinygltf::AnimationSampler const& sampler, int node) const;
  std::vector<float> ReadNumbers(int accessor, std::size_t width) const;
  void ReadSampler(tinygltf::AnimationSampler const& sampler, std::string const& path,
                   Channel& channel) const;
  Channel CreateChannel(int node) const;

  tinygltf::Model const& m_model;
  NGltfAccessors const& m_accessors;
  std::vector<Animation> m_animations;
};

}  // namespace corvanta::importer::reader
