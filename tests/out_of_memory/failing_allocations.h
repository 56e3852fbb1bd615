#pragma once

#include <new>

#include "tests/support/test.h"

/// This binary replaces operator new: it counts, and fails when it is told to.
namespace corvanta::out_of_memory {

/// How many allocations succeed from now on, before one throws std::bad_alloc: that one alone, or
/// it and all after it.
void FailAfter(std::size_t successes, bool failsOnce = false);
void NeverFail();
/// Whether one has failed since FailAfter.
bool HasFailed();
/// Allocations since the program began.
std::size_t CountAllocations();
/// Those that weren't given back.
std::size_t CountAlive();

/// Runs `operation` with its first allocation failing, then its second, and so on until it gets
/// through. Calls `check` after each failure. Gives the number of failures.
template <class Operation, class Check>
int FailEverywhere(Operation const& operation, Check const& check) {
  for (int failures = 0;; ++failures) {
    FailAfter(static_cast<std::size_t>(failures));
    try {
      operation();
      NeverFail();
      return failures;
    } catch (std::bad_alloc const&) {
      NeverFail();
      check();
    }
  }
}

}  // namespace corvanta::out_of_memory
