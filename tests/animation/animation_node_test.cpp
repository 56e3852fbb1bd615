#include "tests/support/world.h"

namespace corvanta::data::domain::animation {
namespace {

using data::operators::animation::NKeyData;
using data::operators::animation::NKeyFrameAnimation;
using CurvePointer = Pointer<NKeyFrameAnimation>;
using TargetPointer = Pointer<NAnimationTarget>;
using support::AttributeLog;
using Writes = AttributeLog::Writes;

CurvePointer MakeCurve(std::vector<NKeyData> const& keys) {
  CurvePointer curve(new NKeyFrameAnimation);
  for (NKeyData const& key : keys) curve->AddKey(key);
  return curve;
}

class Animation : public testing::Test, protected support::World {
 protected:
  Pointer<light::NLightNode> light = lights->CreateNode(NNodeID());
  Pointer<NAnimationNode> node = animations->CreateNode(NNodeID());
  Pointer<AttributeLog> recorder{new AttributeLog};
  TargetPointer target = MakeTarget();
  CurvePointer line = MakeCurve({{0.0, 0.0}, {100.0, 1.0}});

  void SetUp() override { attributes->AddObserver(*recorder); }
  TargetPointer MakeTarget() const {
    return new NNodeAnimationTarget(NNodeReference<NNode>(light));
  }
  bool Bind(wchar_t const* name, CurvePointer const& curve) {
    return node->AddAnimation({name, target}, *curve);
  }
  Writes Play(double frame) {
    node->SetFrame(frame);
    return recorder->Take();
  }
};

TEST_F(Animation, WritesEveryBoundAttributeOnceInOrder) {
  auto const steady = MakeCurve({{5.0, 7.0}});
  TargetPointer const later = MakeTarget();
  EXPECT_TRUE(node->AddAnimation({L"color.r", later}, *steady));
  EXPECT_TRUE(Bind(L"shadow.softness", line));
  EXPECT_TRUE(Bind(L"color.r", line));
  EXPECT_TRUE(Bind(L"extension", steady));
  EXPECT_TRUE(Bind(L"no such attribute", steady));
  EXPECT_TRUE(node->AddAnimation({L"color.g", nullptr}, *steady));
  EXPECT_FALSE(Bind(L"color.r", steady));  // the first curve stays
  // By target, then by name; the later target writes the same attribute last.
  EXPECT_EQ(
      Play(50.0),
      (Writes{
          {L"color.r", 0.5}, {L"extension", 7.0}, {L"shadow.softness", 0.5}, {L"color.r", 7.0}}));
  EXPECT_EQ(light->QueryAttribute(L"extension")->GetKind(), core::variant::NVK_DOUBLE);
  EXPECT_EQ(light->GetExtension(), 7);
  EXPECT_EQ(Play(-1000.0).front().second, 0.0);  // the frames of the node don't count
  EXPECT_EQ(Play(1e300).front().second, 1.0);
  EXPECT_EQ(Play(std::numeric_limits<double>::quiet_NaN()).front().second, 0.0);
}

TEST_F(Animation, PassesOverDeadTargets) {
  EXPECT_TRUE(Bind(L"color.r", line));
  auto const late = light->AddAttribute(L"late", true);
  EXPECT_TRUE(Bind(L"later", line));
  EXPECT_EQ(Play(10.0).size(), 1u);
  EXPECT_NE(light->AddAttribute(L"later", true), nullptr);
  EXPECT_EQ(Play(10.0).size(), 2u);
  EXPECT_EQ(late->GetKind(), core::variant::NVK_NONE);
  lights->RemoveNode(*light);
  light.reset();
  EXPECT_EQ(target->GetTarget(), nullptr);
  EXPECT_THAT(Play(10.0), IsEmpty());
}

TEST_F(Animation, WhatThrowsEndsTheFrameAndHarmsNothing) {
  CurvePointer const empty(new NKeyFrameAnimation);
  Bind(L"color.r", line);
  Bind(L"missing", empty);  // isn't reached, for want of the attribute
  EXPECT_EQ(Play(50.0).size(), 1u);
  Bind(L"extension", empty);
  Bind(L"shadow.softness", line);
  EXPECT_THROW(node->SetFrame(25.0), char*);
  EXPECT_EQ(recorder->Take(), (Writes{{L"color.r", 0.25}}));
  empty->AddKey({0.0, 1.0});
  recorder->react = [](core::attribute::NAttribute const&) { throw std::runtime_error("heard"); };
  EXPECT_THROW(node->SetFrame(60.0), std::runtime_error);
  EXPECT_EQ(recorder->Take(), (Writes{{L"color.r", 0.6}}));
  recorder->react = nullptr;
  EXPECT_EQ(Play(25.0).size(), 3u);
}

TEST_F(Animation, EditsDuringAFrameCountFromTheNext) {
  for (wchar_t const* name : {L"color.b", L"color.g", L"color.r"}) Bind(name, line);
  CurvePointer const held = line;
  recorder->react = [&](core::attribute::NAttribute const& attribute) {
    if (attribute.GetName() != L"color.b") return;
    node->ClearAnimations();
    Bind(L"shadow.darkness", held);
  };
  EXPECT_EQ(Play(20.0), (Writes{{L"color.b", 0.2}, {L"color.g", 0.2}, {L"color.r", 0.2}}));
  EXPECT_EQ(Play(20.0), (Writes{{L"shadow.darkness", 0.2}}));
  // The node itself ends, and so does everything that only it held.
  node->ClearAnimations();
  node->AddAnimation({L"color.b", MakeTarget()}, *MakeCurve({{0.0, 3.0}}));
  node->AddAnimation({L"color.g", MakeTarget()}, *MakeCurve({{0.0, 4.0}}));
  recorder->react = [&](core::attribute::NAttribute const&) {
    if (!node) return;
    animations->RemoveNode(*node);
    node.reset();
  };
  node->SetFrame(0.0);
  EXPECT_EQ(recorder->Take(), (Writes{{L"color.b", 3.0}, {L"color.g", 4.0}}));
}

TEST_F(Animation, CopiesShareCurvesAndTargets) {
  Bind(L"color.r", line);
  auto const copy = animations->CreateNode(NNodeID());
  copy->AddAnimation({L"color.g", target}, *line);
  node->CopyTo(*copy);
  node->CopyTo(*node);
  recorder->Take();  // the attributes of the copies
  EXPECT_EQ(node->GetAnimations().size(), 1u);
  node->ClearAnimations();
  ASSERT_EQ(copy->GetAnimations().size(), 1u);
  EXPECT_EQ(copy->GetAnimations().begin()->second, line);
  EXPECT_EQ(copy->GetAnimations().begin()->first.target, target);
  line->ModifyKey(2, {100.0, 3.0});
  copy->SetFrame(100.0);
  EXPECT_EQ(recorder->Take(), (Writes{{L"color.r", 3.0}}));
}

TEST_F(Animation, ContextsOrderByTargetAndName) {
  TargetPointer const later = MakeTarget();
  std::vector<NAnimationContext> const ascending{
      {}, {L"a", nullptr}, {L"a", target}, {L"b", target}, {L"a", later}};
  for (std::size_t i = 0; i != ascending.size(); ++i) {
    for (std::size_t k = 0; k != ascending.size(); ++k) {
      EXPECT_EQ(ascending[i] < ascending[k], i < k) << i << " and " << k;
    }
  }
}

class TimeLine : public Animation {
 protected:
  Pointer<timeline::NTimeLine> player{new timeline::NTimeLine(node)};

