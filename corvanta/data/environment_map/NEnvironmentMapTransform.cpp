#include "corvanta/data/environment_map/NEnvironmentMapTransform.h"

namespace corvanta::data::environment_map {

NEnvironmentMapTransform::~NEnvironmentMapTransform() = default;

}  // namespace corvanta::data::environment_map
