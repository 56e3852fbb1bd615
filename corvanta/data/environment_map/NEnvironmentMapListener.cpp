#include "corvanta/data/environment_map/NEnvironmentMapListener.h"

namespace corvanta::data::environment_map {

NEnvironmentMapListener::~NEnvironmentMapListener() = default;

}  // namespace corvanta::data::environment_map
