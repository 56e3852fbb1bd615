#pragma once

#include <chrono>
#include <ostream>

#include "app/output/record.h"
#include "corvanta/core/node/NNode.h"
#include "corvanta/data/events/NForwardingListener.h"

namespace corvanta::app {

/// Prints each event that it receives as a line.
class NEventPrinter : public data::events::NForwardingListener {
 public:
  NEventPrinter(std::ostream& out, bool asJson) : m_out(out), m_asJson(asJson) {}

  /// The microseconds of the events to come count from now.
  void StartClock();

 private:
  using Clock = std::chrono::steady_clock;

  ~NEventPrinter() override;

  void OnSignal(data::events::NSignal const& signal) override;
  void PrintAttributeChange(data::events::NSignal const& signal);

  /// Prints an event of `subject`, which may be null; `details` stand between it and the time.
  void Print(char const* kind, core::node::NNode const* subject,
             NRecord const& details = NRecord::object());

  std::ostream& m_out;
  bool const m_asJson;
  Clock::time_point m_start = Clock::now();
};

}  // namespace corvanta::app
