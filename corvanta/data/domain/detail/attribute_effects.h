#pragma once

#include "corvanta/core/attribute/detail/interned_name.h"

namespace corvanta::data::domain::detail {

/// What a change of an attribute makes out of date: the bits of a column of the attribute tables.
///
/// They belong to the attribute's name, so that an attribute which a caller adds under such a name
/// has them too; a class asks only for the bits of its own table.
enum NAttributeEffect : core::attribute::detail::NNameEffects {
  NAE_LOCAL = 1u << 0,      ///< an item's own matrix
  NAE_BOX = 1u << 1,        ///< the boxes of the items above
  NAE_GLOBAL = 1u << 2,     ///< global transforms and views; see IsSceneGraphTransformAttribute
  NAE_CONTROL = 1u << 3,    ///< a tree's control transform
  NAE_PROJECTOR = 1u << 4,  ///< the matrix of a projection
  NAE_METHOD = 1u << 5,     ///< what the observers of a projection made of it
};

}  // namespace corvanta::data::domain::detail
