#pragma once

#include <atomic>
#include <boost/intrusive_ptr.hpp>

#include "corvanta/core/reference_countable/NReferenceCountable.h"
#include "corvanta/export.h"

namespace corvanta::core::reference_countable {

class NWeakReferenceImpl;

/// A counted object that can also be referred to weakly. A virtual base of all that uses it.
class CORVANTA_API NReferenceCountableWithWeakReference : public NReferenceCountable {
 public:
  /// The one weak reference of this object, made at the first call.
  /// Cost: one allocation at the first call, none later.
  boost::intrusive_ptr<NWeakReferenceImpl const> GetWeakReference() const;
  /// The weak reference for a look-up.
  /// Fails: null if nobody has asked for one yet.
  NWeakReferenceImpl const* FindWeakReference() const noexcept {
    return m_weakReference.load(std::memory_order_acquire);
  }

 protected:
  NReferenceCountableWithWeakReference() noexcept = default;
  NReferenceCountableWithWeakReference(NReferenceCountableWithWeakReference const& other) noexcept
      : NReferenceCountable(other) {}
  NReferenceCountableWithWeakReference& operator=(
      NReferenceCountableWithWeakReference const&) noexcept {
    return *this;
  }
  ~NReferenceCountableWithWeakReference() override;

 private:
  friend class NWeakReferenceImpl;

  mutable std::atomic<NWeakReferenceImpl*> m_weakReference{nullptr};
};

}  // namespace corvanta::core::reference_countable
