#pragma once

#include "corvanta/corvanta.h"

/// Short names: each class that has its name for itself, in the namespace `corvanta`. The long
/// names stay, and are the same classes.
namespace corvanta {

// The document and its events.
using core::domain::NDomainListener;
using core::domain::NDomainManager;
using core::name::NNameListener;
using core::node::NNodeID;
using core::node::NNodeReference;
using data::document::NDocument;
using data::events::NEventListener;
using data::events::NEventMultiplexer;
using data::events::NForwardingListener;
using data::events::NSignal;
using data::history::NChangeSet;
using data::history::NChangeSetListener;
using data::history::NHistory;
using data::history::NTransaction;

// Nodes and domains.
using data::domain::animation::NAnimationDomain;
using data::domain::animation::NAnimationNode;
using data::domain::camera::NCameraDomain;
using data::domain::camera::NCameraNode;
using data::domain::environment::NEnvironmentDomain;
using data::domain::environment::NEnvironmentNode;
using data::domain::geometry::NGeometryDomain;
using data::domain::geometry::NGeometryNode;
using data::domain::geometry::NNurbsSurface;
using data::domain::geometry::NPolygonSurface;
using data::domain::geometry::NSurface;
using data::domain::image::NImageDomain;
using data::domain::image::NImageNode;
using data::domain::light::NLightDomain;
using data::domain::light::NLightNode;
using data::domain::light_env::NLamp;
using data::domain::light_env::NLightEnvDomain;
using data::domain::light_env::NLightEnvNode;
using data::domain::material::NMaterialDomain;
using data::domain::material::NMaterialNode;
using data::domain::movie::NMovieDomain;
using data::domain::movie::NMovieNode;
using data::domain::projection::NProjectionDomain;
using data::domain::projection::NProjectionNode;
using data::domain::scene::NSceneDomain;
using data::domain::scene::NSceneNode;
using data::domain::sound::NSoundDomain;
using data::domain::sound::NSoundNode;
using data::domain::texture::NTextureDomain;
using data::domain::texture::NTextureNode;

// The hierarchy.
using data::domain::scenegraph::NSceneGraphPath;
using data::domain::scenegraph::NSceneGraphTraverser;
using data::domain::scenegraph::item::NSceneGraphCameraNode;
using data::domain::scenegraph::item::NSceneGraphGroupNode;
using data::domain::scenegraph::item::NSceneGraphItemDomain;
using data::domain::scenegraph::item::NSceneGraphItemNode;
using data::domain::scenegraph::item::NSceneGraphLightNode;
using data::domain::scenegraph::item::NSceneGraphModelNode;
using data::domain::scenegraph::item::NSceneGraphReferenceNode;
using data::domain::scenegraph::tree::NSceneGraphTreeDomain;
using data::domain::scenegraph::tree::NSceneGraphTreeHost;
using data::domain::scenegraph::tree::NSceneGraphTreeNode;

// Operators.
using data::animation::NAnimation;
using data::animation::NAnimationEngine;
using data::animation::NAnimationKey;
using data::animation::NAnimationManager;
using data::domain::material::texture_mapping::NProjectionMapping;
using data::domain::material::texture_mapping::NTextureMapping;
using data::domain::material::texture_mapping::NUVWMapping;
using data::domain::operators::projector::NBoxProjector;
using data::domain::operators::projector::NCylinderProjector;
using data::domain::operators::projector::NPlaneProjector;
using data::domain::operators::projector::NSphereProjector;
using data::domain::operators::projector::NTriplanarProjector;
using data::operators::animation::NKeyFrameAnimation;
using data::operators::ray_picker::NRayPicker;
using data::operators::ray_picker::PickRecord;
using data::posture::NPosture3D;
using data::switches::NCameraSwitch;
using data::switches::NEnvironmentSwitch;
using data::switches::NMaterialSwitch;
using data::switches::NModelSwitch;
using data::timeline::NTimeLine;
using data::timeline::NTimeLineManager;
using data::view::NView;
using data::view::NViewManager;

}  // namespace corvanta
