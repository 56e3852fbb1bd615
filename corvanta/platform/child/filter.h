#pragma once

#include "corvanta/platform/child/child.h"

namespace corvanta::platform::child {

/// Lets this process make no more system calls than the rights need; all others fail with EPERM.
/// Fails: false where the system can't filter them.
bool ApplyFilter(NRights rights);

}  // namespace corvanta::platform::child
