#include "corvanta/core/variant/NVariant.h"

#include <cmath>
#include <limits>
#include <utility>

namespace corvanta::core::variant {

long NVariant::Truncate(double value) noexcept {
  if (std::isnan(value)) return 0;
  // 2^63 is a double, the largest long isn't.
  constexpr double kLimit = -static_cast<double>(std::numeric_limits<long>::min());
  if (value >= kLimit) return std::numeric_limits<long>::max();
  if (value < -kLimit) return std::numeric_limits<long>::min();
  return static_cast<long>(value);
}

NVariant::NVariant(std::wstring value)
    : m_string(new std::wstring(std::move(value))), m_kind(NVK_STRING) {}

NVariant::NVariant(wchar_t const* value) : NVariant(std::wstring(value == nullptr ? L"" : value)) {}

NVariant::NVariant(NVariant const& other) : m_long(0), m_kind(NVK_NONE) {
  switch (other.m_kind) {
    case NVK_NONE:
      break;
    case NVK_DOUBLE:
      m_double = other.m_double;
      break;
    case NVK_LONG:
      m_long = other.m_long;
      break;
    case NVK_BOOL:
      m_bool = other.m_bool;
      break;
    case NVK_STRING:
      m_string = new std::wstring(*other.m_string);
      break;
  }
  m_kind = other.m_kind;
}

NVariant::NVariant(NVariant&& other) noexcept { Steal(other); }

NVariant& NVariant::operator=(NVariant const& other) {
  if (this != &other) *this = NVariant(other);
  return *this;
}

NVariant& NVariant::operator=(NVariant&& other) noexcept {
  if (this != &other) {
    if (m_kind == NVK_STRING) delete m_string;
    Steal(other);
  }
  return *this;
}

void NVariant::Steal(NVariant& other) noexcept {
  switch (other.m_kind) {
    case NVK_NONE:
      m_long = 0;
      break;
    case NVK_DOUBLE:
      m_double = other.m_double;
      break;
    case NVK_LONG:
      m_long = other.m_long;
      break;
    case NVK_BOOL:
      m_bool = other.m_bool;
      break;
    case NVK_STRING:
      m_string = other.m_string;
      break;
  }
  m_kind = std::exchange(other.m_kind, NVK_NONE);
}

std::wstring NVariant::GetString() const {
  return m_kind == NVK_STRING ? *m_string : std::wstring();
}

bool NVariant::operator==(NVariant const& other) const noexcept {
  if (m_kind != other.m_kind) return false;
  switch (m_kind) {
    case NVK_NONE:
      return true;
    case NVK_DOUBLE:
      return m_double == other.m_double;
    case NVK_LONG:
      return m_long == other.m_long;
    case NVK_BOOL:
      return m_bool == other.m_bool;
    case NVK_STRING:
      return *m_string == *other.m_string;
  }
  return false;
}

}  // namespace corvanta::core::variant
