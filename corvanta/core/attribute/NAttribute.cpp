#include "corvanta/core/attribute/NAttribute.h"

#include <utility>

#include "corvanta/core/attribute/NAttributeHost.h"
#include "corvanta/core/detail/previous_value.h"

namespace corvanta::core::attribute {

using variant::NVariant;

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

NVariant NAttribute::GetPreviousValue() const {
  void const* const previous = core::detail::NPreviousValue::Find(this);
  return previous == nullptr ? GetValue() : *static_cast<NVariant const*>(previous);
}

void NAttribute::SetValue(NVariant const& value, bool notify) { SetValue(NVariant(value), notify); }

void NAttribute::SetValue(NVariant&& value, bool notify) {
  value.ExchangeWith(m_kind, &m_long);
  if (!notify) return;
  core::detail::NPreviousValue const previous(this, &value);
  NAttributeHost::AttributeChanged(*this, m_position);
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

}  // namespace corvanta::core::attribute
