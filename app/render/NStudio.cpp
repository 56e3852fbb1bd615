#include "app/render/NStudio.h"

#include <algorithm>
#include <cmath>

#include "corvanta/data/domain/geometry/NGeometryNode.h"
#include "corvanta/data/domain/scenegraph/item/view.h"
#include "corvanta/data/domain/scenegraph/item/view_clip_distances.h"

namespace corvanta::app {

namespace {

namespace item = data::domain::scenegraph::item;
using VX_Math::Matrix;
using VX_Math::Vec3;

unsigned Pixels(double fraction, unsigned whole) {
  return static_cast<unsigned>(std::lround(std::clamp(fraction, 0.0, 1.0) * whole));
}

}  // namespace

NStudio::NStudio(NDocument const& document, NStage& stage, unsigned width, unsigned height,
                 NEyes eyes)
    : m_stage(stage),
      m_width(width),
      m_height(height),
      m_eyes(eyes),
      m_renderer(m_context, document.GetEvents()) {
  if (eyes == NE_ONE) {
    m_parts.push_back({&stage.GetView(), renderer::NES_BOTH});
    return;
  }
  for (renderer::NEyeSide const side : {renderer::NES_LEFT, renderer::NES_RIGHT}) {
    boost::intrusive_ptr<data::view::NView> const view(new data::view::NView);
    view->SetScene(stage.GetView().GetSceneRef());
    (side == renderer::NES_LEFT) ? view->SetRight(0.5) : view->SetLeft(0.5);
    m_parts.push_back({view, side});
  }
}

NStudio::~NStudio() = default;

void NStudio::Prepare() {
  m_renderer.Update(m_stage.GetScene());
  if (m_stage.GetOverview().IsLost()) m_stage.GetOverview().Frame(m_renderer.GetBox());
  for (Part const& part : m_parts) {
    if (m_eyes != NE_ONE) part.view->SetCamera(m_stage.GetView().GetCamera());
  }
}

// That of the view; where vertices that aren't finite would spoil it, that of the others. Models
// that stand far off the surroundings aren't cut away for the sake of these.
renderer::NClip NStudio::GetClip(data::view::NView const& view) const {
  auto const [near, far] = item::GetClipDistances(view.GetCamera(), view);
  VX_Math::Box3 box = m_renderer.GetBox();
  auto const [boxNear, boxFar] = item::GetClipDistances(view.GetCamera(), box);
  if (!(near > 0 && std::isfinite(far))) return {boxNear, boxFar};
  box.Transform(item::GetViewMatrix(view.GetCamera()));
  bool const cutsModels = !box.IsEmpty() && -box.max.z < near;
  constexpr double kMuch = 10;
  return {cutsModels && near > kMuch * boxNear ? boxNear : near, far};
}

renderer::NEye NStudio::GetEyeOf(Part const& part) const {
  renderer::NViewport const viewport = GetViewport(*part.view);
  double const aspect = static_cast<double>(std::max(viewport.width, 1u)) /
                        static_cast<double>(std::max(viewport.height, 1u));
  m_stage.GetOverview().FitAspect(aspect);
  renderer::NCameraPath const& camera = part.view->GetCamera();
  renderer::NClip const clip = GetClip(*part.view);
  return m_eyes == NE_HEAD_MOUNTED ? renderer::GetHeadMountedEye(camera, aspect, clip, part.side)
                                   : renderer::GetEye(camera, aspect, clip, part.side);
}

renderer::NTarget const& NStudio::GetTarget(std::unique_ptr<renderer::NTarget>& target,
                                            renderer::NTarget::NKind kind) const {
  if (!target)
    target = std::make_unique<renderer::NTarget>(m_context, m_width, m_height, kind);
  return *target;
}

renderer::NPixels NStudio::TakePicture() {
  renderer::NTarget const& target = GetTarget(m_picture, renderer::NTarget::NTK_PICTURE);
  Prepare();
  for (Part const& part : m_parts) {
    m_renderer.DrawPicture(m_stage.GetScene(), GetEyeOf(part), target, GetViewport(*part.view));
  }
  return target.ReadPicture();
}

std::vector<std::uint32_t> NStudio::TakeNumbers() {
  renderer::NTarget const& target = GetTarget(m_numbers, renderer::NTarget::NTK_NUMBERS);
  Prepare();
  for (Part const& part : m_parts) {
    m_renderer.DrawNumbers(m_stage.GetScene(), GetEyeOf(part), target, GetViewport(*part.view));
  }
  return target.ReadNumbers();
}

NClipReport NStudio::MeasureClip() {
  renderer::NTarget const& target = GetTarget(m_numbers, renderer::NTarget::NTK_NUMBERS);
  Prepare();
  NClipReport report;
  Part const part{&m_stage.GetView(), renderer::NES_BOTH};
  report.clip = GetClip(*part.view);
  renderer::NEye const eye = GetEyeOf(part);
  m_renderer.DrawNumbers(m_stage.GetScene(), eye, target, {0, 0, m_width, m_height});
  auto const numbers = target.ReadNumbers();
  auto const depths = target.ReadDepths();
  float nearest = 0.0f, farthest = 1.0f;
  for (std::size_t i = 0; i != numbers.size(); ++i) {
    if (numbers[i] == 0) continue;
    nearest = std::max(nearest, depths[i]);
    farthest = std::min(farthest, depths[i]);
  }
  Matrix const back = eye.projection.Inverse();
  auto const getDistance = [&back](float depth) {
    Vec3 place;
    back.MultVecMatrix(Vec3(0.0f, 0.0f, 1.0f - depth), place);
    return static_cast<double>(-place.z);
  };
  if (farthest <= nearest) {
    report.nearest = getDistance(nearest);
    report.farthest = getDistance(farthest);
  }
  for (renderer::NDrawItem const& drawn : m_renderer.GetItems()) {
    auto const geometry = drawn.model->GetGeometryNode();
    if (!geometry || !drawn.isPlaced) continue;
    Matrix const toView = drawn.global * eye.view;
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
  return report;
}

renderer::NViewport NStudio::GetViewport(data::view::NView const& view) const {
  unsigned const left = Pixels(view.GetLeft(), m_width);
  unsigned const top = Pixels(view.GetTop(), m_height);
  unsigned const right = Pixels(view.GetRight(), m_width);
  unsigned const bottom = Pixels(view.GetBottom(), m_height);
  return {left, top, right - std::min(left, right), bottom - std::min(top, bottom)};
}

}  // namespace corvanta::app
