#pragma once

#include <assimp/scene.h>

#include <cstddef>
#include <string>
#include <vector>

#include "corvanta/importer/neutral/scene.h"
#include "corvanta/importer/reader/NGltfFile.h"
#include "corvanta/importer/reader/gltf_nodes.h"

namespace corvanta::importer::reader {

/// The animations of a glTF 2 file, read beside Assimp, whose reader takes every sampler for a
/// linear one of floats and knows nodes by name alone.
///
/// Each channel has linear keys: a step is a jump, two keys at one time; a cubic spline is sampled
/// as finely as it bends, to a ten-thousandth of what it spans (rotations: of the quaternion). What
/// the file doesn't animate of a node that moves has one key, its rest.
class NGltfAnimations {
 public:
  struct Channel {
    std::string nodeName;
    aiNode const* node = nullptr;                // null if the scene doesn't show it
    std::vector<neutral::NTripleKey> positions;  // times in milliseconds
    std::vector<neutral::NTurnKey> rotations;
    std::vector<neutral::NTripleKey> scales;
  };

  /// Requires: `nodes` are those of `file` in `scene`.
  /// Fails: throws std::exception if the file's animations aren't those of `scene`.
  NGltfAnimations(NGltfFile& file, NGltfNodes const& nodes, aiScene const& scene);

  /// One for each node that an animation of the file moves, in order of the file's nodes.
  std::vector<Channel> const& GetChannels(std::size_t animation) const {
    return m_animations[animation];
  }
  /// How many channels can't be read and were left out.
  std::size_t GetFaultCount() const { return m_faultCount; }

 private:
  std::vector<Channel> ReadAnimation(nlohmann::json const& animation);
  void ReadSampler(nlohmann::json const& sampler, std::string const& path, Channel& channel);
  Channel CreateChannel(std::size_t node) const;

  NGltfFile& m_file;
  NGltfNodes const& m_nodes;
  std::vector<std::vector<Channel>> m_animations;
  std::size_t m_faultCount = 0;
};

}  // namespace corvanta::importer::reader
