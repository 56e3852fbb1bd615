#include "tests/support/test.h"

namespace corvanta::data::animation {
namespace {

using Spline = CubicSplineInterpolator<double, double>;

boost::shared_ptr<std::vector<double>> Times(std::vector<double> const& times) {
  return boost::make_shared<std::vector<double>>(times);
}

/// The knot position of a time, by walking the times in extended precision.
long double KnotOf(std::vector<double> const& times, double t) {
  if (t < times.front()) return 0;
  for (std::size_t i = 0; i + 1 != times.size(); ++i) {
    if (t < times[i + 1]) {
      return (static_cast<long double>(t) - times[i]) /
                 (static_cast<long double>(times[i + 1]) - times[i]) +
             i;
    }
  }
  return times.size() - 1;
}

/// A natural cubic spline over the knots 0, 1, 2, ... in extended precision, by the slopes at the
/// knots, which make the curvatures of both sides agree; pieces in Hermite's form.
class SlopeSpline {
 public:
  explicit SlopeSpline(std::vector<double> const& values) : y(values.begin(), values.end()) {
    std::size_t const n = y.size();
    std::vector<long double> diagonal(n, 4), right(n);
    diagonal.front() = diagonal.back() = 2;
    for (std::size_t i = 0; i != n; ++i) {
      right[i] = 3 * (y[std::min(i + 1, n - 1)] - y[i == 0 ? 0 : i - 1]);
    }
    for (std::size_t i = 1; i != n; ++i) {
      right[i] -= right[i - 1] / diagonal[i - 1];
      diagonal[i] -= 1 / diagonal[i - 1];
    }
    slopes.resize(n);
    for (std::size_t i = n; i-- != 0;) {
      slopes[i] = (right[i] - (i + 1 == n ? 0 : slopes[i + 1])) / diagonal[i];
    }
  }

  long double operator()(long double knot) const {
    auto const k = std::min(static_cast<std::size_t>(knot), y.size() - 2);
    long double const s = knot - k, r = 1 - s;
    return r * r * (1 + 2 * s) * y[k] + s * s * (1 + 2 * r) * y[k + 1] +
           s * r * (r * slopes[k] - s * slopes[k + 1]);
  }

