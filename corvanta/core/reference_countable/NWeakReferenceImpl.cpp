#include "corvanta/core/reference_countable/NWeakReferenceImpl.h"

namespace corvanta::core::reference_countable {

namespace {
std::atomic<std::uint64_t> g_lastSerial{0};
}  // namespace

NWeakReferenceImpl::NWeakReferenceImpl(NReferenceCountableWithWeakReference* object) noexcept
    : m_object(object), m_serial(++g_lastSerial) {}

NWeakReferenceImpl::~NWeakReferenceImpl() = default;

}  // namespace corvanta::core::reference_countable
