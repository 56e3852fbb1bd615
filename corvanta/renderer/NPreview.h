#pragma once

#include <boost/intrusive_ptr.hpp>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "corvanta/data/document/NDocument.h"
#include "corvanta/data/view/NView.h"
#include "corvanta/renderer/NContext.h"
#include "corvanta/renderer/NEye.h"
#include "corvanta/renderer/NPixels.h"
#include "corvanta/renderer/NRenderer.h"
#include "corvanta/renderer/NTarget.h"

namespace corvanta::renderer {

/// For how many eyes a picture is drawn.
enum NStereoMode {
  NSM_MONO,
  NSM_SIDE_BY_SIDE,  ///< the left eye's half beside the right eye's, for a flat screen
  NSM_HEAD_MOUNTED,  ///< the same for a head-mounted display
};

/// The clip distances of a view and what there is to be clipped.
/// Units: scene units ahead of the camera.
struct NClipReport {
  NClip clip;
  double nearest = 0, farthest = 0;  // of what is seen; both 0 where nothing is
  std::size_t vertices = 0;          // of what is drawn
  std::size_t before = 0;            // of these: ahead, but nearer than the near distance
  std::size_t beyond = 0;            // farther than the far distance
};

/// Draws pictures of a view of a document, each as the view and what it shows are then.
///
/// A view without clip distances of its own (see `item::GetClipDistances`) is clipped at the box
/// of what is drawn. What no environment lights is drawn in its ambient and emissive colours.
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
  /// Of the view as one eye sees it.
  /// Fails: as TakePicture.
  NClipReport MeasureClip();

  /// The shape of the part of the picture that `side` takes, of all of it for NES_BOTH.
  /// Units: width by height.
  double GetAspect(NEyeSide side) const;
  NRenderer const& GetRenderer() const;
  NContext const& GetContext() const;

 private:
  struct Block;

  std::unique_ptr<Block> m_block;
};

}  // namespace corvanta::renderer
