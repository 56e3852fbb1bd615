#pragma once

#include "corvanta/data/events/scene/NListener.h"  // where the multiplexer stands
