#include "corvanta/renderer/NPreview.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "corvanta/data/domain/geometry/NGeometryNode.h"
#include "corvanta/data/domain/scenegraph/item/view.h"
#include "corvanta/data/domain/scenegraph/item/view_clip_distances.h"
#include "corvanta/renderer/NRenderError.h"
#include "corvanta/renderer/gl/NContextScope.h"

namespace corvanta::renderer {

namespace {

namespace item = data::domain::scenegraph::item;
using data::domain::scene::NSceneNode;
using VX_Math::Matrix;
using VX_Math::Vec3;

/// A part of a picture, and the side whose viewpoint it is drawn from.
struct Part {
  NStereoSide side;
  NViewport viewport;
};

unsigned Pixels(double fraction, unsigned whole) {
  return static_cast<unsigned>(std::lround(std::clamp(fraction, 0.0, 1.0) * whole));
}

/// The depths between which something was drawn, as distances ahead of the camera.
void SetSeen(NClipReport& report, NViewpoint const& viewpoint,
             std::vector<std::uint32_t> const& numbers, std::vector<float> const& depths) {
  float nearest = 0.0f, farthest = 1.0f;
  for (std::size_t i = 0; i != numbers.size(); ++i) {
    if (numbers[i] == 0) continue;
    nearest = std::max(nearest, depths[i]);
    farthest = std::min(farthest, depths[i]);
  }
  if (farthest > nearest) return;
  Matrix const back = viewpoint.projection.Inverse();
  auto const getDistance = [&back](float depth) {
    Vec3 position;
    back.MultVecMatrix(Vec3(0.0f, 0.0f, 1.0f - depth), position);
    return static_cast<double>(-position.z);
  };
  report.nearest = getDistance(nearest);
  report.farthest = getDistance(farthest);
}

void CountVertices(NClipReport& report, NDrawItem const& drawn, Matrix const& view) {
  auto const geometry = drawn.model->GetGeometryNode();
  if (!geometry || !drawn.hasFiniteTransform) return;
  Matrix const toView = drawn.global * view;
  for (auto const& surface : geometry->GetSurfaces()) {
    for (auto const& v : surface->GetCoords()) {
      Vec3 position;
      toView.MultVecMatrix(Vec3(v.x, v.y, v.z), position);
      if (!std::isfinite(position.z)) continue;
      ++report.vertices;
      report.before += position.z < 0.0f && -position.z < report.clip.near;
      report.beyond += -position.z > report.clip.far;
    }
  }
}

}  // namespace

struct NPreview::Block {
  Block(std::unique_ptr<NContext const> owned, NContext const& drawn,
        data::document::NDocument const& document, data::view::NView& shown, unsigned pixelWidth,
        unsigned pixelHeight, NStereoMode mode)
      : own(std::move(owned)),
        context(own ? *own : drawn),
        view(&shown),
        width(pixelWidth),
        height(pixelHeight),
        stereo(mode),
        renderer(context, document.GetEvents()) {}

  boost::intrusive_ptr<NSceneNode> GetScene() const {
    auto scene = view->GetScene();
    if (!scene) throw NRenderError("the view shows no scene");
    return scene;
  }

  NCameraPath const& GetCamera() const {
    NCameraPath const& camera = view->GetCamera();
    if (!camera.GetNode()) throw NRenderError("the view has no camera");
    return camera;
  }

  NViewport GetViewport(NStereoSide side) const {
    double const middle = (view->GetLeft() + view->GetRight()) / 2;
    unsigned const left = Pixels(side == NSS_RIGHT ? middle : view->GetLeft(), width);
    unsigned const right = Pixels(side == NSS_LEFT ? middle : view->GetRight(), width);
    unsigned const top = Pixels(view->GetTop(), height);
    unsigned const bottom = Pixels(view->GetBottom(), height);
    return {left, top, right - std::min(left, right), bottom - std::min(top, bottom)};
  }

  double GetAspect(NStereoSide side) const {
    NViewport const viewport = GetViewport(side);
    return static_cast<double>(std::max(viewport.width, 1u)) /
           static_cast<double>(std::max(viewport.height, 1u));
  }

  std::vector<Part> GetParts() const {
    if (stereo == NSM_MONO) return {{NSS_BOTH, GetViewport(NSS_BOTH)}};
    return {{NSS_LEFT, GetViewport(NSS_LEFT)}, {NSS_RIGHT, GetViewport(NSS_RIGHT)}};
  }

  // Those of the view; where vertices that aren't finite would spoil them, those of what is drawn.
  // A near plane for an environment that is far larger than the models doesn't cut these.
  NClipDistances GetClip() const {
    NCameraPath const& camera = GetCamera();
    auto const [near, far] = item::GetClipDistances(camera, *view);
    VX_Math::Box3 box = renderer.GetBox();
    auto const [boxNear, boxFar] = item::GetClipDistances(camera, box);
    if (!(near > 0 && std::isfinite(far))) return {boxNear, boxFar};
    box.Transform(item::GetViewMatrix(camera));
    bool const cutsModels = !box.IsEmpty() && -box.max.z < near;
    constexpr double kMuch = 10;
    return {cutsModels && near > kMuch * boxNear ? boxNear : near, far};
  }

