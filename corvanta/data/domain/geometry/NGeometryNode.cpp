#include "corvanta/data/domain/geometry/NGeometryNode.h"

#include <utility>
#include <vector>

#include "corvanta/core/reference_countable/hold.h"
#include "corvanta/core/string_table/string_table.h"
#include "corvanta/data/domain/domain_types.h"
#include "corvanta/data/domain/geometry/NGeometryChangeListener.h"
#include "corvanta/data/domain/geometry/NGeometryDomain.h"
#include "corvanta/data/domain/geometry/detail/NGeometryCache.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"

namespace corvanta::data::domain::geometry {

struct NGeometryNode::Block {
  std::set<boost::intrusive_ptr<NSurface>> surfaces{};
  std::unique_ptr<detail::NGeometryCache> cache{};
};

NGeometryNode::NGeometryNode(core::node::NNodeID const& id, core::domain::NDomainBase* domain,
                             events::attribute_change::NMultiplexer const* multiplexer)
    : NNode(id, domain, multiplexer,
            core::string_table::GetString(core::string_table::DATA_GEOMETRY)),
      m_block(new Block) {}

NGeometryNode::~NGeometryNode() = default;

std::set<boost::intrusive_ptr<NSurface>> const& NGeometryNode::GetSurfaces() const noexcept {
  return m_block->surfaces;
}

void NGeometryNode::DropCache() const noexcept { m_block->cache.reset(); }

std::set<boost::intrusive_ptr<NSurface>>::iterator NGeometryNode::Find(
    NSurface& surface) const noexcept {
  // The key doesn't count: a look-up mustn't end a surface that nobody holds.
  boost::intrusive_ptr<NSurface> key(&surface, false);
  auto const found = m_block->surfaces.find(key);
  key.detach();
  return found;
}

/// An entry of the set of surfaces to come. It is made by hand: nothing is counted before all is
/// over that may fail.
NGeometryNode::Entry NGeometryNode::MakeEntry() {
  std::set<boost::intrusive_ptr<NSurface>> made;
  made.emplace();
  return made.extract(made.begin());
}

bool NGeometryNode::AddSurface(NSurface& surface) {
  if (Find(surface) != m_block->surfaces.end()) return false;
  Entry entry = MakeEntry();
  bool const isNewOwner = surface.AddOwnerNode(*this);
  boost::intrusive_ptr<NSurface> const held(&surface);
  Enter(*held, std::move(entry));
  if (!isNewOwner) return false;
  OnSurfaceChange(surface, NGCT_SURFACE_ADDED);
  return true;
}

void NGeometryNode::Enter(NSurface& surface, Entry entry) {
  entry.value() = &surface;
  m_block->surfaces.insert(std::move(entry));
  DropCache();
}

bool NGeometryNode::RemoveSurface(NSurface& surface) {
  auto const found = Find(surface);
  if (found == m_block->surfaces.end()) return false;
  boost::intrusive_ptr<NSurface> const held(&surface);
  m_block->surfaces.erase(found);
  DropCache();
  if (!surface.RemoveOwnerNode(*this)) return false;
  OnSurfaceChange(surface, NGCT_SURFACE_REMOVED);
  return true;
}

void NGeometryNode::OnSurfaceChange(NSurface const& surface, NGeometryChangeType type) const {
  auto const held = core::reference_countable::Hold(*this);
  // A surface that changes sees to the caches itself.
  if (type != NGCT_SURFACE_CHANGED) DropCache();
  try {
    NotifyObservers([&](NGeometryChangeListener& listener) {
      listener.OnGeometryChange(*this, surface, type);
    });
  } catch (...) {
    MarkModels(surface, type);
    throw;
  }
}

void NGeometryNode::MarkModels(NSurface const& surface, NGeometryChangeType type) const {
  NotifyObservers([&](NGeometryChangeListener& listener) {
    if (dynamic_cast<scenegraph::item::NSceneGraphModelNode*>(&listener)) {
      listener.OnGeometryChange(*this, surface, type);
    }
  });
}

void NGeometryNode::CopyTo(NGeometryNode& target) const {
  // All that takes memory comes before the first change.
  std::vector<std::pair<boost::intrusive_ptr<NSurface>, Entry>> clones;
  clones.reserve(m_block->surfaces.size());
  for (auto const& surface : m_block->surfaces) {
    clones.emplace_back(surface->CloneSurface(), MakeEntry());
    clones.back().first->AddOwnerNode(target);
  }
  auto const held = core::reference_countable::Hold(target);
  CopyNodeTo(target);
  for (auto& [clone, entry] : clones) {
    target.Enter(*clone, std::move(entry));
    target.OnSurfaceChange(*clone, NGCT_SURFACE_ADDED);
  }
}

NGeometryChangeListener::~NGeometryChangeListener() = default;

detail::NGeometryCache::~NGeometryCache() = default;

std::unique_ptr<detail::NGeometryCache>& detail::NGeometryCache::Of(
    NGeometryNode const& geometry) noexcept {
  return geometry.m_block->cache;
}

NGeometryDomain::NGeometryDomain(core::domain::NDomainManager const* manager,
                                 events::attribute_change::NMultiplexer const* multiplexer,
                                 events::geometry_change::NMultiplexer* geometryChange)
    : NDomain(manager, multiplexer,
              core::string_table::GetString(core::string_table::DATA_GEOMETRY)),
      m_geometryChange(geometryChange) {}

NGeometryDomain::~NGeometryDomain() = default;

wchar_t const* NGeometryDomain::GetTypeImpl() const { return DT_GEOMETRY; }

bool NGeometryDomain::InitializeNode(NGeometryNode& node) const {
  return Attach<NGeometryChangeListener>(m_geometryChange, node);
}

}  // namespace corvanta::data::domain::geometry
