#include "corvanta/data/domain/geometry/NGeometryChangeListener.h"

namespace corvanta::data::domain::geometry {

NGeometryChangeListener::~NGeometryChangeListener() = default;

}  // namespace corvanta::data::domain::geometry
