#pragma once

#include <boost/intrusive_ptr.hpp>
#include <cstddef>
#include <memory>
#include <unordered_map>
#include <vector>

#include "corvanta/core/reference_countable/NWeakReferenceImpl.h"
#include "corvanta/export.h"

namespace corvanta::core::observer::detail {

/// The weak observer set of a subject, in order of registration.
///
/// Entries stand contiguous, each with the listener pointer as it was registered, so that a
/// delivery neither chases tree nodes nor casts. A removed or dead entry is blanked and swept
/// later. From 16 entries on a hash index finds them. A set that never had an observer is one null
/// pointer.
class CORVANTA_API NObservableImpl {
 public:
  struct Entry {
    boost::intrusive_ptr<reference_countable::NWeakReferenceImpl const> observer;  // null: blank
    void* listener;
  };
  using Iterator = std::vector<Entry>::const_iterator;

  NObservableImpl() noexcept = default;
  NObservableImpl(NObservableImpl const&) = delete;
  NObservableImpl& operator=(NObservableImpl const&) = delete;
  ~NObservableImpl();

  /// Registers `observer`; a delivery gets `listener`, its side of the kind that is delivered.
  /// Fails: false, and no change, if it is registered already.
  /// Cost: amortised constant.
  bool AddObserver(reference_countable::NReferenceCountableWithWeakReference const& observer,
                   void* listener);
  /// Fails: false if it isn't registered.
  /// Cost: amortised constant.
  bool RemoveObserver(reference_countable::NReferenceCountableWithWeakReference const& observer);

  /// The entries in order of registration, blank ones among them.
  Iterator GetBegin() const noexcept;
  Iterator GetEnd() const noexcept;

  /// Calls `call(Listener&)` for every live observer that was registered when the delivery began.
  /// Holds each observer while it is called. A call may add and remove observers, and may end the
  /// subject; an exception of a call passes through, and the rest aren't called.
  /// Cost: allocates nothing.
  template <class Listener, class Call>
  void Deliver(Call&& call) const {
    if (m_state == nullptr) return;
    Delivery const delivery(*m_state);
    for (std::size_t i = 0; i != delivery.end; ++i) {
      Entry const& entry = delivery.state.entries[i];
      if (!entry.observer) continue;
      auto const held = entry.observer->GetReference();
      if (held) {
        call(*static_cast<Listener*>(entry.listener));
      } else if (entry.observer->IsExpired()) {
        delivery.state.Blank(i);
      }
    }
  }

 private:
  struct CORVANTA_API State {
    std::vector<Entry> entries;
    std::unique_ptr<std::unordered_map<reference_countable::NWeakReferenceImpl const*, std::size_t>>
        index;  // of the entries that aren't blank, from kIndexFrom entries on
    std::size_t blankCount = 0;
    unsigned deliveries = 0;  // running now
    bool isOrphan = false;    // the set has gone; the last delivery deletes this

    std::size_t Find(reference_countable::NWeakReferenceImpl const* observer) const noexcept;
    void Blank(std::size_t position) noexcept;
    void MakeRoom();
    void Sweep() noexcept;
  };

  /// Keeps the entries in place while they are walked.
  struct CORVANTA_API Delivery {
    explicit Delivery(State& walked) noexcept : state(walked), end(walked.entries.size()) {
      ++state.deliveries;
    }
    Delivery(Delivery const&) = delete;
    Delivery& operator=(Delivery const&) = delete;
    ~Delivery() {
      if (--state.deliveries == 0) Finish();
    }
    void Finish() noexcept;

    State& state;
    std::size_t const end;
  };

  State* m_state = nullptr;
};

}  // namespace corvanta::core::observer::detail
