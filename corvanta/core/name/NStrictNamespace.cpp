#include "corvanta/core/name/NStrictNamespace.h"

namespace corvanta::core::name {

NStrictNamespace::~NStrictNamespace() = default;

bool NStrictNamespace::AreNamesUniqueImpl() const noexcept { return true; }

}  // namespace corvanta::core::name
