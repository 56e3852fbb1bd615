#include "corvanta/core/reference_countable/NReferenceCountableWithWeakReference.h"

#include <limits>

#include "corvanta/core/reference_countable/NReferenceCountable.h"
#include "corvanta/core/reference_countable/NWeakReferenceImpl.h"

namespace corvanta::core::reference_countable {

NReferenceCountableWithWeakReference::~NReferenceCountableWithWeakReference() {
  if (NWeakReferenceImpl* weak = m_weakReference.load(std::memory_order_acquire)) {
    weak->m_object = nullptr;
    weak->Release();
  }
}

boost::intrusive_ptr<NWeakReferenceImpl const>
NReferenceCountableWithWeakReference::GetWeakReference() const {
  NWeakReferenceImpl* weak = m_weakReference.load(std::memory_order_acquire);
  if (weak == nullptr) {
    boost::intrusive_ptr<NWeakReferenceImpl> made(
        new NWeakReferenceImpl(const_cast<NReferenceCountableWithWeakReference*>(this)));
    if (m_weakReference.compare_exchange_strong(weak, made.get(), std::memory_order_acq_rel)) {
      weak = made.detach();
    }
  }
  return weak;
}

NReferenceCountable::~NReferenceCountable() = default;

void NReferenceCountable::Destroy() const noexcept {
  m_count.store(std::numeric_limits<int>::min() / 2, std::memory_order_relaxed);
  delete this;
}

namespace {
std::atomic<std::uint64_t> g_lastSerial{0};
}  // namespace

NWeakReferenceImpl::NWeakReferenceImpl(NReferenceCountableWithWeakReference* object) noexcept
    : m_object(object), m_serial(++g_lastSerial) {}

NWeakReferenceImpl::~NWeakReferenceImpl() = default;

}  // namespace corvanta::core::reference_countable
