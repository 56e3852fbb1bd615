#include "tests/vx_math/near.h"

namespace corvanta {
namespace {

Matrix const kCount(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16);

TEST(MatrixTest, IsSixteenFloatsRowAfterRow) {
  Matrix m = kCount;
  EXPECT_EQ(std::vector<float>(kCount.data(), kCount.data() + 16),
            std::vector<float>({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}));
  m.data()[6] = 0;
  EXPECT_EQ(m(1, 2), 0);
}

TEST(MatrixTest, ProductAppliesTheLeftFactorFirst) {
  Matrix scale;
  scale.SetScale(Vec3(2, 3, 4));
  Matrix move;
  move.SetTranslate(Vec3(10, 20, 30));
  EXPECT_EQ(Point(Vec3(1, 1, 1), scale * move), Vec3(12, 23, 34));
  EXPECT_EQ(Point(Vec3(1, 1, 1), move * scale), Vec3(22, 63, 124));
  EXPECT_EQ(Matrix(scale).MultRight(move), scale * move);
  EXPECT_EQ(Matrix(scale).MultLeft(move), move * scale);
  EXPECT_EQ(Matrix(scale) *= move, scale * move);
  Matrix m = kCount;
  m *= m;
  EXPECT_EQ(m(1, 2), 5.0f * 3 + 6 * 7 + 7 * 11 + 8 * 15);
  EXPECT_EQ(m.Transpose()[2][1], m(1, 2));
}

TEST(MatrixTest, PointsMoveAndDivideByWDirectionsDoNeither) {
  Matrix m(1, 2, 3, 0.5f, 0, 1, 0, 0, 0, 0, 2, 0, 7, 8, 9, 1);
  EXPECT_EQ(Point(Vec3(2, 0, 0), m), Vec3(4.5f, 6, 7.5f));
  EXPECT_EQ(Direction(Vec3(2, 1, 1), m), Vec3(2, 5, 8));
  Vec3 v(2, 0, 0);
  m.MultVecMatrix(v, v);
  EXPECT_EQ(v, Vec3(4.5f, 6, 7.5f));
  m.MultDirMatrix(v, v);
  EXPECT_EQ(v, Direction(Vec3(4.5f, 6, 7.5f), m));
}

TEST(MatrixTest, SettersForgetWhatWasThere) {
  Matrix m = kCount;
  m.SetScale(Vec3(2, -3, 4));
  EXPECT_EQ(m, Matrix(2, 0, 0, 0, 0, -3, 0, 0, 0, 0, 4, 0, 0, 0, 0, 1));
  m = kCount;
  m.SetTranslate(Vec3(1, 2, 3));
  EXPECT_EQ(m, Matrix(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 1, 2, 3, 1));
  m = kCount;
  m.SetRotate(Quaternion(0, 0, 3, 0));
  EXPECT_EQ(m, Matrix(-1, 0, 0, 0, 0, -1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1));
}

TEST(MatrixTest, ScalePartIsTheLengthOfTheRows) {
  Matrix m;
  m.SetScale(Vec3(2, -3, 0.25f));
  m *= Matrix(Quaternion(Vec3(1, -2, 3), 1.0f));
  m(3, 1) = 9.0f;
  Matrix scale = kCount;
  m.GetScale(scale);
  EXPECT_TRUE(Near(scale, Matrix(2, 0, 0, 0, 0, 3, 0, 0, 0, 0, 0.25f, 0, 0, 0, 0, 1), 1e-6));
  m.GetScale(m);
  EXPECT_EQ(m, scale);
}

// The residual in double brackets every entry: a rounded inverse leaves at most the rounding of its
// rows.
TEST(MatrixTest, InverseLeavesTheIdentity) {
  std::mt19937 random(20261124);
  std::uniform_real_distribution<float> unit(-1.0f, 1.0f);
  for (int trial = 0; trial != 2000; ++trial) {
    Matrix m;
    for (int i = 0; i != 16; ++i) m[0][i] = unit(random) * (i < 12 ? 1.0f : 1000.0f);
    if (trial % 2 == 0) {
      for (int row = 0; row != 4; ++row) m(row, 3) = row == 3 ? 1.0f : 0.0f;
    }
    Matrix const inverse = m.Inverse();
    for (int row = 0; row != 4; ++row) {
      for (int column = 0; column != 4; ++column) {
        double sum = row == column ? -1.0 : 0.0;
        double size = 0.0;
        for (int k = 0; k != 4; ++k) {
          double const term = static_cast<double>(m(row, k)) * inverse(k, column);
          sum += term;
          size += std::abs(term);
        }
        ASSERT_LE(std::abs(sum), 1e-7 * size + 1e-9) << "trial " << trial;
      }
    }
  }
}

TEST(MatrixTest, InverseOfTinyAndHugeScales) {
  Matrix m;
  m.SetScale(Vec3(1e-20f, 1e20f, -1e-15f));
  EXPECT_TRUE(Near(m * m.Inverse(), Matrix(), 1e-6));
  m(3, 3) = 0.5f;  // takes the general way
  EXPECT_TRUE(Near(m * m.Inverse(), Matrix(), 1e-6));
}

TEST(MatrixTest, SingularMatrixHasNoFiniteInverse) {
  Matrix flat;
  flat.SetScale(Vec3(1, 0, 1));
  Matrix const general(1, 2, 3, 4, 2, 4, 6, 8, 0, 1, 0, 1, 5, 0, 0, 1);
  for (Matrix const& m : {flat, general, Matrix(kCount) *= flat}) {
    Matrix const inverse = m.Inverse();
    for (int i = 0; i != 3; ++i) EXPECT_FALSE(std::isfinite(inverse(i, i))) << i;
  }
}

TEST(Vec3Test, NormalizesWhateverTheSize) {
  struct {
    char const* name;
    Vec3 v, expected;
    double length;
  } const rows[] = {
      {"axis", Vec3(0, 0, -41), Vec3(0, 0, -1), 41.0},
      {"plain", Vec3(3, 4, 0), Vec3(0.6f, 0.8f, 0), 5.0},
      {"square too small", Vec3(3e-30f, 0, 4e-30f), Vec3(0.6f, 0, 0.8f), 5e-30},
      {"denormal", Vec3(0, 1e-44f, 0), Vec3(0, 1, 0), 1e-44},
      {"square too large", Vec3(3e30f, 4e30f, 0), Vec3(0.6f, 0.8f, 0), 5e30},
      {"length too large", Vec3(3e38f, 3e38f, -3e38f), Vec3(0.57735f, 0.57735f, -0.57735f),
       kInfinity},
      {"zero", Vec3(), Vec3(), 0.0},
  };
  for (auto const& row : rows) {
    SCOPED_TRACE(row.name);
    Vec3 v = row.v;
    float const length = v.Normalize();
    EXPECT_FLOAT_EQ(length, static_cast<float>(row.length));
    EXPECT_FLOAT_EQ(row.v.Length(), static_cast<float>(row.length));
    EXPECT_TRUE(Near(v, row.expected, 1e-6));
  }
}

TEST(Vec3Test, CrossIsThisTimesTheArgument) {
  EXPECT_EQ(Vec3(1, 2, 3).Cross(Vec3(4, 5, 7)), Vec3(-1, 5, -3));
}

TEST(MatrixStackTest, AppliesLocalMatricesBeforeTheTop) {
  Matrix scale;
  scale.SetScale(2.0f);
  Matrix move;
  move.SetTranslate(Vec3(1, 0, 0));
  VX_Math::MatrixStack stack;
  EXPECT_EQ(stack.GetTop(), Matrix());
  stack.Pop();  // the last one stays
  stack.LoadMatrix(move);
  stack.Push();
  stack.MultMatrixLocal(scale);
  EXPECT_EQ(stack.GetTop(), scale * move);
  stack.MultMatrixLocal(stack.GetTop());
  EXPECT_EQ(stack.GetTop(), scale * move * (scale * move));
  stack.Pop();
  EXPECT_EQ(stack.GetTop(), move);
}

constexpr float kLargest = std::numeric_limits<float>::max();

TEST(Box3Test, EmptyBoxStaysEmptyAndAddsNothing) {
  Box3 empty;
  EXPECT_EQ(empty.min, Vec3(kLargest, kLargest, kLargest));
  EXPECT_EQ(empty.max, Vec3(-kLargest, -kLargest, -kLargest));
  Matrix m;
  m.SetScale(-2.0f);
  empty.Transform(m);
  EXPECT_EQ(empty, Box3());
  EXPECT_EQ(empty.GetSize(), Vec3());
  EXPECT_EQ(empty.GetCenter(), Vec3());
  EXPECT_FALSE(empty.PointInBox(Vec3()));

  Box3 box(Vec3(1, 2, 3), Vec3(4, 6, 9));
  box.ExtendBy(Box3());
  box.ExtendBy(Box3(Vec3(-9, -9, -9), Vec3(-9, -10, -9)));  // empty too: one side is negative
  box.ExtendBy(Box3(Vec3(-9, kNaN, -9), Vec3(9, 9, 9)));
  EXPECT_EQ(box, Box3(Vec3(1, 2, 3), Vec3(4, 6, 9)));
  empty.ExtendBy(box);
  EXPECT_EQ(empty, box);
}

TEST(Box3Test, HoldsWhatItWasExtendedByAndItsBorder) {
  Box3 box;
  box.ExtendBy(Vec3(1, 5, -3));
  box.ExtendBy(Vec3(-1, 6, kNaN));
  EXPECT_EQ(box, Box3(Vec3(-1, 5, -3), Vec3(1, 6, -3)));
  box.ExtendBy(Box3(Vec3(0, 0, 0), Vec3(0, 9, 1)));
  EXPECT_EQ(box.GetCenter(), Vec3(0, 4.5f, -1));
  EXPECT_EQ(box.GetSize(), Vec3(2, 9, 4));
  for (int i = 0; i != 3; ++i) {
    Vec3 point = box.max;
    EXPECT_TRUE(box.PointInBox(point));
    point[i] = std::nextafter(point[i], 100.0f);
    EXPECT_FALSE(box.PointInBox(point));
    point[i] = std::nextafter(box.min[i], -100.0f);
    EXPECT_FALSE(box.PointInBox(point));
  }
  EXPECT_FALSE(box.PointInBox(Vec3(kNaN, 4, 0)));
}

TEST(Box3Test, TransformIsTheBoxOfTheEightCorners) {
  std::mt19937 random(11);
  std::uniform_real_distribution<float> unit(-1.0f, 1.0f);
  for (int trial = 0; trial != 2000; ++trial) {
    Box3 box;
    for (int i = 0; i != 2; ++i) box.ExtendBy(Vec3(unit(random), unit(random), unit(random)));
    Matrix m;
    for (int i = 0; i != 16; ++i) m[0][i] = unit(random);
    // Affine, with one element that isn't and no translation, or any.
    for (int row = 0; row != 4 && trial % 16 != 0; ++row) {
      if (row != trial % 8) m(row, 3) = row == 3 ? 1.0f : 0.0f;
      if (trial % 8 < 4 && row != 3) m(3, row) = 0;
    }
    Box3 expected;
    for (float const x : {box.min.x, box.max.x}) {
      for (float const y : {box.min.y, box.max.y}) {
        for (float const z : {box.min.z, box.max.z}) {
          Vec3 corner;
          m.MultVecMatrix(Vec3(x, y, z), corner);
          expected.ExtendBy(corner);
        }
      }
    }
    box.Transform(m);
    ASSERT_EQ(box, expected) << "trial " << trial;
  }
}

TEST(LineTest, KeepsAUnitDirection) {
  Line line(Vec3(1, 1, 1), Vec3(1, 4, 5));
  EXPECT_EQ(line.GetOrigin(), Vec3(1, 1, 1));
  EXPECT_TRUE(Near(line.GetDirection(), Vec3(0, 0.6f, 0.8f), 1e-7));
  line.SetValue(Vec3(-kLargest, 0, 0), Vec3(kLargest, 0, 0));
  EXPECT_EQ(line.GetDirection(), Vec3(1, 0, 0));
  line.SetValue(Vec3(7, 7, 7), Vec3(7, 7, 7));
  EXPECT_EQ(line.GetOrigin(), Vec3(7, 7, 7));
  EXPECT_EQ(line.GetDirection(), Vec3());
}

TEST(PlaneTest, MeetsSegmentsOnlyBetweenTheirEnds) {
  struct {
    char const* name;
    Plane plane;
    Vec3 from, to;
    bool isHit;
    Vec3 point;
  } const rows[] = {
      {"across", Plane(Vec3(0, 1, 0), 2.0), {0, 0, 0}, {4, 8, 4}, true, {1, 2, 1}},
      {"backwards", Plane(Vec3(0, 1, 0), 2.0), {4, 8, 4}, {0, 0, 0}, true, {1, 2, 1}},
      {"by a point", Plane(Vec3(0, 4, 0), Vec3(9, 2, 9)), {}, {4, 8, 4}, true, {1, 2, 1}},
      {"starts on it", Plane(Vec3(0, 0, 1), 3.0), {1, 1, 3}, {1, 1, 4}, true, {1, 1, 3}},
      {"ends on it", Plane(Vec3(0, 0, 1), 3.0), {1, 1, 2}, {1, 1, 3}, true, {1, 1, 3}},
      {"ends before", Plane(Vec3(0, 0, 1), 3.0), {1, 1, 0}, {1, 1, 2.99999f}, false, {}},
      {"starts behind", Plane(Vec3(0, 0, 1), 3.0), {1, 1, 3.00001f}, {1, 1, 9}, false, {}},
      {"parallel", Plane(Vec3(0, 0, 1), 3.0), {0, 0, 2}, {1, 1, 2}, false, {}},
      {"inside it", Plane(Vec3(0, 0, 1), 3.0), {0, 0, 3}, {1, 1, 3}, false, {}},
      {"no plane", Plane(), {0, 0, 3}, {1, 1, 3}, false, {}},
      {"not a number", Plane(Vec3(0, 0, 1), 0.0), Vec3(0, kNaN, -1), {0, 0, 1}, false, {}},
      {"as long as floats reach",
       Plane(Vec3(0, 0, 1), 5.0),
       {1, 2, 10},
       {1, 2, -kLargest},
       true,
       {1, 2, 5}},
      {"longer", Plane(Vec3(1, 0, 0), 0.0), {-kLargest, 0, 0}, {kLargest, 6, 0}, true, {0, 3, 0}},
  };
  for (auto const& row : rows) {
    SCOPED_TRACE(row.name);
    Vec3 point(-7, -7, -7);
    EXPECT_EQ(row.plane.Intersect(row.from, row.to, point), row.isHit);
    EXPECT_TRUE(Near(point, row.isHit ? row.point : Vec3(-7, -7, -7), 1e-6));
  }
}

}  // namespace
}  // namespace corvanta
