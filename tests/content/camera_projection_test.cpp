#include <numbers>

#include "tests/support/test.h"

namespace corvanta::data::domain::camera {
namespace {

constexpr double kDegree = std::numbers::pi / 180.0;

// Everything that a projection depends on.
struct Case {
  double horizontal = 20.0, vertical = 20.0;
  bool usesVertical = true;
  long type = NPT_PERSPECTIVE;
  double tiltX = 0.0, tiltY = 0.0;
  double shiftY = 0.0, stereoX = 0.0, screen = 1.0;
  double aspect = 1.0, nearZ = 1.0, farZ = 100.0, focus = 10.0;
  double left = -0.5, top = 0.5, right = 0.5, bottom = -0.5, offsetX = 0.0, offsetY = 0.0;
};

Matrix Project(NCameraNode& camera, Case const& c) {
  camera.SetHorizontalViewAngle(c.horizontal);
  camera.SetVerticalViewAngle(c.vertical);
  camera.SetUsesVerticalViewAngleFlag(c.usesVertical);
  camera.SetProjectionType(static_cast<NProjectionType>(c.type));
  camera.SetHorizontalTiltAngle(c.tiltX);
  camera.SetVerticalTiltAngle(c.tiltY);
  camera.SetShiftY(c.shiftY);
  camera.SetStereoShiftX(c.stereoX);
  camera.SetStereoScreenDistance(c.screen);
  return camera.GetProjectionMatrix(c.aspect, c.nearZ, c.farZ, c.focus, c.left, c.top, c.right,
                                    c.bottom, c.offsetX, c.offsetY);
}

using Expected = std::vector<std::vector<double>>;

// A tilt of the picture plane turns the rays through its sides.
double Turned(double slope, double degrees) {
  return std::tan(std::atan(slope) + degrees * kDegree);
}

// By the slopes of the four sides, instead of their places in the near plane.
Expected Oracle(Case const& c) {
  double const half = kDegree * 0.5;
  double const height = c.usesVertical ? 2.0 * std::tan(half * c.vertical)
                                       : 2.0 * std::tan(half * c.horizontal) / c.aspect;
  double const width = height * c.aspect;
  double const stereo = c.stereoX / c.screen;
  double l = c.left * width + stereo, r = c.right * width + stereo;
  double t = (c.top + c.shiftY) * height, b = (c.bottom + c.shiftY) * height;
  double n = c.nearZ, f = c.farZ, shorter = 1.0;
  if (c.type == NPT_PERSPECTIVE) {
    double const cosX = std::cos(c.tiltX * kDegree), cosY = std::cos(c.tiltY * kDegree);
    t = Turned(t, c.tiltY) / cosX;
    b = Turned(b, c.tiltY) / cosX;
    l = Turned(l / cosY, -c.tiltX);
    r = Turned(r / cosY, -c.tiltX);
    shorter = cosX * cosY;
    n *= shorter;
  }
  l += width * c.offsetX / shorter;
  r += width * c.offsetX / shorter;
  t += height * c.offsetY / shorter;
  b += height * c.offsetY / shorter;
  if (c.type == NPT_PERSPECTIVE) {
    return {{2.0 / (r - l), 0.0, 0.0, 0.0},
            {0.0, 2.0 / (t - b), 0.0, 0.0},
            {(r + l) / (r - l), (t + b) / (t - b), f / (n - f), -1.0},
            {0.0, 0.0, n * f / (n - f), 0.0}};
  }
  return {{2.0 / ((r - l) * c.focus), 0.0, 0.0, 0.0},
          {0.0, 2.0 / ((t - b) * c.focus), 0.0, 0.0},
          {0.0, 0.0, 1.0 / (n - f), 0.0},
          {(l + r) / (l - r), (t + b) / (b - t), n / (n - f), 1.0}};
}

void ExpectMatrix(Matrix const& m, Expected const& e) {
  for (int row = 0; row != 4; ++row) {
    for (int column = 0; column != 4; ++column) {
      double const value = e[row][column];
      EXPECT_NEAR(m(row, column), value, 1e-6 * std::max(1.0, std::abs(value)))
          << row << ", " << column;
    }
  }
}

class CameraProjection : public testing::Test {
 protected:
  Pointer<NCameraDomain> domain{new NCameraDomain(nullptr, nullptr)};
  Pointer<NCameraNode> camera = domain->CreateNode(NNodeID());
};

TEST_F(CameraProjection, IsThatOfTheViewsFourSides) {
  struct {
    char const* name;
    Case c;
  } const rows[] = {
      {"fresh", {}},
      {"wide angle", {.vertical = 120.0, .aspect = 1.5, .nearZ = 0.25}},
      {"horizontal angle", {.horizontal = 60.0, .usesVertical = false, .aspect = 0.75}},
      {"a tile", {.left = -0.5, .top = 0.25, .right = -0.25, .bottom = 0.0}},
      {"offset", {.offsetX = 0.25, .offsetY = -0.5}},
      {"shift", {.shiftY = 0.3}},
      {"stereo", {.stereoX = 0.032, .screen = 2.0}},
      {"tilt upwards", {.vertical = 40.0, .tiltY = 15.0}},
      {"tilt to the side", {.vertical = 40.0, .tiltX = -20.0, .nearZ = 2.0}},
      {"both tilts, the vertical first", {.vertical = 60.0, .tiltX = 25.0, .tiltY = 20.0}},
      {"offset behind tilts", {.tiltX = 10.0, .tiltY = -5.0, .offsetX = 0.5, .offsetY = 0.25}},
      {"orthographic", {.type = NPT_ORTHOGRAPHIC, .aspect = 2.0, .nearZ = 0.5, .focus = 4.0}},
      {"orthographic, tilts ignored",
       {.type = NPT_ORTHOGRAPHIC, .tiltX = 30.0, .tiltY = 30.0, .shiftY = 0.5, .stereoX = 0.5}},
  };
  for (auto const& row : rows) {
    SCOPED_TRACE(row.name);
    ExpectMatrix(Project(*camera, row.c), Oracle(row.c));
  }
}

TEST_F(CameraProjection, IsThatOfTheViewsFourSidesForAnyValues) {
  std::mt19937 random(20);
  auto const from = [&](double a, double b) {
    return std::uniform_real_distribution<double>(a, b)(random);
  };
  for (int i = 0; i != 2000; ++i) {
    Case c;
    c.horizontal = from(10.0, 100.0);
    c.vertical = from(10.0, 100.0);
    c.usesVertical = i % 2 == 0;
    c.type = i % 3 == 0 ? NPT_ORTHOGRAPHIC : NPT_PERSPECTIVE;
    c.tiltX = from(-10.0, 10.0);
    c.tiltY = from(-10.0, 10.0);
    c.shiftY = from(-0.2, 0.2);
    c.stereoX = from(-0.1, 0.1);
    c.screen = from(1.0, 10.0);
    c.aspect = from(0.5, 2.0);
    c.nearZ = from(0.1, 10.0);
    c.farZ = c.nearZ * from(10.0, 1000.0);
    c.focus = from(1.0, 50.0);
    c.offsetX = from(-0.5, 0.5);
    c.offsetY = from(-0.5, 0.5);
    SCOPED_TRACE(i);
    ExpectMatrix(Project(*camera, c), Oracle(c));
    if (HasFailure()) break;
  }
}

TEST_F(CameraProjection, OfNeitherTypeIsTheIdentity) {
  for (long const type : {2L, -1L, 1000L}) {
    EXPECT_EQ(Project(*camera, {.type = type, .tiltX = 10.0, .aspect = 0.0}), Matrix::Identity());
  }
}

TEST_F(CameraProjection, OfBadValuesIsNotFinite) {
  for (Case const& c : {Case{.nearZ = 0.0}, Case{.screen = 0.0},
                        Case{.usesVertical = false, .aspect = 0.0}, Case{.aspect = 0.0}}) {
    Matrix const m = Project(*camera, c);
    bool isFinite = true;
    for (int i = 0; i != 16; ++i) isFinite = isFinite && std::isfinite(m(i / 4, i % 4));
    EXPECT_FALSE(isFinite);
  }
}

TEST_F(CameraProjection, OfAHeadMountedDisplayPutsTheFrustumsCornersIntoTheView) {
  camera->SetProjectionType(static_cast<NProjectionType>(2));
  camera->SetHorizontalTiltAngle(30.0);
  Matrix const m = camera->GetProjectionMatrixHMD(0.5, 20.0, 0.75, 1.25, 1.5, 0.5, 7.0, -7.0);
  for (double const distance : {0.5, 20.0}) {
    float const d = static_cast<float>(distance);
    Vec3 corner;
    m.MultVecMatrix(Vec3(1.25f * d, 1.5f * d, -d), corner);
    EXPECT_NEAR(corner.x, 1.0f, 1e-6f);
    EXPECT_NEAR(corner.y, 1.0f, 1e-6f);
    EXPECT_NEAR(corner.z, distance == 0.5 ? 0.0f : 1.0f, 1e-6f);
    m.MultVecMatrix(Vec3(-0.75f * d, -0.5f * d, -d), corner);
    EXPECT_NEAR(corner.x, -1.0f, 1e-6f);
    EXPECT_NEAR(corner.y, -1.0f, 1e-6f);
  }
  Matrix const symmetric = camera->GetProjectionMatrixHMD(0.5, 20.0, 1.0, 1.0, 0.5, 0.5, 0.0, 0.0);
  ExpectMatrix(symmetric, {{1.0, 0.0, 0.0, 0.0},
                           {0.0, 2.0, 0.0, 0.0},
                           {0.0, 0.0, 20.0 / -19.5, -1.0},
                           {0.0, 0.0, 10.0 / -19.5, 0.0}});
}

TEST_F(CameraProjection, ShiftsAreNotCopied) {
  EXPECT_EQ(camera->GetStereoShiftX(), 0.0);
  EXPECT_EQ(camera->GetStereoScreenDistance(), 1.0);

  Case const shifted{.vertical = 50.0, .shiftY = 0.25, .stereoX = 0.5, .screen = 4.0};
  Project(*camera, shifted);
  auto const target = domain->CreateNode(NNodeID());
  camera->CopyTo(*target);
  EXPECT_EQ(target->GetStereoShiftX(), 0.0);
  EXPECT_EQ(target->GetStereoScreenDistance(), 1.0);
  ExpectMatrix(target->GetProjectionMatrix(1.0, 1.0, 100.0, 10.0, -0.5, 0.5, 0.5, -0.5, 0.0, 0.0),
               Oracle({.vertical = 50.0}));
}

}  // namespace
}  // namespace corvanta::data::domain::camera
