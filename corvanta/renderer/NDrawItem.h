#pragma once

#include <boost/intrusive_ptr.hpp>

#include "corvanta/data/domain/scenegraph/NSceneGraphPath.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"
#include "corvanta/vx_math/Matrix.h"

namespace corvanta::renderer {

/// A model in one of the places where it is seen.
struct NDrawItem {
  using Path = data::domain::scenegraph::NSceneGraphPath<
      data::domain::scenegraph::item::NSceneGraphModelNode const>;

  boost::intrusive_ptr<data::domain::scenegraph::item::NSceneGraphModelNode const> model;
  Path path;
  VX_Math::Matrix global;
  VX_Math::Matrix normals;  // the inverse of `global`, transposed
  bool isPlaced = false;    // both matrices are finite
};

}  // namespace corvanta::renderer
