#pragma once

#include <atomic>

#include "corvanta/core/reference_countable/detail/single_threaded.h"
#include "corvanta/export.h"

namespace corvanta::core::reference_countable {

/// The intrusive count under every object of the model. Hold such objects by
/// `boost::intrusive_ptr`.
///
/// The count is atomic and starts at 0; the release that takes it back to 0 destroys the object.
/// While the destructor runs the count stands far below zero, so that a counted pointer which comes
/// and goes in there does nothing.
class CORVANTA_API NReferenceCountable {
 public:
  void AddRef() const noexcept {
    if (detail::IsSingleThreaded()) {
      AddPlainly(1);
    } else {
      m_count.fetch_add(1, std::memory_order_relaxed);
    }
  }
  void Release() const noexcept {
    int const before = detail::IsSingleThreaded() ? AddPlainly(-1)
                                                  : m_count.fetch_sub(1, std::memory_order_acq_rel);
    if (before == 1) Destroy();
  }
  /// Adds a reference only if somebody holds one already.
  /// Fails: false while the count is 0, and in the destructor.
  bool TryAddRef() const noexcept {
    int count = m_count.load(std::memory_order_relaxed);
    if (detail::IsSingleThreaded()) {
      if (count <= 0) return false;
      m_count.store(count + 1, std::memory_order_relaxed);
      return true;
    }
    while (count > 0) {
      if (m_count.compare_exchange_weak(count, count + 1, std::memory_order_relaxed)) return true;
    }
    return false;
  }

  /// How many references there are; below 0 in the destructor.
  int GetReferenceCount() const noexcept { return m_count.load(std::memory_order_relaxed); }
  /// Whether whoever asks holds the only reference.
  bool IsHeldOnce() const noexcept { return m_count.load(std::memory_order_relaxed) == 1; }

 protected:
  NReferenceCountable() noexcept = default;
  NReferenceCountable(NReferenceCountable const&) noexcept {}
  NReferenceCountable& operator=(NReferenceCountable const&) noexcept { return *this; }
  virtual ~NReferenceCountable();

  /// Whether the destructor has been started by the last release.
  bool IsDying() const noexcept { return m_count.load(std::memory_order_relaxed) < 0; }

 private:
  /// Gives the count from before.
  int AddPlainly(int step) const noexcept {
    int const before = m_count.load(std::memory_order_relaxed);
    m_count.store(before + step, std::memory_order_relaxed);
    return before;
  }
  void Destroy() const noexcept;

  mutable std::atomic<int> m_count{0};
};

inline void intrusive_ptr_add_ref(NReferenceCountable const* object) noexcept { object->AddRef(); }
inline void intrusive_ptr_release(NReferenceCountable const* object) noexcept { object->Release(); }

}  // namespace corvanta::core::reference_countable
