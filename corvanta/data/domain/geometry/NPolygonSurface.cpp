#include "corvanta/data/domain/geometry/NPolygonSurface.h"

namespace corvanta::data::domain::geometry {

NPolygonSurface::NPolygonSurface() = default;

NPolygonSurface::~NPolygonSurface() = default;

boost::intrusive_ptr<NSurface> NPolygonSurface::CloneSurface() const {
  boost::intrusive_ptr<NPolygonSurface> const clone(new NPolygonSurface);
  CopyTo(*clone);
  return clone;
}

}  // namespace corvanta::data::domain::geometry
