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

/// Enters an empty entry for a manager that has none. An entry of a manager that has gone doesn't
/// count for a later one in its place; its content goes to `released`.
/// Fails: null for an empty entry.
NInternalDataManager const* FindInternalData(core::domain::NDomainManager const& manager,
                                             DataPointer& released);
NInternalDataManager const* FindInternalData(core::domain::NDomainManager const& manager);

/// Fills the manager's entry, which is there.
/// Requires: the lock.
void SetInternalData(core::domain::NDomainManager const& manager, DataPointer const& data);

/// Takes the manager's entry out, whose content goes to `released`.
/// Requires: the lock.
/// Fails: false if there is none.
bool EraseInternalData(core::domain::NDomainManager const& manager, DataPointer& released);

}  // namespace corvanta::data::internal::detail
