#pragma once

#include <boost/uuid/uuid.hpp>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>

#include "corvanta/export.h"

namespace corvanta::core::node {

/// A node's identity, a value.
///
/// A text that is a GUID, with or without braces, is its sixteen bytes: equal in any case, written
/// in upper case. Any other text is kept as it stands.
class CORVANTA_API NNodeID {
 public:
  /// A new id, unique from nothing; processes that a fork has parted make different ones.
  NNodeID();
  NNodeID(std::wstring const& text);
  NNodeID(wchar_t const* text);
  NNodeID(NNodeID const& other);
  NNodeID(NNodeID&& other) noexcept = default;
  NNodeID& operator=(NNodeID const& other);
  NNodeID& operator=(NNodeID&& other) noexcept = default;
  ~NNodeID() = default;

  std::wstring ToString() const;
  std::size_t GetHash() const noexcept;

  bool operator==(NNodeID const& other) const noexcept;
  bool operator<(NNodeID const& other) const noexcept;

 private:
  boost::uuids::uuid m_uuid;             // nil where there is a text
  std::unique_ptr<std::wstring> m_text;  // what isn't a GUID
};

}  // namespace corvanta::core::node

namespace std {
template <>
struct hash<corvanta::core::node::NNodeID> {
  std::size_t operator()(corvanta::core::node::NNodeID const& id) const noexcept {
    return id.GetHash();
  }
};
}  // namespace std
