#pragma once

#include "corvanta/core/observer/NObservable.h"
#include "corvanta/core/reference_countable/NReferenceCountable.h"
#include "corvanta/core/reference_countable/NReferenceCountableWithWeakReference.h"
#include "corvanta/export.h"

namespace corvanta::core::attribute {
class NAttribute;
class NAttributeHost;
}  // namespace corvanta::core::attribute

namespace corvanta::data::events::detail {
class NModelRecorder;
}

namespace corvanta::data::events::attribute_change {

/// Is notified of every attribute that was set with notification. The new value is in place.
/// Held weakly: hold it by `boost::intrusive_ptr`. Rules: docs/events.md.
class CORVANTA_API NListener
    : public virtual core::reference_countable::NReferenceCountableWithWeakReference {
 public:
  void OnAttributeChange(core::attribute::NAttributeHost& host,
                         core::attribute::NAttribute const& attribute) {
    OnAttributeChangeImpl(host, attribute);
  }

 protected:
  NListener() noexcept = default;
  NListener(NListener const&) noexcept = default;
  ~NListener() override;

 private:
  virtual void OnAttributeChangeImpl(core::attribute::NAttributeHost& host,
                                     core::attribute::NAttribute const& attribute) = 0;
};

/// Passes every attribute change on to whoever registered here. Nodes hold and call it directly.
/// Rules: docs/events.md.
class CORVANTA_API NMultiplexer final : public core::observer::NObservable<NMultiplexer, NListener>,
                                        public core::reference_countable::NReferenceCountable {
 public:
  NMultiplexer();

  void OnAttributeChange(core::attribute::NAttributeHost& host,
                         core::attribute::NAttribute const& attribute) const {
    NotifyObservers([&](NListener& listener) { listener.OnAttributeChange(host, attribute); });
  }

  /// Whoever records the changes of the nodes that hold this multiplexer, of every kind; null
  /// without one. Isn't owned.
  detail::NModelRecorder* GetRecorder() const noexcept { return m_recorder; }
  void SetRecorder(detail::NModelRecorder* recorder) noexcept { m_recorder = recorder; }

 private:
  ~NMultiplexer() override;

  detail::NModelRecorder* m_recorder = nullptr;
};

}  // namespace corvanta::data::events::attribute_change
