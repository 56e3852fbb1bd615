#pragma once

#include <string>

namespace corvanta::data::domain::scenegraph::item::detail {

/// The initial name of an item whose kind is called `typeName`.
/// Cost: formatted once for each table of texts.
std::wstring const& MakeDefaultName(std::wstring const& typeName);

}  // namespace corvanta::data::domain::scenegraph::item::detail
