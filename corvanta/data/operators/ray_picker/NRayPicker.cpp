#include "corvanta/data/operators/ray_picker/NRayPicker.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>
#include <utility>

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

constexpr std::size_t kLargestSpare = 1024;  // elements of a buffer

}  // namespace

/// The buffers of a thread's last picker, for its next one: a pick of a few records would spend
/// more on its memory than on its walk.
struct NRayPicker::State::Spare {
  std::vector<Record> records{};
  std::vector<boost::intrusive_ptr<NSceneGraphModelNode const>> models{};
  std::vector<Step> steps{};
  std::vector<domain::scenegraph::detail::NChildIndex::Child> met{};

  void Exchange(State& state) noexcept {
    records.swap(state.records);
    models.swap(state.models);
    steps.swap(state.steps);
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
}

NRayPicker::State::~State() {
  thread_local Spare::Owner owner;
  std::size_t const largest =
      std::max({records.capacity(), models.capacity(), steps.capacity(), met.capacity()});
  records.clear();
  models.clear();
  steps.clear();
  met.clear();
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
  inverse.MultVecMatrix(Vec3(x, y, 0), m_state->rayStart);
  inverse.MultVecMatrix(Vec3(x, y, 1), m_state->rayEnd);
  m_state->ray.SetValue(m_state->rayStart, m_state->rayEnd);
}

void NRayPicker::SetRay(VX_Math::Line const& line) {
  m_state->ray = line;
  m_state->rayStart = line.GetOrigin();
  m_state->rayEnd = line.GetOrigin() + line.GetDirection() * std::numeric_limits<float>::max();
}

void NRayPicker::SetClip(VX_Math::Vec2 const& clip) { m_state->clip = clip; }

void NRayPicker::SetSpace(Box3 const& space) { m_state->space = space; }

void NRayPicker::SetPlane(VX_Math::Plane const& plane) {
  m_state->plane = plane;
  m_state->planeDistance = kLargestFloat;
  Vec3 hit;
  if (plane.Intersect(m_state->rayStart, m_state->rayEnd, hit)) {
    m_state->planeHit = hit;
    m_state->planeDistance = (hit - m_state->ray.GetOrigin()).Length();
  }
}

void NRayPicker::SetPickInArea(bool isInArea) { m_state->isInArea = isInArea; }

void NRayPicker::SetPickFromPlane(bool isFromPlane) { m_state->isFromPlane = isFromPlane; }

void NRayPicker::SortWithDistance() {
  auto& records = m_state->records;
  std::sort(records.begin(), records.end(), [](State::Record const& a, State::Record const& b) {
    return a.distance == b.distance ? a.place < b.place : a.distance < b.distance;
  });
  std::erase_if(records, [](PickRecord const& record) { return record.distance == kMissed; });
}

void NRayPicker::CheckDetail() {
  // By position: reading a geometry may reach a listener.
  for (std::size_t i = 0; i < m_state->records.size(); ++i) {
    auto const geometry = m_state->records[i].model->GetGeometryNode();
    PickRecord& record = m_state->records[i];
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
