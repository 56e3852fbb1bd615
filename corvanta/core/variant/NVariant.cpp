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

std::wstring* NVariant::Copy(std::wstring const& text) { return new std::wstring(text); }

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
