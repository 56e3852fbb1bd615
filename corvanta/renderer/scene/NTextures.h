#pragma once

#include <array>
#include <boost/intrusive_ptr.hpp>
#include <cstddef>
#include <map>
#include <unordered_set>
#include <utility>

#include "corvanta/core/node/NNodeReference.h"
#include "corvanta/data/domain/image/NImageNode.h"
#include "corvanta/renderer/gl/objects.h"

namespace corvanta::renderer {

/// What the numbers of a picture are.
enum NTextureContent {
  NTC_COLOR,  ///< display values, which are linearised
  NTC_DATA,   ///< numbers as they are
  NTC_CUBE,   ///< six faces of display values; a flat picture is used for all of them
};

/// The light that arrives from an environment at a surface, by the normal: for each of nine
/// polynomials of the direction a colour.
using NHarmonics = std::array<float, 27>;

/// A picture on the graphics processor.
struct NTexture {
  NGlTexture texture;
  bool hasAlpha = false;  // some pixel isn't opaque
  bool isLinear = false;  // it is held as linear light
  bool isCube = false;
  unsigned width = 0, height = 0;
  bool isBroken = false;  // it is the placeholder of a picture that can't be read
};

/// The pictures of image nodes on the graphics processor. Each is uploaded once for each content,
/// and again when an event has named its node.
class NTextures {
 public:
  /// The picture of `image`; where it can't be read, the library's placeholder.
  NTexture const& Get(data::domain::image::NImageNode const& image, NTextureContent content);
  /// How a picture is sampled, by the upper bits of its texture's operation; 0 for one that repeats
  /// and whose pixels are blurred where they are large.
  GLuint GetSampler(long operation);
  /// The light from a picture of this that shows the directions around in that projection.
  /// Cost: the first time reading some hundred texels back.
  NHarmonics const& GetHarmonics(NTexture const& texture, int projection);
  /// Drops the pictures of `images`, and those of nodes that have gone.
  void Forget(std::unordered_set<data::domain::image::NImageNode const*> const& images);
  /// Those of the pictures that can't be read; one twice if it has two contents.
  std::vector<boost::intrusive_ptr<data::domain::image::NImageNode const>> GetBroken() const;
  std::size_t GetUploadCount() const { return m_uploadCount; }

 private:
  using Key =
      std::pair<core::node::NNodeReference<data::domain::image::NImageNode const>, NTextureContent>;

  NTexture Load(data::domain::image::NImageNode const& image, NTextureContent content) const;

  std::map<Key, NTexture> m_textures;
  std::map<std::pair<GLuint, int>, NHarmonics> m_harmonics;
  std::map<long, NGlSampler> m_samplers;  // by those bits
  std::size_t m_uploadCount = 0;
};

}  // namespace corvanta::renderer
