#pragma once

#include "corvanta/data/events/texture/NListener.h"  // where the multiplexer stands
