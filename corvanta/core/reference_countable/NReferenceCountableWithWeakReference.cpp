#include "corvanta/core/reference_countable/NReferenceCountableWithWeakReference.h"

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

}  // namespace corvanta::core::reference_countable