  void SetUp() override {
    Animation::SetUp();
    Bind(L"color.r", MakeCurve({{-1e6, -1e6}, {1e6, 1e6}}));  // shows the frame
  }
};

TEST_F(TimeLine, AdvancesWrapsAndStops) {
  struct Row {
    double from, seconds;
    bool isReverse, repeats;
    double to;
    bool goesOn;
  };
  double const nan = std::numeric_limits<double>::quiet_NaN();
  for (Row const& row : std::vector<Row>{{0, 1, false, false, 30, true},
                                         {119, 1, false, false, 120, false},
                                         {119, 1, false, true, 29, true},
                                         {90, 1, false, false, 120, false},  // exactly
                                         {90, 1, false, true, 0, true},
                                         {10, 1, true, false, 0, false},
                                         {10, 1, true, true, 100, true},
                                         {120, 0, false, false, 120, false},
                                         {0, 0, true, false, 0, false},
                                         {120, 0, false, true, 0, true},
                                         {0, 0, true, true, 120, true},
                                         {0, 10, false, true, 180, true},  // one wrap a step
                                         {180, 0, false, true, 60, true},
                                         {120, 1, true, false, 90, true},
                                         {60, -1, false, false, 30, true},
                                         {0, -1, false, false, -30, true},
                                         {0, 1e308, false, false, 120, false},
                                         {5, nan, false, false, 120, false}}) {
    player->SetIsReverseFlag(row.isReverse);
    player->SetRepeatsFlag(row.repeats);
    player->SetCurrentFrame(row.from);
    recorder->writes.clear();
    EXPECT_EQ(timeline::Update(*player, row.seconds), row.goesOn)
        << row.from << ", " << row.seconds;
    EXPECT_DOUBLE_EQ(player->GetCurrentFrame(), row.to) << row.from << ", " << row.seconds;
    ASSERT_EQ(recorder->writes.size(), 1u);
    EXPECT_DOUBLE_EQ(recorder->writes[0].second, row.to);
  }
  node->SetFps(10.0);
  node->SetStartFrame(-20);
  node->SetEndFrame(40);
  player->SetRepeatsFlag(true);
  player->SetIsReverseFlag(true);
  player->SetCurrentFrame(-15.0);
  EXPECT_TRUE(timeline::Update(*player, 1.0));
  EXPECT_DOUBLE_EQ(player->GetCurrentFrame(), 35.0);
}

TEST_F(TimeLine, PlaysOnlyWhatIsWrittenToItsFrame) {
  EXPECT_EQ(player->GetAnimation(), node);
  EXPECT_THAT(recorder->Take(), IsEmpty());
  player->SetCurrentFrame(50.0);
  EXPECT_THAT(recorder->Take(), ElementsAre(testing::Pair(L"color.r", 50.0)));
  player->SetRepeatsFlag(true);
  player->QueryAttribute(timeline::AN_CURRENT_FRAME)->SetValue(7.0, false);
  EXPECT_THAT(recorder->Take(), IsEmpty());
  recorder->react = [](core::attribute::NAttribute const&) { throw std::runtime_error("heard"); };
  EXPECT_THROW(timeline::Update(*player, 0.1), std::runtime_error);
  EXPECT_EQ(player->GetCurrentFrame(), 10.0);
  // A listener ends the timeline and its node.
  recorder->react = [&](core::attribute::NAttribute const&) {
    animations->RemoveNode(*node);
    node.reset();
    player.reset();
  };
  EXPECT_TRUE(timeline::Update(*player, 0.1));
  EXPECT_EQ(player, nullptr);
}

TEST_F(TimeLine, WithoutItsAnimationNothingMoves) {
  animations->RemoveNode(*node);
  node.reset();
  EXPECT_EQ(player->GetAnimation(), nullptr);
  EXPECT_FALSE(timeline::Update(*player, 1.0));
  EXPECT_EQ(player->GetCurrentFrame(), 0.0);
  player->SetCurrentFrame(50.0);
  EXPECT_THAT(recorder->Take(), IsEmpty());
}

TEST_F(TimeLine, ManagerHoldsEachOnceInOrderOfCreation) {
  timeline::NTimeLineManager timeLines;
  Pointer<timeline::NTimeLine> const second(new timeline::NTimeLine(node));
  EXPECT_TRUE(timeLines.AddTimeLine(*second));
  EXPECT_TRUE(timeLines.AddTimeLine(*player));
  EXPECT_FALSE(timeLines.AddTimeLine(*player));
  EXPECT_THAT(timeLines.GetTimeLines(), ElementsAre(player, second));
  auto* const unheld = new timeline::NTimeLine(node);
  EXPECT_FALSE(timeLines.RemoveTimeLine(*unheld));  // and it lives on
  Pointer<timeline::NTimeLine> const held(unheld);
  EXPECT_TRUE(timeLines.RemoveTimeLine(*player));
  EXPECT_FALSE(timeLines.RemoveTimeLine(*player));
  timeLines.ClearAll();
  EXPECT_THAT(timeLines.GetTimeLines(), IsEmpty());
}

}  // namespace
}  // namespace corvanta::data::domain::animation
