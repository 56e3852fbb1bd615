#include "corvanta/core/uri/NUri.h"

#include <mutex>

#include "corvanta/core/uri/NPath.h"
#include "corvanta/platform/file.h"

namespace corvanta::core::uri {

namespace {

struct ResourceFolder {
  std::mutex mutex;
  NPath set;
  NPath found;  // looked for once
};

ResourceFolder& GetFolder() {
  static ResourceFolder& folder = *new ResourceFolder;
  return folder;
}

NPath FindBesideLibrary() {
  NPath const library = platform::GetLibraryFolder();
  NPath const beside = library / L"../share/corvanta/resource";
  // The library may lie in a folder of its architecture, lib/<triplet>.
  NPath const above = library / L"../../share/corvanta/resource";
  return !Exists(beside) && Exists(above) ? above : beside;
}

}  // namespace

NPath GetFile(NUri const& uri) {
  if (uri.GetType() == UT_INTERNAL || uri.GetPath().IsEmpty()) return {};
  if (uri.GetType() == UT_FILE) return uri.GetPath();
  constexpr wchar_t kPrefix[] = L"/Resource/";
  std::wstring const& text = uri.GetPath().ToString();
  bool const hasPrefix = text.starts_with(kPrefix);
  return GetResourceFolder() / NPath(hasPrefix ? text.substr(std::size(kPrefix) - 1) : text);
}

bool Exists(NPath const& path) { return platform::Exists(path.ToString()); }

NPath GetResourceFolder() {
  ResourceFolder& folder = GetFolder();
  std::scoped_lock const lock(folder.mutex);
  if (!folder.set.IsEmpty()) return folder.set;
  if (folder.found.IsEmpty()) folder.found = FindBesideLibrary();
  return folder.found;
}

void SetResourceFolder(NPath const& path) {
  ResourceFolder& folder = GetFolder();
  std::scoped_lock const lock(folder.mutex);
  folder.set = path;
}

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
