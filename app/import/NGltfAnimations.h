#pragma once

#include <assimp/scene.h>

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "app/import/NGltfFile.h"

namespace corvanta::app {

/// The animations of a glTF 2 file, read beside Assimp, whose reader takes every sampler for a
/// linear one of floats and knows nodes by name alone.
///
/// Each channel has linear keys: a step is a jump, two keys at one time; a cubic spline is sampled
/// as finely as it bends, to a ten-thousandth of what it spans (rotations: of the quaternion). What
/// the file doesn't animate of a node that moves has one key, its rest.
class NGltfAnimations {
 public:
  struct Channel {
    aiNode const* node;                // null if the scene doesn't show it
    std::unique_ptr<aiNodeAnim> keys;  // times in milliseconds
  };

  /// Fails: throws std::exception if the file isn't glTF 2, or isn't what Assimp made `scene` from.
  NGltfAnimations(std::filesystem::path const& path, aiScene const& scene);

  /// One for each node that an animation of the file moves, in order of the file's nodes.
  std::vector<Channel> const& GetChannels(std::size_t animation) const {
    return m_animations[animation];
  }
  /// How many channels can't be read and were left out.
  std::size_t GetFaultCount() const { return m_faultCount; }

 private:
  void FindNodes(aiScene const& scene);
  std::vector<Channel> ReadAnimation(nlohmann::json const& animation);
  void ReadSampler(nlohmann::json const& sampler, std::string const& path, aiNodeAnim& keys);
  Channel CreateChannel(std::size_t node) const;

  NGltfFile m_file;
  std::vector<aiNode const*> m_nodes;  // one for each of the file
  std::vector<std::vector<Channel>> m_animations;
  std::size_t m_faultCount = 0;
};

}  // namespace corvanta::app
