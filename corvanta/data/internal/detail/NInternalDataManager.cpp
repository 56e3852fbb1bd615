#include "corvanta/data/internal/detail/NInternalDataManager.h"

namespace corvanta::data::internal::detail {

NInternalDataManager::NInternalDataManager(NInternalDomains const& domains)
    : geometry(*domains.geometries),
      material(*domains.materials, *domains.textures, *domains.images),
      scene(*domains.scenes, *domains.trees, *domains.items, *domains.cameras),
      environment(*domains.environments, *domains.images, *domains.lightEnvs, *domains.trees,
                  *domains.items, geometry) {
  scene.model->SetGeometryNode(*geometry.nodes[NP_SPHERE]);
}

}  // namespace corvanta::data::internal::detail
