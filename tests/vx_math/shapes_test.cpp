#include "tests/vx_math/near.h"

namespace {

using VX_Math::Box3;
using VX_Math::Line;
using VX_Math::Matrix;
using VX_Math::Plane;
using VX_Math::Vec3;

constexpr float kLargest = std::numeric_limits<float>::max();
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

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
      {"across", Plane(Vec3(0, 1, 0), 2.0), Vec3(0, 0, 0), Vec3(4, 8, 4), true, Vec3(1, 2, 1)},
      {"backwards", Plane(Vec3(0, 1, 0), 2.0), Vec3(4, 8, 4), Vec3(0, 0, 0), true, Vec3(1, 2, 1)},
      {"by a point", Plane(Vec3(0, 4, 0), Vec3(9, 2, 9)), Vec3(), Vec3(4, 8, 4), true,
       Vec3(1, 2, 1)},
      {"starts on it", Plane(Vec3(0, 0, 1), 3.0), Vec3(1, 1, 3), Vec3(1, 1, 4), true,
       Vec3(1, 1, 3)},
      {"ends on it", Plane(Vec3(0, 0, 1), 3.0), Vec3(1, 1, 2), Vec3(1, 1, 3), true, Vec3(1, 1, 3)},
      {"ends before", Plane(Vec3(0, 0, 1), 3.0), Vec3(1, 1, 0), Vec3(1, 1, 2.99999f), false,
       Vec3()},
      {"starts behind", Plane(Vec3(0, 0, 1), 3.0), Vec3(1, 1, 3.00001f), Vec3(1, 1, 9), false,
       Vec3()},
      {"parallel", Plane(Vec3(0, 0, 1), 3.0), Vec3(0, 0, 2), Vec3(1, 1, 2), false, Vec3()},
      {"inside it", Plane(Vec3(0, 0, 1), 3.0), Vec3(0, 0, 3), Vec3(1, 1, 3), false, Vec3()},
      {"no plane", Plane(), Vec3(0, 0, 3), Vec3(1, 1, 3), false, Vec3()},
      {"not a number", Plane(Vec3(0, 0, 1), 0.0), Vec3(0, kNaN, -1), Vec3(0, 0, 1), false, Vec3()},
      {"as long as floats reach", Plane(Vec3(0, 0, 1), 5.0), Vec3(1, 2, 10), Vec3(1, 2, -kLargest),
       true, Vec3(1, 2, 5)},
      {"longer", Plane(Vec3(1, 0, 0), 0.0), Vec3(-kLargest, 0, 0), Vec3(kLargest, 6, 0), true,
       Vec3(0, 3, 0)},
  };
  for (auto const& row : rows) {
    SCOPED_TRACE(row.name);
    Vec3 point(-7, -7, -7);
    EXPECT_EQ(row.plane.Intersect(row.from, row.to, point), row.isHit);
    EXPECT_TRUE(Near(point, row.isHit ? row.point : Vec3(-7, -7, -7), 1e-6));
  }
}

}  // namespace
