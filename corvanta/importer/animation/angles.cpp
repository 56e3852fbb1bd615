#include "corvanta/importer/animation/angles.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace corvanta::importer {

namespace {

using Angles = std::array<double, 3>;  // radians
using Turn = std::array<double, 4>;

constexpr double kPi = std::numbers::pi;
constexpr double kDegree = kPi / 180.0;
constexpr double kTolerance = kTurnTolerance * kDegree;
constexpr int kMostHalvings = 16;  // halvings between two keys

double Dot(Turn const& a, Turn const& b) {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2] + a[3] * b[3];
}

// The shorter arc from one rotation to another.
class Arc {
 public:
  Arc(Turn const& a, Turn const& b) : m_a(a), m_b(b) {
    double const dot = Dot(a, b);
    m_sign = dot < 0.0 ? -1.0 : 1.0;
    m_angle = std::acos(std::min(std::abs(dot), 1.0));
    m_sine = std::sin(m_angle);
  }

  Turn At(double t) const {
    bool const isTiny = m_sine < 1e-9;
    double const weightA = isTiny ? 1.0 - t : std::sin((1.0 - t) * m_angle) / m_sine;
    double const weightB = m_sign * (isTiny ? t : std::sin(t * m_angle) / m_sine);
    Turn turn;
    for (std::size_t i = 0; i != 4; ++i) turn[i] = weightA * m_a[i] + weightB * m_b[i];
    return turn;
  }

 private:
  Turn const& m_a;
  Turn const& m_b;
  double m_sign, m_angle, m_sine;
};

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
  Unroller(NTripleKeys& out, Angles const& before, NEffort& effort)
      : m_out(out), m_last(before), m_effort(effort) {}

  void Begin(NKey<4> const& key) { Add(key.time, ToAngles(key.values, m_last)); }

  void GoOn(NKey<4> const& from, NKey<4> const& to, int depth) {
    Angles const angles = ToAngles(to.values, m_last);
    double const middle = from.time + (to.time - from.time) / 2;
    bool const isParted = middle > from.time && middle < to.time;
    Arc const arc(from.values, to.values);
    if (depth == kMostHalvings || !isParted || IsOnArc(arc, angles)) {
      Add(to.time, angles);
      return;
    }
    NKey<4> const between{middle, arc.At(0.5)};
    GoOn(from, between, depth + 1);
    GoOn(between, to, depth + 1);
  }

 private:
  // Whether the straight line to `angles` stays at the arc.
  bool IsOnArc(Arc const& arc, Angles const& angles) const {
    double const x = std::abs(angles[0] - m_last[0]);
    double const y = std::abs(angles[1] - m_last[1]);
    double const z = std::abs(angles[2] - m_last[2]);
    // The angular velocity changes by no more than these products, and what strays with that
    // acceleration, between fixed ends that are less than half a turn apart, by a sixth of it.
    bool const isShort = x + y + z < 3.0;
    if (isShort && (x * y + y * z + z * x) / 5.9 <= kTolerance) return true;
    double const nearest = std::cos(kTolerance / 2);
    for (double const t : {1.0 / 2, 1.0 / 3, 2.0 / 3, 1.0 / 6, 5.0 / 6}) {
      Angles line;
      for (std::size_t k = 0; k != 3; ++k) line[k] = m_last[k] + t * (angles[k] - m_last[k]);
      if (std::abs(Dot(ToTurn(line), arc.At(t))) < nearest) return false;
    }
    return true;
  }

  void Add(double time, Angles const& angles) {
    m_effort.AddKeys(1);
    m_last = angles;
    m_out.push_back({time, {angles[0] / kDegree, angles[1] / kDegree, angles[2] / kDegree}});
  }

  NTripleKeys& m_out;
  Angles m_last;
  NEffort& m_effort;
};

}  // namespace

NTripleKeys ToAngles(NTurnKeys const& keys, std::array<double, 3> const& before, NEffort& effort) {
  NTripleKeys result;
  if (keys.empty()) return result;
  result.reserve(keys.size());
  Unroller unroller(result, {before[0] * kDegree, before[1] * kDegree, before[2] * kDegree},
                    effort);
  unroller.Begin(keys.front());
  for (std::size_t i = 1; i != keys.size(); ++i) unroller.GoOn(keys[i - 1], keys[i], 0);
  return result;
}

}  // namespace corvanta::importer
