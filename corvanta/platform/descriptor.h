#pragma once

#include <unistd.h>

#include <utility>

namespace corvanta::platform {

/// A file descriptor, closed by its end. -1 stands for none.
class NDescriptor {
 public:
  explicit NDescriptor(int descriptor = -1) : m_descriptor(descriptor) {}
  NDescriptor(NDescriptor&& other) noexcept : m_descriptor(std::exchange(other.m_descriptor, -1)) {}
  NDescriptor& operator=(NDescriptor&& other) noexcept {
    std::swap(m_descriptor, other.m_descriptor);
    return *this;
  }
  ~NDescriptor() {
    if (m_descriptor >= 0) close(m_descriptor);
  }

  int Get() const { return m_descriptor; }
  /// Hands it over to the caller, who closes it.
  int Release() { return std::exchange(m_descriptor, -1); }
  explicit operator bool() const { return m_descriptor >= 0; }

 private:
  int m_descriptor;
};

}  // namespace corvanta::platform
