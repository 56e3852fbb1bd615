#include "corvanta/renderer/NPreview.h"

#include <algorithm>
#include <cmath>
#include <span>

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

constexpr NEyeSide kOne[] = {NES_BOTH};
constexpr NEyeSide kTwo[] = {NES_LEFT, NES_RIGHT};

unsigned Pixels(double fraction, unsigned whole) {
  return static_cast<unsigned>(std::lround(std::clamp(fraction, 0.0, 1.0) * whole));
}

/// The depths between which something was drawn, as distances ahead of the camera.
void SetSeen(NClipReport& report, NEye const& eye, std::vector<std::uint32_t> const& numbers,
             std::vector<float> const& depths) {
  float nearest = 0.0f, farthest = 1.0f;
  for (std::size_t i = 0; i != numbers.size(); ++i) {
    if (numbers[i] == 0) continue;
    nearest = std::max(nearest, depths[i]);
    farthest = std::min(farthest, depths[i]);
  }
  if (farthest > nearest) return;
  Matrix const back = eye.projection.Inverse();
  auto const getDistance = [&back](float depth) {
    Vec3 place;
    back.MultVecMatrix(Vec3(0.0f, 0.0f, 1.0f - depth), place);
    return static_cast<double>(-place.z);
  };
  report.nearest = getDistance(nearest);
  report.farthest = getDistance(farthest);
}

void CountVertices(NClipReport& report, NDrawItem const& drawn, Matrix const& view) {
  auto const geometry = drawn.model->GetGeometryNode();
  if (!geometry || !drawn.isPlaced) return;
  Matrix const toView = drawn.global * view;
  for (auto const& surface : geometry->GetSurfaces()) {
    for (auto const& v : surface->GetCoords()) {
      Vec3 place;
      toView.MultVecMatrix(Vec3(v.x, v.y, v.z), place);
      if (!std::isfinite(place.z)) continue;
      ++report.vertices;
      report.before += place.z < 0.0f && -place.z < report.clip.near;
      report.beyond += -place.z > report.clip.far;
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

  std::span<NEyeSide const> GetSides() const {
    return stereo == NSM_MONO ? std::span<NEyeSide const>(kOne) : std::span<NEyeSide const>(kTwo);
  }

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

  NViewport GetViewport(NEyeSide side) const {
    double const middle = (view->GetLeft() + view->GetRight()) / 2;
    unsigned const left = Pixels(side == NES_RIGHT ? middle : view->GetLeft(), width);
    unsigned const right = Pixels(side == NES_LEFT ? middle : view->GetRight(), width);
    unsigned const top = Pixels(view->GetTop(), height);
    unsigned const bottom = Pixels(view->GetBottom(), height);
    return {left, top, right - std::min(left, right), bottom - std::min(top, bottom)};
  }

  double GetAspect(NEyeSide side) const {
    NViewport const viewport = GetViewport(side);
    return static_cast<double>(std::max(viewport.width, 1u)) /
           static_cast<double>(std::max(viewport.height, 1u));
  }

  // That of the view; where vertices that aren't finite would spoil it, that of what is drawn.
  // Models far off the surroundings aren't cut away for the sake of these.
  NClip GetClip() const {
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

  NEye GetEyeOf(NEyeSide side) const {
    double const aspect = GetAspect(side);
    return stereo == NSM_HEAD_MOUNTED ? GetHeadMountedEye(GetCamera(), aspect, GetClip(), side)
                                      : GetEye(GetCamera(), aspect, GetClip(), side);
  }

  NTarget const& GetTarget(NTarget::NKind kind) {
    auto& target = kind == NTarget::NTK_PICTURE ? picture : numbers;
    if (!target) target = std::make_unique<NTarget>(context, width, height, kind);
    auto const [left, top, viewWidth, viewHeight] = GetViewport(NES_BOTH);
    // What the view doesn't draw over is from the picture before.
    if (left + top != 0 || viewWidth != width || viewHeight != height) target->Clear();
    return *target;
  }

  std::unique_ptr<NContext const> const own;
  NContext const& context;
  boost::intrusive_ptr<data::view::NView> const view;
  unsigned const width, height;
  NStereoMode const stereo;
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
  NTarget const& target = block.GetTarget(NTarget::NTK_PICTURE);
  auto const scene = block.GetScene();
  block.renderer.Update(*scene);
  for (NEyeSide const side : block.GetSides()) {
    block.renderer.DrawPicture(*scene, block.GetEyeOf(side), target, block.GetViewport(side));
  }
  return target.ReadPicture();
}

std::vector<std::uint32_t> NPreview::TakeNumbers() {
  Block& block = *m_block;
  NContextScope const scope(block.context);
  NTarget const& target = block.GetTarget(NTarget::NTK_NUMBERS);
  auto const scene = block.GetScene();
  block.renderer.Update(*scene);
  for (NEyeSide const side : block.GetSides()) {
    block.renderer.DrawNumbers(*scene, block.GetEyeOf(side), target, block.GetViewport(side));
  }
  return target.ReadNumbers();
}

NClipReport NPreview::MeasureClip() {
  Block& block = *m_block;
  NContextScope const scope(block.context);
  NTarget const& target = block.GetTarget(NTarget::NTK_NUMBERS);
  auto const scene = block.GetScene();
  block.renderer.Update(*scene);
  NEye const eye = block.GetEyeOf(NES_BOTH);
  NClipReport report;
  report.clip = block.GetClip();
  block.renderer.DrawNumbers(*scene, eye, target, {0, 0, block.width, block.height});
  SetSeen(report, eye, target.ReadNumbers(), target.ReadDepths());
  for (NDrawItem const& drawn : block.renderer.GetItems()) CountVertices(report, drawn, eye.view);
  return report;
}

double NPreview::GetAspect(NEyeSide side) const { return m_block->GetAspect(side); }

NRenderer const& NPreview::GetRenderer() const { return m_block->renderer; }

NContext const& NPreview::GetContext() const { return m_block->context; }

}  // namespace corvanta::renderer
