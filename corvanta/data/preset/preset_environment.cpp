#include "corvanta/core/domain/NDomainManager.h"
#include "corvanta/data/domain/environment/NEnvironmentNode.h"
#include "corvanta/data/domain/geometry/NGeometryNode.h"
#include "corvanta/data/domain/image/NImageDomain.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphItemDomain.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"
#include "corvanta/data/environment_map/NEnvironmentMap.h"
#include "corvanta/data/internal/built_in_images.h"
#include "corvanta/data/internal/internal_data.h"
#include "corvanta/data/preset/detail/scene_box.h"
#include "corvanta/data/preset/preset.h"

// A listener may let go of what an argument holds.
// NOLINTBEGIN(performance-unnecessary-value-param)
namespace corvanta::data::preset {

using core::node::NNodeID;
using domain::image::NImageNode;
using domain::scenegraph::item::NSceneGraphModelNode;

namespace {

boost::intrusive_ptr<NImageNode> CreateImageNode(domain::image::NImageDomain& images,
                                                 core::locator::NLocator const& locator) {
  boost::intrusive_ptr<NImageNode> image = images.CreateNode(NNodeID());
  if (image) image->SetImageLocator(locator);
  return image;
}

}  // namespace

void PresetEnvironment(
    boost::intrusive_ptr<domain::environment::NEnvironmentNode> environment,
    boost::intrusive_ptr<view::NView> view,
    boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphItemDomain> itemDomain,
    boost::intrusive_ptr<domain::image::NImageDomain> imageDomain) {
  if (!environment || !view || !itemDomain || !imageDomain) return;
  environment_map::NEnvironmentMap& map = environment->GetEnvironmentMap();
  auto const model = itemDomain->CreateNode<NSceneGraphModelNode>(NNodeID());
  if (!model) return;
  model->SetDropsShadowFlag(false);
  model->SetIsSelfShadowedFlag(false);
  double const scale = GetDefaultEnvironmentModelScale(view);
  model->SetScaleX(scale);
  model->SetScaleY(scale);
  model->SetScaleZ(scale);
  core::domain::NDomainManager const* const manager = environment->GetDomainManager();
  if (manager != nullptr) {
    model->SetGeometryNode(internal::GetInwardSphere(*manager));
    environment->SetFloorGeometry(internal::GetSphereFloor(*manager));
  }
  environment->SetEnvironmentMapModel(*model);
  model->SetIsVisibleFlag(true);
  auto const image = CreateImageNode(*imageDomain, internal::GetDefaultEnvironmentMapImage());
  map.SetImageType(environment_map::NEMIT_CUBE);
  map.SetImage(image);
  environment->SetFloorImage(CreateImageNode(*imageDomain, internal::GetDefaultFloorImage()));
}

float GetDefaultEnvironmentModelScale(boost::intrusive_ptr<view::NView> view) {
  if (!view) return 0;
  return static_cast<float>(detail::GetLongestSide(detail::GetSceneBox(*view)) * 5.0);
}

}  // namespace corvanta::data::preset
// NOLINTEND(performance-unnecessary-value-param)
