#include "corvanta/data/animation/detail/plateaus.h"
#include "tests/animation/presentation_world.h"

namespace corvanta::data::animation {
namespace {

bool IsApprox(double a, double b) {
  return a == 0.0 ? std::abs(b) < 1e-6 : b / a > 0.9990009990009991 && b / a < 1.001;
}

TEST(Plateaus, AreCutAtTheirEnds) {
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
  /// The writes of the x, y and z of each name.
  static Writes MakeWrites(std::vector<std::wstring> const& names,
                           std::vector<double> const& values) {
    Writes writes;
    for (double const value : values) {
      std::size_t const i = writes.size();
      writes.emplace_back(names[i / 3] + L'.' + L"xyz"[i % 3], value);
    }
    return writes;
  }
};

TEST_F(Tracks, PlayAnInterpolatorOfItsOwnForEachSegmentOfAChannel) {
  struct Row {
    std::vector<double> values;                       // of keys one second apart
    std::vector<std::pair<double, double>> expected;  // at a time, the value
  };
  // Segments of two keys are straight; the one inner curvature of 0, 1, 0 is -3, that of 1, 3,
  // 8 4.5.
  std::vector<Row> const rows{
      {{0, 5, 5, 9}, {{0, 0}, {0.5, 2.5}, {1, 5}, {1.5, 5}, {2, 5}, {2.5, 7}, {3, 9}}},
      {{0, 1, 0}, {{0.5, 0.6875}, {1, 1}, {1.5, 0.6875}}},
      {{7, 7, 7}, {{0, 7}, {1.2, 7}, {2, 7}}},
      {{100, 100.06, 100.12, 100.18}, {{0.5, 100.06}, {1.5, 100.09}, {2.5, 100.12}}},  // measured
      {{100, 100.11, 100.22}, {{0.5, 100.055}, {1.5, 100.165}}},  // beyond a thousandth
      {{0, 9e-7, 3e-6, 0}, {{0.5, 9e-7}}},
      {{0, 4, 4, 1, 1, 1, 3, 8, 8, 2, 2, 6},
       {{0.5, 2},
        {1.5, 4},
        {2.5, 2.5},
        {4.5, 1},
        {5.5, 1.71875},
        {6.5, 5.21875},
        {8.5, 5},
        {10.5, 4}}}};
  constexpr std::pair<Triple NAnimationKey::*, wchar_t const*> kTriples[] = {
      {&NAnimationKey::itemTranslation, L"translation."},
      {&NAnimationKey::itemScale, L"scale."},
      {&NAnimationKey::itemRotationPivot, L"rotation.pivot."},
      {&NAnimationKey::itemRotation, L"rotation."}};
  for (Row const& row : rows) {
    for (auto const& [triple, name] : kTriples) {
      for (std::size_t const axis : {0, 1, 2}) {
        bool const isRotation = triple == &NAnimationKey::itemRotation;
        if (isRotation && &row != &rows.front()) continue;  // a squad of two keys is straight too
        animation.reset(new NAnimation);
        std::vector<std::pair<KeyPointer, int>> keys;
        for (double const value : row.values) {
          int const time = 10 * static_cast<int>(keys.size());
          keys.emplace_back(MakeItemKey(root, {}), time);
          ((*keys.back().first).*triple)[axis] = value;
        }
        std::shuffle(keys.begin(), keys.end(), std::mt19937(7));
        animation->AddKeys(keys);
        for (auto const& [time, value] : row.expected) {
          animation->GetEngine().SetCurrentTime(-100);
          SetCurrentTime(animation->GetEngine(), args, time);
          EXPECT_NEAR(root->QueryAttribute(name + std::wstring(1, L"xyz"[axis]))->GetDouble(),
                      value, isRotation ? 1e-4 : 1e-12)
              << time;
        }
      }
    }
  }
}

/// The rotations of a segment are a squad's.
TEST_F(Tracks, TurnBySquads) {
  std::vector<Quaternion> rotations;
  for (int i = 0; i != 4; ++i) {
    Vec3 const degrees(static_cast<float>(40 * i), static_cast<float>(10 * (i % 2)),
                       static_cast<float>(-25 * i));
    KeyPointer const key = MakeItemKey(root, {});
    key->itemRotation = {degrees.x, degrees.y, degrees.z};
    animation->AddKey(*key, 10 * i);
    rotations.push_back(VX_Math::CreateQuaternion(degrees, false));
  }
  SquadInterpolator const squad(
      rotations, boost::make_shared<std::vector<double>>(std::vector<double>{0, 1, 2, 3}));
  for (double const time : {0.25, 1.5, 2.75}) {
    PlayAt(time);
    Vec3 const radians = VX_Math::DecomposeToEulerAngles(Matrix(squad.Evaluate(time)));
    EXPECT_EQ(root->GetRotationX(), radians.x * 57.2957763671875f) << time;
    EXPECT_EQ(root->GetRotationZ(), radians.z * 57.2957763671875f) << time;
  }
}

TEST_F(Tracks, WriteInOrderAndOnlyWhereTheirKeysAre) {
  MoveAlongX(root, {{20, 2.0}, {10, 1.0}});  // made in another order than they play
  EXPECT_EQ(PlayAt(1.5), MakeWrites({L"translation", L"scale", L"rotation.pivot", L"rotation"},
                                    {1.5, 0, 0, 1, 1, 1, 0, 0, 0, 0, 0, 0}));
  struct Row {
    double from, to;
    bool writes;
    double value;
  };
  // clang-format off
  Row const rows[] = {
      {0, 0.5, false, 0},  {0, 1, true, 1},      {0, 5, true, 2},        {1, 1, false, 0},
      {1, 0.5, false, 0},  {1, 1.25, true, 1.25}, {1, 5, true, 2},       {1.5, 1.5, true, 1.5},
      {1.5, 0, true, 1},   {1.5, 2, true, 2},    {2, 2, false, 0},       {2, 3, false, 0},
      {2, 1.75, true, 1.75}, {2, 0, true, 1},    {3, 2, true, 2},        {3, 2.5, false, 0},
      {3, 0, true, 1},     {3, 1.5, true, 1.5}};
  // clang-format on
  for (Row const& row : rows) {
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
      return root->GetTranslationX();
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
  EXPECT_EQ(Step(0.5), MakeWrites({L"translation", L"rotation", L"scale", L"rotation.pivot"},
                                  {1, 2, 3, 10, 370, -20, 4, 5, 6, 7, 8, 9}));
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
  SetTransform(*root, item::CalcTransformMatrix({2, 2, 2}, {}, {0, 0, 90}, {100, 0, 0}));
  Camera const camera = Make<NSceneGraphCameraNode>(), free = Make<NSceneGraphCameraNode>();
  root->AddChild(*camera);
  args.cameras = {MakePath(camera), MakePath(free), {}};  // the second stands in no tree
  auto const makeKey = [&](Triple const& translation) {
    auto key = New<NAnimationKey>();
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
