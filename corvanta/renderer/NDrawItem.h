#pragma once

#include <boost/intrusive_ptr.hpp>

#include "corvanta/data/domain/scenegraph/NSceneGraphPath.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"
#include "corvanta/vx_math/Matrix.h"

namespace corvanta::renderer {

/// One occurrence of a model in a tree, which references can repeat: its path, and its transforms
/// as of the renderer's last update.
struct NDrawItem {
  using Path = data::domain::scenegraph::NSceneGraphPath<
      data::domain::scenegraph::item::NSceneGraphModelNode const>;

  boost::intrusive_ptr<data::domain::scenegraph::item::NSceneGraphModelNode const> model;
  Path path;
  VX_Math::Matrix global;
  VX_Math::Matrix normals;          // the inverse of `global`, transposed
  bool hasFiniteTransform = false;  // both matrices are; otherwise it isn't drawn
};

}  // namespace corvanta::renderer
