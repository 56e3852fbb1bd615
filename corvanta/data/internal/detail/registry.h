#pragma once

#include <boost/shared_ptr.hpp>

#include "corvanta/core/domain/fwd.h"

/// The internal data of all domain managers of the process.
namespace corvanta::data::internal::detail {

class NInternalDataManager;

/// The right to change what the registry holds; one thread has it at a time.
class NRegistryLock {
 public:
  /// Waits for it, unless this thread has it already.
  NRegistryLock();
  ~NRegistryLock();
  NRegistryLock(NRegistryLock const&) = delete;
  NRegistryLock& operator=(NRegistryLock const&) = delete;

  /// False within another one of the same thread.
  explicit operator bool() const noexcept { return m_isOutermost; }

 private:
  bool const m_isOutermost;
};

using DataPointer = boost::shared_ptr<NInternalDataManager const>;

/// Enters nothing: a manager without an entry is marked as asked for. An entry of a manager that
/// has gone doesn't count for a later one in its place.
/// Fails: null without an entry.
NInternalDataManager const* FindInternalData(core::domain::NDomainManager const& manager);

/// Enters `data` for the manager; what a manager that has gone left in its place goes to
/// `released`.
/// Requires: the lock.
void SetInternalData(core::domain::NDomainManager const& manager, DataPointer data,
                     DataPointer& released);

/// Takes the manager's entry and mark away; the entry's content goes to `released`.
/// Requires: the lock.
/// Fails: false if there is neither.
bool EraseInternalData(core::domain::NDomainManager const& manager, DataPointer& released);

}  // namespace corvanta::data::internal::detail
