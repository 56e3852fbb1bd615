#include "corvanta/data/animation/detail/plateaus.h"
#include "tests/animation/presentation_world.h"

namespace corvanta::data::animation {
namespace {

/// One channel the plain way: a map from each segment's first time to an interpolator of its own,
/// the entry before the time asked for. Times must differ.
template <class Made, class Value>
class MapOfSegments {
 public:
  template <class IsEqual>
  MapOfSegments(std::vector<double> const& times, std::vector<Value> const& values,
                IsEqual isEqual) {
    std::size_t const n = values.size();
    std::size_t start = 0;
    while (start + 1 < n) {
      std::size_t rest = start;  // where a plateau begins
      while (rest + 1 < n && !isEqual(rest, rest + 1)) ++rest;
      std::size_t past = rest;  // what comes behind it
      while (rest + 1 < n && past < n && isEqual(rest, past)) ++past;
      if (rest > start) {
        Add(times, values, start, rest + 1);
        if (rest + 1 >= n) break;
        start = past - 1;
      } else if (past < n) {
        Add(times, values, past - 1, past + 1);
        start = past;
      } else {
        if (m_segments.empty()) Add(times, values, 0, 2);
        break;
      }
    }
  }

  Value operator()(double t) const {
    auto i = m_segments.lower_bound(t);
    if (i != m_segments.begin()) --i;
    return i->second->Evaluate(t);
  }

 private:
  void Add(std::vector<double> const& times, std::vector<Value> const& values, std::size_t first,
           std::size_t last) {
    std::vector<Value> const part(&values[first], &values[first] + (last - first));
    m_segments[times[first]] = boost::make_shared<Made>(
        part,
        boost::make_shared<std::vector<double>>(&times[first], &times[first] + (last - first)));
  }

