#include "corvanta/data/operators/animation/detail/NTimeIndex.h"
#include "tests/support/test.h"

namespace corvanta::data::operators::animation {
namespace {

using CurvePointer = Pointer<NKeyFrameAnimation>;

CurvePointer MakeCurve(std::vector<NKeyData> const& keys) {
  CurvePointer curve(new NKeyFrameAnimation);
  for (NKeyData const& key : keys) EXPECT_NE(curve->AddKey(key), 0u);
  return curve;
}

/// What a curve without keys throws: the text behind a char*, which isn't a char const*.
std::string ThrownText(NKeyFrameAnimation const& curve) {
  try {
    curve.CalculateValue(0.0);
  } catch (char* text) {
    return text;
  } catch (...) {
    return "something else";
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

TEST(Curve, HandlesStayAndAreNeverGivenAgain) {
  auto const curve = MakeCurve({{1.0, 10.0, 7}, {2.0, 20.0}});
  EXPECT_EQ(curve->GetKeyData().at(1).tag, 7);
  for (double const time : {2.0, kNaN}) EXPECT_EQ(curve->AddKey({time, 0.0}), 0u);
  EXPECT_EQ(curve->AddKey({3.0, 30.0}), 3u);
  EXPECT_TRUE(curve->RemoveKey(3));
  EXPECT_EQ(curve->AddKey({3.0, 40.0}), 4u);
  for (unsigned const handle : {0u, 3u, 99u}) {
    EXPECT_FALSE(curve->RemoveKey(handle));
    EXPECT_FALSE(curve->ModifyKey(handle, {9.0, 9.0}));
  }
  EXPECT_FALSE(curve->ModifyKey(1, {kNaN, 0.0}));
  EXPECT_EQ(curve->GetKeyData().size(), 3u);
  EXPECT_EQ(curve->CalculateValue(1.5), 15.0);
  EXPECT_TRUE(curve->ModifyKey(1, {2.5, 0.0}));  // past its neighbour
  EXPECT_EQ(curve->CalculateValue(2.25), 10.0);
  for (unsigned const handle : {1u, 2u, 4u}) EXPECT_TRUE(curve->RemoveKey(handle));
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
  unsigned const seed = std::random_device()();
  SCOPED_TRACE(seed);
  std::mt19937 random(seed);
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
    detail::NTimeIndex const index(times);
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

}  // namespace
}  // namespace corvanta::data::operators::animation
