#include "app/play/NTourPlayer.h"

#include "app/play/presentation.h"
#include "corvanta/core/text/convert.h"
#include "corvanta/data/animation/NAnimationEngineArgs.h"
#include "corvanta/data/domain/camera/NCameraNode.h"

namespace corvanta::app {

namespace {

using core::text::ToNarrow;

// What the presentation acts on: what is seen of the stage.
class Args final : public data::animation::NAnimationEngineArgs {
 public:
  explicit Args(NStage& stage) : m_stage(stage) {}

 private:
  void GetCamerasImpl(Cameras& cameras) const override {
    cameras.insert(m_stage.GetView().GetCamera());
  }
  void GetScenesImpl(Scenes& scenes) const override { scenes.insert(&m_stage.GetScene()); }

  NStage& m_stage;
};

constexpr char const* kAttributes[] = {"position.x", "position.y", "position.z",
                                       "interest.x", "interest.y", "interest.z",
                                       "up.x",       "up.y",       "up.z"};

}  // namespace

NTourPlayer::NTourPlayer(NStage& stage, importer::NImportedModel const& model, bool isReverse,
                         bool repeats)
    : m_stage(stage),
      m_camera(stage.GetView().GetCamera()),
      m_isReverse(isReverse),
      m_repeats(repeats) {
  auto const camera = m_camera.GetNode();
  auto const lens = camera->GetCameraNode();
  // Where the file's cameras lie on their side, so does this one.
  camera->SetFixesRollFlag(false);
  if (!model.cameras.empty()) {
    if (auto const first = model.cameras.front()->GetCameraNode()) first->CopyTo(*lens);
  }
  camera->SetName(L"tour");
  lens->SetName(L"tour");
  m_presentation = CreatePresentation(model, lens->GetVerticalViewAngle());
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
  constexpr double kBeyond = 1e-9;  // seconds: an end itself is still the end
  double const left = m_isReverse ? GetMoment() : GetLength() - GetMoment();
  if (m_repeats && IsReached(seconds, left)) seconds = left + kBeyond;
  m_presentation->GetEngine().Update(Args(m_stage), m_isReverse ? -seconds : seconds);
}

}  // namespace corvanta::app
