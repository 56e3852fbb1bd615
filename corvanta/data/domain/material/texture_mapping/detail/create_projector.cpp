#include "corvanta/data/domain/material/texture_mapping/detail/create_projector.h"

#include <map>

#include "corvanta/data/domain/projection/NProjectionNode.h"
#include "corvanta/data/operators/projector/NBoxProjector.h"
#include "corvanta/data/operators/projector/NCylinderProjector.h"
#include "corvanta/data/operators/projector/NPlaneProjector.h"
#include "corvanta/data/operators/projector/NSphereProjector.h"
#include "corvanta/data/operators/projector/NTriplanarProjector.h"

namespace corvanta::data::domain::material::texture_mapping::detail {

namespace {

using data::operators::projector::NProjector;

template <class T>
std::unique_ptr<NProjector> Create() {
  return std::make_unique<T>();
}

using Registry = std::map<std::wstring, std::unique_ptr<NProjector> (*)()>;

/// Made at the first use and never destroyed.
Registry const& GetRegistry() {
  using namespace domain::operators::projector;
  static Registry const* const registry = new Registry{
      {projection::PM_PLANE, &Create<NPlaneProjector>},
      {projection::PM_CYLINDER, &Create<NCylinderProjector>},
      {projection::PM_SPHERE, &Create<NSphereProjector>},
      {projection::PM_TRIPLANAR, &Create<NTriplanarProjector>},
      {projection::PM_BOX, &Create<NBoxProjector>},
  };
  return *registry;
}

}  // namespace

std::unique_ptr<NProjector> CreateProjector(std::wstring const& method) {
  auto const found = GetRegistry().find(method);
  return found == GetRegistry().end() ? nullptr : found->second();
}

}  // namespace corvanta::data::domain::material::texture_mapping::detail
