// A camera flies round a statue: three camera keys say where it is and what it looks at, and the
// animation engine interpolates between them by a smooth curve. The caller owns the clock: each
// Update is a step of time, forwards or backwards.
#include <iostream>

#include "scene.h"

using namespace example;
using data::animation::NAnimation;
using data::animation::NAnimationEngine;
using data::animation::NAnimationKey;
using CameraPath = domain::scenegraph::NSceneGraphPath<item::NSceneGraphCameraNode>;

namespace {

// What the engine asks its caller for: the cameras to move, and the scenes to set environments of.
class Arguments final : public data::animation::NAnimationEngineArgs {
 public:
  explicit Arguments(CameraPath const& camera) : m_camera(camera) {}

 private:
  void GetCamerasImpl(Cameras& cameras) const override { cameras.insert(m_camera); }
  void GetScenesImpl(Scenes&) const override {}

  CameraPath const m_camera;
};

// Hears of each step when all that it moves stands in its place.
class Viewer final : public data::animation::NAnimationEngineListener {
 public:
  explicit Viewer(CameraPath const& camera) : m_camera(camera) {}

 private:
  void OnSetTimeImpl(NAnimationEngine const&, double time) override {
    Vec3 eye;
    m_camera.GetGlobalTransform().MultVecMatrix(Vec3(), eye);
    Vec3 const ahead = item::GetFocalVec(m_camera);
    std::cout << "  " << Text(time) << " s: eye " << Text(eye) << ", looks at " << Text(eye + ahead)
              << ", " << Text(item::GetFocalLength(m_camera)) << " m away\n";
  }

  CameraPath const m_camera;
};

// Key times are whole tenths of the engine's seconds.
void AddKey(NAnimation& tour, int tenths, NAnimationKey::Triple const& eye,
            NAnimationKey::Triple const& interest) {
  Pointer<NAnimationKey> const key(new NAnimationKey);
  key->cameraIsIgnored = false;  // a key speaks of nothing until it is told to
  key->cameraTranslation = eye;
  key->cameraInterest = interest;
  key->cameraUp = {0.0, 1.0, 0.0};
  tour.AddKey(*key, tenths);
}

}  // namespace

int main() {
  Document document;
  auto const museum = CreateTree(document, L"museum");
  AddBox(document, *museum->GetRoot(), L"statue", {0, 1, 0}, {0.6f, 2, 0.6f});
  auto const placed = document.GetItems().CreateNode<item::NSceneGraphCameraNode>();
  placed->SetCameraNode(document.GetCameras().CreateNode());
  museum->GetRoot()->AddChild(*placed);
  CameraPath const camera(placed, museum);

  Pointer<NAnimation> const tour(new NAnimation);
  tour->SetName(L"round the statue");
  AddKey(*tour, 0, {0, 1.6, 6}, {0, 1, 0});
  AddKey(*tour, 20, {4, 1.6, 0}, {0, 1, 0});
  AddKey(*tour, 40, {0, 2.6, -3}, {0, 1.8, 0});

  NAnimationEngine& engine = tour->GetEngine();
  Pointer<Viewer> const viewer(new Viewer(camera));
  engine.AddObserver(*viewer);
  engine.SetEndTime(4.0);
  engine.Initialize(*tour);  // takes over the keys; edits count from the next call
  Arguments const arguments(camera);

  std::cout << Name(*tour) << ", " << tour->GetKeys().size() << " keys, forwards:\n";
  // A track writes while time moves over its keys, so the camera is brought to the start by a step.
  engine.SetCurrentTime(engine.GetEndTime());
  engine.GoToStart(arguments);
  while (engine.Update(arguments, 0.75)) {
  }
  std::cout << "and back in two steps:\n";
  engine.Update(arguments, -3.0);
  engine.GoToStart(arguments);
}
