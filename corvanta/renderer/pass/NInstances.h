#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "corvanta/renderer/gl/NDrawQueue.h"
#include "corvanta/renderer/gl/objects.h"
#include "corvanta/renderer/scene/NMeshes.h"
#include "corvanta/vx_math/Matrix.h"

namespace corvanta::renderer {

/// A model as the program of surfaces draws it.
struct NSurfaceInstance {
  NSurfaceInstance(VX_Math::Matrix const& global, VX_Math::Matrix const& normalMatrix);

  std::array<float, 16> world;
  std::array<float, 9> normals;
};

/// A model as the program of one colour draws it.
struct NFlatInstance {
  NFlatInstance(VX_Math::Matrix const& global, std::array<float, 4> const& flatColor);

  std::array<float, 16> world;
  std::array<float, 4> color;
};

/// The instances of one pass on the graphics processor, in the order in which they are drawn.
class NInstances {
 public:
  /// Replaces what was there.
  void Upload(std::vector<NSurfaceInstance> const& instances);
  void Upload(std::vector<NFlatInstance> const& instances);
  /// Draws the parts of a mesh as `count` of the instances with the current program, a part for
  /// all of them before the next: those of triangles, or those of lines and points.
  void Draw(std::vector<NMeshPart> const& parts, std::size_t first, std::size_t count,
            bool areTriangles = true);

 private:
  void SetInstances(std::size_t first) const;
  void DrawPart(NMeshPart const& part, std::size_t first, std::size_t count);

  NGlBuffer m_buffer;
  NDrawQueue m_queue;
  bool m_isFlat = false;
};

}  // namespace corvanta::renderer
