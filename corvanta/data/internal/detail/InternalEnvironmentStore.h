#pragma once

#include <boost/intrusive_ptr.hpp>

#include "corvanta/data/domain/environment/NEnvironmentDomain.h"
#include "corvanta/data/domain/image/NImageDomain.h"
#include "corvanta/data/domain/light_env/NLightEnvDomain.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphGroupNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphItemDomain.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"
#include "corvanta/data/domain/scenegraph/tree/NSceneGraphTreeDomain.h"
#include "corvanta/data/internal/detail/InternalGeometryStore.h"

namespace corvanta::data::internal::detail {

/// The environment of thumbnails.
struct InternalEnvironmentStore {
  InternalEnvironmentStore(domain::environment::NEnvironmentDomain& environmentDomain,
                           domain::image::NImageDomain& imageDomain,
                           domain::light_env::NLightEnvDomain& lightEnvDomain,
                           domain::scenegraph::tree::NSceneGraphTreeDomain& treeDomain,
                           domain::scenegraph::item::NSceneGraphItemDomain& itemDomain,
                           InternalGeometryStore const& geometries);

  boost::intrusive_ptr<domain::environment::NEnvironmentNode> environment;
  boost::intrusive_ptr<domain::image::NImageNode> image;
  boost::intrusive_ptr<domain::scenegraph::tree::NSceneGraphTreeNode> tree;
  boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphGroupNode> root;
  boost::intrusive_ptr<domain::light_env::NLightEnvNode> lightEnv;
  boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphModelNode> model;
};

}  // namespace corvanta::data::internal::detail
