#include "corvanta/data/events/scene_graph_model/NListener.h"

namespace corvanta::data::events::scene_graph_model {

NListener::~NListener() = default;

}  // namespace corvanta::data::events::scene_graph_model
