#include "tests/support/world.h"

namespace corvanta::data::domain::camera {
namespace {

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

struct Row {
  char const* name;
  Case c;
  // The scales and offsets of x and y, then the scale and the offset of z.
  std::array<double, 6> expected;
};

void ExpectNear(Matrix const& m, Row const& row) {
  SCOPED_TRACE(row.name);
  auto const [x, y, left, up, z, near] = row.expected;
  bool const isPerspective = row.c.type == NPT_PERSPECTIVE;
  double const expected[4][4] = {
      {x, 0, 0, 0},
      {0, y, 0, 0},
      {isPerspective ? left : 0, isPerspective ? up : 0, z, isPerspective ? -1.0 : 0},
      {isPerspective ? 0 : left, isPerspective ? 0 : up, near, isPerspective ? 0 : 1.0}};
  for (int i = 0; i != 16; ++i) {
    double const value = expected[i / 4][i % 4];
    EXPECT_NEAR(m[0][i], value, 1e-6 * std::max(1.0, std::abs(value))) << i;
  }
}

class CameraProjection : public testing::Test, protected World {
 protected:
  Pointer<NCameraNode> camera = cameras->CreateNode();
};

// Worked out by the slopes of the four sides, instead of their places in the near plane: a tilt
// turns the rays through them.
TEST_F(CameraProjection, IsThatOfTheViewsFourSides) {
  // clang-format off
  Row const rows[] = {
      {"fresh", {}, {5.67128182, 5.67128182, 0, 0, -1.01010101, -1.01010101}},
      {"wide angle", {.vertical = 120, .aspect = 1.5, .nearZ = 0.25}, {0.384900179, 0.577350269, 0, 0, -1.00250627, -0.250626566}},
      {"horizontal angle", {.horizontal = 60, .usesVertical = false, .aspect = 0.75}, {1.73205081, 1.29903811, 0, 0, -1.01010101, -1.01010101}},
      {"a tile", {.left = -0.5, .top = 0.25, .right = -0.25, .bottom = 0}, {22.6851273, 22.6851273, -3, 1, -1.01010101, -1.01010101}},
      {"offset", {.offsetX = 0.25, .offsetY = -0.5}, {5.67128182, 5.67128182, 0.5, -1, -1.01010101, -1.01010101}},
      {"shift", {.shiftY = 0.3, .aspect = 2}, {2.83564091, 5.67128182, 0, 0.6, -1.01010101, -1.01010101}},
      {"stereo", {.stereoX = 0.032, .screen = 2}, {5.67128182, 5.67128182, 0.0907405091, 0, -1.01010101, -1.01010101}},
      {"tilt upwards", {.vertical = 40, .tiltY = 15}, {2.6538594, 2.53904995, 0, 0.777861913, -1.00975347, -0.975346954}},
      {"tilt to the side", {.vertical = 40, .tiltX = -20, .nearZ = 2}, {2.38350719, 2.58178426, 1, 0, -1.01915383, -1.91538266}},
      {"both tilts, the vertical first", {.vertical = 60, .tiltX = 25, .tiltY = 20}, {1.22716051, 1.32493335, -0.858735317, 0.742227199, -1.00858966, -0.858966131}},
      {"offset behind tilts", {.tiltX = 10, .tiltY = -5, .offsetX = 0.5, .offsetY = 0.25}, {5.47400433, 5.54137797, -0.012576135, -0.00973449428, -1.0099078, -0.990780415}},
      {"orthographic", {.type = NPT_ORTHOGRAPHIC, .aspect = 2, .nearZ = 0.5, .focus = 4}, {0.708910227, 1.41782045, -0, -0, -0.0100502513, -0.00502512563}},
      {"orthographic, tilts ignored", {.type = NPT_ORTHOGRAPHIC, .tiltX = 30, .tiltY = 30, .shiftY = 0.5, .stereoX = 0.5}, {0.567128182, 0.567128182, -2.83564091, -1, -0.0101010101, -0.0101010101}},
      {"all at once", {.horizontal = 70, .usesVertical = false, .tiltX = -7, .tiltY = 9, .shiftY = -0.15, .stereoX = 0.08, .screen = 3, .aspect = 1.6, .nearZ = 3,
       .farZ = 500, .focus = 20, .left = -0.25, .top = 0.5, .right = 0.5, .bottom = 0.25, .offsetX = -0.3, .offsetY = 0.4}, {1.75316344, 8.30387801, -0.0963025324, 6.05182903, -1.00591676, -2.95837985}},
      {"all at once, orthographic", {.vertical = 35, .type = NPT_ORTHOGRAPHIC, .tiltX = 5, .tiltY = 5, .shiftY = 0.1,
       .stereoX = -0.06, .screen = 2, .aspect = 0.8, .nearZ = 0.3, .farZ = 40, .focus = 7, .left = 0, .top = 0.25, .right = 0.5, .bottom = -0.5, .offsetX = 0.2, .offsetY = -0.1}, {1.13271243, 0.604113296, -1.56213039, 0.333333333, -0.0251889169, -0.00755667506}},
  };
  // clang-format on
  for (Row const& row : rows) ExpectNear(Project(*camera, row.c), row);
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
  ExpectNear(symmetric, {"symmetric", {}, {1, 2, 0, 0, 20 / -19.5, 10 / -19.5}});
}

TEST_F(CameraProjection, ShiftsAreNotCopied) {
  EXPECT_EQ(camera->GetStereoShiftX(), 0.0);
  EXPECT_EQ(camera->GetStereoScreenDistance(), 1.0);

  Case const shifted{.vertical = 50.0, .shiftY = 0.25, .stereoX = 0.5, .screen = 4.0};
  Project(*camera, shifted);
  auto const target = cameras->CreateNode();
  camera->CopyTo(*target);
  EXPECT_EQ(target->GetStereoShiftX(), 0.0);
  EXPECT_EQ(target->GetStereoScreenDistance(), 1.0);
  ExpectNear(target->GetProjectionMatrix(1.0, 1.0, 100.0, 10.0, -0.5, 0.5, 0.5, -0.5, 0.0, 0.0),
             {"copied", {}, {2.14450692, 2.14450692, 0, 0, -1.01010101, -1.01010101}});
}

}  // namespace
}  // namespace corvanta::data::domain::camera
