#include <cmath>

#include "app/compare/NDifference.h"
#include "corvanta/data/domain/animation/NNodeAnimationTarget.h"
#include "corvanta/data/domain/geometry/NPolygonSurface.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphGroupNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"
#include "tests/app/program.h"

namespace corvanta::app_tests {
namespace {

namespace item = data::domain::scenegraph::item;
using data::document::NDocument;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

/// Two documents that are made alike: a group "car" over "wheel" and "door", a mesh and a material.
class CompareTest : public testing::Test {
 protected:
  using Group = boost::intrusive_ptr<item::NSceneGraphGroupNode>;

  struct Side {
    Side() {
      car = Add(nullptr, L"car");
      wheel = Add(car.get(), L"wheel");
      door = Add(car.get(), L"door");
      material = document.GetMaterials().CreateNode();
      material->SetName(L"paint");
      material->QueryAttribute(L"bias")->SetValue(std::nan(""), true);
      geometry = document.GetGeometries().CreateNode();
      geometry->SetName(L"mesh");
      surface.reset(new data::domain::geometry::NPolygonSurface);
      geometry->AddSurface(*surface);
      Assign(1);
      animation = document.GetAnimations().CreateNode();
      animation->SetName(L"turn");
      curve.reset(new data::operators::animation::NKeyFrameAnimation);
      curve->AddKey({1, 2});
      boost::intrusive_ptr<data::domain::animation::NAnimationTarget> const target(
          new data::domain::animation::NNodeAnimationTarget(
              core::node::NNodeReference<data::domain::NNode>(*wheel)));
      animation->AddAnimation({L"rotation.x", target}, *curve);
    }
    Group Add(Group::element_type* parent, wchar_t const* name) {
      Group const group = document.GetItems().CreateNode<item::NSceneGraphGroupNode>();
      group->SetName(name);
      if (parent != nullptr) parent->AddChild(*group);
      return group;
    }
    void Assign(float x) const {
      surface->Assign({x, 0, 0, 1, 0, 0, 0, 1, 0}, {0, 0, 1, 0, 0, 1, 0, 0, 1}, {0, 1, 2}, {});
    }

    NDocument document;
    Group car, wheel, door;
    boost::intrusive_ptr<data::domain::material::NMaterialNode> material;
    boost::intrusive_ptr<data::domain::geometry::NGeometryNode> geometry;
    boost::intrusive_ptr<data::domain::geometry::NSurface> surface;
    boost::intrusive_ptr<data::domain::animation::NAnimationNode> animation;
    boost::intrusive_ptr<data::operators::animation::NKeyFrameAnimation> curve;
  };

  std::vector<std::string> GetLines() const {
    std::vector<std::string> lines;
    for (auto const& difference : app::Compare(before.document, after.document)) {
      lines.push_back(app::FormatDifference(difference));
    }
    return lines;
  }

  Side before, after;
};

TEST_F(CompareTest, FindsNothingInWhatIsAlike) {
  EXPECT_THAT(GetLines(), IsEmpty());
  EXPECT_THAT(app::Compare(before.document, before.document), IsEmpty());
}

TEST_F(CompareTest, NamesAttributesLinksAndArraysThatChanged) {
  after.wheel->SetRotationX(30);
  after.material->QueryAttribute(L"bias")->SetValue(0.5, true);
  after.Assign(2);
  after.curve->AddKey({3, 4});
  auto const image = after.document.GetImages().CreateNode();
  EXPECT_THAT(GetLines(),
              UnorderedElementsAre("changed group \"car/wheel\" rotation.x: 0 -> 30",
                                   "changed material \"paint\" bias: \"nan\" -> 0.5",
                                   "changed geometry \"mesh\" coordinates",
                                   "changed animation \"turn\" keys", "added image \"image\""));
}

TEST_F(CompareTest, TellsWhatCameWentAndMoved) {
  auto const trailer = after.Add(after.car.get(), L"trailer");
  after.Add(trailer.get(), L"hook");
  after.car->RemoveChild(*after.door);
  trailer->AddChild(*after.door);
  before.Add(before.wheel.get(), L"nut");
  EXPECT_THAT(GetLines(),
              ElementsAre("removed group \"car/wheel/nut\"",
                          "added group \"car/trailer\" with 1 item below",
                          "changed group \"car/trailer/door\" parent: \"car\" -> \"trailer\""));
}

TEST_F(CompareTest, TellsAnotherOrderOfChildren) {
  after.car->RemoveChild(*after.wheel);
  after.car->AddChild(*after.wheel);
  EXPECT_THAT(GetLines(), ElementsAre("changed group \"car\" order of children"));
}

TEST_F(CompareTest, TakesNodesOfOneIdForTheSame) {
  NDocument a, b;
  core::node::NNodeID const id;
  a.GetItems().CreateNode<item::NSceneGraphGroupNode>(id)->SetName(L"old");
  b.GetItems().CreateNode<item::NSceneGraphGroupNode>(id)->SetName(L"new");
  auto const differences = app::Compare(a, b);
  ASSERT_EQ(differences.size(), 1u);
  EXPECT_EQ(app::FormatDifference(differences[0]),
            "changed group \"new\" name: \"old\" -> \"new\"");
  // Of another kind it is another one.
  NDocument c;
  c.GetItems().CreateNode<item::NSceneGraphModelNode>(id)->SetName(L"old");
  EXPECT_EQ(app::Compare(a, c).size(), 2u);
}

}  // namespace
}  // namespace corvanta::app_tests
