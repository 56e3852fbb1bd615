#pragma once

#include <array>
#include <boost/intrusive_ptr.hpp>

#include "corvanta/data/domain/geometry/NGeometryDomain.h"
#include "corvanta/data/internal/detail/primitives/primitive.h"

namespace corvanta::data::internal::detail {

/// The built-in meshes, each in a node of its own.
struct InternalGeometryStore {
  explicit InternalGeometryStore(domain::geometry::NGeometryDomain& domain);

  std::array<boost::intrusive_ptr<domain::geometry::NGeometryNode>, NP_COUNT> nodes;
};

}  // namespace corvanta::data::internal::detail
