#pragma once

#include "corvanta/data/events/scene_graph_model/NListener.h"  // where the multiplexer stands
