#pragma once

#include <boost/intrusive_ptr.hpp>

#include "corvanta/data/domain/camera/NCameraDomain.h"
#include "corvanta/data/domain/scene/NSceneDomain.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphCameraNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphGroupNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphItemDomain.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"
#include "corvanta/data/domain/scenegraph/tree/NSceneGraphTreeDomain.h"

namespace corvanta::data::internal::detail {

/// The sphere scene, whose model gets its geometry later, and the root of postures.
struct InternalSceneStore {
  InternalSceneStore(domain::scene::NSceneDomain& sceneDomain,
                     domain::scenegraph::tree::NSceneGraphTreeDomain& treeDomain,
                     domain::scenegraph::item::NSceneGraphItemDomain& itemDomain,
                     domain::camera::NCameraDomain& cameraDomain);

  boost::intrusive_ptr<domain::scene::NSceneNode> scene;
  boost::intrusive_ptr<domain::scenegraph::tree::NSceneGraphTreeNode> tree;
  boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphModelNode> model;
  boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphCameraNode> cameraItem;
  boost::intrusive_ptr<domain::camera::NCameraNode> camera;
  boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphGroupNode> postureRoot;
};

}  // namespace corvanta::data::internal::detail
