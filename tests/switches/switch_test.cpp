#include "tests/support/world.h"

namespace corvanta::data::switches {
namespace {

using detail::NModelSet;
using CameraPath = NSceneGraphPath<NSceneGraphCameraNode>;
using SetPointer = Pointer<NModelSet>;

constexpr unsigned kNone = 0xFFFFFFFF;

TEST(Switches, InsertBeforeTheIndexAndRefuseBeyondTheEnd) {
  World world;
  Camera const camera = world.Make<NSceneGraphCameraNode>();
  CameraPath const a(*camera, {}), b;
  auto const cameras = New<NCameraSwitch>();
  EXPECT_EQ(cameras->GetName(), L"");
  EXPECT_FALSE(cameras->AddCamera(a, 1));
  EXPECT_FALSE(cameras->RemoveCamera(0));
  EXPECT_TRUE(cameras->AddCamera(a, 0));
  EXPECT_TRUE(cameras->AddCamera(a, 1));
  EXPECT_TRUE(cameras->AddCamera(b, 1));
  EXPECT_TRUE(cameras->AddCamera(cameras->GetCameras().back(), 3));
  EXPECT_TRUE(cameras->RemoveCamera(2));
  EXPECT_FALSE(cameras->RemoveCamera(3));
  EXPECT_THAT(cameras->GetCameras(), ElementsAre(a, b, a));

  using EnvironmentRef = NNodeReference<NEnvironmentNode>;
  // What an entry refers to doesn't matter.
  EnvironmentRef const full(static_cast<core::node::detail::NNodeReferenceImpl const&>(
      NNodeReference<NSceneGraphCameraNode>(*camera)));
  EnvironmentRef const empty;
  auto const environments = New<NEnvironmentSwitch>();
  EXPECT_FALSE(environments->AddEnvironment(full, 1));
  EXPECT_FALSE(environments->RemoveEnvironment(0));
  EXPECT_TRUE(environments->AddEnvironment(full, 0));
  EXPECT_TRUE(environments->AddEnvironment(empty, 0));
  EXPECT_TRUE(environments->AddEnvironment(full, 2));
  EXPECT_TRUE(environments->RemoveEnvironment(1));
  EXPECT_FALSE(environments->RemoveEnvironment(2));
  EXPECT_THAT(environments->GetEnvironments(), ElementsAre(empty, full));
}

/// Writes down what it hears, with the size of the list at that moment.
class MaterialRecorder final : public NMaterialSwitchListener {
 public:
  explicit MaterialRecorder(NMaterialSwitch const& chooser) : m_switch(chooser) {}
  std::vector<int> added, removed;
  bool throws = false;

 private:
  void OnAddMaterial() override { Record(added); }
  void OnRemoveMaterial() override { Record(removed); }
  void Record(std::vector<int>& sizes) {
    sizes.push_back(static_cast<int>(m_switch.GetMaterials().size()));
    if (throws) throw std::runtime_error("heard");
  }

  NMaterialSwitch const& m_switch;
};

class MaterialSwitch : public testing::Test, protected support::World {
 protected:
  Pointer<NMaterialSwitch> chooser{new NMaterialSwitch};
  Pointer<MaterialRecorder> recorder = New<MaterialRecorder>(*chooser);
  Pointer<NMaterialNode> a = materials->CreateNode(), b = materials->CreateNode();

