#include "corvanta/data/internal/detail/InternalSceneStore.h"

#include "corvanta/data/internal/detail/create_node.h"

namespace corvanta::data::internal::detail {

namespace item = domain::scenegraph::item;
namespace tree = domain::scenegraph::tree;

InternalSceneStore::InternalSceneStore(domain::scene::NSceneDomain& sceneDomain,
                                       tree::NSceneGraphTreeDomain& treeDomain,
                                       item::NSceneGraphItemDomain& itemDomain,
                                       domain::camera::NCameraDomain& cameraDomain)
    : scene(CreateNode<domain::scene::NSceneNode>(sceneDomain,
                                                  L"747A8C87-A159-4ea3-9146-DCDC33A5C6D1")),
      tree(CreateNode<tree::NSceneGraphTreeNode>(treeDomain,
                                                 L"C7B132A5-7374-4ae0-ABB9-DCE35E3C8E86")),
      model(CreateNode<item::NSceneGraphModelNode>(itemDomain,
                                                   L"545C467D-F26E-48cc-AEC2-781B7F7F2482")),
      cameraItem(CreateNode<item::NSceneGraphCameraNode>(itemDomain,
                                                         L"05F1A0AC-7211-4680-90BA-284A1B41E1B6")),
      camera(CreateNode<domain::camera::NCameraNode>(cameraDomain,
                                                     L"1656948F-1F9E-4f63-A9DD-D94733A73439")) {
  scene->SetSceneGraph(*tree);
  tree->SetRoot(*model);
  Require(model->AddChild(*cameraItem));
  cameraItem->SetCameraNode(*camera);
  cameraItem->SetTranslationX(8.0);
  postureRoot =
      CreateNode<item::NSceneGraphGroupNode>(itemDomain, L"1B6183D1-8F5A-45f3-B30B-EB0091E23BD4");
}

}  // namespace corvanta::data::internal::detail
