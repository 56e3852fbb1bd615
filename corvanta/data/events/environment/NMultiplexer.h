#pragma once

#include "corvanta/data/events/environment/NListener.h"  // where the multiplexer stands
