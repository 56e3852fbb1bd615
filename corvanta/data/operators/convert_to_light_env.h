#pragma once

#include "corvanta/data/domain/fwd.h"
#include "corvanta/export.h"

namespace corvanta::data::domain::light_env {
class NLightEnvDomain;
}

namespace corvanta::data::operators {

/// Turns the lights of `environment`, which are items of the scene graph, into a light environment
/// of `domain`: a lamp for each, where the item is in the world. The environment lists it from
/// then on, and keeps its lights.
///
/// The light environment has the environment's id. Where the domain has a node of that id already,
/// nothing is made, and the result is true. A path that resolves to no light yields no lamp.
/// Raises: the lamps' signals, then the environment's SignalAddLightEnv.
/// Fails: false if the environment lists a light environment already or has no lights, and if the
/// domain refuses the node; throws what a path's GetGlobalTransform throws, with the lamps made so
/// far in a node that isn't listed. Where memory runs out, that node goes again.
CORVANTA_API bool ConvertToLightEnv(domain::environment::NEnvironmentNode& environment,
                                    domain::light_env::NLightEnvDomain& domain);

}  // namespace corvanta::data::operators
