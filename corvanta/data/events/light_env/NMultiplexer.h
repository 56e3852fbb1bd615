#pragma once

#include "corvanta/data/events/light_env/NListener.h"  // where the multiplexer stands
