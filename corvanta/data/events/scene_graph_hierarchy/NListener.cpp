#include "corvanta/data/events/scene_graph_hierarchy/NListener.h"

namespace corvanta::data::events::scene_graph_hierarchy {

NListener::~NListener() = default;

}  // namespace corvanta::data::events::scene_graph_hierarchy
