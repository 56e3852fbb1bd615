#include "tests/support/world.h"

namespace corvanta::data::view {
namespace {

using domain::scene::NSceneNode;
using domain::scenegraph::item::NSceneGraphCameraNode;
using domain::scenegraph::tree::NSceneGraphTreeNode;
using CameraPath = domain::scenegraph::NSceneGraphPath<NSceneGraphCameraNode>;
using SceneRef = NNodeReference<NSceneNode>;

class Recorder final : public NViewListener, public NViewManagerListener {
 public:
  std::vector<std::string> heard;
  std::vector<unsigned> indices;
  std::function<void()> react;

 private:
  void OnSetScene(NView const& view, SceneRef const& scene) override {
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
    auto const reaction = react;  // which may take itself away
    if (reaction) reaction();
  }
};

class AttributeRecorder final : public events::attribute_change::NListener {
 public:
  std::vector<std::wstring> heard;
  core::attribute::NAttributeHost* host = nullptr;

 private:
  void OnAttributeChangeImpl(core::attribute::NAttributeHost& changed,
                             core::attribute::NAttribute const& attribute) override {
    host = &changed;
    heard.push_back(attribute.GetName());
  }
};

/// A scene with a camera at the root of a tree.
struct Stage : support::World {
  Pointer<NSceneNode> scene = scenes->CreateNode(NNodeID());
  Pointer<NSceneGraphCameraNode> camera = items->CreateNode<NSceneGraphCameraNode>(NNodeID());
  Pointer<NSceneGraphTreeNode> tree = trees->CreateNode(NNodeID());
  CameraPath path{*camera, *tree};
};

TEST(View, TellsOfSceneAndCameraAlsoWhenTheyStay) {
  Stage stage;
  Pointer<NView> const view(new NView);
  Pointer<Recorder> const recorder(new Recorder);
  view->AddObserver(*recorder);
  EXPECT_EQ(view->GetScene(), nullptr);
  EXPECT_EQ(view->GetCamera().GetNode(), nullptr);

  view->SetScene(*stage.scene);
  view->SetCamera(stage.path);
  EXPECT_EQ(view->GetScene(), stage.scene);
  EXPECT_EQ(view->GetCamera().GetNode(), stage.camera);
  view->SetScene(view->GetSceneRef());
  view->SetCamera(view->GetCamera());
  EXPECT_EQ(view->GetCamera().GetNode(), stage.camera);
  view->SetLeft(0.5);
  EXPECT_THAT(recorder->heard, ElementsAre("scene", "camera", "scene", "camera"));

  stage.scenes->RemoveNode(*stage.scene);
  stage.scene.reset();
  EXPECT_EQ(view->GetScene(), nullptr);
  EXPECT_TRUE(view->GetSceneRef());
}

TEST(View, ListenersMayReplaceTheCameraAndDropTheView) {
  Stage stage;
  Pointer<NView> view(new NView);
  Pointer<Recorder> const first(new Recorder);
  Pointer<Recorder> const last(new Recorder);
  view->SetCamera(stage.path);
  view->AddObserver(*first);
  view->AddObserver(*last);
  first->react = [&] {
    first->react = nullptr;
    view->SetCamera(CameraPath());
    view.reset();
  };
  // The argument is the view's own path.
  NView& unheld = *view;
  unheld.SetCamera(unheld.GetCamera());
  EXPECT_EQ(view, nullptr);
  EXPECT_THAT(first->heard, ElementsAre("camera", "no camera"));
  EXPECT_THAT(last->heard, ElementsAre("no camera", "old camera"));
}

TEST(ViewManager, KeepsViewsInOrder) {
  Pointer<NViewManager> const manager(new NViewManager(nullptr));
  Pointer<Recorder> const recorder(new Recorder);
  manager->AddObserver(*recorder);
  Pointer<NView> const a(new NView);
  Pointer<NView> const b(new NView);
  Pointer<NView> const c(new NView);
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
  recorder->react = [&] {
    recorder->react = nullptr;
    manager->RemoveAllViews();
  };
  EXPECT_TRUE(manager->AddView(*new NView, 0));
  EXPECT_THAT(manager->GetViews(), IsEmpty());
}

TEST(ViewManager, TellsItsMultiplexerOfItsAttributesAndNobodyOfThoseOfViews) {
  Pointer<events::attribute_change::NMultiplexer> const multiplexer(
      new events::attribute_change::NMultiplexer);
  Pointer<AttributeRecorder> const recorder(new AttributeRecorder);
  multiplexer->AddObserver(*recorder);
  Pointer<NViewManager> const manager(new NViewManager(multiplexer.get()));
  EXPECT_FALSE(manager->FixesAspect());
  EXPECT_EQ(manager->GetAspect(), 1.0);
  manager->QueryAttribute(AN_ASPECT)->SetValue(1.5, true);
  manager->QueryAttribute(L"fixesAspect")->SetValue(true, true);
  EXPECT_EQ(manager->GetAspect(), 1.5);
  EXPECT_TRUE(manager->FixesAspect());
  EXPECT_THAT(recorder->heard, ElementsAre(L"aspect", L"fixesAspect"));
  EXPECT_EQ(recorder->host, manager.get());

  Pointer<NViewManager> const silent(new NViewManager(nullptr));
  silent->QueryAttribute(AN_ASPECT)->SetValue(2.0, true);
  Pointer<NView> const view(new NView);
  manager->AddView(*view, 0);
  view->SetTop(0.5);
  EXPECT_EQ(recorder->heard.size(), 2u);
}

}  // namespace
}  // namespace corvanta::data::view
