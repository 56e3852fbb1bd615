#pragma once

#include "corvanta/data/events/scene_graph_tree/NListener.h"  // where the multiplexer stands
