#include "corvanta/renderer/pass/brightness.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <string>
#include <vector>

namespace corvanta::render_tests {
namespace {

using renderer::NLamps;
using VX_Math::Vec3;

NLamps MakeLamps(std::vector<std::array<Vec3, 2>> const& directionsAndColors) {
  NLamps lamps;
  for (auto const& [direction, color] : directionsAndColors) {
    auto const index = std::size_t{3} * static_cast<std::size_t>(lamps.count++);
    Vec3 unit = direction;
    unit.Normalize();
    for (int c = 0; c != 3; ++c) {
      lamps.directions[index + static_cast<std::size_t>(c)] = unit[c];
      lamps.colors[index + static_cast<std::size_t>(c)] = color[c];
    }
  }
  lamps.directionalCount = lamps.count;
  return lamps;
}

/// What arrives at a surface of that normal.
double GetLight(NLamps const& lamps, Vec3 const& normal, std::size_t channel) {
  double light = 0;
  for (std::size_t i = 0; i != static_cast<std::size_t>(lamps.count); ++i) {
    float const* const d = &lamps.directions[3 * i];
    float const cosine = std::max(-(normal.x * d[0] + normal.y * d[1] + normal.z * d[2]), 0.0f);
    light += static_cast<double>(cosine * std::max(lamps.colors[3 * i + channel], 0.0f));
  }
  return light;
}

/// The brightest of many normals, spread along a spiral of the golden angle.
double FindMostLight(NLamps const& lamps, std::size_t channel) {
  constexpr int kNormals = 20000;
  double most = 0;
  for (int i = 0; i != kNormals; ++i) {
    double const y = 1 - (2 * i + 1.0) / kNormals;
    double const angle = std::numbers::pi * (3 - std::sqrt(5.0)) * i;
    double const ring = std::sqrt(1 - y * y);
    Vec3 const normal(static_cast<float>(ring * std::cos(angle)), static_cast<float>(y),
                      static_cast<float>(ring * std::sin(angle)));
    most = std::max(most, GetLight(lamps, normal, channel));
  }
  return most;
}

struct LightRow {
  char const* name;
  std::vector<std::array<Vec3, 2>> lamps;
};

TEST(Brightness, TheMostLightIsThatOfTheBrightestNormal) {
  LightRow const rows[] = {
      {"none", {}},
      {"one", {{Vec3(1, -2, 3), Vec3(1, 0.5f, 0)}}},
      {"opposite", {{Vec3(1, 0, 0), Vec3(1, 1, 2)}, {Vec3(-1, 0, 0), Vec3(1, 2, 1)}}},
      {"at right angles", {{Vec3(1, 0, 0), Vec3(3, 1, 1)}, {Vec3(0, 1, 0), Vec3(4, 1, 0)}}},
      {"takes light away", {{Vec3(1, 0, 0), Vec3(1, 1, 1)}, {Vec3(1, 1, 0), Vec3(-2, -1, 1)}}},
      {"many",
       {{Vec3(1, -1, 0), Vec3(1, 2, 3)},
        {Vec3(-1, -1, 0.5f), Vec3(0.5f, 2, 0)},
        {Vec3(0, -1, -2), Vec3(1, 1, 1)},
        {Vec3(0, 1, -2), Vec3(2, 0, 0.2f)},
        {Vec3(0.3f, 1, 2), Vec3(0.7f, 1, 3)},
        {Vec3(-3, 0.1f, 2), Vec3(0.4f, 0, 1)}}},
  };
  for (LightRow const& row : rows) {
    SCOPED_TRACE(row.name);
    NLamps const lamps = MakeLamps(row.lamps);
    for (std::size_t c = 0; c != 3; ++c) {
      double const most = static_cast<double>(renderer::GetMostLight(lamps)[c]);
      double const found = FindMostLight(lamps, c);
      EXPECT_GE(most, found * (1 - 1e-6));
      EXPECT_LE(most, found * 1.001);
    }
  }
}

}  // namespace
}  // namespace corvanta::render_tests
