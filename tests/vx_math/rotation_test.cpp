#include <numbers>

#include "tests/vx_math/near.h"

namespace corvanta {
namespace {

constexpr float kPi = std::numbers::pi_v<float>;

Quaternion FromDegrees(Vec3 const& angles) { return VX_Math::CreateQuaternion(angles, false); }

Quaternion Negated(Quaternion const& q) { return {-q.x, -q.y, -q.z, -q.w}; }

Vec3 Turn(Vec3 const& in, Quaternion const& q) { return Direction(in, Matrix(q)); }

Matrix Compose(Vec3 const& scale, Vec3 const& degrees, Vec3 const& translation) {
  Matrix m;
  m.SetScale(scale);
  m *= Matrix(FromDegrees(degrees));
  Matrix move;
  move.SetTranslate(translation);
  return m * move;
}

TEST(QuaternionTest, TurnsCounterclockwiseAboutAnAxisOfAnyLength) {
  EXPECT_TRUE(Near(Turn(Vec3(0, 1, 0), Quaternion(Vec3(5, 0, 0), kPi / 2)), Vec3(0, 0, 1), 1e-6));
  EXPECT_TRUE(
      Near(Turn(Vec3(1, 0, 0), Quaternion(Vec3(0, 0, 1e-30f), kPi / 2)), Vec3(0, 1, 0), 1e-6));
  EXPECT_TRUE(Near(Quaternion(Vec3(1, 2, 2), 2.0f),
                   Quaternion(0.28049033f, 0.56098066f, 0.56098066f, 0.54030231f), 1e-7));
  EXPECT_EQ(Quaternion(Vec3(), 1.0f), Quaternion());
  Matrix const m(Quaternion(0.5f, -1.5f, 1.0f, 2.0f));  // the length says nothing
  EXPECT_TRUE(Near(m * m.Transpose(), Matrix(), 1e-6));
  EXPECT_EQ(Matrix(Quaternion(0, 0, 0, 0)), Matrix());
}

TEST(QuaternionTest, TakesOneDirectionToTheOther) {
  std::mt19937 random(7);
  std::uniform_real_distribution<float> unit(-1.0f, 1.0f);
  Vec3 froms[40];
  for (Vec3& from : froms) from = Vec3(unit(random), unit(random), unit(random));
  froms[0] = Vec3(0, 0, -1);
  froms[1] = Vec3(0, 3, 0);
  froms[2] = Vec3(1e-20f, 0, 0);
  for (Vec3 const& from : froms) {
    Vec3 const bent = -from + Vec3(from.y, from.z, from.x) * 1e-4f;
    for (Vec3 to : {froms[3] * 1e10f, froms[4], from * 3.0f, -from, from * -1e5f, bent}) {
      Quaternion const q(from, to);
      Vec3 turned = Turn(from, q);
      turned.Normalize();
      to.Normalize();
      EXPECT_TRUE(Near(turned, to, 1e-6));
      // The shortest way: no part of the axis along the direction.
      EXPECT_NEAR(Vec3(q.x, q.y, q.z).Dot(to), 0.0, 1e-6);
    }
    EXPECT_EQ(Quaternion(from, Vec3()), Quaternion());
  }
  EXPECT_EQ(Quaternion(Vec3(0, 0, -1), Vec3(0, 0, -7)), Quaternion());
}

TEST(QuaternionTest, EqualsComparesEachComponent) {
  Quaternion const q(0.1f, 0.2f, 0.3f, 0.9f);
  EXPECT_TRUE(q.Equals(Quaternion(0.10009f, 0.19991f, 0.30009f, 0.89991f), 1e-4f));
  for (int i = 0; i != 4; ++i) {
    Quaternion other = q;
    other[i] -= 1.1e-4f;
    EXPECT_FALSE(q.Equals(other, 1e-4f)) << i;
    other[i] = static_cast<float>(kNaN);
    EXPECT_FALSE(q.Equals(other, 1e-4f)) << i;
  }
  EXPECT_FALSE(q.Equals(Quaternion(-0.1f, -0.2f, -0.3f, -0.9f), 1e-4f));
}

TEST(SlerpTest, OfThreeTakesTheShorterWay) {
  Vec3 const axis(1, -2, 3);
  for (float const b : {0.0f, 1e-7f, 1e-3f, 1.0f, 3.0f, 3.14f}) {
    Quaternion const end(axis, 0.3f + b);
    for (float const t : {0.0f, 0.25f, 0.5f, 1.0f}) {
      Quaternion const expected(axis, 0.3f + t * b);
      Quaternion const start(axis, 0.3f);
      EXPECT_TRUE(Near(Quaternion::Slerp(start, end, t), expected, 1e-6)) << b << " " << t;
      EXPECT_TRUE(Near(Quaternion::Slerp(start, Negated(end), t), expected, 1e-6)) << b << t;
    }
  }
}

TEST(SlerpTest, OfFourTakesTheAngleAsGiven) {
  Quaternion const a(1, 0, 0, 0);
  Quaternion const b(0, 1, 0, 0);
  for (double const angle : {0.1, 1.5, 2.5, 4.0, 7.0, -1.0}) {
    for (float const t : {0.0f, 0.3f, 1.0f}) {
      double const x = std::sin((1.0 - t) * angle) / std::sin(angle);
      double const y = std::sin(t * angle) / std::sin(angle);
      Quaternion const expected(static_cast<float>(x), static_cast<float>(y), 0, 0);
      EXPECT_TRUE(Near(VX_Math::Slerp(a, b, t, static_cast<float>(angle)), expected, 2e-6))
          << angle << " " << t;
    }
  }
  for (float const angle : {0.0f, 1e-7f, kPi}) {
    EXPECT_TRUE(Near(VX_Math::Slerp(a, b, 0.25f, angle), Quaternion(0.75f, 0.25f, 0, 0), 1e-7));
  }
  EXPECT_EQ(VX_Math::Slerp(a, b, 0.0f, 5.0f), a);
  EXPECT_EQ(VX_Math::Slerp(a, b, 1.0f, 5.0f), b);
}

TEST(EulerAnglesTest, TurnAboutXThenYThenZ) {
  EXPECT_TRUE(Near(Turn(Vec3(0, 1, 0), FromDegrees(Vec3(90, 0, 0))), Vec3(0, 0, 1), 1e-6));
  // Products of the three turns, worked out in double precision.
  for (auto const& [angles, expected] : std::vector<std::pair<Vec3, Quaternion>>{
           {{10, 20, 30}, {0.0381346f, 0.1893079f, 0.2392983f, 0.9515485f}},
           {{-170, 80, 135}, {-0.3437951f, -0.6836007f, 0.3067311f, -0.5660486f}},
           {{400, -500, 765}, {0.4459913f, -0.7710407f, 0.4199212f, 0.1739371f}}}) {
    EXPECT_TRUE(Near(Matrix(FromDegrees(angles)), Matrix(expected), 1e-6));
    Quaternion const q = VX_Math::CreateQuaternion(angles * (kPi / 180.0f), true);
    EXPECT_TRUE(Near(q, FromDegrees(angles), 1e-5));
  }
}

TEST(EulerAnglesTest, ComeBackAsTheyWere) {
  for (Vec3 const& angles : {Vec3(), Vec3(10, 20, 30), Vec3(-170, 89, 135)}) {
    Vec3 const radians = VX_Math::DecomposeToEulerAngles(Matrix(FromDegrees(angles)));
    EXPECT_TRUE(Near(radians * (180.0f / kPi), angles, 2e-4));
    for (float const mirror : {1.0f, -1.0f}) {
      Vec3 const scale(2 * mirror, 3, 4);
      VX_Math::TransformInfo info;
      VX_Math::GetTransformInfo_Degree(Compose(scale, angles, Vec3(5, 6, 7)), info);
      EXPECT_TRUE(Near(info.rotation, angles, 2e-4));
      EXPECT_TRUE(Near(info.scale, scale, 1e-6));
      EXPECT_EQ(info.translation, Vec3(5, 6, 7));
    }
  }
}

// Angles and signs may come back differently, the matrix may not: each row by the measure of its
// scale.
void ExpectSameMatrix(Vec3 const& scale, Vec3 const& angles) {
  Matrix const m = Compose(scale, angles, Vec3(1, -2, 3));
  VX_Math::TransformInfo info;
  VX_Math::GetTransformInfo_Degree(m, info);
  Matrix const again = Compose(info.scale, info.rotation, info.translation);
  for (int i = 0; i != 12; ++i) {
    ASSERT_NEAR(again[0][i], m[0][i], 1e-5 * std::abs(scale[i / 4]))
        << scale.x << " " << scale.y << " " << scale.z << "; " << angles.x << " " << angles.y << " "
        << angles.z;
  }
}

TEST(TransformInfoTest, GivesTheMatrixBack) {
  Vec3 const scales[] = {{1, 1, 1},   {-2, 3, 4},         {2, -3, 4},       {2, 3, -4},
                         {-2, -3, 4}, {-1, -1, -1},       {0, 2, 3},        {2, 0, 3},
                         {2, -3, 0},  {0, 0, 3},          {0, -2, 0},       {4, 0, 0},
                         {0, 0, 0},   {1e-20f, 1, 1e15f}, {1e-3f, -1e3f, 1}};
  float const angles[] = {-180, -89.9999f, -30, 0, 45, 89.99f, 89.9999f, 90, 90.0001f, 135, 270};
  for (Vec3 const& scale : scales) {
    for (float const x : angles) {
      for (float const y : angles) {
        for (float const z : {0.0f, -90.0f, 33.0f, 180.0f}) ExpectSameMatrix(scale, Vec3(x, y, z));
      }
    }
  }
  Random random;
  std::uniform_real_distribution<float> degrees(-360.0f, 360.0f);
  std::uniform_real_distribution<float> factor(-3.0f, 3.0f);
  for (int i = 0; i != 1000; ++i) {
    ExpectSameMatrix(Vec3(factor(random), factor(random), factor(random)),
                     Vec3(degrees(random), degrees(random), degrees(random)));
  }
}

TEST(TransformInfoTest, AngleIsFiniteForAnyMatrix) {
  float const values[] = {0, 1, -2, 1e38f, static_cast<float>(kInfinity), static_cast<float>(kNaN)};
  std::mt19937 random(3);
  for (int trial = 0; trial != 5000; ++trial) {
    Matrix m;
    for (int i = 0; i != 16; ++i) m[0][i] = values[random() % std::size(values)];
    Vec3 const angles = VX_Math::DecomposeToEulerAngles(m);
    ASSERT_TRUE(std::isfinite(angles.x + angles.y + angles.z)) << trial;
  }
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
}  // namespace corvanta
