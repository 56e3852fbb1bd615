#include "app/scene/NStagePreview.h"

namespace corvanta::app {

NStagePreview::NStagePreview(data::document::NDocument const& document, NStage& stage,
                             unsigned width, unsigned height, renderer::NStereoMode stereo)
    : m_stage(stage),
      m_side(stereo == renderer::NSM_MONO ? renderer::NSS_BOTH : renderer::NSS_LEFT),
      m_preview(document, stage.GetView(), width, height, stereo) {}

void NStagePreview::Frame(renderer::NStereoSide side) {
  NOverview& overview = m_stage.GetOverview();
  if (overview.IsLost()) {
    m_preview.Update();
    overview.Frame(m_preview.GetRenderer().GetBox());
  }
  overview.FitAspect(m_preview.GetAspect(side));
}

renderer::NPixels NStagePreview::TakePicture() {
  Frame(m_side);
  return m_preview.TakePicture();
}

std::vector<std::uint32_t> NStagePreview::TakeNumbers() {
  Frame(m_side);
  return m_preview.TakeNumbers();
}

renderer::NClipReport NStagePreview::MeasureClip() {
  Frame(renderer::NSS_BOTH);
  return m_preview.MeasureClip();
}

}  // namespace corvanta::app
