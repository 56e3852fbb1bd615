#include "corvanta/core/attribute/NAttribute.h"

#include <utility>

#include "corvanta/core/attribute/NAttributeHost.h"

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

void NAttribute::SetValue(NVariant const& value, bool notify) {
  Store(NVariant(value));
  if (notify) GetHost().AttributeChanged(*this);
}

void NAttribute::SetValue(NVariant&& value, bool notify) {
  Store(std::move(value));
  if (notify) GetHost().AttributeChanged(*this);
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
      m_long = 0;
      break;
  }
}

}  // namespace corvanta::core::attribute
