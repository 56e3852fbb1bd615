#pragma once

#include "corvanta/export.h"

namespace corvanta::core::configuration {

/// Names a number of the configuration.
enum NConfigurationKey : int {
  CK_VIEW_MODE,  ///< the navigation type that preset cameras are given
};

/// The few numbers that a program sets for the whole process; each is 0 until then. May be used
/// from any thread.
class CORVANTA_API NConfiguration {
 public:
  /// Fails: 0 for a key that the configuration doesn't have.
  long GetLong(NConfigurationKey key) const;

  /// Fails: false for a key that the configuration doesn't have.
  bool SetLong(NConfigurationKey key, long value);

 private:
  friend CORVANTA_API NConfiguration& GetConfiguration();
  NConfiguration() = default;
  NConfiguration(NConfiguration const&) = delete;
  NConfiguration& operator=(NConfiguration const&) = delete;
};

/// The one configuration of the process.
CORVANTA_API NConfiguration& GetConfiguration();

}  // namespace corvanta::core::configuration
