#include "corvanta/data/events/scene_graph_tree_host/NListener.h"

namespace corvanta::data::events::scene_graph_tree_host {

NListener::~NListener() = default;

}  // namespace corvanta::data::events::scene_graph_tree_host
