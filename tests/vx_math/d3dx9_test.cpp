#include "tests/vx_math/near.h"

namespace {

using VX_Math::Matrix;
using VX_Math::Quaternion;
using VX_Math::Vec3;
namespace platform = corvanta::platform;

Vec3 Point(Vec3 const& in, Matrix const& m) {
  Vec3 out;
  m.MultVecMatrix(in, out);
  return out;
}

// Rectangle -1..3 by -2..1 at the distance 2, depths 2 to 10.
TEST(D3dx9Test, PerspectiveTakesTheFrustumToTheUnitBox) {
  Matrix const m = platform::MatrixPerspectiveOffCenterRH(-1, 3, -2, 1, 2, 10);
  EXPECT_TRUE(Near(Point(Vec3(-1, -2, -2), m), Vec3(-1, -1, 0), 1e-6));
  EXPECT_TRUE(Near(Point(Vec3(3, 1, -2), m), Vec3(1, 1, 0), 1e-6));
  EXPECT_TRUE(Near(Point(Vec3(-5, -10, -10), m), Vec3(-1, -1, 1), 1e-6));
  EXPECT_TRUE(Near(Point(Vec3(15, 5, -10), m), Vec3(1, 1, 1), 1e-6));
  EXPECT_TRUE(Near(
      m, Matrix(1, 0, 0, 0, 0, 4.0f / 3, 0, 0, 0.5f, -1.0f / 3, -1.25f, -1, 0, 0, -2.5f, 0), 1e-6));
}

TEST(D3dx9Test, OrthoTakesTheBoxToTheUnitBox) {
  Matrix const m = platform::MatrixOrthoOffCenterRH(-1, 3, -2, 1, 2, 10);
  EXPECT_TRUE(Near(Point(Vec3(-1, -2, -2), m), Vec3(-1, -1, 0), 1e-6));
  EXPECT_TRUE(Near(Point(Vec3(3, 1, -10), m), Vec3(1, 1, 1), 1e-6));
  EXPECT_EQ(m(3, 3), 1.0f);
  EXPECT_EQ(m(2, 3), 0.0f);
  EXPECT_FALSE(std::isfinite(platform::MatrixOrthoOffCenterRH(1, 1, 0, 1, 1, 2)(0, 0)));
}

TEST(D3dx9Test, LookAtBringsTheEyeToTheOrigin) {
  Vec3 const eye(1, 2, 3);
  Vec3 const at(4, -2, 15);  // 13 away
  Matrix const m = platform::MatrixLookAtRH(eye, at, Vec3(0, 7, 0));
  EXPECT_TRUE(Near(Point(eye, m), Vec3(), 1e-6));
  EXPECT_TRUE(Near(Point(at, m), Vec3(0, 0, -13), 1e-5));
  Vec3 up;
  m.MultDirMatrix(Vec3(0, 1, 0), up);
  EXPECT_NEAR(up.x, 0.0, 1e-6);
  EXPECT_GT(up.y, 0.0f);
  Matrix turn = m;
  turn(3, 0) = turn(3, 1) = turn(3, 2) = 0.0f;
  EXPECT_TRUE(Near(turn * turn.Transpose(), Matrix(), 1e-6));
  // Right-handed: nothing is mirrored.
  EXPECT_TRUE(Near(platform::MatrixLookAtRH(Vec3(0, 0, 10), Vec3(), Vec3(0, 1, 0)),
                   Matrix(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, -10, 1), 1e-6));
}

struct Squad {
  Quaternion a, b, c;
};

Squad SquadOf(Quaternion const& q0, Quaternion const& q1, Quaternion const& q2,
              Quaternion const& q3) {
  Squad squad;
  platform::QuaternionSquadSetup(squad.a, squad.b, squad.c, q0, q1, q2, q3);
  return squad;
}

Quaternion Negated(Quaternion const& q) { return {-q.x, -q.y, -q.z, -q.w}; }

// Keys about one axis: an inner point is its key, turned by a quarter of what the neighbours miss
// the middle.
TEST(SquadSetupTest, OfTurnsAboutOneAxis) {
  Vec3 const axis(2, -1, 2);
  Squad const squad = SquadOf(Quaternion(axis, 0.1f), Quaternion(axis, 0.5f),
                              Quaternion(axis, 1.5f), Quaternion(axis, 1.7f));
  EXPECT_TRUE(Near(squad.a, Quaternion(axis, 0.5f - 0.25f * (1.0f - 0.4f)), 1e-6));
  EXPECT_TRUE(Near(squad.b, Quaternion(axis, 1.5f - 0.25f * (0.2f - 1.0f)), 1e-6));
  EXPECT_TRUE(Near(squad.c, Quaternion(axis, 1.5f), 1e-6));
  // The third key is near both its neighbours, which are more than half a turn apart: the fourth
  // takes its sign from the third.
  EXPECT_TRUE(Near(SquadOf(Quaternion(axis, 0.1f), Quaternion(axis, 0.5f), Quaternion(axis, 2.5f),
                           Quaternion(axis, 4.3f))
                       .b,
                   Quaternion(axis, 2.5f - 0.25f * (1.8f - 2.0f)), 1e-6));
  Quaternion q(axis, 2.0f);
  platform::QuaternionSquadSetup(q, q, q, q, q, q, q);  // results may be keys
  EXPECT_TRUE(Near(q, Quaternion(axis, 2.0f), 1e-7));
}

// Worked out with 2x2 complex matrices, logarithms by repeated square roots. The third key is
// turned round (dot -0.785); then the fourth stays (dot 0.354), which would turn for the third as
// given.
TEST(SquadSetupTest, OfTurnsAboutAnyAxes) {
  Quaternion const q0(0.2f, 0.4f, 0.4f, 0.8f);
  Quaternion const q1(-0.16012815f, 0.32025631f, 0.48038446f, 0.80064077f);
  Quaternion const q2(0.26490647f, -0.52981294f, 0.13245324f, -0.79471941f);
  Quaternion const q3(-0.80178373f, 0.0f, 0.53452248f, 0.26726124f);
  Quaternion const a(-0.208468869f, 0.21336757f, 0.619335584f, 0.726249574f);
  Quaternion const b(-0.032353901f, 0.567917608f, -0.456458788f, 0.684155092f);
  for (int signs = 0; signs != 16; ++signs) {
    auto const sign = [signs](int bit, Quaternion const& q) {
      return (signs & bit) != 0 ? Negated(q) : q;
    };
    Squad const squad = SquadOf(sign(1, q0), sign(2, q1), sign(4, q2), sign(8, q3));
    // Only the sign of the second key shows.
    EXPECT_TRUE(Near(squad.a, sign(2, a), 1e-6)) << signs;
    EXPECT_TRUE(Near(squad.b, sign(2, b), 1e-6)) << signs;
    EXPECT_EQ(squad.c, sign(2, Negated(q2))) << signs;
  }
}

TEST(SquadSetupTest, KeepsTheSignAtADotOfZero) {
  Quaternion const none;
  Quaternion const half(1, 0, 0, 0);
  EXPECT_EQ(SquadOf(none, none, half, half).c, half);
  EXPECT_EQ(SquadOf(none, none, Negated(half), half).c, Negated(half));
  float const sine = std::sin(0.39269908f);
  float const cosine = std::cos(0.39269908f);
  EXPECT_TRUE(Near(SquadOf(none, none, half, half).a, Quaternion(-sine, 0, 0, cosine), 1e-6));
}

}  // namespace
