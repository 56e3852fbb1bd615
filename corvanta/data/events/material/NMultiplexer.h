#pragma once

#include "corvanta/data/events/material/NListener.h"  // where the multiplexer stands
