#pragma once

#include "corvanta/data/events/environment_map_change/NListener.h"  // where the multiplexer stands
