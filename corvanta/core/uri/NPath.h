#pragma once

#include <compare>
#include <string>
#include <utility>

#include "corvanta/export.h"

namespace corvanta::core::uri {

/// A path as text: parts between slashes. Nothing is looked up or tidied.
class CORVANTA_API NPath {
 public:
  NPath() = default;
  NPath(std::wstring text) : m_text(std::move(text)) {}
  NPath(wchar_t const* text) : m_text(text) {}

  std::wstring const& ToString() const { return m_text; }
  bool IsEmpty() const { return m_text.empty(); }

  /// The end of the last part from its last point on, with the point; empty without a point. A
  /// point that begins the part doesn't count.
  std::wstring GetExtension() const;

  /// The two joined by exactly one slash, so `right` lies below `left` also if it begins with one.
  /// An empty side leaves the other as it is.
  friend CORVANTA_API NPath operator/(NPath const& left, NPath const& right);

  friend bool operator==(NPath const&, NPath const&) = default;
  friend std::strong_ordering operator<=>(NPath const&, NPath const&) = default;

 private:
  std::wstring m_text;
};

}  // namespace corvanta::core::uri
