#pragma once

#include <boost/intrusive_ptr.hpp>

namespace corvanta::core::reference_countable {

/// A counted pointer that takes no reference, to look an object up in a container of counted
/// pointers: asking for an object that nobody holds must not end it.
template <class T>
class NUncounted {
 public:
  explicit NUncounted(T& object) noexcept : m_pointer(&object, false) {}
  NUncounted(NUncounted const&) = delete;
  NUncounted& operator=(NUncounted const&) = delete;
  ~NUncounted() { m_pointer.detach(); }

  operator boost::intrusive_ptr<T> const&() const noexcept { return m_pointer; }

 private:
  boost::intrusive_ptr<T> m_pointer;
};

}  // namespace corvanta::core::reference_countable
