#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <random>

#include "corvanta/importer/animation/NAnimations.h"
#include "corvanta/importer/animation/angles.h"
#include "corvanta/importer/animation/keys.h"
#include "corvanta/importer/import.h"
#include "tests/app/neutral_scene.h"
#include "tests/app/program.h"

namespace corvanta::app_tests {
namespace {

using data::document::NDocument;
using importer::NTurnKeys;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Turn = std::array<double, 4>;
using Point = std::array<double, 3>;

constexpr double kDegree = std::numbers::pi / 180.0;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

Turn About(Point const& axis, double degrees) {
  double const length = std::hypot(axis[0], axis[1], axis[2]);
  double const sine = std::sin(degrees * kDegree / 2) / length;
  return {axis[0] * sine, axis[1] * sine, axis[2] * sine, std::cos(degrees * kDegree / 2)};
}

Turn Product(Turn const& a, Turn const& b) {
  return {a[3] * b[0] + b[3] * a[0] + a[1] * b[2] - a[2] * b[1],
          a[3] * b[1] + b[3] * a[1] + a[2] * b[0] - a[0] * b[2],
          a[3] * b[2] + b[3] * a[2] + a[0] * b[1] - a[1] * b[0],
          a[3] * b[3] - a[0] * b[0] - a[1] * b[1] - a[2] * b[2]};
}

// The rotation that takes a to b, shortened by t: another way to the shorter arc.
Turn Between(Turn const& a, Turn const& b, double t) {
  Turn step = Product(b, {-a[0], -a[1], -a[2], a[3]});
  if (step[3] < 0.0) step = {-step[0], -step[1], -step[2], -step[3]};
  double const sine = std::hypot(step[0], step[1], step[2]);
  if (sine < 1e-12) return a;
  double const degrees = 2.0 * std::atan2(sine, step[3]) / kDegree;
  return Product(About({step[0], step[1], step[2]}, t * degrees), a);
}

Turn FromAngles(Point const& degrees) {
  return Product(About({0, 0, 1}, degrees[2]),
                 Product(About({0, 1, 0}, degrees[1]), About({1, 0, 0}, degrees[0])));
}

double DegreesBetween(Turn const& a, Turn const& b) {
  Turn const step = Product(b, {-a[0], -a[1], -a[2], a[3]});
  return 2.0 * std::atan2(std::hypot(step[0], step[1], step[2]), std::abs(step[3])) / kDegree;
}

Turn At(NTurnKeys const& keys, double time) {
  std::size_t i = 0;
  while (i + 2 != keys.size() && keys[i + 1].time < time) ++i;
  double const t = (time - keys[i].time) / (keys[i + 1].time - keys[i].time);
  return Between(keys[i].values, keys[i + 1].values, t);
}

// The largest way from the arcs, at many times, and no angle goes by half a turn at once.
void ExpectOnArcs(NTurnKeys const& keys) {
  importer::NEffort effort;
  auto const angles = ToAngles(keys, {0, 0, 0}, effort);
  ASSERT_EQ(angles.back().time, keys.back().time);
  for (std::size_t i = 1; i != angles.size(); ++i) {
    ASSERT_LT(angles[i - 1].time, angles[i].time);
    for (int part = 0; part <= 7; ++part) {
      double const t = part / 7.0;
      double const time = angles[i - 1].time + t * (angles[i].time - angles[i - 1].time);
      Point between;
      for (std::size_t k = 0; k != 3; ++k) {
        between[k] = angles[i - 1].values[k] * (1 - t) + angles[i].values[k] * t;
      }
      ASSERT_LT(DegreesBetween(FromAngles(between), At(keys, time)), 1.2 * importer::kTurnTolerance)
          << "at " << time;
    }
    for (std::size_t k = 0; k != 3; ++k) {
      ASSERT_LT(std::abs(angles[i].values[k] - angles[i - 1].values[k]), 181.0);
    }
  }
}

TEST(AnglesTest, FollowTheArcsBetweenQuaternions) {
  unsigned const seed = std::random_device()();
  SCOPED_TRACE(seed);
  std::mt19937 random(seed);
  std::normal_distribution<double> normal;
  std::uniform_real_distribution<double> uniform(0.1, 2.0);
  for (int run = 0; run != 50; ++run) {
    NTurnKeys keys;
    for (int i = 0; i != 8; ++i) {
      double const time = keys.empty() ? 0.0 : keys.back().time + uniform(random);
      Turn const turn =
          About({normal(random), normal(random), normal(random)}, 360.0 * uniform(random));
      keys.push_back({time, turn});
    }
    ExpectOnArcs(keys);
  }
}

TEST(AnglesTest, PassThePoles) {
  auto const up = [](double x, double y, double z) { return FromAngles({x, y, z}); };
  ExpectOnArcs({{0, up(0, 80, 0)}, {1, up(0, 100, 0)}, {2, up(20, 90, 0)}, {3, up(20, 40, 70)}});
  ExpectOnArcs({{0, up(30, -60, 10)}, {1, up(0, -90, 0)}, {2, up(0, -90, 120)}, {3, up(5, 0, 5)}});
  // Past a pole within a hundredth of a degree.
  ExpectOnArcs({{0, up(0, 89, 0)}, {1, Product(About({1, 0, 0}, 0.01), up(0, 91, 0))}});
}

TEST(AnglesTest, WholeTurnsAddUp) {
  for (std::size_t axis = 0; axis != 3; ++axis) {
    NTurnKeys keys;
    for (int i = 0; i <= 8; ++i) {
      Point along{};
      along[axis] = 1.0;
      Turn turn = About(along, 90.0 * i);
      // The other quaternion of the same rotation changes nothing.
      if (i % 3 == 1) turn = {-turn[0], -turn[1], -turn[2], -turn[3]};
      keys.push_back({static_cast<double>(i), turn});
    }
    importer::NEffort effort;
    auto const angles = ToAngles(keys, {0, 0, 0}, effort);
    for (auto const& [time, values] : angles) {
      for (std::size_t k = 0; k != 3; ++k) {
        EXPECT_NEAR(values[k], k == axis ? 90.0 * time : 0.0, 1e-4) << time;
      }
    }
    EXPECT_EQ(angles.size(), 9u) << "turns about one axis need no further keys";
  }
}

TEST(KeysTest, WhatCanNotBeUsedGoesAndTheRestIsPutInOrder) {
  float const inf = std::numeric_limits<float>::infinity();
  neutral::NTripleKey const keys[] = {{0, {1, 0, 0}},   {100, {3, 0, 0}}, {50, {2, 0, 0}},
                                      {kNaN, {}},       {1e300, {}},      {60, {inf, 0, 0}},
                                      {100, {9, 0, 0}}, {100, {4, 0, 0}}};
  importer::NKeyFaults faults;
  auto const read = importer::ReadKeys(keys, 100.0, 10.0, faults);
  EXPECT_EQ(faults.unusable, 3u);
  EXPECT_EQ(faults.unsorted, 1u);
  std::vector<double> times;
  std::vector<double> values;
  for (auto const& key : read) {
    times.push_back(key.time);
    values.push_back(key.values[0]);
  }
  // Of three at one time the first holds until just before, and the last from there on; it keeps
  // its own time where something linear begins.
  double const jump = 10 - importer::GetTimeTolerance(10);
  EXPECT_THAT(times, ElementsAre(0, 5, std::nextafter(jump, 0.0), jump));
  EXPECT_THAT(values, ElementsAre(1, 2, 3, 4));
  neutral::NTripleKey const slope[] = {{0, {}}, {1, {}}, {1, {4, 0, 0}}, {2, {5, 0, 0}}};
  EXPECT_EQ(importer::ReadKeys(slope, 1, 1, faults)[3].time, 1);

  neutral::NTurnKey const turns[] = {{0, {0, 0, 0, 2}}, {1, {0, 0, 0, 0}}};
  EXPECT_THAT(importer::ReadKeys(turns, 1, 1, faults)[0].values, ElementsAre(0, 0, 0, 1));
  EXPECT_EQ(faults.unusable, 4u);
}

// Adds an animation with a channel for each of `nodes`; the scene's one node is "n".
void MakeAnimation(neutral::NSceneWriter& writer, double ticksPerSecond, double duration,
                   std::vector<std::string> const& nodes, std::vector<double> const& times) {
  std::vector<neutral::NChannel> channels;
  for (std::string const& node : nodes) {
    std::vector<neutral::NTripleKey> keys;
    for (double const time : times) keys.push_back({time, {static_cast<float>(time), 0, 0}});
    channels.push_back(
        {writer.AddText(node), node == "n" ? 0 : neutral::kNone, writer.Add(keys), {}, {}});
  }
  writer.Get<neutral::NAnimation>().push_back(
      {{}, ticksPerSecond, duration, writer.Add(channels), 0, {}, {}});
}

TEST(AnimationsTest, RangesAreWholeFramesAndTimesAreSeconds) {
  struct Row {
    char const* name;
    double ticksPerSecond, duration;
    std::vector<double> times;
    double fps;
    long start, end;
    double middle;  // the frame at which the value is half a tick
  };
  Row const rows[] = {
      {"unknown ticks are 25 a second", 0, 50, {0, 1}, 25, 0, 50, 0.5},
      {"the file's own rate", 24, 48, {0, 1}, 24, 0, 48, 0.5},
      {"milliseconds", 1000, 1250, {0, 1}, 30.4, 0, 38, 0.5 * 30.4e-3},
      {"seconds", 1, 2.5, {0, 1}, 30, 0, 75, 15},
      {"no number of ticks", kNaN, kNaN, {0, 1}, 25, 0, 1, 0.5},
      {"a duration beyond all measure", 25, 1e300, {0, 1}, 25, 0, 1, 0.5},
      {"before zero", 25, -1, {-2, 1}, 25, -2, 1, 0.5},
  };
  neutral::NSceneWriter writer;
  AddNode(writer, "n");
  for (Row const& row : rows) {
    MakeAnimation(writer, row.ticksPerSecond, row.duration, {"n"}, row.times);
  }
  Built world(writer);
  world.hierarchy.Build(*world.tree, world.effort);
  importer::NAnimations const built(world.target, world.scene, world.hierarchy, *world.tree,
                                    world.effort);
  EXPECT_THAT(built.GetNotes(), IsEmpty());
  for (std::size_t i = 0; i != std::size(rows); ++i) {
    SCOPED_TRACE(rows[i].name);
    auto const& node = *built.GetNodes()[i];
    EXPECT_NEAR(node.GetFps(), rows[i].fps, 1e-9);
    EXPECT_EQ(node.GetStartFrame(), rows[i].start);
    EXPECT_EQ(node.GetEndFrame(), rows[i].end);
    node.SetFrame(rows[i].middle);
    EXPECT_NEAR(world.tree->GetRoot()->GetTranslationX(), 0.5, 1e-9);
  }
}

TEST(AnimationsTest, BadPartsAreNotedAndLeftOut) {
  neutral::NSceneWriter writer;
  AddNode(writer, "n");
  MakeAnimation(writer, 25, -1, {}, {});
  MakeAnimation(writer, 25, 1, {"n"}, {kNaN});
  MakeAnimation(writer, 25, 2, {"nobody", "n", "n", "else"}, {0, 2, 1});
  Built world(writer);
  world.hierarchy.Build(*world.tree, world.effort);
  importer::NAnimations const built(world.target, world.scene, world.hierarchy, *world.tree,
                                    world.effort);
  // They keep their numbers.
  ASSERT_EQ(built.GetNodes().size(), 3u);
  EXPECT_TRUE(built.GetNodes()[0]->GetAnimations().empty());
  EXPECT_TRUE(built.GetNodes()[1]->GetAnimations().empty());
  EXPECT_EQ(built.GetNodes()[2]->GetAnimations().size(), 3u);
  EXPECT_THAT(built.GetNotes(),
              ElementsAre(HasSubstr("2 animation channels name no node and were left out; the "
                                    "first names \"nobody\""),
                          HasSubstr("1 animation channel moves a node that another one moves"),
                          HasSubstr("1 animation key isn't finite"),
                          HasSubstr("2 animation keys stood behind later ones"),
                          HasSubstr("2 animations move nothing")));
}

TEST(AnimationsTest, ItemsTurnAsTheFileSays) {
  Turn const turns[] = {FromAngles({10, 20, 30}), FromAngles({-100, 70, 5}),
                        About({1, -2, 3}, 200)};
  Channel channel{0, "rotation", {0, 1, 3}, {}};
  NTurnKeys keys;
  for (std::size_t i = 0; i != 3; ++i) {
    for (double const value : turns[i]) channel.values.push_back(static_cast<float>(value));
    keys.push_back({channel.times[i], turns[i]});
  }
  support::TemporaryFiles const files;
  files.Write("turn.gltf", AddAnimation(MakeGltf({Triangle()}, {{{"name", "n"}, {"mesh", 0}}}),
                                        "turn", {channel}));
  NDocument document;
  auto const model = importer::ImportModel(document, (files.GetFolder() / "turn.gltf").string());
  auto const& node = *model.animations.at(0);
  EXPECT_EQ(node.GetAnimations().size(), 9u);
  for (int i = 0; i <= 30; ++i) {
    double const seconds = i / 10.0;
    node.SetFrame(seconds * node.GetFps());
    Turn const turn = At(keys, seconds);
    Turn const back = {-turn[0], -turn[1], -turn[2], turn[3]};
    Turn const image = Product(Product(turn, {1, 2, -2, 0}), back);
    VX_Math::Vec3 point;
    model.tree->GetRoot()->GetTransform().MultVecMatrix({1, 2, -2}, point);
    for (int k = 0; k != 3; ++k) {
      EXPECT_NEAR(point[k], image[static_cast<std::size_t>(k)],
                  3 * kDegree * importer::kTurnTolerance)
          << seconds;
    }
  }
}

TEST(AnimationsTest, ACameraLooksWhereItsNodesTurnIt) {
  support::TemporaryFiles const files;
  float const half = std::sqrt(0.5f);
  files.Write(
      "eye.gltf",
      AddAnimation(
          MakeGltf({Triangle()},
                   {{{"name", "top"}, {"children", {1, 3}}},
                    {{"name", "arm"}, {"translation", {1, 0, 0}}, {"children", {2}}},
                    {{"name", "eye"}, {"camera", 0}, {"translation", {0, 0, 5}}},
                    {{"mesh", 0}}},
                   {{"cameras",
                     {{{"type", "perspective"}, {"perspective", {{"yfov", 1.0}, {"znear", 1}}}}}}}),
          "turn", {{1, "rotation", {0, 1, 2}, {0, 0, 0, 1, 0, half, 0, half, 0, 1, 0, 0}}}));
  NDocument document;
  auto const model = importer::ImportModel(document, (files.GetFolder() / "eye.gltf").string());
  auto const& eye = *model.cameras.at(0);
  double const distance = 5.0 - eye.GetInterestZ();
  auto const& node = *model.animations.at(0);
  for (int i = 0; i <= 40; ++i) {
    double const seconds = i / 20.0;
    node.SetFrame(seconds * node.GetFps());
    // Five from the arm, turned about y.
    double const angle = seconds * std::numbers::pi / 2;
    EXPECT_NEAR(eye.GetInterestX(), 1 + (5 - distance) * std::sin(angle), 1e-3 * distance);
    EXPECT_NEAR(eye.GetInterestZ(), (5 - distance) * std::cos(angle), 1e-3 * distance);
    EXPECT_NEAR(eye.GetUpY(), 1, 1e-3);
  }
}

}  // namespace
}  // namespace corvanta::app_tests
