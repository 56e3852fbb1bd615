#include "corvanta/core/configuration/NConfiguration.h"

#include <atomic>

namespace corvanta::core::configuration {

namespace {

std::atomic<long> viewMode{0};

}  // namespace

long NConfiguration::GetLong(NConfigurationKey key) const {
  return key == CK_VIEW_MODE ? viewMode.load() : 0;
}

bool NConfiguration::SetLong(NConfigurationKey key, long value) {
  if (key != CK_VIEW_MODE) return false;
  viewMode = value;
  return true;
}

NConfiguration& GetConfiguration() {
  static NConfiguration configuration;
  return configuration;
}

}  // namespace corvanta::core::configuration
