#pragma once

#include <boost/intrusive_ptr.hpp>

namespace corvanta::core::reference_countable {

/// Holds `object` for a scope in which listeners may drop its last reference.
/// Fails: null if nobody holds it, so that asking doesn't destroy it, and in its destructor.
template <class Object>
boost::intrusive_ptr<Object> Hold(Object& object) noexcept {
  return {object.TryAddRef() ? &object : nullptr, false};
}

}  // namespace corvanta::core::reference_countable
