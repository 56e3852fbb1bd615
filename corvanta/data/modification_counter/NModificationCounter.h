#pragma once

#include <cstdint>

#include "corvanta/core/reference_countable/NReferenceCountableWithWeakReference.h"
#include "corvanta/export.h"

namespace corvanta::data::modification_counter {

/// Tells whether a domain was modified. The count is the callers': nothing in the library changes
/// it.
class CORVANTA_API NModificationCounter
    : public virtual core::reference_countable::NReferenceCountableWithWeakReference {
 public:
  NModificationCounter() noexcept = default;
  /// A copy counts from 0.
  NModificationCounter(NModificationCounter const& other) noexcept
      : NReferenceCountableWithWeakReference(other) {}
  NModificationCounter& operator=(NModificationCounter const&) noexcept { return *this; }
  ~NModificationCounter() override;

  // Unsigned inside, so that the count wraps around.
  NModificationCounter& operator++() noexcept {
    ++m_count;
    return *this;
  }
  NModificationCounter& operator--() noexcept {
    --m_count;
    return *this;
  }
  void Clear() noexcept { m_count = 0; }
  bool IsModified() const noexcept { return m_count != 0; }

 private:
  std::uint32_t m_count = 0;
};

}  // namespace corvanta::data::modification_counter
