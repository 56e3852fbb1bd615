#include "corvanta/data/events/scene_graph_tree/NListener.h"

namespace corvanta::data::events::scene_graph_tree {

NListener::~NListener() = default;

}  // namespace corvanta::data::events::scene_graph_tree