  std::map<double, boost::shared_ptr<Interpolator<Value, double>>> m_segments;
};

using SplineMap = MapOfSegments<CubicSplineInterpolator<double, double>, double>;
using SquadMap = MapOfSegments<SquadInterpolator, Quaternion>;

bool IsApprox(double a, double b) {
  return a == 0.0 ? std::abs(b) < 1e-6 : b / a > 0.9990009990009991 && b / a < 1.001;
}

TEST(Plateaus, AreCutAtTheirEnds) {
  using detail::ApproxEqual;
  struct Row {
    std::vector<double> values;
    std::vector<std::pair<int, int>> segments;
  };
  for (Row const& row :
       std::vector<Row>{{{0, 5}, {{0, 2}}},
                        {{7, 7}, {{0, 2}}},
                        {{7, 7, 7, 7}, {{0, 2}}},
                        {{0, 1, 3, 2}, {{0, 4}}},
                        {{0, 5, 5, 9}, {{0, 2}, {2, 4}}},
                        {{0, 5, 5, 5}, {{0, 2}}},
                        {{5, 5, 9}, {{1, 3}}},
                        {{5, 5, 9, 9, 4, 1}, {{1, 3}, {3, 5}, {4, 6}}},
                        {{1, 2, 4, 4, 4, 3, 7, 7, 0}, {{0, 3}, {4, 7}, {7, 9}}},
                        {{0, 5e-7, 2e-6, 2e-6}, {{1, 3}}},
                        // The slow drift leaves its plateau, as measured against the first key.
                        {{100, 100.06, 100.12, 100.18}, {{1, 3}}},
                        {{100, 100.06, 100.12, 100.18, 100.3}, {{1, 3}, {3, 5}}},
                        {{std::nan(""), std::nan(""), 1}, {{0, 3}}}}) {
    std::vector<std::pair<int, int>> segments;
    for (auto const &range :
         detail::SplitAtPlateaus(row.values.size(), [&](std::size_t i, std::size_t k) {
           return IsApprox(row.values[i], row.values[k]);
         })) {
      segments.emplace_back(range.first, range.last);
    }
    EXPECT_EQ(segments, row.segments) << testing::PrintToString(row.values);
  }
}

class Tracks : public World {
 protected:
  double Read(Group const& group, wchar_t const* name) {
    return group->QueryAttribute(name)->GetDouble();
  }
};

TEST_F(Tracks, EqualInterpolatorsOfTheirOwnInAMap) {
  unsigned const seed = std::random_device()();
  SCOPED_TRACE(seed);
  std::mt19937 random(seed);
  // Few values, so that there are plateaus of every length.
  auto const pick = [&](double unit) { return unit * static_cast<int>(random() % 4); };
  for (int round = 0; round != 60; ++round) {
    Group const moved = MakeGroup();
    animation.reset(new NAnimation);
    NAnimationEngine& player = animation->GetEngine();
    std::size_t const n = 2 + random() % 12;
    std::vector<double> keyTimes, x, y, z, scale, pivot;
    std::vector<Quaternion> rotations;
    std::vector<std::pair<KeyPointer, int>> keys;
    int tenths = -20;
    for (std::size_t i = 0; i != n; ++i) {
      tenths += 1 + static_cast<int>(random() % 40);
      KeyPointer const key = MakeItemKey(moved, {pick(1.0), pick(0.3) * (i % 3 == 0), pick(1e-7)});
      key->itemScale[1] = pick(2.0);
      key->itemRotationPivot[2] = pick(-1.0);
      key->itemRotation = {pick(40.0), pick(10.0) * (i % 4 == 0), pick(-25.0)};
      keys.emplace_back(key, tenths);
      keyTimes.push_back(tenths / 10.0);
      x.push_back(key->itemTranslation[0]);
      y.push_back(key->itemTranslation[1]);
      z.push_back(key->itemTranslation[2]);
      scale.push_back(key->itemScale[1]);
      pivot.push_back(key->itemRotationPivot[2]);
      auto const& [rx, ry, rz] = key->itemRotation;
      rotations.push_back(VX_Math::CreateQuaternion(
          {static_cast<float>(rx), static_cast<float>(ry), static_cast<float>(rz)}, false));
    }
    std::shuffle(keys.begin(), keys.end(), random);
    animation->AddKeys(keys);
    auto const byTriple = [&](std::size_t i, std::size_t k) {
      return IsApprox(x[i], x[k]) && IsApprox(y[i], y[k]) && IsApprox(z[i], z[k]);
    };
    auto const by = [](std::vector<double> const& values) {
      return [&](std::size_t i, std::size_t k) { return IsApprox(values[i], values[k]); };
    };
    SplineMap const xMap(keyTimes, x, byTriple), yMap(keyTimes, y, byTriple),
        zMap(keyTimes, z, byTriple), scaleMap(keyTimes, scale, by(scale)),
        pivotMap(keyTimes, pivot, by(pivot));
    SquadMap const rotationMap(keyTimes, rotations, [&](std::size_t i, std::size_t k) {
      return rotations[i].Equals(rotations[k], 0.0001f);
    });
    std::uniform_real_distribution<double> between(keyTimes.front(), keyTimes.back());
    std::vector<double> asked = keyTimes;
    for (int i = 0; i != 40; ++i) asked.push_back(between(random));
    for (double const t : asked) {
      player.SetEndTime(1e6);
      player.SetCurrentTime(-100.0);
      player.Update(args, t + 100.0);
      double const now = player.GetTickCount();  // within rounding
      if (now < keyTimes.front()) continue;
      ASSERT_EQ(Read(moved, L"translation.x"), xMap(now)) << now;
      ASSERT_EQ(Read(moved, L"translation.y"), yMap(now)) << now;
      ASSERT_EQ(Read(moved, L"translation.z"), zMap(now)) << now;
      ASSERT_EQ(Read(moved, L"scale.y"), scaleMap(now)) << now;
      ASSERT_EQ(Read(moved, L"rotation.pivot.z"), pivotMap(now)) << now;
      Vec3 const radians = VX_Math::DecomposeToEulerAngles(Matrix(rotationMap(now)));
      ASSERT_EQ(Read(moved, L"rotation.x"), radians.x * 57.2957763671875f) << now;
      ASSERT_EQ(Read(moved, L"rotation.z"), radians.z * 57.2957763671875f) << now;
    }
  }
}

TEST_F(Tracks, WriteInOrderAndOnlyWhereTheirKeysAre) {
  MoveAlongX(root, {{20, 2.0}, {10, 1.0}});  // made in another order than they play
  Writes const writes = PlayAt(1.5);
  std::vector<std::wstring> names;
  for (auto const& [name, value] : writes) names.push_back(name);
  EXPECT_THAT(names, ElementsAre(L"translation.x", L"translation.y", L"translation.z", L"scale.x",
                                 L"scale.y", L"scale.z", L"rotation.pivot.x", L"rotation.pivot.y",
                                 L"rotation.pivot.z", L"rotation.x", L"rotation.y", L"rotation.z"));
  EXPECT_EQ(writes.front().second, 1.5);
  struct Row {
    double from, to;
    bool writes;
    double value;
  };
  for (Row const& row : std::vector<Row>{{0, 0.5, false, 0},
                                         {0, 1, true, 1},
                                         {0, 5, true, 2},
                                         {1, 1, false, 0},
                                         {1, 0.5, false, 0},
                                         {1, 1.25, true, 1.25},
                                         {1, 5, true, 2},
                                         {1.5, 1.5, true, 1.5},
                                         {1.5, 0, true, 1},
                                         {1.5, 2, true, 2},
                                         {2, 2, false, 0},
                                         {2, 3, false, 0},
                                         {2, 1.75, true, 1.75},
                                         {2, 0, true, 1},
                                         {3, 2, true, 2},
                                         {3, 2.5, false, 0},
                                         {3, 0, true, 1},
                                         {3, 1.5, true, 1.5}}) {
    engine.SetCurrentTime(row.from);
    Writes const written = Step(row.to - row.from);
    EXPECT_EQ(!written.empty(), row.writes) << row.from << " to " << row.to;
    double const value = written.empty() ? row.value : written.front().second;
    EXPECT_EQ(value, row.value) << row.from << " to " << row.to;
  }
}

TEST_F(Tracks, OfTwoKeysAtOneTimeTheLaterHoldsFromThen) {
  struct Row {
    std::vector<std::pair<int, double>> keys;
    double time, before, from;  // what holds just before and from `time`
  };
  for (Row const& row :
       std::vector<Row>{{{{0, 0}, {10, 5}, {10, 9}, {20, 9.5}}, 1, 5, 9},
                        {{{0, 0}, {10, 5}, {10, 9}, {20, 9}}, 1, 5, 9},  // a plateau behind
                        {{{0, 0}, {10, 0}, {10, 5}, {20, 9}}, 1, 0, 5},  // and one before
                        {{{0, 3}, {5, 3}, {10, 3}, {10, 9}}, 1, 3, 9},
                        {{{0, 0}, {5, 3}, {10, 3}, {10, 9}}, 1, 3, 9},
                        {{{0, 0}, {10, 3}, {10, 3}, {20, 9}}, 1, 3, 3},
                        {{{0, 1}, {0, 4}, {10, 4}}, 0, 1, 4},
                        {{{0, 1}, {0, 2}, {0, 4}, {10, 7}}, 0, 1, 4},
                        {{{5, 1}, {5, 4}}, 0.5, 1, 4}}) {
    animation.reset(new NAnimation);
    NAnimationEngine& player = animation->GetEngine();
    MoveAlongX(root, row.keys);
    auto const playAt = [&](double time) {
      player.SetEndTime(1e6);
      player.SetCurrentTime(row.time + 100.0);
      SetCurrentTime(player, args, time);  // backwards, from behind all keys
      player.SetCurrentTime(time);
      player.Update(args, -1e-9);
      player.SetCurrentTime(time - 100.0);
      SetCurrentTime(player, args, time);
      return Read(root, L"translation.x");
    };
    EXPECT_NEAR(playAt(row.time), row.from, 1e-6) << testing::PrintToString(row.keys);
    if (row.time == 0.0 || row.keys[0].first == row.keys.back().first) continue;
    EXPECT_NEAR(playAt(row.time - 1e-7), row.before, 1e-5) << testing::PrintToString(row.keys);
    EXPECT_NEAR(playAt(row.time + 1e-7), row.from, 1e-5) << testing::PrintToString(row.keys);
  }
}

TEST_F(Tracks, APoseFiresWhenItsTimeIsCrossed) {
  KeyPointer const key = MakeItemKey(root, {1, 2, 3});
  key->itemRotation = {10, 370, -20};
  key->itemScale = {4, 5, 6};
  key->itemRotationPivot = {7, 8, 9};
  animation->AddKey(*key, 20);
  EXPECT_THAT(Step(1.5), IsEmpty());
  EXPECT_EQ(Step(0.5), (Writes{{L"translation.x", 1},
                               {L"translation.y", 2},
                               {L"translation.z", 3},
                               {L"rotation.x", 10},
                               {L"rotation.y", 370},
                               {L"rotation.z", -20},
                               {L"scale.x", 4},
                               {L"scale.y", 5},
                               {L"scale.z", 6},
                               {L"rotation.pivot.x", 7},
                               {L"rotation.pivot.y", 8},
                               {L"rotation.pivot.z", 9}}));
  EXPECT_THAT(Step(0.0), IsEmpty());
  EXPECT_THAT(Step(1.0), IsEmpty());
  EXPECT_EQ(Step(-1.0).size(), 12u);
  EXPECT_THAT(Step(-1.0), IsEmpty());
  // At 0 it waits for the way back.
  animation->SetTime(*key, 0);
  engine.SetCurrentTime(0.0);
  EXPECT_THAT(Step(1.0), IsEmpty());
  EXPECT_TRUE(engine.GoToStart(args));
  EXPECT_EQ(recorder->Take().size(), 12u);
}

TEST_F(Tracks, CameraKeysMoveEveryCameraInItsParentsSpace) {
  root->SetTranslationX(100.0);
  root->SetScaleX(2.0);
  root->SetScaleY(2.0);
  root->SetScaleZ(2.0);
  root->SetRotationZ(90.0);
  Camera const camera = items->CreateNode<item::NSceneGraphCameraNode>(NNodeID());
  Camera const free = items->CreateNode<item::NSceneGraphCameraNode>(NNodeID());
  root->AddChild(*camera);
  args.cameras = {MakePath(camera), MakePath(free), {}};  // the second stands in no tree
  auto const makeKey = [&](Triple const& translation) {
    KeyPointer key(new NAnimationKey);
    key->cameraTranslation = translation;
    key->cameraUp = {1, 0, 0};
    key->cameraInterest = {3, 2, 1};
    key->cameraIsIgnored = false;
    return key;
  };
  animation->AddKey(*makeKey({100, 6, 0}), 10);  // a pose as long as it is alone
  recorder->Take();
  EXPECT_EQ(Step(1.0).size(), 9u);
  // Of z turned by 90 degrees y is x again, and a scale of 2 is taken off.
  EXPECT_NEAR(camera->GetTranslationX(), 3.0, 1e-5);
  EXPECT_NEAR(camera->GetTranslationY(), 0.0, 1e-5);
  EXPECT_EQ(camera->GetUpX(), 1.0);
  EXPECT_EQ(camera->GetInterestX(), 3.0);
  KeyPointer const second = makeKey({100, 10, 0});
  second->cameraUp = {1, 4, 0};
  animation->AddKey(*second, 20);
  EXPECT_TRUE(camera->FixesRoll());
  EXPECT_EQ(Step(0.5).size(), 9u);
  EXPECT_NEAR(camera->GetTranslationX(), 4.0, 1e-5);
  EXPECT_EQ(camera->GetUpX(), 0.0);
  EXPECT_EQ(camera->GetUpY(), 1.0);
  camera->SetFixesRollFlag(false);
  recorder->Take();
  Step(0.0);
  EXPECT_EQ(camera->GetUpX(), 1.0);
  EXPECT_EQ(camera->GetUpY(), 2.0);
  EXPECT_EQ(free->GetTranslationX(), 0.0);
  tree->SetRoot(free);  // now the first one is out of the tree, and moves no more
  EXPECT_EQ(Step(0.1).size(), 9u);
  EXPECT_NEAR(free->GetTranslationY(), 8.4, 1e-5);
}

}  // namespace
}  // namespace corvanta::data::animation
