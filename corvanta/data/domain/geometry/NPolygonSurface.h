#pragma once

#include "corvanta/data/domain/geometry/NSurface.h"

namespace corvanta::data::domain::geometry {

/// The plain surface, which importers and the built-in primitives make.
class CORVANTA_API NPolygonSurface : public NSurface {
 public:
  NPolygonSurface();
  ~NPolygonSurface() override;

  boost::intrusive_ptr<NSurface> CloneSurface() const override;
};

}  // namespace corvanta::data::domain::geometry
