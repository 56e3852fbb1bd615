#include "corvanta/data/internal/detail/registry.h"

#include <atomic>
#include <boost/thread/mutex.hpp>
#include <map>
#include <mutex>
#include <shared_mutex>

#include "corvanta/core/domain/NDomainManager.h"
#include "corvanta/data/internal/detail/NInternalDataManager.h"

namespace corvanta::data::internal::detail {

using core::domain::NDomainManager;

namespace {

struct Entry {
  // Of the manager that the entry was made for: a later one at its address has another.
  core::domain::detail::NLinkPointer<NDomainManager const> manager;
  DataPointer data;
};

// The mutex of NRegistryLock is held while nodes are made and listeners run, which read; so the map
// has one of its own, under which nothing is called.
struct Registry {
  boost::mutex mutex;
  std::shared_mutex entriesMutex;
  std::map<NDomainManager const*, Entry> entries;
};

/// Never destroyed: a manager may be a static that outlives it.
Registry& GetRegistry() {
  static Registry& registry = *new Registry;
  return registry;
}

thread_local bool t_hasLock = false;

}  // namespace

NRegistryLock::NRegistryLock() : m_isOutermost(!t_hasLock) {
  if (!m_isOutermost) return;
  GetRegistry().mutex.lock();
  t_hasLock = true;
}

NRegistryLock::~NRegistryLock() {
  if (!m_isOutermost) return;
  t_hasLock = false;
  GetRegistry().mutex.unlock();
}

NInternalDataManager const* FindInternalData(NDomainManager const& manager) {
  Registry& registry = GetRegistry();
  {
    std::shared_lock const lock(registry.entriesMutex);
    auto const found = registry.entries.find(&manager);
    if (found != registry.entries.end() && found->second.manager == manager.GetLink())
      return found->second.data.get();
  }
  // Read first: of many readers only the first writes.
  std::atomic<bool>& isAsked = manager.GetBuiltInMark();
  if (!isAsked.load(std::memory_order_relaxed)) isAsked.store(true, std::memory_order_relaxed);
  return nullptr;
}

void SetInternalData(NDomainManager const& manager, DataPointer data, DataPointer& released) {
  std::unique_lock const lock(GetRegistry().entriesMutex);
  Entry& entry = GetRegistry().entries[&manager];
  entry.manager = manager.GetLink();
  released.swap(entry.data);
  entry.data.swap(data);
}

bool EraseInternalData(NDomainManager const& manager, DataPointer& released) {
  bool const isAsked = manager.GetBuiltInMark().exchange(false, std::memory_order_relaxed);
  std::unique_lock const lock(GetRegistry().entriesMutex);
  auto& entries = GetRegistry().entries;
  auto const found = entries.find(&manager);
  if (found == entries.end()) return isAsked;
  bool const isLive = found->second.manager == manager.GetLink();
  released.swap(found->second.data);
  entries.erase(found);
  return isLive || isAsked;
}

}  // namespace corvanta::data::internal::detail
