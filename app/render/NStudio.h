#pragma once

#include <boost/intrusive_ptr.hpp>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "app/scene/NDocument.h"
#include "app/scene/NStage.h"
#include "corvanta/data/view/NView.h"
#include "corvanta/renderer/NContext.h"
#include "corvanta/renderer/NEye.h"
#include "corvanta/renderer/NPixels.h"
#include "corvanta/renderer/NRenderer.h"
#include "corvanta/renderer/NTarget.h"

namespace corvanta::app {

/// Through how many eyes a picture is taken.
enum NEyes {
  NE_ONE,
  NE_STEREO,        ///< the left eye's half picture beside the right eye's, for a flat screen
  NE_HEAD_MOUNTED,  ///< the same for a head-mounted display
};

/// The clip distances of a view and what there is to be clipped. Units: scene units ahead.
struct NClipReport {
  renderer::NClip clip;
  double nearest = 0, farthest = 0;  // of what is seen; both 0 where nothing is
  std::size_t vertices = 0;          // of what is drawn
  std::size_t before = 0;            // of these: ahead, but nearer than the near distance
  std::size_t beyond = 0;            // farther than the far distance
};

/// Takes pictures of a stage through its view, as it stands whenever one is taken.
class NStudio {
 public:
  /// Requires: document and stage outlive this.
  /// Fails: throws NRenderError where this machine can't draw.
  NStudio(NDocument const& document, NStage& stage, unsigned width, unsigned height,
          NEyes eyes = NE_ONE);
  ~NStudio();

  /// Fails: throws NRenderError for a picture that can't be drawn at this size.
  renderer::NPixels TakePicture();
  /// The numbers of the models that are seen; see NRenderer::DrawNumbers.
  std::vector<std::uint32_t> TakeNumbers();
  /// Of the stage's view through one eye.
  NClipReport MeasureClip();

  renderer::NRenderer const& GetRenderer() const { return m_renderer; }
  renderer::NContext const& GetContext() const { return m_context; }

 private:
  // A part of the picture, and the eye that it is for.
  struct Part {
    boost::intrusive_ptr<data::view::NView> view;
    renderer::NEyeSide side;
  };

  void Prepare();
  renderer::NClip GetClip(data::view::NView const& view) const;
  renderer::NViewport GetViewport(data::view::NView const& view) const;
  renderer::NEye GetEyeOf(Part const& part) const;
  renderer::NTarget const& GetTarget(std::unique_ptr<renderer::NTarget>& target,
                                     renderer::NTarget::NKind kind) const;

  NStage& m_stage;
  unsigned const m_width, m_height;
  NEyes const m_eyes;
  renderer::NContext const m_context;
  renderer::NRenderer m_renderer;
  std::vector<Part> m_parts;
  std::unique_ptr<renderer::NTarget> m_picture, m_numbers;
};

}  // namespace corvanta::app
