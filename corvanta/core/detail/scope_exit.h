#pragma once

#include <utility>

namespace corvanta::core::detail {

/// Runs a function at the end of a scope, also when an exception leaves it.
template <class F>
class ScopeExit {
 public:
  explicit ScopeExit(F function) noexcept : m_function(std::move(function)) {}
  ScopeExit(ScopeExit const&) = delete;
  ScopeExit& operator=(ScopeExit const&) = delete;
  ~ScopeExit() { m_function(); }

 private:
  F m_function;
};

}  // namespace corvanta::core::detail
