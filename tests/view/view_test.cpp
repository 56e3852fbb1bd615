#include "tests/support/view_world.h"

namespace corvanta::data::view {
namespace {

using CameraPath = NSceneGraphPath<NSceneGraphCameraNode>;
using support::ViewWorld;

class Recorder final : public NViewListener, public NViewManagerListener {
 public:
  std::vector<std::string> heard;
  std::vector<unsigned> indices;
  std::function<void()> react;  // once

 private:
  void OnSetScene(NView const& view, NNodeReference<NSceneNode> const& scene) override {
    EXPECT_TRUE(view.GetSceneRef() == scene);
    Hear("scene");
  }
  void OnSetCamera(NView const& view, CameraPath const& camera) override {
    Hear(!camera.GetNode() ? "no camera" : view.GetCamera() == camera ? "camera" : "old camera");
  }
  void OnAddView(NViewManager const&, NView&, unsigned int index) override {
    indices.push_back(index);
    Hear("add");
  }
  void OnRemoveAllViews(NViewManager const& manager) override {
    EXPECT_TRUE(manager.GetViews().empty());
    Hear("remove all");
  }
  void Hear(char const* what) {
    heard.push_back(what);
    if (auto const reaction = std::exchange(react, nullptr)) reaction();
  }
};

TEST(View, TellsOfSceneAndCameraAlsoWhenTheyStay) {
  ViewWorld world;
  auto const view = New<NView>();
  auto const recorder = New<Recorder>();
  view->AddObserver(*recorder);
  EXPECT_EQ(view->GetScene(), nullptr);
  EXPECT_EQ(view->GetCamera().GetNode(), nullptr);

  view->SetScene(*world.scene);
  view->SetCamera(world.GetPath());
  EXPECT_EQ(view->GetScene(), world.scene);
  EXPECT_EQ(view->GetCamera().GetNode(), world.camera);
  view->SetScene(view->GetSceneRef());
  view->SetCamera(view->GetCamera());
  EXPECT_EQ(view->GetCamera().GetNode(), world.camera);
  view->SetLeft(0.5);
  EXPECT_THAT(recorder->heard, ElementsAre("scene", "camera", "scene", "camera"));

  world.scenes->RemoveNode(*world.scene);
  world.scene.reset();
  EXPECT_EQ(view->GetScene(), nullptr);
  EXPECT_TRUE(view->GetSceneRef());
}

TEST(View, ListenersMayReplaceTheCameraAndDropTheView) {
  ViewWorld world;
  auto const first = New<Recorder>(), last = New<Recorder>();
  world.view->SetCamera(world.GetPath());
  world.view->AddObserver(*first);
  world.view->AddObserver(*last);
  first->react = [&] {
    world.view->SetCamera(CameraPath());
    world.view.reset();
  };
  // The argument is the view's own path.
  NView& unheld = *world.view;
  unheld.SetCamera(unheld.GetCamera());
  EXPECT_EQ(world.view, nullptr);
  EXPECT_THAT(first->heard, ElementsAre("camera", "no camera"));
  EXPECT_THAT(last->heard, ElementsAre("no camera", "old camera"));
}

TEST(ViewManager, KeepsViewsInOrder) {
  auto const manager = New<NViewManager>(nullptr);
  auto const recorder = New<Recorder>();
  manager->AddObserver(*recorder);
  auto const a = New<NView>(), b = New<NView>(), c = New<NView>();
  EXPECT_FALSE(manager->AddView(*a, 1));
  EXPECT_TRUE(manager->AddView(*a, 0));
  EXPECT_TRUE(manager->AddView(*b, 1));
  EXPECT_TRUE(manager->AddView(*c, 0));
  EXPECT_TRUE(manager->AddView(*a, 1));
  EXPECT_FALSE(manager->AddView(*a, 5));
  EXPECT_THAT(manager->GetViews(), ElementsAre(c, a, a, b));
  EXPECT_THAT(recorder->indices, ElementsAre(0u, 1u, 0u, 1u));

  manager->RemoveAllViews();
  manager->ClearAll();
  EXPECT_THAT(recorder->heard, ElementsAre("add", "add", "add", "add", "remove all", "remove all"));
  recorder->react = [&] { manager->RemoveAllViews(); };
  EXPECT_TRUE(manager->AddView(*new NView, 0));
  EXPECT_THAT(manager->GetViews(), IsEmpty());
}

TEST(ViewManager, TellsItsMultiplexerOfItsAttributesAndNobodyOfThoseOfViews) {
  World const world;
  auto const manager = New<NViewManager>(world.attributes);
  auto const log = world.Listen(true);
  std::vector<std::wstring> heard;
  log->react = [&](NSignal const& signal) {
    EXPECT_EQ(signal.host, manager.get());
    heard.push_back(signal.attribute->GetName());
  };
  EXPECT_FALSE(manager->FixesAspect());
  EXPECT_EQ(manager->GetAspect(), 1.0);
  manager->QueryAttribute(AN_ASPECT)->SetValue(1.5, true);
  manager->QueryAttribute(L"fixesAspect")->SetValue(true, true);
  EXPECT_EQ(manager->GetAspect(), 1.5);
  EXPECT_TRUE(manager->FixesAspect());
  New<NViewManager>(nullptr)->QueryAttribute(AN_ASPECT)->SetValue(2.0, true);
  auto const view = New<NView>();
  manager->AddView(*view, 0);
  view->SetTop(0.5);
  EXPECT_THAT(heard, ElementsAre(L"aspect", L"fixesAspect"));
}

}  // namespace
}  // namespace corvanta::data::view
