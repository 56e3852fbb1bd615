#pragma once

#include <cstddef>

#include "corvanta/data/events/NEventListener.h"

namespace corvanta::app {

/// Counts the changes of attributes in a whole model; curves and camera keys make no others.
class NEventCounter : public data::events::NEventListener {
 public:
  /// Those since the last call.
  std::size_t TakeCount();

 private:
  ~NEventCounter() override;

  void OnAttributeChange(core::attribute::NAttributeHost& host,
                         core::attribute::NAttribute const& attribute) override;

  std::size_t m_count = 0;
};

}  // namespace corvanta::app
