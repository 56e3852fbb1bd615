#pragma once

#include <cstddef>

#include "corvanta/data/events/NForwardingListener.h"

namespace corvanta::app {

/// Counts the changes of attributes in a whole model; curves and camera keys make no others.
class NEventCounter : public data::events::NForwardingListener {
 public:
  /// Those since the last call.
  std::size_t TakeCount();

 private:
  ~NEventCounter() override;

  void OnSignal(data::events::NSignal const& signal) override;

  std::size_t m_count = 0;
};

}  // namespace corvanta::app
