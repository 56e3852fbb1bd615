#pragma once

#include <string>
#include <type_traits>

#include "corvanta/core/attribute/NAttribute.h"
#include "corvanta/export.h"

namespace corvanta::core::attribute {

namespace detail {
/// Creates an attribute with its default, silently.
/// Fails: throws NAttributeContainerError if the host refuses it.
CORVANTA_API NAttribute* CreateAttribute(NAttributeHost& host, NNameIndex name, bool flag,
                                         variant::NVariant const& value);
}  // namespace detail

/// A slot of a node's attribute block: an attribute of the node read and written as `T`, which is
/// double, bool, std::wstring, or an integer or enumeration held as long.
template <class T>
class NTypedAttribute {
 public:
  /// Fails: throws NAttributeContainerError if the host refuses the name.
  NTypedAttribute(NAttributeHost& host, wchar_t const* name, T const& value, bool flag = true)
      : NTypedAttribute(host, detail::InternName(name), value, flag) {}
  /// The same by the number of an interned name.
  NTypedAttribute(NAttributeHost& host, detail::NNameIndex name, T const& value, bool flag = true)
      : m_attribute(detail::CreateAttribute(host, name, flag, variant::NVariant(value))) {}

  T Get() const {
    if constexpr (std::is_same_v<T, double>) {
      return m_attribute->GetDouble();
    } else if constexpr (std::is_same_v<T, bool>) {
      return m_attribute->GetBool();
    } else if constexpr (std::is_same_v<T, std::wstring>) {
      return m_attribute->GetString();
    } else {
      return static_cast<T>(m_attribute->GetLong());
    }
  }
  /// Raises: the host's attribute change.
  void Set(T const& value) const { m_attribute->SetValue(variant::NVariant(value), true); }
  /// Whether `attribute` is the one behind this slot.
  bool Is(NAttribute const& attribute) const noexcept { return m_attribute == &attribute; }
  /// Offers a value without notification; see NAttribute::Try.
  bool TrySilently(T const& value) const {
    return m_attribute->Try(variant::NVariant(value), false);
  }

 private:
  NAttribute* m_attribute;
};

}  // namespace corvanta::core::attribute
