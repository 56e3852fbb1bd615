#pragma once

#include <boost/intrusive_ptr.hpp>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_map>

#include "corvanta/core/reference_countable/NWeakReferenceImpl.h"
#include "corvanta/export.h"

namespace corvanta::core::observer::detail {

/// The weak observer set of a subject, in order of registration.
///
/// Entries stand contiguous, each with the listener pointer as it was registered, so that a
/// delivery neither chases tree nodes nor casts. A removed or dead entry is blanked and swept
/// later. An observer that is removed while a delivery runs keeps its place until the outermost one
/// ends, and takes it again when it is added again: what has passed the place doesn't call it
/// twice, what has it ahead calls it. From 16 entries on a hash index finds the entries. A set that
/// never had an observer is one null pointer; one observer takes one allocation.
class CORVANTA_API NObservableImpl {
 public:
  struct Entry {
    // Whose place this is. Null: nobody's, to be swept.
    boost::intrusive_ptr<reference_countable::NWeakReferenceImpl const> observer;
    void* listener = nullptr;  // null: not registered
  };
  using Iterator = Entry const*;

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
  bool RemoveObserver(
      reference_countable::NReferenceCountableWithWeakReference const& observer) noexcept;

  /// Whether no observer was ever registered, or none is left. Dead ones count until they are
  /// swept.
  bool IsEmpty() const noexcept { return m_state == nullptr || m_state->size == 0; }
  /// The entries in order of registration, blank ones among them.
  Iterator GetBegin() const noexcept;
  Iterator GetEnd() const noexcept;

  /// Calls `call(Listener&)` for every live observer that was registered when the delivery began,
  /// unless it is removed, and not added again, before its turn. Holds each while it is called. A
  /// call may add and remove observers, and may end the subject; an exception of a call passes
  /// through, and the rest aren't called.
  /// Cost: allocates nothing.
  template <class Listener, class Call>
  void Deliver(Call&& call) const {
    if (IsEmpty()) return;
    Delivery const delivery(*m_state);
    for (std::size_t i = 0; i != delivery.end; ++i) {
      Entry const& entry = delivery.state.At(i);
      if (entry.listener == nullptr) continue;
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
    std::unique_ptr<Entry[]> many;  // null while `first` is room enough
    Entry first;
    std::unique_ptr<std::unordered_map<reference_countable::NWeakReferenceImpl const*, std::size_t>>
        index;  // of the entries with an observer, from kIndexFrom entries on
    std::uint32_t size = 0;
    std::uint32_t capacity = 1;
    std::uint32_t blankCount = 0;           // entries without a listener
    std::uint32_t deliveries : 30 = 0;      // running now
    std::uint32_t isKeepingPlaces : 1 = 0;  // of observers removed while these run
    std::uint32_t isOrphan : 1 = 0;         // the set has gone; the last delivery deletes this

    Entry& At(std::size_t position) noexcept { return many ? many[position] : first; }
    std::size_t Find(reference_countable::NWeakReferenceImpl const* observer) noexcept;
    void Blank(std::size_t position) noexcept;
    void GivePlacesUp() noexcept;
    void MakeRoom();
    void Grow();
    void Sweep() noexcept;
  };

  /// Keeps the entries in place while they are walked.
  struct CORVANTA_API Delivery {
    explicit Delivery(State& walked) noexcept : state(walked), end(walked.size) {
      ++state.deliveries;
    }
    Delivery(Delivery const&) = delete;
    Delivery& operator=(Delivery const&) = delete;
    ~Delivery() {
      state.deliveries -= 1u;
      if (state.deliveries == 0u) Finish();
    }
    void Finish() noexcept;

    State& state;
    std::size_t const end;
  };

  State* m_state = nullptr;
};

}  // namespace corvanta::core::observer::detail