 private:
  std::vector<long double> y, slopes;
};

TEST(Spline, EqualsOneSolvedInExtendedPrecision) {
  std::mt19937 random(3);
  std::uniform_real_distribution<double> value(-100.0, 100.0);
  for (std::size_t const n : {2u, 3u, 4u, 17u, 1000u}) {
    std::vector<double> times, values;
    double time = -5.0;
    for (std::size_t i = 0; i != n; ++i) {
      times.push_back(time);
      values.push_back(value(random));
      // Two keys at one time every now and then, and far ones.
      if (i % 5 != 3) time += i % 7 == 2 ? 40.0 : std::abs(value(random)) / 100.0;
    }
    Spline const spline(values, Times(times));
    SlopeSpline const oracle(values);
    std::uniform_real_distribution<double> between(times.front() - 1.0, times.back() + 1.0);
    for (int i = 0; i != 2000; ++i) {
      double const t = between(random);
      ASSERT_NEAR(spline.Evaluate(t), static_cast<double>(oracle(KnotOf(times, t))), 1e-8)
          << n << " keys, at " << t;
    }
    for (std::size_t i = 0; i != n; ++i) {
      bool const isLast = i + 1 == n || times[i + 1] > times[i];
      ASSERT_EQ(spline.Evaluate(times[i]), values[isLast ? i : i + 1]);
    }
    for (double const t : {times.front() - 1.0, -kInfinity}) {
      EXPECT_EQ(spline.Evaluate(t), values.front());
    }
    for (double const t : {times.back() + 1.0, kInfinity, kNaN}) {
      EXPECT_EQ(spline.Evaluate(t), values.back());
    }
  }
}

TEST(Spline, ShapeIsOverTheIndexOfKeys) {
  // By hand: the one inner curvature of 0, 1, 0 is -3.
  Spline const late({0.0, 1.0, 0.0}, Times({0.0, 1.0, 3.0}));
  Spline const early({0.0, 1.0, 0.0}, Times({0.0, 2.0, 3.0}));
  EXPECT_DOUBLE_EQ(late.Evaluate(2.0), 0.6875);  // knot 1.5: 0.5 + 0.375 * 3 / 6
  EXPECT_DOUBLE_EQ(early.Evaluate(1.0), 0.6875);
  EXPECT_EQ(early.Evaluate(2.0), 1.0);
  Spline const line({2.0, 6.0}, Times({-1.0, 3.0}));
  EXPECT_EQ(line.Evaluate(1.0), 4.0);
}

/// Rotations in extended precision, for the closed form.
using Versor = std::array<long double, 4>;  // x y z w

Versor Widen(Quaternion const& q) { return {q.x, q.y, q.z, q.w}; }
Versor Mix(Versor const& p, long double a, Versor const& q, long double b) {
  return {p[0] * a + q[0] * b, p[1] * a + q[1] * b, p[2] * a + q[2] * b, p[3] * a + q[3] * b};
}
long double Dot(Versor const& p, Versor const& q) {
  return p[0] * q[0] + p[1] * q[1] + p[2] * q[2] + p[3] * q[3];
}
Versor Times(Versor const& p, Versor const& q) {
  return {p[3] * q[0] + p[0] * q[3] + p[1] * q[2] - p[2] * q[1],
          p[3] * q[1] - p[0] * q[2] + p[1] * q[3] + p[2] * q[0],
          p[3] * q[2] + p[0] * q[1] - p[1] * q[0] + p[2] * q[3],
          p[3] * q[3] - p[0] * q[0] - p[1] * q[1] - p[2] * q[2]};
}
Versor Log(Versor const& q) {
  long double const sine = std::sqrt(q[0] * q[0] + q[1] * q[1] + q[2] * q[2]);
  long double const f = sine == 0 ? 1 : std::atan2(sine, q[3]) / sine;
  return {q[0] * f, q[1] * f, q[2] * f, 0};
}
Versor Exp(Versor const& v) {
  long double const angle = std::sqrt(Dot(v, v));
  long double const f = angle == 0 ? 1 : std::sin(angle) / angle;
  return {v[0] * f, v[1] * f, v[2] * f, std::cos(angle)};
}
Versor Nearer(Versor const& q, Versor const& to) { return Mix(q, Dot(q, to) < 0 ? -1 : 1, q, 0); }
long double Angle(Versor const& p, Versor const& q) {
  return std::acos(std::clamp(Dot(p, q), -1.0L, 1.0L));
}
Versor Slerp(Versor const& p, Versor const& q, long double s, long double angle) {
  long double const sine = std::sin(angle);
  if (std::abs(sine) < 1e-6L) return Mix(p, 1 - s, q, s);
  return Mix(p, std::sin((1 - s) * angle) / sine, q, std::sin(s * angle) / sine);
}
Versor Control(Versor const& before, Versor const& key, Versor const& after) {
  Versor const inverse{-key[0], -key[1], -key[2], key[3]};
  Versor const sum = Mix(Log(Times(inverse, after)), -0.25L, Log(Times(inverse, before)), -0.25L);
  return Times(key, Exp(sum));
}
Versor Squad(Versor const& q0, Versor const& q1, Versor const& q2, Versor const& q3,
             long double s) {
  Versor const c = Nearer(q2, q1);
  Versor const a = Control(Nearer(q0, q1), q1, c);
  Versor const b = Control(q1, c, Nearer(q3, c));
  Versor const outer = Slerp(a, b, s, Angle(a, q1) + Angle(c, q1) + Angle(b, c));
  Versor const inner = Slerp(q1, c, s, Angle(c, q1));
  Versor const near = Nearer(outer, inner);
  return Slerp(inner, near, 2 * s * (1 - s), Angle(inner, near));
}

/// The angle of the turn from one rotation to the other, whatever their lengths and signs.
double Difference(Versor const& p, Versor const& q) {
  return static_cast<double>(
      2 * std::acos(std::min(1.0L, std::abs(Dot(p, q)) / std::sqrt(Dot(p, p) * Dot(q, q)))));
}

TEST(Squad, EqualsTheClosedForm) {
  std::mt19937 random(5);
  std::uniform_real_distribution<float> turn(-110.0f, 110.0f);
  for (std::size_t const n : {2u, 3u, 5u, 100u}) {
    std::vector<Quaternion> keys;
    std::vector<double> times;
    Vec3 angles;
    for (std::size_t i = 0; i != n; ++i) {
      angles += {turn(random), 0.5f * turn(random), turn(random)};
      Quaternion q = VX_Math::CreateQuaternion(angles, false);
      if (random() % 2 == 0) q = {-q.x, -q.y, -q.z, -q.w};
      keys.push_back(q);
      times.push_back(static_cast<double>(i * i));
    }
    SquadInterpolator const squad(keys, Times(times));
    std::uniform_real_distribution<double> between(times.front(), times.back());
    for (int i = 0; i != 500; ++i) {
      double const t = between(random);
      long double const knot = KnotOf(times, t);
      auto const k = std::min(static_cast<std::size_t>(knot), n - 2);
      Versor const expected =
          Squad(Widen(keys[k == 0 ? 0 : k - 1]), Widen(keys[k]), Widen(keys[k + 1]),
                Widen(keys[std::min(k + 2, n - 1)]), knot - k);
      ASSERT_LT(Difference(Widen(squad.Evaluate(t)), expected), 2e-5) << n << " keys, at " << t;
    }
    for (std::size_t i = 0; i != n; ++i) {
      EXPECT_LT(Difference(Widen(squad.Evaluate(times[i])), Widen(keys[i])), 1e-6);
    }
    for (double const t : {times.front() - 1.0, -kInfinity}) {
      EXPECT_LT(Difference(Widen(squad.Evaluate(t)), Widen(keys.front())), 1e-6);
    }
    for (double const t : {times.back() + 1.0, kInfinity, kNaN}) {
      EXPECT_LT(Difference(Widen(squad.Evaluate(t)), Widen(keys.back())), 1e-6);
    }
  }
}

TEST(Squad, OfEqualKeysStandsStill) {
  Quaternion const q = VX_Math::CreateQuaternion({20.0f, 130.0f, -70.0f}, false);
  Quaternion const opposite{-q.x, -q.y, -q.z, -q.w};
  for (Quaternion const& last : {q, opposite}) {
    SquadInterpolator const squad({q, last}, Times({0.0, 1.0}));
    for (double t = -0.5; t < 1.6; t += 0.125) {
      EXPECT_LT(Difference(Widen(squad.Evaluate(t)), Widen(q)), 1e-6) << t;
    }
  }
}

}  // namespace
}  // namespace corvanta::data::animation
