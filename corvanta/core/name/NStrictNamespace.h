#pragma once

#include "corvanta/core/name/NNamespace.h"

namespace corvanta::core::name {

/// A namespace in which no two objects share a name.
class CORVANTA_API NStrictNamespace : public NNamespace {
 public:
  NStrictNamespace() = default;
  ~NStrictNamespace() override;

 private:
  bool AreNamesUniqueImpl() const noexcept override;
};

}  // namespace corvanta::core::name
