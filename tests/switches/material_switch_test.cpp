#include "tests/support/world.h"

namespace corvanta::data::switches {
namespace {

using domain::material::NMaterialNode;
using domain::scenegraph::item::NSceneGraphModelNode;
using MaterialPointer = Pointer<NMaterialNode>;
using ModelPointer = Pointer<NSceneGraphModelNode>;

constexpr unsigned kNone = 0xFFFFFFFF;

/// Writes down what it hears, with the size of the list at that moment.
class Recorder final : public NMaterialSwitchListener {
 public:
  explicit Recorder(NMaterialSwitch const& chooser) : m_switch(chooser) {}
  std::vector<int> added;
  std::vector<int> removed;
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
  Pointer<Recorder> recorder{new Recorder(*chooser)};
  MaterialPointer a = materials->CreateNode(NNodeID());
  MaterialPointer b = materials->CreateNode(NNodeID());

  void SetUp() override { chooser->AddObserver(*recorder); }
  ModelPointer MakeModel() { return items->CreateNode<NSceneGraphModelNode>(NNodeID()); }
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
  ModelPointer first = MakeModel();
  ModelPointer const second = MakeModel();
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
  EXPECT_THAT(chooser->GetModels(), testing::SizeIs(1));
}

TEST_F(MaterialSwitch, TheChangeStandsWhenAListenerThrows) {
  recorder->throws = true;
  EXPECT_THROW(chooser->AddMaterial(a, 0), std::runtime_error);
  EXPECT_EQ(chooser->GetMaterialIndex(*a), 0u);
  EXPECT_THROW(chooser->RemoveMaterial(a), std::runtime_error);
  EXPECT_THAT(chooser->GetMaterials(), IsEmpty());
}

}  // namespace
}  // namespace corvanta::data::switches
