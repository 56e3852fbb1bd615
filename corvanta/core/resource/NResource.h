#pragma once

#include "corvanta/export.h"

namespace corvanta::core::resource {

/// What a renderer or loader leaves at a node: it derives its own class and the library only keeps
/// it.
class CORVANTA_API NResource {
 public:
  NResource() = default;
  NResource(NResource const&) = default;
  NResource& operator=(NResource const&) = default;
  virtual ~NResource();
};

}  // namespace corvanta::core::resource
