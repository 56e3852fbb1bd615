#pragma once

#include <boost/intrusive_ptr.hpp>

#include "corvanta/core/observer/detail/NObservableImpl.h"
#include "corvanta/core/reference_countable/hold.h"

namespace corvanta::core::observer {

/// The observer side of a subject: listeners of class `Listener`, held weakly.
///
/// A base of `Subject`, which alone can deliver. Copies start without observers. Listeners are
/// notified in the order of registration, but must not rely on it. One that a handler removes and
/// adds again is notified of the running event exactly once. Adding, removing, dying, editing,
/// throwing: rules 8 to 26 of docs/events.md.
template <class Subject, class Listener>
class CORVANTA_API NObservable {
 public:
  /// Registers `listener`, weakly. One whose count is 0, such as an object on the stack, is
  /// registered as well, but receives nothing until somebody holds it by `boost::intrusive_ptr`.
  /// Fails: false if `listener` is registered already.
  bool AddObserver(Listener& listener) { return m_observers.AddObserver(listener, &listener); }
  /// Fails: false if `listener` isn't registered.
  bool RemoveObserver(Listener& listener) noexcept { return m_observers.RemoveObserver(listener); }

 protected:
  NObservable() noexcept = default;
  NObservable(NObservable const&) noexcept {}
  NObservable& operator=(NObservable const&) noexcept { return *this; }
  ~NObservable() = default;

 private:
  friend Subject;

  /// Calls `call(Listener&)` for each observer; a counted subject is held while the delivery runs.
  template <class Call>
  void NotifyObservers(Call&& call) const {
    if (m_observers.IsEmpty()) return;
    Subject const& subject = static_cast<Subject const&>(*this);
    if constexpr (requires { subject.TryAddRef(); }) {
      auto const held = reference_countable::Hold(subject);
      m_observers.template Deliver<Listener>(call);
    } else {
      m_observers.template Deliver<Listener>(call);
    }
  }

  detail::NObservableImpl m_observers;
};

}  // namespace corvanta::core::observer
