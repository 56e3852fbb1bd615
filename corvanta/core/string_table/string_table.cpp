#include "corvanta/core/string_table/string_table.h"

#include <array>
#include <atomic>
#include <mutex>
#include <set>

namespace corvanta::core::string_table {

namespace {

struct Row {
  NStringKey key;
  wchar_t const* text;
};

constexpr Row kDefaults[] = {
    {DATA_ANIMATION, L"animation"},
    {DATA_CAMERA, L"camera"},
    {DATA_ENVIRONMENT, L"environment"},
    {DATA_GEOMETRY, L"geometry"},
    {DATA_GROUP, L"group"},
    {DATA_IMAGE, L"image"},
    {DATA_LIGHT, L"light"},
    {DATA_LIGHT_ENV, L"light environment"},
    {DATA_MATERIAL, L"material"},
    {DATA_MODEL, L"model"},
    {DATA_MOVIE, L"movie"},
    {DATA_PROJECTION, L"projection"},
    {DATA_REFERENCE, L"reference"},
    {DATA_SCENE, L"scene"},
    {DATA_SCENEGRAPH, L"%1%"},
    {DATA_SCENEGRAPH_ITEM, L"scene graph item"},
    {DATA_SCENEGRAPH_TREE, L"scene graph tree"},
    {DATA_SOUND, L"sound"},
    {DATA_TEXTURE, L"texture"},
};

constexpr bool RowsStandInOrder() {
  for (std::size_t i = 0; i < std::size(kDefaults); ++i)
    if (kDefaults[i].key != static_cast<int>(i)) return false;
  return std::size(kDefaults) == DATA_TEXTURE + 1;
}
static_assert(RowsStandInOrder());

// A text in use is never changed or freed, so that GetString can hand out references without a
// lock.
struct Table {
  std::array<std::atomic<std::wstring const*>, std::size(kDefaults)> current;
  std::atomic<unsigned long> version{0};
  std::mutex mutex;
  std::set<std::wstring> texts;  // every text ever set

  Table() {
    for (Row const& row : kDefaults) current[row.key] = &*texts.insert(row.text).first;
  }
};

Table& GetTable() {
  static Table& table = *new Table;
  return table;
}

bool IsKey(NStringKey key) { return key >= 0 && key <= DATA_TEXTURE; }

}  // namespace

std::wstring const& GetString(NStringKey key) {
  static std::wstring const& none = *new std::wstring;
  return IsKey(key) ? *GetTable().current[key].load(std::memory_order_acquire) : none;
}

bool SetString(NStringKey key, std::wstring const& text) {
  if (!IsKey(key)) return false;
  Table& table = GetTable();
  std::scoped_lock const lock(table.mutex);
  table.current[key] = &*table.texts.insert(text).first;
  // After the text: who reads the number first and the text then can't keep an old text under the
  // new number.
  ++table.version;
  return true;
}

unsigned long GetVersion() { return GetTable().version; }

}  // namespace corvanta::core::string_table
