#pragma once

#include "corvanta/data/events/scene_graph_hierarchy/NListener.h"  // where the multiplexer stands
