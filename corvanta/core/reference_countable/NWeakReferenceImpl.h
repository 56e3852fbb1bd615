#pragma once

#include <atomic>
#include <boost/intrusive_ptr.hpp>
#include <cstdint>

#include "corvanta/core/reference_countable/NReferenceCountableWithWeakReference.h"

namespace corvanta::core::reference_countable {

/// Refers to an object without keeping it alive, and outlives it.
///
/// Each carries a serial number that is unique in the process and grows with every object referred
/// to; orders "by identity of the weak reference" are the orders of these numbers, so that two runs
/// of one program sort alike.
class CORVANTA_API NWeakReferenceImpl final : public NReferenceCountable {
 public:
  /// Fails: null when the object has gone, and while its count is 0.
  boost::intrusive_ptr<NReferenceCountableWithWeakReference> GetReference() const noexcept {
    if (m_object == nullptr || !m_object->TryAddRef()) return nullptr;
    return {m_object, false};
  }
  /// Whether the object has gone for good, or is on its way.
  bool IsExpired() const noexcept { return m_object == nullptr || m_object->IsDying(); }

  std::uint64_t GetSerial() const noexcept { return m_serial; }

  /// Whether the object was removed from where it belongs and may be brought back. It is alive, but
  /// a reference to it asks whether anybody but its keepers holds it: see node::NNode.
  bool IsWithdrawn() const noexcept { return m_isWithdrawn.load(std::memory_order_relaxed); }
  void SetIsWithdrawn(bool isWithdrawn) const noexcept {
    m_isWithdrawn.store(isWithdrawn, std::memory_order_relaxed);
  }

 private:
  friend class NReferenceCountableWithWeakReference;

  explicit NWeakReferenceImpl(NReferenceCountableWithWeakReference* object) noexcept;
  ~NWeakReferenceImpl() override;

  mutable std::atomic<bool> m_isWithdrawn{false};
  NReferenceCountableWithWeakReference* m_object;
  std::uint64_t const m_serial;
};

/// Orders counted weak references by serial number; null comes first.
struct NWeakReferenceLess {
  using Pointer = boost::intrusive_ptr<NWeakReferenceImpl const>;
  bool operator()(Pointer const& a, Pointer const& b) const noexcept {
    return b && (!a || a->GetSerial() < b->GetSerial());
  }
};

}  // namespace corvanta::core::reference_countable
