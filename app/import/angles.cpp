#include "app/import/angles.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace corvanta::app {

namespace {

using Angles = std::array<double, 3>;  // radians
using Turn = std::array<double, 4>;

constexpr double kPi = std::numbers::pi;
constexpr double kDegree = kPi / 180.0;
constexpr double kTolerance = kTurnTolerance * kDegree;
constexpr int kDeepest = 16;  // halvings between two keys

double Dot(Turn const& a, Turn const& b) {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2] + a[3] * b[3];
}

// The shorter arc.
Turn Slerp(Turn const& a, Turn const& b, double t) {
  double const dot = Dot(a, b);
  double const angle = std::acos(std::min(std::abs(dot), 1.0));
  double const sine = std::sin(angle);
  bool const isTiny = sine < 1e-9;
  double const weightA = isTiny ? 1.0 - t : std::sin((1.0 - t) * angle) / sine;
  double const weightB = (isTiny ? t : std::sin(t * angle) / sine) * (dot < 0.0 ? -1.0 : 1.0);
  Turn result;
  for (std::size_t i = 0; i != 4; ++i) result[i] = weightA * a[i] + weightB * b[i];
  return result;
}

Turn ToTurn(Angles const& angles) {
  double const sx = std::sin(angles[0] / 2), cx = std::cos(angles[0] / 2);
  double const sy = std::sin(angles[1] / 2), cy = std::cos(angles[1] / 2);
  double const sz = std::sin(angles[2] / 2), cz = std::cos(angles[2] / 2);
  return {sx * cy * cz - cx * sy * sz, cx * sy * cz + sx * cy * sz, cx * cy * sz - sx * sy * cz,
          cx * cy * cz + sx * sy * sz};
}

// Adds whole turns.
double Near(double angle, double before) {
  return angle - 2.0 * kPi * std::round((angle - before) / (2.0 * kPi));
}

Angles Near(Angles const& angles, Angles const& before) {
  return {Near(angles[0], before[0]), Near(angles[1], before[1]), Near(angles[2], before[2])};
}

double Distance(Angles const& a, Angles const& b) {
  return std::abs(a[0] - b[0]) + std::abs(a[1] - b[1]) + std::abs(a[2] - b[2]);
}

Angles ToAngles(Turn const& turn, Angles const& before) {
  auto const [x, y, z, w] = turn;
  // Where the axes go: elements of the rotation matrix, rows as images of the axes.
  double const xx = 1.0 - 2.0 * (y * y + z * z), xy = 2.0 * (x * y + w * z);
  double const xz = 2.0 * (x * z - w * y);
  double const yx = 2.0 * (x * y - w * z), yy = 1.0 - 2.0 * (x * x + z * z);
  double const yz = 2.0 * (y * z + w * x), zz = 1.0 - 2.0 * (x * x + y * y);
  double const cosine = std::hypot(xx, xy);
  Angles angles{0.0, std::atan2(-xz, cosine), 0.0};
  if (cosine < 1e-5) {
    // At the pole only the sum or the difference of the other two counts: the first stays.
    angles[0] = before[0];
    angles[2] = xz < 0.0 ? before[0] - std::atan2(yx, yy) : std::atan2(-yx, yy) - before[0];
  } else {
    angles[0] = std::atan2(yz, zz);
    angles[2] = std::atan2(xy, xx);
  }
  Angles const one = Near(angles, before);
  Angles const other = Near({angles[0] + kPi, kPi - angles[1], angles[2] + kPi}, before);
  return Distance(other, before) < Distance(one, before) ? other : one;
}

class Unroller {
 public:
  Unroller(NTripleKeys& out, Angles const& before) : m_out(out), m_last(before) {}

  void Begin(NKey<4> const& key) { Add(key.time, ToAngles(key.values, m_last)); }

  void GoOn(NKey<4> const& from, NKey<4> const& to, int depth) {
    Angles const angles = ToAngles(to.values, m_last);
    double const middle = from.time + (to.time - from.time) / 2;
    bool const isParted = middle > from.time && middle < to.time;
    if (depth == kDeepest || !isParted || IsOnArc(from.values, to.values, angles)) {
      Add(to.time, angles);
      return;
    }
    NKey<4> const between{middle, Slerp(from.values, to.values, 0.5)};
    GoOn(from, between, depth + 1);
    GoOn(between, to, depth + 1);
  }

 private:
  // Whether the straight line to `angles` stays at the arc.
  bool IsOnArc(Turn const& from, Turn const& to, Angles const& angles) const {
    double const way = Distance(m_last, angles);
    // The axis turns no faster than the angles change, and so the rest is at most a parabola.
    if (way * way <= 8.0 * kTolerance) return true;
    constexpr int kParts = 6;
    double const nearest = std::cos(kTolerance / 2);
    for (int i = 1; i != kParts; ++i) {
      double const t = static_cast<double>(i) / kParts;
      Angles line;
      for (std::size_t k = 0; k != 3; ++k) line[k] = m_last[k] + t * (angles[k] - m_last[k]);
      if (std::abs(Dot(ToTurn(line), Slerp(from, to, t))) < nearest) return false;
    }
    return true;
  }

  void Add(double time, Angles const& angles) {
    m_last = angles;
    m_out.push_back({time, {angles[0] / kDegree, angles[1] / kDegree, angles[2] / kDegree}});
  }

  NTripleKeys& m_out;
  Angles m_last;
};

}  // namespace

NTripleKeys ToAngles(NTurnKeys const& keys, std::array<double, 3> const& before) {
  NTripleKeys result;
  if (keys.empty()) return result;
  result.reserve(keys.size());
  Unroller unroller(result, {before[0] * kDegree, before[1] * kDegree, before[2] * kDegree});
  unroller.Begin(keys.front());
  for (std::size_t i = 1; i != keys.size(); ++i) unroller.GoOn(keys[i - 1], keys[i], 0);
  return result;
}

}  // namespace corvanta::app
