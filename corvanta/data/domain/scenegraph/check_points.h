#pragma once

#include <vector>

#include "corvanta/core/node/NNodeReference.h"
#include "corvanta/data/domain/fwd.h"

namespace corvanta::data::domain::scenegraph {

/// The references that lead to an item, outermost first: of paths, of traversals, of picks, and of
/// the functions that take an item apart from its path. They own nothing.
using NCheckPoints = std::vector<core::node::NNodeReference<item::NSceneGraphReferenceNode const>>;

}  // namespace corvanta::data::domain::scenegraph
