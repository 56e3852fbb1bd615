#include "corvanta/core/uri/NPath.h"

namespace corvanta::core::uri {

std::wstring NPath::GetExtension() const {
  std::size_t const slash = m_text.find_last_of(L'/');
  std::size_t const name = slash == std::wstring::npos ? 0 : slash + 1;
  std::size_t const point = m_text.find_last_of(L'.');
  if (point == std::wstring::npos || point <= name || m_text.compare(name, 3, L"..") == 0)
    return {};
  return m_text.substr(point);
}

NPath operator/(NPath const& left, NPath const& right) {
  if (left.IsEmpty() || right.IsEmpty()) return left.IsEmpty() ? right : left;
  std::size_t const end = left.m_text.find_last_not_of(L'/');
  std::size_t const begin = right.m_text.find_first_not_of(L'/');
  std::wstring joined = end == std::wstring::npos ? std::wstring() : left.m_text.substr(0, end + 1);
  joined += L'/';
  if (begin != std::wstring::npos) joined.append(right.m_text, begin);
  return joined;
}

}  // namespace corvanta::core::uri
