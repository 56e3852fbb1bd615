#pragma once

#include <concepts>
#include <cstring>
#include <string>
#include <type_traits>
#include <utility>

#include "corvanta/export.h"

namespace corvanta::core::variant {

/// The kinds of value that an NVariant can hold.
enum NVariantKind : unsigned char { NVK_NONE, NVK_DOUBLE, NVK_LONG, NVK_BOOL, NVK_STRING };

/// A double, long, bool or wide text, or nothing.
///
/// It converts when it is read: numbers and bools into each other (a double to a long by
/// truncation, saturating, NaN to 0; what isn't 0 is true), text reads as 0 and false, a number as
/// empty text.
class CORVANTA_API NVariant {
 public:
  NVariant() noexcept : m_long(0), m_kind(NVK_NONE) {}
  NVariant(double value) noexcept : m_double(value), m_kind(NVK_DOUBLE) {}
  NVariant(bool value) noexcept : m_long(0), m_kind(NVK_BOOL) { m_bool = value; }
  /// Integers and enumerations are held as `long`.
  template <class T>
  requires((std::integral<T> && !std::same_as<T, bool>) || std::is_enum_v<T>) NVariant(T value)
  noexcept : m_long(static_cast<long>(value)), m_kind(NVK_LONG) {}
  NVariant(std::wstring value);
  NVariant(wchar_t const* value);
  /// A pointer is no bool.
  template <class T>
  NVariant(T const*) = delete;

  NVariant(NVariant const& other) : m_kind(other.m_kind) {
    if (m_kind == NVK_STRING) {
      m_string = Copy(*other.m_string);
    } else {
      std::memcpy(&m_long, &other.m_long, sizeof m_long);
    }
  }
  /// The other one holds nothing then.
  NVariant(NVariant&& other) noexcept : m_kind(std::exchange(other.m_kind, NVK_NONE)) {
    std::memcpy(&m_long, &other.m_long, sizeof m_long);
  }
  NVariant& operator=(NVariant const& other) {
    if (this != &other) *this = NVariant(other);
    return *this;
  }
  NVariant& operator=(NVariant&& other) noexcept {
    if (this != &other) {
      if (m_kind == NVK_STRING) delete m_string;
      m_kind = std::exchange(other.m_kind, NVK_NONE);
      std::memcpy(&m_long, &other.m_long, sizeof m_long);
    }
    return *this;
  }
  ~NVariant() {
    if (m_kind == NVK_STRING) delete m_string;
  }

  NVariantKind GetKind() const noexcept { return m_kind; }
  double GetDouble() const noexcept {
    switch (m_kind) {
      case NVK_DOUBLE:
        return m_double;
      case NVK_LONG:
        return static_cast<double>(m_long);
      case NVK_BOOL:
        return m_bool ? 1.0 : 0.0;
      default:
        return 0.0;
    }
  }
  long GetLong() const noexcept {
    switch (m_kind) {
      case NVK_DOUBLE:
        return Truncate(m_double);
      case NVK_LONG:
        return m_long;
      case NVK_BOOL:
        return m_bool ? 1 : 0;
      default:
        return 0;
    }
  }
  bool GetBool() const noexcept {
    switch (m_kind) {
      case NVK_DOUBLE:
        return m_double != 0.0;
      case NVK_LONG:
        return m_long != 0;
      case NVK_BOOL:
        return m_bool;
      default:
        return false;
    }
  }
  std::wstring GetString() const;

  /// Exchanges what it holds with what an owner holds in the same way: a kind, and its value or the
  /// pointer to its text in eight bytes.
  /// Requires: that the owner deletes a text that it holds.
  void ExchangeWith(NVariantKind& kind, void* value) noexcept {
    static_assert(sizeof m_long == 8 && sizeof m_double == 8 && sizeof m_string == 8);
    long given;
    std::memcpy(&given, &m_long, sizeof given);
    std::memcpy(&m_long, value, sizeof m_long);
    std::memcpy(value, &given, sizeof given);
    std::swap(kind, m_kind);
  }

  /// The long nearest to `value` on the way to 0; saturates, and gives 0 for NaN.
  static long Truncate(double value) noexcept;

  /// Equal in kind and value.
  bool operator==(NVariant const& other) const noexcept;

 private:
  static std::wstring* Copy(std::wstring const& text);

  union {
    double m_double;
    long m_long;
    bool m_bool;
    std::wstring* m_string;  // owned
  };
  NVariantKind m_kind;
};

}  // namespace corvanta::core::variant
