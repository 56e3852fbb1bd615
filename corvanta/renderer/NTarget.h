#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "corvanta/export.h"
#include "corvanta/renderer/NContext.h"
#include "corvanta/renderer/NPixels.h"

namespace corvanta::renderer {

/// The largest picture that is drawn.
/// Units: pixels a side, and in all.
inline constexpr unsigned kMostSide = 16384;
inline constexpr std::uint64_t kMostPixels = 32ull * 1024 * 1024;

/// What is drawn into: linear colour, depth as floats and stencil, with several samples a pixel or
/// one. Its size and kind never change; it keeps what was drawn until that is cleared.
class CORVANTA_API NTarget {
 public:
  enum NKind {
    NTK_PICTURE,  ///< half floats, four samples a pixel where the driver has them
    NTK_NUMBERS,  ///< bytes, one sample
  };

  /// Requires: the context outlives this.
  /// Fails: throws NRenderError for a size that is 0 or beyond what the driver or memory has.
  NTarget(NContext const& context, unsigned width, unsigned height, NKind kind);

  NTarget(NTarget const&) = delete;
  NTarget& operator=(NTarget const&) = delete;
  ~NTarget();

  unsigned GetWidth() const;
  unsigned GetHeight() const;

  /// The picture, its samples averaged as linear light and written with the transfer function of
  /// sRGB.
  /// Requires: NTK_PICTURE.
  /// Fails: throws NRenderError where the driver gives up; so do the others.
  NPixels ReadPicture() const;
  /// The picture with opacities: how much of each pixel was covered, where it was drawn without a
  /// background.
  /// Requires: as ReadPicture.
  NPixels ReadTransparentPicture() const;
  /// The number that each pixel was given, red the highest byte; rows from the top.
  /// Requires: NTK_NUMBERS.
  std::vector<std::uint32_t> ReadNumbers() const;
  /// The depth of each pixel, 1 at the near plane to 0 at the far one; rows from the top.
  /// Requires: NTK_NUMBERS.
  std::vector<float> ReadDepths() const;

 private:
  friend class NPreview;
  friend class NRenderer;
  struct Block;

  /// Makes this what is drawn into.
  /// Requires: a scope of the context.
  void Bind() const;
  /// The framebuffer's name.
  unsigned GetFrame() const;
  /// Makes all of it black, or 0.
  /// Requires: a scope of the context.
  void Clear(float opacity = 1.0f) const;
  /// Calls `row(y, light)` for each row from the top: four floats a pixel, linear light and alpha.
  /// Requires: a scope of the context; NTK_PICTURE.
  void ReadLight(std::function<void(unsigned y, std::vector<float> const& light)> const& row) const;

  std::unique_ptr<Block> m_block;
};

}  // namespace corvanta::renderer
