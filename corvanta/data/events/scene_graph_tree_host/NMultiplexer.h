#pragma once

#include "corvanta/data/events/scene_graph_tree_host/NListener.h"  // where the multiplexer stands
