#pragma once

#include <chrono>
#include <ostream>
#include <unordered_map>

#include "app/output/record.h"
#include "corvanta/core/attribute/NAttribute.h"
#include "corvanta/core/attribute/NAttributeHost.h"
#include "corvanta/core/node/NNode.h"
#include "corvanta/core/variant/NVariant.h"
#include "corvanta/data/events/NForwardingListener.h"

namespace corvanta::app {

/// Prints each event that it receives as a line. An event doesn't carry the value from before, so
/// the printer keeps the values of the hosts that it was shown.
class NEventPrinter : public data::events::NForwardingListener {
 public:
  NEventPrinter(std::ostream& out, bool asJson) : m_out(out), m_asJson(asJson) {}

  /// Keeps the values of a host's attributes, as old values of their next events.
  void Remember(core::attribute::NAttributeHost const& host);
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
  std::unordered_map<core::attribute::NAttribute const*, core::variant::NVariant> m_values;
};

}  // namespace corvanta::app
