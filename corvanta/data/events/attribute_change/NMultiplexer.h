#pragma once

#include "corvanta/data/events/attribute_change/NListener.h"  // where the multiplexer stands
