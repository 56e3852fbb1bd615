#include "corvanta/data/operators/ray_picker/NRayPicker.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>
#include <utility>

#include "corvanta/core/detail/scope_exit.h"
#include "corvanta/data/domain/geometry/NGeometryNode.h"
#include "corvanta/data/operators/ray_picker/detail/state.h"
#include "corvanta/platform/debug.h"

namespace corvanta::data::operators::ray_picker {

using domain::scenegraph::NSceneGraphPath;
using domain::scenegraph::item::NSceneGraphModelNode;
using VX_Math::Box3;
using VX_Math::Matrix;
using VX_Math::Vec3;

namespace {

constexpr double kMissed = std::numeric_limits<double>::max();
constexpr double kLargestFloat = std::numeric_limits<float>::max();

constexpr std::size_t kFewRecords = 64;
constexpr std::size_t kLargestSpare = 4096;  // elements of a buffer

}  // namespace

/// The buffers of a thread's last picker, for its next one: a pick of a few records would spend
/// more on its memory than on its walk.
struct NRayPicker::State::Spare {
  std::vector<Record> records{};
  std::vector<boost::intrusive_ptr<NSceneGraphModelNode const>> models{};
  std::vector<Step> steps{};
  std::vector<Ray> rays{};
  std::vector<std::uint32_t> active{};
  std::vector<LocalRay> local{};
  std::vector<domain::scenegraph::detail::NCullingBound> bounds{};
  std::vector<domain::scenegraph::detail::NChildIndex::Child> children{};
  std::vector<Met> met{};

