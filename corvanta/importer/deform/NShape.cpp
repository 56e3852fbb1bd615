#include "corvanta/importer/deform/NShape.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>

#include "corvanta/importer/numbering.h"

namespace corvanta::importer {

namespace {

using data::structs::XYZ;
using neutral::NTriple;
using VX_Math::Matrix;

// Files hold weights as bytes, too, of which four are rounded.
constexpr double kWeightTolerance = 0.01;

neutral::NTriple ToTriple(XYZ const& v) { return {v.x, v.y, v.z}; }

XYZ Cross(float const* a, float const* b) {
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

void Add(XYZ& to, NTriple const& offset, float weight) {
  to.x += weight * offset[0];
  to.y += weight * offset[1];
  to.z += weight * offset[2];
}

// Fails: false, and no change, for what has no direction.
bool SetDirection(XYZ const& v, float* to) {
  float const length = std::sqrt(v.x * v.x + v.y * v.y + v.z * v.z);
  if (!(length > 0.0f) || !std::isfinite(length)) return false;
  float const scale = 1.0f / length;
  to[0] = v.x * scale;
  to[1] = v.y * scale;
  to[2] = v.z * scale;
  return true;
}

// What a matrix does to normals, but for their length.
struct NormalTransform {
  explicit NormalTransform(Matrix const& m)
      : x(Cross(m[1], m[2])), y(Cross(m[2], m[0])), z(Cross(m[0], m[1])) {
    isMirrored = m[0][0] * x.x + m[0][1] * x.y + m[0][2] * x.z < 0.0f;
  }
  XYZ operator()(XYZ const& n) const {
    float const sign = isMirrored ? -1.0f : 1.0f;
    return {sign * (n.x * x.x + n.y * y.x + n.z * z.x), sign * (n.x * x.y + n.y * y.y + n.z * z.y),
            sign * (n.x * x.z + n.y * y.z + n.z * z.z)};
  }

  XYZ x, y, z;
  bool isMirrored;
};

// Where the things that belong to each of `count` others begin; `getOwner` tells of each.
template <class Start, class Things, class GetOwner>
std::vector<Start> CountStarts(Things const& things, std::size_t count, GetOwner const& getOwner) {
  std::vector<Start> starts(count + 1);
  for (auto const& thing : things) ++starts[getOwner(thing) + 1];
  std::partial_sum(starts.begin(), starts.end(), starts.begin());
  return starts;
}

}  // namespace

NShape::NShape(neutral::NSceneView const& scene, neutral::NMesh const& mesh,
               data::domain::geometry::NSurface const& surface,
               std::vector<std::uint32_t> const& vertices, bool isFaceted)
    : m_coords(surface.GetCoords()), m_normals(surface.GetNormals()) {
  m_placeStarts = CountStarts<std::uint32_t>(vertices, mesh.positions.count,
                                             [](std::uint32_t vertex) { return vertex; });
  m_places.resize(vertices.size());
  auto next = m_placeStarts;
  for (std::uint32_t i = 0; i != vertices.size(); ++i) m_places[next[vertices[i]]++] = i;
  ReadInfluences(scene, mesh);
  ReadTargets(scene, mesh);
  if (mesh.normals.count != 0) return;
  m_indices = surface.GetIndices();
  FindGroups(isFaceted);
}

void NShape::ReadInfluences(neutral::NSceneView const& scene, neutral::NMesh const& mesh) {
  auto const source = scene.Get(mesh.influences);
  if (source.empty()) return;
  m_influenceStarts = CountStarts<std::size_t>(
      source, mesh.positions.count,
      [](neutral::NInfluence const& influence) { return influence.vertex; });
  m_influences.resize(source.size());
  auto next = m_influenceStarts;
  std::vector<double> sums(mesh.positions.count);
  for (neutral::NInfluence const& influence : source) {
    m_influences[next[influence.vertex]++] = {influence.joint, influence.weight};
    sums[influence.vertex] += influence.weight;
    m_jointCount = std::max(m_jointCount, std::size_t{influence.joint} + 1);
  }
  m_isUneven = std::any_of(sums.begin(), sums.end(), [](double sum) {
    return sum != 0.0 && std::abs(sum - 1.0) > kWeightTolerance;
  });
}

void NShape::ReadTargets(neutral::NSceneView const& scene, neutral::NMesh const& mesh) {
  for (neutral::NMorphTarget const& target : scene.Get(mesh.targets)) {
    auto const offsets = scene.Get(target.offsets);
    m_targets.emplace_back(offsets.begin(), offsets.end());
  }
}

void NShape::FindGroups(bool isFaceted) {
  NNumbering groups(m_coords.size());
  std::vector<std::uint32_t> firsts;
  m_groupCount = m_coords.size() / 3;
  for (std::uint32_t i = 0; isFaceted && i != m_coords.size(); ++i) m_groups.push_back(i / 3);
  if (isFaceted) return;
  for (std::uint32_t i = 0; i != m_coords.size(); ++i) {
    NTriple const coord = ToTriple(m_coords[i]), normal = ToTriple(m_normals[i]);
    auto const [group, isNew] = groups.Take(Mix(Mix(0, coord), normal), [&](std::uint32_t known) {
      return ToTriple(m_coords[firsts[known]]) == coord &&
             ToTriple(m_normals[firsts[known]]) == normal;
    });
    if (isNew) firsts.push_back(i);
    m_groups.push_back(group);
  }
  m_groupCount = groups.GetCount();
}

NShape::Added NShape::Morph(std::span<float const> weights) const {
  Added added;
  for (std::size_t i = 0; i != std::min(weights.size(), m_targets.size()); ++i) {
    if (weights[i] == 0.0f) continue;
    added.positions.resize(m_placeStarts.size() - 1);
    added.normals.resize(m_placeStarts.size() - 1);
    for (neutral::NOffset const& offset : m_targets[i]) {
      Add(added.positions[offset.vertex], offset.position, weights[i]);
      Add(added.normals[offset.vertex], offset.normal, weights[i]);
    }
  }
  return added;
}

Matrix NShape::Blend(std::size_t vertex, std::span<Matrix const> joints) const {
  std::array<float, 16> sum{};  // which nothing else can be, so that the loops become a few adds
  for (std::size_t i = m_influenceStarts[vertex]; i != m_influenceStarts[vertex + 1]; ++i) {
    if (m_influences[i].joint >= joints.size()) continue;
    float const* const joint = joints[m_influences[i].joint].data();
    float const weight = m_influences[i].weight;
    for (std::size_t k = 0; k != 16; ++k) sum[k] += weight * joint[k];
  }
  // The last number of an affine matrix is 1, so that this is the sum of the weights.
  float const whole = sum[15];
  if (whole == 0.0f) return Matrix();
  if (whole != 1.0f) {
    for (float& number : sum) number /= whole;
  }
  Matrix matrix;
  std::copy(sum.begin(), sum.end(), matrix.data());
  return matrix;
}

NShape::Arrays NShape::Evaluate(std::span<Matrix const> joints,
                                std::span<float const> weights) const {
  std::size_t const count = m_placeStarts.size() - 1;
  bool const isSkinned = !m_influenceStarts.empty() && !joints.empty();
  Added const added = Morph(weights);
  Arrays arrays{std::vector<float>(3 * m_coords.size()), std::vector<float>(3 * m_coords.size())};
  std::vector<bool> isMirrored(m_groups.empty() ? 0 : m_coords.size());
  for (std::size_t vertex = 0; vertex != count; ++vertex) {
    if (m_placeStarts[vertex] == m_placeStarts[vertex + 1]) continue;
    Matrix const matrix = isSkinned ? Blend(vertex, joints) : Matrix();
    NormalTransform const turn(matrix);
    for (std::size_t i = m_placeStarts[vertex]; i != m_placeStarts[vertex + 1]; ++i) {
      std::uint32_t const place = m_places[i];
      XYZ coord = m_coords[place], normal = m_normals[place];
      float* const outNormal = &arrays.normals[3 * std::size_t{place}];
      if (!added.positions.empty()) {
        Add(coord, ToTriple(added.positions[vertex]), 1.0f);
        Add(normal, ToTriple(added.normals[vertex]), 1.0f);
      }
      for (int k = 0; k != 3; ++k) {
        arrays.coords[3 * std::size_t{place} + static_cast<std::size_t>(k)] =
            coord.x * matrix(0, k) + coord.y * matrix(1, k) + coord.z * matrix(2, k) + matrix(3, k);
      }
      bool const hasDirection = SetDirection(isSkinned ? turn(normal) : normal, outNormal);
      if (!hasDirection) SetDirection(m_normals[place], outNormal);
      if (!isMirrored.empty()) isMirrored[place] = turn.isMirrored;
    }
  }
  if (!m_groups.empty()) WorkOutNormals(arrays, isMirrored);
  return arrays;
}

void NShape::WorkOutNormals(Arrays& arrays, std::vector<bool> const& isMirrored) const {
  std::vector<XYZ> sums(m_groupCount);
  for (std::size_t i = 0; i + 2 < m_indices.size(); i += 3) {
    float const* const a = &arrays.coords[3 * std::size_t{m_indices[i]}];
    float const* const b = &arrays.coords[3 * std::size_t{m_indices[i + 1]}];
    float const* const c = &arrays.coords[3 * std::size_t{m_indices[i + 2]}];
    float const ab[] = {b[0] - a[0], b[1] - a[1], b[2] - a[2]};
    float const ac[] = {c[0] - a[0], c[1] - a[1], c[2] - a[2]};
    // A mirrored face is wound the other way.
    XYZ const normal = isMirrored[m_indices[i]] ? Cross(ac, ab) : Cross(ab, ac);
    for (std::size_t k = i; k != i + 3; ++k) {
      Add(sums[m_groups[m_indices[k]]], ToTriple(normal), 1.0f);
    }
  }
  for (std::size_t i = 0; i != m_groups.size(); ++i) {
    SetDirection(sums[m_groups[i]], &arrays.normals[3 * i]);
  }
}

}  // namespace corvanta::importer
