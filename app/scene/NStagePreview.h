#pragma once

#include <cstdint>
#include <vector>

#include "app/scene/NStage.h"
#include "corvanta/data/document/NDocument.h"
#include "corvanta/renderer/NPreview.h"

namespace corvanta::app {

/// Draws pictures of a stage through its view. The overview's camera is framed before, where it is
/// lost, and its angle of view fits the picture.
class NStagePreview {
 public:
  /// Requires: the stage outlives this.
  /// Fails: throws NRenderError where this machine can't draw.
  NStagePreview(data::document::NDocument const& document, NStage& stage, unsigned width,
                unsigned height, renderer::NStereoMode stereo = renderer::NSM_MONO);

  /// Fails: each throws NRenderError for a picture that can't be drawn at this size.
  renderer::NPixels TakePicture();
  std::vector<std::uint32_t> TakeNumbers();
  renderer::NClipReport MeasureClip();

  /// Whether pictures show the edges of all triangles as dark lines.
  void SetShowsEdgesFlag(bool showsEdges) { m_preview.SetShowsEdgesFlag(showsEdges); }
  /// Without a background, pictures have opacities.
  void SetHasBackgroundFlag(bool hasBackground) { m_preview.SetHasBackgroundFlag(hasBackground); }
  renderer::NRenderer const& GetRenderer() const { return m_preview.GetRenderer(); }

 private:
  void Frame(renderer::NStereoSide side);

  NStage& m_stage;
  renderer::NStereoSide const m_side;  // whose part of a picture the camera fits
  renderer::NPreview m_preview;
};

}  // namespace corvanta::app