  void Exchange(State& state) noexcept {
    records.swap(state.records);
    models.swap(state.models);
    steps.swap(state.steps);
    rays.swap(state.rays);
    active.swap(state.active);
    local.swap(state.local);
    bounds.swap(state.bounds);
    children.swap(state.children);
    met.swap(state.met);
  }
  /// Fails: null before the first picker has ended, and when the thread ends.
  static Spare*& OfThread() noexcept {
    thread_local Spare* spare = nullptr;
    return spare;
  }
  /// Ends with the thread; what comes later finds no buffers.
  struct Owner {
    bool isOver = false;
    ~Owner() {
      isOver = true;
      delete std::exchange(OfThread(), nullptr);
    }
  };
};

NRayPicker::State::State() {
  if (Spare* const spare = Spare::OfThread()) spare->Exchange(*this);
  rays.assign(1, {});
}

NRayPicker::State::~State() {
  thread_local Spare::Owner owner;
  std::size_t largest = std::max({records.capacity(), models.capacity(), steps.capacity()});
  records.clear();
  models.clear();
  steps.clear();
  for (auto const capacity : {rays.capacity(), active.capacity(), local.capacity(),
                              bounds.capacity(), children.capacity(), met.capacity()}) {
    largest = std::max(largest, capacity);
  }
  if (largest > kLargestSpare || owner.isOver) return;
  Spare*& spare = Spare::OfThread();
  if (spare == nullptr) spare = new (std::nothrow) Spare;
  if (spare != nullptr) spare->Exchange(*this);
}

NRayPicker::NRayPicker() : m_state(new State) {}
NRayPicker::~NRayPicker() = default;

void NRayPicker::SetRay(VX_Math::Vec2 const& point, Matrix const& viewProjection) {
  float const x = 2 * point.x - 1;
  float const y = 2 * point.y - 1;
  Matrix const inverse = viewProjection.Inverse();
  State::Ray ray;
  inverse.MultVecMatrix(Vec3(x, y, 0), ray.start);
  inverse.MultVecMatrix(Vec3(x, y, 1), ray.end);
  ray.line.SetValue(ray.start, ray.end);
  m_state->rays.assign(1, ray);
}

void NRayPicker::SetRay(VX_Math::Line const& line) {
  m_state->rays.assign(1, State::Ray::Along(line));
}

void NRayPicker::SetRays(std::vector<VX_Math::Line> const& lines) {
  std::vector<State::Ray> made;
  made.reserve(lines.size());
  for (VX_Math::Line const& line : lines) {
    made.push_back(State::Ray::Along(line));
  }
  m_state->rays.swap(made);
}

void NRayPicker::SetClip(VX_Math::Vec2 const& clip) { m_state->clip = clip; }

void NRayPicker::SetSpace(Box3 const& space) { m_state->space = space; }

void NRayPicker::SetPlane(VX_Math::Plane const& plane) {
  m_state->plane = plane;
  for (State::Ray& ray : m_state->rays) {
    ray.planeDistance = kLargestFloat;
    Vec3 hit;
    if (!plane.Intersect(ray.start, ray.end, hit)) continue;
    if (&ray == &m_state->rays.front()) m_state->planeHit = hit;
    ray.planeDistance = (hit - ray.line.GetOrigin()).Length();
  }
}

void NRayPicker::SetPickInArea(bool isInArea) { m_state->isInArea = isInArea; }

void NRayPicker::SetPickFromPlane(bool isFromPlane) { m_state->isFromPlane = isFromPlane; }

void NRayPicker::SortWithDistance() {
  auto& records = m_state->records;
  std::erase_if(records, [](PickRecord const& record) { return record.distance == kMissed; });
  auto const precedes = [](auto const& a, auto const& b) {
    if (a.ray != b.ray) return a.ray < b.ray;
    return a.distance == b.distance ? a.place < b.place : a.distance < b.distance;
  };
  if (records.size() <= kFewRecords) {
    std::sort(records.begin(), records.end(), precedes);
    return;
  }
  // Many records move once.
  struct Key {
    std::uint32_t ray, index;
    double distance;
    std::uint64_t place;
  };
  std::vector<Key> keys;
  keys.reserve(records.size());
  for (State::Record const& record : records) {
    keys.push_back(
        {record.ray, static_cast<std::uint32_t>(keys.size()), record.distance, record.place});
  }
  std::sort(keys.begin(), keys.end(), precedes);
  std::vector<State::Record> sorted;
  sorted.reserve(records.size());
  for (Key const& key : keys) sorted.push_back(std::move(records[key.index]));
  records.swap(sorted);
}

void NRayPicker::CheckDetail() {
  // By position: reading a geometry may reach a listener.
  for (std::size_t i = 0; i < m_state->records.size(); ++i) {
    auto const geometry = m_state->records[i].model->GetGeometryNode();
    State::Record& record = m_state->records[i];
    m_state->planeDistance = m_state->rays[record.ray].planeDistance;
    double t = kMissed;
    bool const isHit =
        QueryIntersectionGeometry(record.origin, record.direction, record.matrix, geometry, t);
    record.distance = kMissed;
    if (!isHit || t < 0) continue;
    Vec3 const local = record.origin + record.direction * static_cast<float>(t);
    Vec3 global;
    record.matrix.MultVecMatrix(local, global);
    if (!IsFinite(local) || !IsFinite(global)) continue;
    record.distance = t;
    record.localHit = local;
    record.absHit = global;
  }
  SortWithDistance();
}

std::vector<bool> NRayPicker::FindBlocked(std::vector<double> const& distances) {
  SortWithDistance();
  std::vector<bool> isBlocked(m_state->rays.size(), false);
  m_state->isAhead = true;
  core::detail::ScopeExit const reset([this] { m_state->isAhead = false; });
  for (std::size_t i = 0; i < m_state->records.size(); ++i) {
    std::uint32_t const ray = m_state->records[i].ray;
    if (isBlocked[ray] || m_state->records[i].distance > distances[ray]) continue;
    auto const geometry = m_state->records[i].model->GetGeometryNode();
    PickRecord const& record = m_state->records[i];
    double t = kMissed;
    isBlocked[ray] =
        QueryIntersectionGeometry(record.origin, record.direction, record.matrix, geometry, t) &&
        t < distances[ray];
  }
  return isBlocked;
}

void NRayPicker::DebugOutPut() const {
  platform::OutputDebugString(L"PickBB\n");
  for (PickRecord const& record : m_state->records) {
    platform::OutputDebugString(record.model->GetName());
    platform::OutputDebugString(L"\n");
  }
}

unsigned long NRayPicker::GetPickCount() const { return m_state->records.size(); }

NSceneGraphModelNode const* NRayPicker::GetModelNode(unsigned long index) const {
  return m_state->records[index].model;
}

NSceneGraphPath<NSceneGraphModelNode> const NRayPicker::GetItemPath(unsigned long index) const {
  if (!m_state->tree) return {};
  PickRecord const& record = m_state->records[index];
  return {*record.model, *m_state->tree, record.checkPoints};
}

domain::scenegraph::NCheckPoints const& NRayPicker::GetCheckPoints(unsigned long index) const {
  return m_state->records[index].checkPoints;
}

unsigned long NRayPicker::GetRayIndex(unsigned long index) const {
  return m_state->records[index].ray;
}

double NRayPicker::GetDistance(unsigned long index) const {
  return m_state->records[index].distance;
}

Vec3 NRayPicker::GetAbsHitPoint(unsigned long index) const {
  return m_state->records[index].absHit;
}

Vec3 NRayPicker::GetLocalHitPoint(unsigned long index) const {
  return m_state->records[index].localHit;
}

Vec3 const& NRayPicker::GetPlaneHit() const { return m_state->planeHit; }

}  // namespace corvanta::data::operators::ray_picker
