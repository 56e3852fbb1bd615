#include "corvanta/data/domain/scenegraph/item/detail/default_name.h"

#include <boost/format.hpp>
#include <map>

#include "corvanta/core/string_table/string_table.h"

namespace corvanta::data::domain::scenegraph::item::detail {

std::wstring const& MakeDefaultName(std::wstring const& typeName) {
  thread_local unsigned long version = 0;
  thread_local std::map<std::wstring, std::wstring> names;
  if (unsigned long const current = core::string_table::GetVersion(); version != current) {
    names.clear();
    version = current;
  }
  auto const [name, isNew] = names.try_emplace(typeName);
  if (isNew) {
    std::wstring const& format = core::string_table::GetString(core::string_table::DATA_SCENEGRAPH);
    try {
      name->second = (boost::wformat(format) % typeName).str();
    } catch (boost::io::format_error const&) {
      name->second = format;  // a translation that is no format
    }
  }
  return name->second;
}

}  // namespace corvanta::data::domain::scenegraph::item::detail
