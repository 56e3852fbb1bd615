#include "app/play/NTourPlayer.h"

#include "app/import/presentation.h"
#include "corvanta/core/text/convert.h"
#include "corvanta/data/animation/NAnimationEngineArgs.h"

namespace corvanta::app {

namespace {

namespace item = data::domain::scenegraph::item;
using core::node::NNodeID;
using core::text::ToNarrow;

// The engine moves the one camera, and no scene has an environment to change.
class Args final : public data::animation::NAnimationEngineArgs {
 public:
  explicit Args(NTourPlayer::CameraPath const& camera) : m_camera(camera) {}

 private:
  void GetCamerasImpl(Cameras& cameras) const override { cameras.insert(m_camera); }
  void GetScenesImpl(Scenes&) const override {}

  NTourPlayer::CameraPath const& m_camera;
};

constexpr char const* kAttributes[] = {"position.x", "position.y", "position.z",
                                       "interest.x", "interest.y", "interest.z",
                                       "up.x",       "up.y",       "up.z"};

}  // namespace

NTourPlayer::NTourPlayer(NDocument& document, NImportedModel const& model, bool isReverse,
                         bool repeats)
    : m_lens(document.GetCameras().CreateNode(NNodeID())), m_isReverse(isReverse) {
  auto const camera = document.GetItems().CreateNode<item::NSceneGraphCameraNode>(NNodeID());
  camera->SetName(L"tour");
  // Where the file's cameras lie on their side, so does this one.
  camera->SetFixesRollFlag(false);
  auto const lens = model.cameras.empty() ? nullptr : model.cameras.front()->GetCameraNode();
  if (lens) lens->CopyTo(*m_lens);
  m_lens->SetName(L"tour");
  camera->SetCameraNode(core::node::NNodeReference<data::domain::camera::NCameraNode>(*m_lens));
  model.tree->GetRoot()->AddChild(*camera);
  m_camera = CameraPath(*camera, *model.tree);
  m_presentation = CreatePresentation(model, m_lens->GetVerticalViewAngle());
  m_presentation->GetEngine().SetRepeat(repeats);
  for (char const* const attribute : kAttributes) {
    m_channels.push_back({ToNarrow(camera->GetName()), attribute});
  }
}

std::vector<double> NTourPlayer::Sample() const {
  auto const camera = m_camera.GetNode();
  VX_Math::Vec3 eye;
  m_camera.GetGlobalTransform().MultVecMatrix(VX_Math::Vec3(), eye);
  return {eye.x,
          eye.y,
          eye.z,
          camera->GetInterestX(),
          camera->GetInterestY(),
          camera->GetInterestZ(),
          camera->GetUpX(),
          camera->GetUpY(),
          camera->GetUpZ()};
}

std::string NTourPlayer::GetTitle() const {
  return "tour of " + ToNarrow(m_presentation->GetName());
}

double NTourPlayer::GetLength() const { return m_presentation->GetEngine().GetEndTime(); }

double NTourPlayer::GetMoment() const { return m_presentation->GetEngine().GetTickCount(); }

void NTourPlayer::Begin() {
  auto& engine = m_presentation->GetEngine();
  // A step that begins at the end of a track writes nothing: come from outside.
  double const length = GetLength();
  engine.SetCurrentTime(m_isReverse ? 2.0 * length : -length);
  Advance(length);
}

void NTourPlayer::Advance(double seconds) {
  m_presentation->GetEngine().Update(Args(m_camera), m_isReverse ? -seconds : seconds);
}

}  // namespace corvanta::app
