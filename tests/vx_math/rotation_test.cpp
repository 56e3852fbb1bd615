#include <numbers>

#include "tests/vx_math/near.h"

namespace {

using VX_Math::Matrix;
using VX_Math::Quaternion;
using VX_Math::Vec3;

constexpr float kPi = std::numbers::pi_v<float>;

Quaternion FromDegrees(Vec3 const& angles) { return VX_Math::CreateQuaternion(angles, false); }

Vec3 Turn(Vec3 const& in, Quaternion const& q) {
  Vec3 out;
  Matrix(q).MultDirMatrix(in, out);
  return out;
}

// The turn about one axis in double, straight from the definition.
Matrix AboutAxis(int axis, double degrees) {
  double const radians = degrees * std::numbers::pi / 180.0;
  int const next = (axis + 1) % 3;
  int const last = (axis + 2) % 3;
  Matrix m;
  m(next, next) = m(last, last) = static_cast<float>(std::cos(radians));
  m(next, last) = static_cast<float>(std::sin(radians));
  m(last, next) = -m(next, last);
  return m;
}

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
    other[i] = std::numeric_limits<float>::quiet_NaN();
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
      Quaternion const turned(-end.x, -end.y, -end.z, -end.w);
      EXPECT_TRUE(Near(Quaternion::Slerp(start, turned, t), expected, 1e-6)) << b << " " << t;
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
  for (Vec3 const& angles : {Vec3(10, 20, 30), Vec3(-170, 80, 135), Vec3(400, -500, 765)}) {
    Matrix const expected =
        AboutAxis(0, angles.x) * AboutAxis(1, angles.y) * AboutAxis(2, angles.z);
    EXPECT_TRUE(Near(Matrix(FromDegrees(angles)), expected, 1e-6));
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
  unsigned const seed = std::random_device()();
  SCOPED_TRACE(seed);
  std::mt19937 random(seed);
  std::uniform_real_distribution<float> degrees(-360.0f, 360.0f);
  std::uniform_real_distribution<float> factor(-3.0f, 3.0f);
  for (int i = 0; i != 1000; ++i) {
    ExpectSameMatrix(Vec3(factor(random), factor(random), factor(random)),
                     Vec3(degrees(random), degrees(random), degrees(random)));
  }
}

TEST(TransformInfoTest, AngleIsFiniteForAnyMatrix) {
  float const nan = std::numeric_limits<float>::quiet_NaN();
  float const values[] = {0, 1, -2, 1e38f, std::numeric_limits<float>::infinity(), nan};
  std::mt19937 random(3);
  for (int trial = 0; trial != 5000; ++trial) {
    Matrix m;
    for (int i = 0; i != 16; ++i) m[0][i] = values[random() % std::size(values)];
    Vec3 const angles = VX_Math::DecomposeToEulerAngles(m);
    ASSERT_TRUE(std::isfinite(angles.x + angles.y + angles.z)) << trial;
  }
}

}  // namespace