  void SetUp() override { chooser->AddObserver(*recorder); }
};

TEST_F(MaterialSwitch, KeepsAnOrderThatMayRepeat) {
  EXPECT_EQ(chooser->GetName(), L"");
  EXPECT_FALSE(chooser->AddMaterial(a, 1));
  EXPECT_FALSE(chooser->RemoveMaterial(0));
  EXPECT_TRUE(chooser->AddMaterial(a, 0));
  EXPECT_TRUE(chooser->AddMaterial(a, 0));
  EXPECT_TRUE(chooser->AddMaterial(b, 1));
  EXPECT_THAT(recorder->added, ElementsAre(1, 2, 3));
  EXPECT_EQ(chooser->GetMaterialIndex(*a), 0u);
  EXPECT_EQ(chooser->GetMaterialIndex(*b), 1u);
  EXPECT_FALSE(chooser->RemoveMaterial(5));
  EXPECT_THAT(recorder->removed, IsEmpty());
  chooser->RemoveMaterial(chooser->GetMaterials().front());  // both, by an entry of the list itself
  chooser->RemoveMaterial(a);                                // none
  EXPECT_THAT(recorder->removed, ElementsAre(1, 1));
  EXPECT_EQ(chooser->GetMaterialIndex(*a), kNone);
  EXPECT_TRUE(chooser->RemoveMaterial(0));
  EXPECT_THAT(chooser->GetMaterials(), IsEmpty());
}

TEST_F(MaterialSwitch, DeadEntriesCountAsPositions) {
  chooser->AddMaterial(a, 0);
  chooser->AddMaterial(b, 1);
  materials->RemoveNode(*a);
  a.reset();
  EXPECT_EQ(chooser->GetMaterialIndex(*b), 1u);
  Model first = Make<NSceneGraphModelNode>();
  Model const second = Make<NSceneGraphModelNode>();
  EXPECT_TRUE(chooser->AddModel(first));
  EXPECT_FALSE(chooser->AddModel(first));
  EXPECT_EQ(chooser->GetModelIndex(*second), kNone);
  EXPECT_FALSE(chooser->RemoveModel(second));
  EXPECT_TRUE(chooser->AddModel(second));
  items->RemoveNode(*first);
  NNodeReference<NSceneGraphModelNode> const dead(first);
  first.reset();
  EXPECT_EQ(chooser->GetModelIndex(*second), 1u);
  EXPECT_TRUE(chooser->RemoveModel(dead));
  EXPECT_EQ(chooser->GetModelIndex(*second), 0u);
  EXPECT_THAT(chooser->GetModels(), SizeIs(1));
}

TEST_F(MaterialSwitch, TheChangeStandsWhenAListenerThrows) {
  recorder->throws = true;
  EXPECT_THROW(chooser->AddMaterial(a, 0), std::runtime_error);
  EXPECT_EQ(chooser->GetMaterialIndex(*a), 0u);
  EXPECT_THROW(chooser->RemoveMaterial(a), std::runtime_error);
  EXPECT_THAT(chooser->GetMaterials(), IsEmpty());
}

/// Writes down what it hears, with the position that the set has at that moment; `react` runs after
/// that.
class ModelRecorder final : public NModelSwitchListener {
 public:
  explicit ModelRecorder(NModelSwitch const& chooser) : m_switch(chooser) {}
  std::vector<std::wstring> heard;
  std::function<void(NModelSet const&)> react;

  std::vector<std::wstring> Take() { return std::exchange(heard, {}); }

 private:
  void OnAddModelSet(NModelSet const& set) override { Record(L"added ", set); }
  void OnRemoveModelSet(NModelSet const& set) override { Record(L"removed ", set); }
  void Record(wchar_t const* what, NModelSet const& set) {
    heard.push_back(what + set.GetName() + L" at " +
                    std::to_wstring(static_cast<int>(m_switch.GetModelSetIndex(set))));
    if (auto const call = react) call(set);  // a copy, which may replace itself
  }

  NModelSwitch const& m_switch;
};

SetPointer MakeSet(wchar_t const* name) {
  auto const set = New<NModelSet>();
  set->SetName(name);
  return set;
}

class ModelSwitch : public testing::Test {
 protected:
  Pointer<NModelSwitch> chooser{new NModelSwitch};
  Pointer<ModelRecorder> recorder = New<ModelRecorder>(*chooser);
  SetPointer a = MakeSet(L"a"), b = MakeSet(L"b");

