#include "corvanta/data/internal/detail/InternalEnvironmentStore.h"

#include "corvanta/data/environment_map/NEnvironmentMap.h"
#include "corvanta/data/internal/built_in_images.h"
#include "corvanta/data/internal/detail/create_node.h"

namespace corvanta::data::internal::detail {

namespace item = domain::scenegraph::item;

InternalEnvironmentStore::InternalEnvironmentStore(
    domain::environment::NEnvironmentDomain& environmentDomain,
    domain::image::NImageDomain& imageDomain, domain::light_env::NLightEnvDomain& lightEnvDomain,
    domain::scenegraph::tree::NSceneGraphTreeDomain& treeDomain,
    item::NSceneGraphItemDomain& itemDomain, InternalGeometryStore const& geometries)
    : environment(CreateNode<domain::environment::NEnvironmentNode>(
          environmentDomain, L"8C8872CB-3B5B-41f7-9D42-A993EF9716C4")) {
  environment->SetHdrBloom(100.0);

  image =
      CreateNode<domain::image::NImageNode>(imageDomain, L"AD7357E1-D17E-4eb3-AECA-637157A3FCC5");
  image->SetImageLocator(GetDefaultEnvironmentMapImage());
  environment->GetEnvironmentMap().SetImage(*image);
  environment->GetEnvironmentMap().SetImageType(environment_map::NEMIT_CUBE);

  tree = CreateNode<domain::scenegraph::tree::NSceneGraphTreeNode>(
      treeDomain, L"B4EBDF45-9F39-40b0-A587-5C449241FD68");
  root =
      CreateNode<item::NSceneGraphGroupNode>(itemDomain, L"F41DC0AD-FC34-4dbd-81E6-6B2CE0E46A5A");
  tree->SetRoot(*root);
  environment->SetSceneGraph(*tree);

  lightEnv = CreateNode<domain::light_env::NLightEnvNode>(lightEnvDomain,
                                                          L"00D73770-B33F-49f9-A7AC-D8F98F1E91F6");
  Require(environment->AddLightEnv(*lightEnv));
  lightEnv->CreateLamp(L"default")->SetType(domain::light_env::LAMP_TYPE_DIRECTIONAL);

  model =
      CreateNode<item::NSceneGraphModelNode>(itemDomain, L"F1DB67C5-B616-4a68-BD91-B1740D479933");
  model->SetGeometryNode(*geometries.nodes[NP_INWARD_CUBE]);
  model->SetScaleX(3.0);
  model->SetScaleY(3.0);
  model->SetScaleZ(3.0);
  model->SetDropsShadowFlag(false);
  model->SetIsSelfShadowedFlag(false);
  environment->SetEnvironmentMapModel(*model);
  environment->SetFloorGeometry(*geometries.nodes[NP_CUBE_FLOOR]);
}

}  // namespace corvanta::data::internal::detail
