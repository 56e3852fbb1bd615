#include "corvanta/core/attribute/NAttribute.h"

#include <atomic>
#include <utility>

#include "corvanta/core/attribute/NAttributeHost.h"
#include "corvanta/core/attribute/detail/silent_writes.h"

namespace corvanta::core::attribute {

using variant::NVariant;

namespace {

std::atomic<std::uint64_t> g_silentWrites{0};

void NoteSilentWrite(detail::NNameIndex name) noexcept {
  if (detail::GetNameEffects(name) & detail::kCountsSilentWrites) {
    g_silentWrites.fetch_add(1, std::memory_order_relaxed);
  }
}

}  // namespace

std::uint64_t detail::GetSilentWriteCount() noexcept {
  return g_silentWrites.load(std::memory_order_relaxed);
}

NAttribute::~NAttribute() {
  if (m_kind == variant::NVK_STRING) delete m_string;
}

NAttributeHost& NAttribute::GetHost() const noexcept {
  return NAttributeHost::HostOf(*this, m_position);
}

NVariant NAttribute::GetValue() const {
  switch (m_kind) {
    case variant::NVK_DOUBLE:
      return m_double;
    case variant::NVK_LONG:
      return m_long;
    case variant::NVK_BOOL:
      return m_bool;
    case variant::NVK_STRING:
      return *m_string;
    default:
      return NVariant();
  }
}

std::wstring NAttribute::GetString() const {
  return m_kind == variant::NVK_STRING ? *m_string : std::wstring();
}

void NAttribute::SetValue(NVariant const& value, bool notify) { SetValue(NVariant(value), notify); }

void NAttribute::SetValue(NVariant&& value, bool notify) {
  bool const isFirst = m_kind == variant::NVK_NONE && m_long == 0;
  Store(std::move(value));
  if (notify) {
    GetHost().AttributeChanged(*this);
  } else if (!isFirst) {
    NoteSilentWrite(m_name);
  }
}

bool NAttribute::Try(NVariant const& value, bool notify) {
  auto const isNumber = [](variant::NVariantKind kind) {
    return kind == variant::NVK_DOUBLE || kind == variant::NVK_LONG;
  };
  bool const isTaken = value.GetKind() == m_kind || (isNumber(value.GetKind()) && isNumber(m_kind));
  if (!isTaken) return false;
  SetValue(value, notify);
  return true;
}

void NAttribute::Store(NVariant&& value) noexcept {
  if (m_kind == variant::NVK_STRING) delete m_string;
  m_kind = value.GetKind();
  switch (m_kind) {
    case variant::NVK_DOUBLE:
      m_double = value.GetDouble();
      break;
    case variant::NVK_LONG:
      m_long = value.GetLong();
      break;
    case variant::NVK_BOOL:
      m_bool = value.GetBool();
      break;
    case variant::NVK_STRING:
      m_string = value.ReleaseText();
      break;
    default:
      m_long = 1;  // 0 only before the first value
      break;
  }
}

}  // namespace corvanta::core::attribute
