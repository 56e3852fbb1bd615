#pragma once

#include "corvanta/data/internal/detail/InternalEnvironmentStore.h"
#include "corvanta/data/internal/detail/InternalGeometryStore.h"
#include "corvanta/data/internal/detail/InternalMaterialStore.h"
#include "corvanta/data/internal/detail/InternalSceneStore.h"
#include "corvanta/data/internal/detail/NInternalDomains.h"

namespace corvanta::data::internal::detail {

/// The nodes of the internal data of one domain manager. Their domains belong to that manager.
class NInternalDataManager {
 public:
  /// Throws NRefusal if a domain refuses a node.
  explicit NInternalDataManager(NInternalDomains const& domains);

  InternalGeometryStore const geometry;
  InternalMaterialStore const material;
  InternalSceneStore const scene;
  InternalEnvironmentStore const environment;
};

}  // namespace corvanta::data::internal::detail