  void SetUp() override { chooser->AddObserver(*recorder); }
};

TEST_F(ModelSwitch, KeepsAnOrderWithUniqueNames) {
  EXPECT_EQ(chooser->GetName(), L"");
  EXPECT_EQ(FindModelSet(*chooser, L"a"), nullptr);
  EXPECT_FALSE(chooser->AddModelSet(*a, 1));
  EXPECT_FALSE(chooser->RemoveModelSet(0));
  EXPECT_FALSE(chooser->RemoveModelSet(*a));
  EXPECT_TRUE(chooser->AddModelSet(*a, 0));
  EXPECT_TRUE(chooser->AddModelSet(*b, 0));
  EXPECT_THAT(recorder->Take(), ElementsAre(L"added a at 0", L"added b at 0"));
  EXPECT_FALSE(chooser->AddModelSet(*MakeSet(L"b"), 0));
  EXPECT_FALSE(chooser->AddModelSet(*a, 2));
  auto const other = New<NModelSwitch>();
  EXPECT_FALSE(other->AddModelSet(*a, 0));
  EXPECT_TRUE(other->AddModelSet(*MakeSet(L"a"), 0));
  EXPECT_FALSE(chooser->RemoveModelSet(**other->GetModelSets().begin()));
  EXPECT_FALSE(chooser->RemoveModelSet(2));
  EXPECT_THAT(recorder->Take(), IsEmpty());
  EXPECT_THAT(chooser->GetModelSets(), ElementsAre(b, a));
  EXPECT_EQ(chooser->GetModelSetCount(), 2u);
  EXPECT_EQ(chooser->GetModelSetIndex(*a), 1u);
  EXPECT_EQ(chooser->GetModelSetIndex(**other->GetModelSets().begin()), kNone);
  EXPECT_EQ(FindModelSet(*chooser, L"a"), a);
  EXPECT_TRUE(chooser->RemoveModelSet(1));
  EXPECT_TRUE(chooser->RemoveModelSet(*b));
  EXPECT_THAT(recorder->Take(), ElementsAre(L"removed a at 1", L"removed b at 0"));
  EXPECT_EQ(chooser->GetModelSetIndex(*a), kNone);
  EXPECT_TRUE(chooser->AddModelSet(*a, 0));
}

TEST_F(ModelSwitch, AListenerMayThrowOrEdit) {
  chooser->AddModelSet(*a, 0);
  chooser->AddModelSet(*b, 1);
  recorder->react = [](NModelSet const&) { throw std::runtime_error("heard"); };
  EXPECT_THROW(chooser->RemoveModelSet(*a), std::runtime_error);
  EXPECT_THAT(chooser->GetModelSets(), ElementsAre(b));
  EXPECT_THROW(chooser->AddModelSet(*a, 0), std::runtime_error);
  EXPECT_THAT(chooser->GetModelSets(), ElementsAre(a, b));
  // One that enters the set anew, before and behind its old place, while it is about to go.
  for (unsigned const place : {0u, 2u}) {
    recorder->react = [&](NModelSet const&) {
      recorder->react = nullptr;
      EXPECT_FALSE(chooser->RemoveModelSet(*a));
      EXPECT_TRUE(chooser->AddModelSet(*a, place));
    };
    EXPECT_TRUE(chooser->RemoveModelSet(*a));
    EXPECT_EQ(chooser->GetModelSetIndex(*a), place / 2);
    EXPECT_EQ(chooser->GetModelSetCount(), 2u);
    EXPECT_EQ(a->GetNamespace(), chooser.get());
  }
  // One that ends everything.
  recorder->react = [&](NModelSet const&) {
    recorder->react = nullptr;
    while (chooser->GetModelSetCount() > 1) chooser->RemoveModelSet(0u);
    chooser.reset();
    a.reset();
  };
  recorder->heard.clear();
  EXPECT_TRUE(chooser->RemoveModelSet(*a));
  EXPECT_EQ(chooser, nullptr);
}

}  // namespace
}  // namespace corvanta::data::switches
