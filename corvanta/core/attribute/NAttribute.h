#pragma once

#include <cstdint>
#include <string>

#include "corvanta/core/attribute/detail/interned_name.h"
#include "corvanta/core/variant/NVariant.h"
#include "corvanta/export.h"

namespace corvanta::core::attribute {

class NAttributeHost;

/// A named value on a host. Made by NAttributeHost::AddAttribute; lives and stays in place as long
/// as its host.
///
/// Sixteen bytes: an item has twenty-five of them, and a scene a million items.
class CORVANTA_API NAttribute {
 public:
  NAttribute(NAttribute const&) = delete;
  NAttribute& operator=(NAttribute const&) = delete;

  std::wstring const& GetName() const noexcept { return detail::GetNameText(m_name); }
  variant::NVariant GetValue() const;
  /// While listeners are notified of a write: the value before it. Of nested writes of one
  /// attribute each has its own, and the innermost that runs on this thread answers.
  /// Fails: the value itself outside of every event of this attribute.
  variant::NVariant GetPreviousValue() const;
  variant::NVariantKind GetKind() const noexcept { return m_kind; }
  /// Whether a writer should save the attribute; it does nothing else.
  bool GetFlag() const noexcept { return m_flag; }
  /// A mark of whoever records the changes of the host: whether it has this one's.
  bool IsRecorded() const noexcept { return m_isRecorded; }
  void SetIsRecorded(bool isRecorded) const noexcept { m_isRecorded = isRecorded; }
  NAttributeHost& GetHost() const noexcept;

  /// Stores `value`, whatever its kind.
  /// Raises: with `notify`, the host's OnAttributeChangeImpl; the value is in place.
  void SetValue(variant::NVariant const& value, bool notify);
  /// The same, but takes the text over; `value` holds what the attribute held before.
  /// Cost: no memory.
  void SetValue(variant::NVariant&& value, bool notify);
  /// Like SetValue, but only for a value of the kind that the attribute holds; where that is a
  /// number, for any double or long, which it then holds.
  /// Fails: false, and no change, for a value of another kind.
  bool Try(variant::NVariant const& value, bool notify);

  /// The value as NVariant converts it, without the copy.
  double GetDouble() const noexcept {
    switch (m_kind) {
      case variant::NVK_DOUBLE:
        return m_double;
      case variant::NVK_LONG:
        return static_cast<double>(m_long);
      case variant::NVK_BOOL:
        return m_bool ? 1.0 : 0.0;
      default:
        return 0.0;
    }
  }
  long GetLong() const noexcept {
    switch (m_kind) {
      case variant::NVK_DOUBLE:
        return variant::NVariant::Truncate(m_double);
      case variant::NVK_LONG:
        return m_long;
      case variant::NVK_BOOL:
        return m_bool ? 1 : 0;
      default:
        return 0;
    }
  }
  bool GetBool() const noexcept {
    switch (m_kind) {
      case variant::NVK_DOUBLE:
        return m_double != 0.0;
      case variant::NVK_LONG:
        return m_long != 0;
      case variant::NVK_BOOL:
        return m_bool;
      default:
        return false;
    }
  }
  std::wstring GetString() const;

  /// The number of the interned name.
  detail::NNameIndex GetNameIndex() const noexcept { return m_name; }

 private:
  friend class NAttributeHost;

  NAttribute(detail::NNameIndex name, bool flag, std::uint16_t position) noexcept
      : m_long(0),
        m_name(name),
        m_position(position),
        m_kind(variant::NVK_NONE),
        m_flag(flag),
        m_isRecorded(false) {}
  ~NAttribute();

  union {
    double m_double;
    long m_long;
    bool m_bool;
    std::wstring* m_string;  // owned
  };
  detail::NNameIndex m_name;
  std::uint16_t m_position;  // in the chunk of the host's storage
  variant::NVariantKind m_kind;
  bool m_flag : 1;
  mutable bool m_isRecorded : 1;
};

static_assert(sizeof(NAttribute) == 16);

}  // namespace corvanta::core::attribute