  NViewpoint GetViewpoint(NStereoSide side, NClipDistances const& clip) const {
    double const aspect = GetAspect(side);
    return stereo == NSM_HEAD_MOUNTED ? GetHeadMountedViewpoint(GetCamera(), aspect, clip, side)
                                      : renderer::GetViewpoint(GetCamera(), aspect, clip, side);
  }

  NTarget const& GetTarget(NTarget::NKind kind) {
    auto& target = kind == NTarget::NTK_PICTURE ? picture : numbers;
    if (!target) target = std::make_unique<NTarget>(context, width, height, kind);
    auto const [left, top, viewWidth, viewHeight] = GetViewport(NSS_BOTH);
    // What the view doesn't draw over is from the picture before.
    if (left + top != 0 || viewWidth != width || viewHeight != height) {
      target->Clear(hasBackground ? 1.0f : 0.0f);
    }
    return *target;
  }

  /// What was drawn, into which target.
  struct Drawing {
    NTarget const& target;
    NClipDistances clip;
    NViewpoint viewpoint;  // of the last part
  };

  /// Brings the renderer up to date and draws a picture part by part, all with the same clip
  /// distances.
  /// Requires: a scope of the context.
  Drawing Draw(NTarget::NKind kind, std::vector<Part> const& parts) {
    NTarget const& target = GetTarget(kind);
    auto const scene = GetScene();
    renderer.Update(*scene);
    Drawing drawing{target, GetClip(), {}};
    for (Part const& part : parts) {
      drawing.viewpoint = GetViewpoint(part.side, drawing.clip);
      if (kind == NTarget::NTK_PICTURE) {
        renderer.DrawPicture(*scene, drawing.viewpoint, target, part.viewport);
      } else {
        renderer.DrawNumbers(*scene, drawing.viewpoint, target, part.viewport);
      }
    }
    return drawing;
  }

  std::unique_ptr<NContext const> const own;
  NContext const& context;
  boost::intrusive_ptr<data::view::NView> const view;
  unsigned const width, height;
  NStereoMode const stereo;
  bool hasBackground = true;
  NRenderer renderer;
  std::unique_ptr<NTarget> picture, numbers;
};

NPreview::NPreview(data::document::NDocument const& document, data::view::NView& view,
                   unsigned width, unsigned height, NStereoMode stereo) {
  auto own = std::make_unique<NContext const>();
  NContext const& context = *own;
  m_block = std::make_unique<Block>(std::move(own), context, document, view, width, height, stereo);
}

NPreview::NPreview(NContext const& context, data::document::NDocument const& document,
                   data::view::NView& view, unsigned width, unsigned height, NStereoMode stereo)
    : m_block(new Block(nullptr, context, document, view, width, height, stereo)) {}

NPreview::~NPreview() = default;

void NPreview::Update() { m_block->renderer.Update(*m_block->GetScene()); }

NPixels NPreview::TakePicture() {
  Block& block = *m_block;
  NContextScope const scope(block.context);
  NTarget const& target = block.Draw(NTarget::NTK_PICTURE, block.GetParts()).target;
  return block.hasBackground ? target.ReadPicture() : target.ReadTransparentPicture();
}

std::vector<std::uint32_t> NPreview::TakeNumbers() {
  Block& block = *m_block;
  NContextScope const scope(block.context);
  return block.Draw(NTarget::NTK_NUMBERS, block.GetParts()).target.ReadNumbers();
}

NClipReport NPreview::MeasureClip() {
  Block& block = *m_block;
  NContextScope const scope(block.context);
  auto const [target, clip, viewpoint] =
      block.Draw(NTarget::NTK_NUMBERS, {{NSS_BOTH, {0, 0, block.width, block.height}}});
  NClipReport report;
  report.clip = clip;
  SetSeen(report, viewpoint, target.ReadNumbers(), target.ReadDepths());
  for (NDrawItem const& drawn : block.renderer.GetItems()) {
    CountVertices(report, drawn, viewpoint.view);
  }
  return report;
}

double NPreview::GetAspect(NStereoSide side) const { return m_block->GetAspect(side); }

NRenderer const& NPreview::GetRenderer() const { return m_block->renderer; }

void NPreview::SetShowsEdgesFlag(bool showsEdges) {
  m_block->renderer.SetShowsEdgesFlag(showsEdges);
}

void NPreview::SetHasBackgroundFlag(bool hasBackground) {
  m_block->hasBackground = hasBackground;
  m_block->renderer.SetHasBackgroundFlag(hasBackground);
}

NContext const& NPreview::GetContext() const { return m_block->context; }

}  // namespace corvanta::renderer
