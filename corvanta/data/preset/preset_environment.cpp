#include <new>
#include <optional>
#include <utility>

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
#include "corvanta/data/resource/image/create_image.h"

// A listener may let go of what an argument holds.
// NOLINTBEGIN(performance-unnecessary-value-param)
namespace corvanta::data::preset {

using core::node::NNodeID;
using core::node::NNodeReference;
using domain::image::NImageNode;
using domain::scenegraph::item::NSceneGraphModelNode;

namespace {

/// What an image node will show. Made first, so that nothing is changed yet if memory runs out.
struct Picture {
  Picture(domain::image::NImageDomain& images, core::locator::NLocator const& shown)
      : locator(shown),
        format(resource::image::LocatorToFormat(locator)),
        domain(images),
        node(images.CreateNode(NNodeID())) {
    try {
      reference = NNodeReference<NImageNode>(node);
    } catch (std::bad_alloc const&) {
      images.RemoveNode(*node);
      throw;
    }
  }
  Picture(Picture const&) = delete;
  Picture& operator=(Picture const&) = delete;
  ~Picture() {
    if (node && !isShown) domain.RemoveNode(*node);
  }

  NNodeReference<NImageNode> const& Show() {
    isShown = true;
    if (node) node->SetImageLocator(std::move(locator), format);
    return reference;
  }

  core::locator::NLocator locator;
  resource::image::NImageFormat format;
  domain::image::NImageDomain& domain;
  boost::intrusive_ptr<NImageNode> node;
  NNodeReference<NImageNode> reference;
  bool isShown = false;
};

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
  std::optional<Picture> around, floor;
  double scale = 0;
  NNodeReference<NSceneGraphModelNode> modelReference;
  internal::GeometryReference sphere, sphereFloor;
  core::domain::NDomainManager const* const manager = environment->GetDomainManager();
  try {
    modelReference = NNodeReference<NSceneGraphModelNode>(*model);
    if (manager != nullptr) {
      sphere = internal::GetInwardSphere(*manager);
      sphereFloor = internal::GetSphereFloor(*manager);
    }
    scale = GetDefaultEnvironmentModelScale(view);
    around.emplace(*imageDomain, internal::GetDefaultEnvironmentMapImage());
    floor.emplace(*imageDomain, internal::GetDefaultFloorImage());
  } catch (std::bad_alloc const&) {
    itemDomain->RemoveNode(*model);
    throw;
  }
  model->SetDropsShadowFlag(false);
  model->SetIsSelfShadowedFlag(false);
  model->SetScaleX(scale);
  model->SetScaleY(scale);
  model->SetScaleZ(scale);
  if (manager != nullptr) {
    model->SetGeometryNode(sphere);
    environment->SetFloorGeometry(sphereFloor);
  }
  environment->SetEnvironmentMapModel(modelReference);
  model->SetIsVisibleFlag(true);
  auto const& image = around->Show();
  map.SetImageType(environment_map::NEMIT_CUBE);
  map.SetImage(image);
  environment->SetFloorImage(floor->Show());
}

float GetDefaultEnvironmentModelScale(boost::intrusive_ptr<view::NView> view) {
  if (!view) return 0;
  return static_cast<float>(detail::GetLongestSide(detail::GetSceneBox(*view)) * 5.0);
}

}  // namespace corvanta::data::preset
// NOLINTEND(performance-unnecessary-value-param)
