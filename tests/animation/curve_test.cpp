#include "corvanta/data/operators/animation/detail/NTimeIndex.h"
#include "tests/support/world.h"

namespace corvanta::data::domain::animation {
namespace {

using namespace data::operators::animation;
using support::AttributeLog;
using CurvePointer = Pointer<NKeyFrameAnimation>;
using TargetPointer = Pointer<NAnimationTarget>;
using Writes = AttributeLog::Writes;

CurvePointer MakeCurve(std::vector<NKeyData> const& keys) {
  auto curve = New<NKeyFrameAnimation>();
  for (NKeyData const& key : keys) EXPECT_NE(curve->AddKey(key), 0u);
  return curve;
}

/// What a curve without keys throws: the text behind a char*, which isn't a char const*.
std::string ThrownText(NKeyFrameAnimation const& curve) {
  try {
    curve.CalculateValue(0.0);
  } catch (char* text) {
    return text;
  }
  return "nothing";
}

/// A curve by walking all keys, the plain way.
double Walk(std::map<unsigned, NKeyData> const& keys, double time) {
  std::map<double, double> line;
  for (auto const& [handle, key] : keys) line.emplace(key.time, key.value);
  auto const right = line.lower_bound(time);
  if (right == line.begin()) return right->second;
  if (right == line.end()) return line.rbegin()->second;
  auto const left = std::prev(right);
  double const l = left->first, r = right->first;
  return ((r - time) * left->second + (time - l) * right->second) / (r - l);
}

TEST(Curve, IsConstantOutsideItsKeysAndStraightBetween) {
  EXPECT_EQ(ThrownText(NKeyFrameAnimation()), "NKeyFrameAnimation::CalculateValue");
  auto const single = MakeCurve({{5.0, 7.0}});
  for (double const time : {-1e300, 5.0, kInfinity, kNaN}) {
    EXPECT_EQ(single->CalculateValue(time), 7.0);
  }
  auto const pair = MakeCurve({{10.0, 20.0}, {0.0, 0.0}});
  for (auto const& [time, value] : std::vector<std::pair<double, double>>{
           {-1, 0}, {0, 0}, {5, 10}, {10, 20}, {11, 20}, {-kInfinity, 0}, {kInfinity, 20}}) {
    EXPECT_EQ(pair->CalculateValue(time), value) << time;
  }
  EXPECT_EQ(pair->CalculateValue(kNaN), 0.0);
}

TEST(Curve, TakesNoTimeThatIsNoneAndKnowsItsHandles) {
  auto const curve = MakeCurve({{1.0, 10.0, 7}, {2.0, 20.0}});
  EXPECT_EQ(curve->GetKeyData().at(1).tag, 7);
  EXPECT_EQ(curve->AddKey({kNaN, 0.0}), 0u);
  EXPECT_FALSE(curve->ModifyKey(1, {kNaN, 0.0}));
  for (unsigned const handle : {0u, 99u}) {
    EXPECT_FALSE(curve->RemoveKey(handle));
    EXPECT_FALSE(curve->ModifyKey(handle, {9.0, 9.0}));
  }
  EXPECT_EQ(curve->CalculateValue(1.5), 15.0);
  for (unsigned const handle : {1u, 2u}) EXPECT_TRUE(curve->RemoveKey(handle));
  EXPECT_EQ(ThrownText(*curve), "NKeyFrameAnimation::CalculateValue");
}

TEST(Curve, KeysThatShareATimeFailEveryEvaluationUntilTheyAreMended) {
  auto const curve = MakeCurve({{0.0, 0.0}, {1.0, 10.0}, {2.0, 20.0}, {3.0, 30.0}});
  EXPECT_EQ(curve->CalculateValue(0.5), 5.0);
  EXPECT_TRUE(curve->ModifyKey(2, {2.0, 50.0}));
  for (double const time : {-1.0, 0.5, 0.5, 2.5, 9.0}) {
    EXPECT_THROW(curve->CalculateValue(time), NInterpolatorError) << time;
  }
  EXPECT_EQ(curve->AddKey({2.0, 1.0}), 0u);
  EXPECT_EQ(curve->AddKey({1.0, 12.0}), 5u);  // the time that was left is free
  EXPECT_THROW(curve->CalculateValue(0.5), NInterpolatorError);
  EXPECT_TRUE(curve->RemoveKey(3));
  EXPECT_EQ(curve->CalculateValue(0.5), 6.0);
  EXPECT_EQ(curve->CalculateValue(1.5), 31.0);
  EXPECT_EQ(curve->AddKey({2.0, 1.0}), 0u);  // the other key still stands there
  EXPECT_TRUE(curve->ModifyKey(2, {0.0, 5.0}));
  EXPECT_THROW(curve->CalculateValue(0.5), NInterpolatorError);
  EXPECT_TRUE(curve->ModifyKey(2, {-1.0, 5.0}));
  EXPECT_EQ(curve->CalculateValue(-0.5), 2.5);
}

TEST(Curve, EqualsAWalkOverAllKeysThroughRandomEdits) {
  Random random;
  NKeyFrameAnimation curve;
  std::map<unsigned, NKeyData> model;
  unsigned lastHandle = 0;
  // Few times, so that they meet; some of them crowded, some far out.
  auto const pickTime = [&] {
    double const time = static_cast<int>(random() % 80) - 20;
    return random() % 4 == 0 ? time * 1e6 : random() % 2 == 0 ? time * 1e-3 : time;
  };
  auto const isTaken = [&](double time, unsigned except) {
    return std::any_of(model.begin(), model.end(), [&](auto const& entry) {
      return entry.first != except && entry.second.time == time;
    });
  };
  for (int step = 0; step != 4000; ++step) {
    NKeyData const data{pickTime(), static_cast<double>(random() % 1000) / 7.0};
    unsigned const handle = lastHandle == 0 ? 1 : 1 + random() % lastHandle;
    bool const exists = model.count(handle) != 0;
    switch (random() % 3) {
      case 0:
        if (isTaken(data.time, 0)) {
          EXPECT_EQ(curve.AddKey(data), 0u);
        } else {
          ASSERT_EQ(curve.AddKey(data), ++lastHandle);
          model[lastHandle] = data;
        }
        break;
      case 1:
        ASSERT_EQ(curve.RemoveKey(handle), exists && model.erase(handle) == 1);
        break;
      default:
        if (isTaken(data.time, handle)) break;
        ASSERT_EQ(curve.ModifyKey(handle, data), exists);
        if (exists) model[handle] = data;
    }
    for (int i = 0; i != 4 && !model.empty(); ++i) {
      double const time = pickTime() + (random() % 3 == 0 ? 0.37 : 0.0);
      ASSERT_EQ(curve.CalculateValue(time), Walk(model, time)) << time;
    }
    ASSERT_EQ(curve.GetKeyData().size(), model.size());
  }
}

TEST(Curve, FindsTimesHoweverTheyCrowdOrOverflow) {
  std::mt19937 random(7);
  std::vector<std::vector<double>> rows{{0.0},
                                        {3.0, 3.0, 3.0},
                                        {-1e308, 0.0, 1e308},
                                        {-kInfinity, -1.0, 0.0, 2.0, kInfinity},
                                        {0.0, 5e-324, 1e-323, 1.5e-323}};
  for (double const power : {1.0, 3.0, 40.0}) {  // the last crowds nearly all at 0
    std::vector<double> times(1000);
    for (double& time : times) time = std::pow(random() % 5000 / 5000.0, power);
    std::sort(times.begin(), times.end());
    rows.push_back(times);
  }
  for (std::vector<double> const& times : rows) {
    data::operators::animation::detail::NTimeIndex const index(times);
    std::vector<double> asked = times;
    for (double const time : times) {
      asked.push_back(std::nextafter(time, kInfinity));
      asked.push_back(std::nextafter(time, -kInfinity));
    }
    for (double const time : asked) {
      auto const lower = std::lower_bound(times.begin(), times.end(), time) - times.begin();
      auto const upper = std::upper_bound(times.begin(), times.end(), time) - times.begin();
      ASSERT_EQ(index.LowerBound(time), static_cast<std::size_t>(lower)) << time;
      ASSERT_EQ(index.UpperBound(time), static_cast<std::size_t>(upper)) << time;
    }
    EXPECT_EQ(index.UpperBound(kNaN), times.size());
  }
}

class Animation : public testing::Test, protected World {
 protected:
  Pointer<NLightNode> light = lights->CreateNode();
  Pointer<NAnimationNode> node = animations->CreateNode();
  Pointer<AttributeLog> recorder = ListenToAttributes();
  TargetPointer target = MakeTarget();
  CurvePointer line = MakeCurve({{0.0, 0.0}, {100.0, 1.0}});

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
  EXPECT_EQ(Play(kNaN).front().second, 0.0);
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
  auto const empty = New<NKeyFrameAnimation>();
  Bind(L"color.r", line);
  Bind(L"missing", empty);  // isn't reached, for want of the attribute
  EXPECT_EQ(Play(50.0).size(), 1u);
  Bind(L"extension", empty);
  Bind(L"shadow.softness", line);
  EXPECT_THROW(node->SetFrame(25.0), char*);
  EXPECT_EQ(recorder->Take(), (Writes{{L"color.r", 0.25}}));
  empty->AddKey({0.0, 1.0});
  recorder->react = [](NAttribute const&) { throw std::runtime_error("heard"); };
  EXPECT_THROW(node->SetFrame(60.0), std::runtime_error);
  EXPECT_EQ(recorder->Take(), (Writes{{L"color.r", 0.6}}));
  recorder->react = nullptr;
  EXPECT_EQ(Play(25.0).size(), 3u);
}

TEST_F(Animation, EditsDuringAFrameCountFromTheNext) {
  for (wchar_t const* name : {L"color.b", L"color.g", L"color.r"}) Bind(name, line);
  CurvePointer const held = line;
  recorder->react = [&](NAttribute const& attribute) {
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
  recorder->react = [&](NAttribute const&) {
    if (!node) return;
    animations->RemoveNode(*node);
    node.reset();
  };
  node->SetFrame(0.0);
  EXPECT_EQ(recorder->Take(), (Writes{{L"color.b", 3.0}, {L"color.g", 4.0}}));
}

TEST_F(Animation, CopiesShareCurvesAndTargets) {
  Bind(L"color.r", line);
  auto const copy = animations->CreateNode();
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
  Pointer<NTimeLine> player{new NTimeLine(node)};

  void SetUp() override {
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
  // Reaching an end exactly is passing it; a step wraps once.
  // clang-format off
  Row const rows[] = {
      {0, 1, false, false, 30, true},      {119, 1, false, false, 120, false},
      {119, 1, false, true, 29, true},     {90, 1, false, false, 120, false},
      {90, 1, false, true, 0, true},       {10, 1, true, false, 0, false},
      {10, 1, true, true, 100, true},      {120, 0, false, false, 120, false},
      {0, 0, true, false, 0, false},       {120, 0, false, true, 0, true},
      {0, 0, true, true, 120, true},       {0, 10, false, true, 180, true},
      {180, 0, false, true, 60, true},     {120, 1, true, false, 90, true},
      {60, -1, false, false, 30, true},    {0, -1, false, false, -30, true},
      {0, 1e308, false, false, 120, false}, {5, kNaN, false, false, 120, false}};
  // clang-format on
  for (Row const& row : rows) {
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
  recorder->react = [](NAttribute const&) { throw std::runtime_error("heard"); };
  EXPECT_THROW(timeline::Update(*player, 0.1), std::runtime_error);
  EXPECT_EQ(player->GetCurrentFrame(), 10.0);
  // A listener ends the timeline and its node.
  recorder->react = [&](NAttribute const&) {
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
  NTimeLineManager timeLines;
  auto const second = New<NTimeLine>(node);
  EXPECT_TRUE(timeLines.AddTimeLine(*second));
  EXPECT_TRUE(timeLines.AddTimeLine(*player));
  EXPECT_FALSE(timeLines.AddTimeLine(*player));
  EXPECT_THAT(timeLines.GetTimeLines(), ElementsAre(player, second));
  auto* const unheld = new NTimeLine(node);
  EXPECT_FALSE(timeLines.RemoveTimeLine(*unheld));  // and it lives on
  Pointer<NTimeLine> const held(unheld);
  EXPECT_TRUE(timeLines.RemoveTimeLine(*player));
  EXPECT_FALSE(timeLines.RemoveTimeLine(*player));
  timeLines.ClearAll();
  EXPECT_THAT(timeLines.GetTimeLines(), IsEmpty());
}

}  // namespace
}  // namespace corvanta::data::domain::animation
