#pragma once

#include <boost/intrusive_ptr.hpp>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "corvanta/data/document/NDocument.h"
#include "corvanta/data/view/NView.h"
#include "corvanta/renderer/NContext.h"
#include "corvanta/renderer/NPixels.h"
#include "corvanta/renderer/NRenderer.h"
#include "corvanta/renderer/NTarget.h"
#include "corvanta/renderer/NViewpoint.h"

namespace corvanta::renderer {

/// What the halves of a picture are.
enum NStereoMode {
  NSM_MONO,          ///< one picture
  NSM_SIDE_BY_SIDE,  ///< a stereo pair for a flat screen, the left picture on the left
  NSM_HEAD_MOUNTED,  ///< the same for a head-mounted display
};

/// The clip distances of a view and what there is to be clipped.
/// Units: scene units ahead of the camera.
struct NClipReport {
  NClipDistances clip;
  double nearest = 0, farthest = 0;  ///< of what is seen; both 0 where nothing is
  std::size_t vertices = 0;          ///< of what is drawn
  std::size_t before = 0;            ///< of these: ahead, but nearer than the near plane
  std::size_t beyond = 0;            ///< of these: farther than the far plane
};

/// Draws pictures of a view of a document, each as the view and what it shows are then. All parts
/// of a picture have the same clip distances: those of the view (see `item::GetClipDistances`), or
/// of the box of what is drawn, where the view has none. What no environment lights is drawn in its
/// ambient and emissive colours.
class CORVANTA_API NPreview {
 public:
  /// Draws in a context of its own.
  /// Units: pixels.
  /// Fails: throws NRenderError where this machine can't draw.
  NPreview(data::document::NDocument const& document, data::view::NView& view, unsigned width,
           unsigned height, NStereoMode stereo = NSM_MONO);
  /// Draws in `context`.
  /// Requires: `context` outlives this.
  NPreview(NContext const& context, data::document::NDocument const& document,
           data::view::NView& view, unsigned width, unsigned height, NStereoMode stereo = NSM_MONO);
  NPreview(NPreview const&) = delete;
  NPreview& operator=(NPreview const&) = delete;
  ~NPreview();

  /// Takes over what changed in the scene since the last call, without drawing.
  /// Fails: throws NRenderError for a view whose scene is missing or has gone.
  void Update();
  /// The picture, black where the view's rectangle does not reach.
  /// Fails: throws NRenderError for a size that can't be drawn, and for a view whose scene or
  /// camera is missing or has gone; throws what the camera path's GetGlobalTransform does.
  NPixels TakePicture();
  /// The model that is seen at each pixel, rows from the top; see NRenderer::DrawNumbers.
  /// Fails: as TakePicture.
  std::vector<std::uint32_t> TakeNumbers();
  /// The clip distances of a picture that isn't stereo, and what they cut off.
  /// Fails: as TakePicture.
  NClipReport MeasureClip();

  /// The shape of the part of the picture that `side` takes, of all of it for NSS_BOTH.
  /// Units: width by height.
  double GetAspect(NStereoSide side) const;
  NRenderer const& GetRenderer() const;
  /// See NRenderer.
  void SetShowsEdgesFlag(bool showsEdges);
  /// See NRenderer; without a background, pictures have opacities.
  void SetHasBackgroundFlag(bool hasBackground);
  NContext const& GetContext() const;

 private:
  struct Block;

  std::unique_ptr<Block> m_block;
};

}  // namespace corvanta::renderer
