#pragma once

namespace corvanta::data::domain::scenegraph {

/// How two scene graph paths stand to each other.
enum SGPathRelation : int {
  SGPR_UNRELATED = 0,              // neither path leads through the item of the other
  SGPR_FIRST_CONTAINS_SECOND = 1,  // the first item is the second one or stands above it
  SGPR_SECOND_CONTAINS_FIRST = 2,
};

}  // namespace corvanta::data::domain::scenegraph
