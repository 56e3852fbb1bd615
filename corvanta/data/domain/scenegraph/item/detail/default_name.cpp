#include "corvanta/data/domain/scenegraph/item/detail/default_name.h"

#include <boost/format.hpp>
#include <map>
#include <new>

#include "corvanta/core/string_table/string_table.h"

namespace corvanta::data::domain::scenegraph::item::detail {

namespace {

std::wstring Format(std::wstring const& typeName) {
  std::wstring const& format = core::string_table::GetString(core::string_table::DATA_SCENEGRAPH);
  try {
    std::wstring text = (boost::wformat(format) % typeName).str();
    // The stream inside leaves the text out where it has no memory, and goes on.
    if (text != (boost::wformat(format) % typeName).str()) throw std::bad_alloc();
    return text;
  } catch (boost::io::format_error const&) {
    return format;  // a translation that is no format
  }
}

}  // namespace

std::wstring const& MakeDefaultName(std::wstring const& typeName) {
  thread_local unsigned long version = 0;
  thread_local std::map<std::wstring, std::wstring> names;
  if (unsigned long const current = core::string_table::GetVersion(); version != current) {
    names.clear();
    version = current;
  }
  auto const found = names.find(typeName);
  return found != names.end() ? found->second
                              : names.emplace(typeName, Format(typeName)).first->second;
}

}  // namespace corvanta::data::domain::scenegraph::item::detail
