#include "corvanta/data/domain/geometry/NSurface.h"

#include <algorithm>
#include <atomic>
#include <limits>
#include <set>
#include <utility>

#include "corvanta/core/node/NNodeReference.h"
#include "corvanta/core/reference_countable/hold.h"
#include "corvanta/data/domain/geometry/NGeometryNode.h"
#include "corvanta/data/domain/geometry/NPolygonSurface.h"
#include "corvanta/data/domain/geometry/detail/NGeometryCache.h"

namespace corvanta::data::domain::geometry {

using material::texture_mapping::NUVWMappingID;
using structs::UVW;
using structs::XYZ;

struct NSurface::Arrays {
  std::vector<XYZ> coords;
  std::vector<XYZ> normals;
  std::vector<unsigned int> indices;
  UVWsMap uvws;
};

struct NSurface::Block {
  Arrays arrays;
  // A node that has gone stays in here, and is skipped.
  std::set<core::node::NNodeReference<NGeometryNode const>> owners;
};

namespace {

std::atomic<std::uint64_t> g_lastCreationNumber{0};

std::vector<XYZ> ToPoints(float const* values, std::size_t count) {
  std::vector<XYZ> points(count);
  for (XYZ& point : points) {
    point = {values[0], values[1], values[2]};
    values += 3;
  }
  return points;
}

}  // namespace

NSurface::NSurface() : m_creationNumber(++g_lastCreationNumber), m_block(new Block) {}

NSurface::~NSurface() = default;

std::vector<XYZ> const& NSurface::GetCoords() const noexcept { return m_block->arrays.coords; }

std::vector<XYZ> const& NSurface::GetNormals() const noexcept { return m_block->arrays.normals; }

std::vector<unsigned int> const& NSurface::GetIndices() const noexcept {
  return m_block->arrays.indices;
}

NSurface::UVWs const* NSurface::GetUVWs(NUVWMappingID id) const noexcept {
  auto const found = m_block->arrays.uvws.find(id);
  return found == m_block->arrays.uvws.end() ? nullptr : &found->second;
}

NSurface::UVWsMap const& NSurface::GetUVWsMap() const noexcept { return m_block->arrays.uvws; }

bool NSurface::Assign(std::vector<float> const& coords, std::vector<float> const& normals,
                      std::vector<unsigned int> const& indices, UVWsMap const& uvws) {
  if (coords.size() != normals.size() || coords.size() % 3 != 0) return false;
  std::size_t const vertexCount = coords.size() / 3;
  Arrays made{ToPoints(coords.data(), vertexCount), ToPoints(normals.data(), vertexCount), indices,
              UVWsMap()};
  for (auto const& [id, set] : uvws) {
    if (set.size() == vertexCount) made.uvws.emplace_hint(made.uvws.end(), id, set);
  }
  Replace(made);
  return true;
}

bool NSurface::Assign(float const* coords, float const* normals, unsigned long vertexCount,
                      unsigned long const* indices, unsigned long indexCount, float const* uvs) {
  constexpr unsigned long kLargestIndex = std::numeric_limits<unsigned int>::max();
  Arrays made{ToPoints(coords, vertexCount), ToPoints(normals, vertexCount),
              std::vector<unsigned int>(indexCount), UVWsMap()};
  for (unsigned long i = 0; i != indexCount; ++i) {
    made.indices[i] = static_cast<unsigned int>(std::min(indices[i], kLargestIndex));
  }
  UVWs& flat = made.uvws[material::texture_mapping::NUVWID_FLAT];
  flat.resize(vertexCount);
  for (unsigned long i = 0; i != vertexCount; ++i) flat[i] = {uvs[2 * i], uvs[2 * i + 1], 0.0f};
  Replace(made);
  return true;
}

/// The old arrays go with the caller's `made`, when the listeners have run.
void NSurface::Replace(Arrays& made) {
  // A handler may take the surface out of its nodes, and so end it.
  auto const held = core::reference_countable::Hold(*this);
  std::vector<core::node::NNodeReference<NGeometryNode const>> const owners(m_block->owners.begin(),
                                                                            m_block->owners.end());
  std::swap(m_block->arrays, made);
  auto const forEachOwner = [&](auto call) {
    for (auto const& owner : owners) {
      auto const node = owner.Get();
      if (node && m_block->owners.count(owner) != 0) call(*node);
    }
  };
  // No listener of one node picks by the index that another has of the old arrays.
  forEachOwner([&](NGeometryNode const& node) {
    auto& cache = detail::NGeometryCache::Of(node);
    if (!cache) return;
    auto const& now = m_block->arrays;
    bool const isSameTopology =
        now.coords.size() == made.coords.size() && now.indices == made.indices;
    if (!isSameTopology || !cache->OnCoordsChange(*this)) cache.reset();
  });
  try {
    forEachOwner(
        [this](NGeometryNode const& node) { node.OnSurfaceChange(*this, NGCT_SURFACE_CHANGED); });
  } catch (...) {
    forEachOwner(
        [this](NGeometryNode const& node) { node.MarkModels(*this, NGCT_SURFACE_CHANGED); });
    throw;
  }
}

bool NSurface::AddOwnerNode(NGeometryNode const& node) {
  return m_block->owners.insert(node).second;
}

bool NSurface::RemoveOwnerNode(NGeometryNode const& node) {
  return m_block->owners.erase(node) != 0;
}

void NSurface::CopyTo(NSurface& target) const { target.m_block->arrays = m_block->arrays; }

NPolygonSurface::NPolygonSurface() = default;

NPolygonSurface::~NPolygonSurface() = default;

boost::intrusive_ptr<NSurface> NPolygonSurface::CloneSurface() const {
  boost::intrusive_ptr<NPolygonSurface> const clone(new NPolygonSurface);
  CopyTo(*clone);
  return clone;
}

}  // namespace corvanta::data::domain::geometry
