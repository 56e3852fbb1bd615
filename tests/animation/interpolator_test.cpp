#include "tests/support/test.h"

namespace corvanta::data::animation {
namespace {

boost::shared_ptr<std::vector<double>> Times(std::vector<double> const& times) {
  return boost::make_shared<std::vector<double>>(times);
}

double Evaluate(std::vector<double> const& values, std::vector<double> const& times, double t) {
  return CubicSplineInterpolator<double, double>(values, Times(times)).Evaluate(t);
}

TEST(Spline, HasTheCurvaturesOfANaturalOne) {
  struct Row {
    std::vector<double> values, middles;  // half way from knot to knot
  };
  // The curvatures at 0, 1, 0 are 0, -3, 0; those of the last row have a denominator of 209.
  for (Row const& row :
       std::vector<Row>{{{2, 6}, {4}},
                        {{0, 1, 0}, {0.6875, 0.6875}},
                        {{0, 0, 1, 0}, {-0.15, 0.575, 0.725}},
                        {{2, -1, 5, 5, 0, 7},
                         {-425 / 836.0, 2759 / 1672.0, 955 / 152.0, 1541 / 836.0, 1855 / 836.0}}}) {
    std::vector<double> times{-5};
    for (std::size_t i = 1; i != row.values.size(); ++i) times.push_back(times.back() + i * i);
    for (std::size_t i = 0; i != row.middles.size(); ++i) {
      double const middle = (times[i] + times[i + 1]) / 2;  // the shape is over the index of keys
      EXPECT_NEAR(Evaluate(row.values, times, middle), row.middles[i], 1e-14) << i;
      EXPECT_EQ(Evaluate(row.values, times, times[i]), row.values[i]);
    }
    for (double const t : {times.front(), times.front() - 1, -kInfinity}) {
      EXPECT_EQ(Evaluate(row.values, times, t), row.values.front());
    }
    for (double const t : {times.back(), times.back() + 1, kInfinity, kNaN}) {
      EXPECT_EQ(Evaluate(row.values, times, t), row.values.back());
    }
  }
}

/// One key of 1 among many of 0: far from the ends each curvature is the one before, times r.
TEST(Spline, OfOneKeyAmongAThousandDiesAway) {
  std::vector<double> values(1001), times(1001);
  values[500] = 1;
  std::iota(times.begin(), times.end(), 0);
  double const root = std::sqrt(3.0), r = root - 2;
  double curvature = 12 * root - 18, middle = 0.5 - (6 - 6 * root + curvature) / 16;
  for (int i = 0; i != 400; ++i) {
    EXPECT_NEAR(Evaluate(values, times, 500.5 + i), middle, 1e-14) << i;
    EXPECT_NEAR(Evaluate(values, times, 499.5 - i), middle, 1e-14) << i;
    middle = -curvature * (1 + r) / 16;
    curvature *= r;
  }
}

TEST(Spline, OfTwoKeysAtOneTimeTheLaterCounts) {
  std::vector<double> const values{0, 1, 3, 4}, times{0, 1, 1, 2};
  EXPECT_EQ(Evaluate(values, times, 1), 3);
  EXPECT_NEAR(Evaluate(values, times, std::nextafter(1, 0)), 1, 1e-12);
}

Quaternion Negated(Quaternion const& q) { return {-q.x, -q.y, -q.z, -q.w}; }

/// How far apart two rotations are, whatever their lengths and signs; `q` has a length of 1.
double Difference(Quaternion const& p, Quaternion const& q) {
  double const length = std::sqrt(static_cast<double>(p.Dot(p)));
  double const sign = p.Dot(q) < 0 ? -1 : 1;
  double sum = 0;
  for (int i = 0; i != 4; ++i) sum += std::pow(p[i] / length - sign * q[i], 2);
  return std::sqrt(sum);
}

// Turns by up to 215 degrees about axes without a pattern, three of them with the other sign. What
// is expected was worked out in double precision, by logarithms and exponentials.
Quaternion const kKeys[] = {{0.11400670f, 0.22801341f, 0.22801341f, 0.93969263f},
                            {0.60420518f, -0.30210259f, 0.60420518f, 0.42261829f},
                            {0, 0.45962668f, -0.61283558f, -0.64278758f},
                            {-0.17393181f, 0.52179552f, 0.26089781f, 0.79335333f},
                            {-0.95371696f, 0, 0, 0.30070579f}};
struct SquadRow {
  std::size_t count;  // of the keys, at the times 0, 1, 4, 9, 16
  double t;
  Quaternion expected;
};
SquadRow const kSquads[] = {{2, 0.375, {0.3263782f, 0.0432318f, 0.4089466f, 0.8510999f}},
                            {3, 0.375, {0.3610372f, 0.0611664f, 0.4018064f, 0.8393226f}},
                            {3, 2.125, {0.4303946f, -0.4190904f, 0.6531240f, 0.4610344f}},
                            {5, 0.25, {0.2617783f, 0.1313058f, 0.3356835f, 0.8952919f}},
                            {5, 0.8, {0.5975979f, -0.2081156f, 0.5686763f, 0.5255207f}},
                            {5, 1.75, {0.5151390f, -0.4117524f, 0.6360314f, 0.4006941f}},
                            {5, 3.4, {0.1214355f, -0.5196345f, 0.6321015f, 0.5618551f}},
                            {5, 5.25, {0.0580173f, 0.2609257f, -0.5879655f, -0.7634450f}},
                            {5, 8, {0.0857018f, -0.3958630f, -0.3603445f, -0.8402973f}},
                            {5, 10.75, {-0.4092991f, 0.5271640f, 0.1663214f, 0.7258854f}},
                            {5, 14.6, {-0.9014978f, 0.1243034f, 0.0316385f, 0.4133394f}}};

TEST(Squad, EqualsTheClosedForm) {
  for (SquadRow const& row : kSquads) {
    for (bool const isNegated : {false, true}) {
      std::vector<Quaternion> keys(kKeys, kKeys + row.count);
      if (isNegated) keys[0] = Negated(keys[0]);
      std::vector<double> times;
      for (std::size_t i = 0; i != row.count; ++i) times.push_back(static_cast<double>(i * i));
      SquadInterpolator const squad(keys, Times(times));
      EXPECT_LT(Difference(squad.Evaluate(row.t), row.expected), 2e-6)
          << row.count << " keys, at " << row.t;
      for (std::size_t i = 0; i != row.count; ++i) {
        EXPECT_LT(Difference(squad.Evaluate(times[i]), keys[i]), 1e-6);
      }
      for (double const t : {times.front() - 1, -kInfinity}) {
        EXPECT_LT(Difference(squad.Evaluate(t), keys.front()), 1e-6);
      }
      for (double const t : {times.back() + 1, kInfinity, kNaN}) {
        EXPECT_LT(Difference(squad.Evaluate(t), keys.back()), 1e-6);
      }
    }
  }
}

TEST(Squad, OfEqualKeysStandsStill) {
  for (Quaternion const& last : {kKeys[1], Negated(kKeys[1])}) {
    SquadInterpolator const squad({kKeys[1], last}, Times({0, 1}));
    for (double t = -0.5; t < 1.6; t += 0.125) {
      EXPECT_LT(Difference(squad.Evaluate(t), kKeys[1]), 1e-6) << t;
    }
  }
}

}  // namespace
}  // namespace corvanta::data::animation
