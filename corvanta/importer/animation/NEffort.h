#pragma once

#include <cstddef>

#include "corvanta/export.h"

namespace corvanta::importer {

/// Counts what the cameras and animations of a model file cost beyond their size in the file: a
/// turn becomes several keys, and a camera gets curves of its own for whatever moves above it.
class CORVANTA_API NEffort {
 public:
  explicit NEffort(std::size_t mostKeys = 5'000'000, std::size_t mostTransforms = 50'000'000)
      : m_keys{mostKeys, mostKeys}, m_transforms{mostTransforms, mostTransforms} {}

  /// Keys of three values.
  /// Fails: throws NImportError beyond the most.
  void AddKeys(std::size_t count) { Take(m_keys, count, "keys"); }
  /// Transforms of an item at one time.
  /// Fails: throws NImportError beyond the most.
  void AddTransforms(std::size_t count) { Take(m_transforms, count, "transforms"); }

 private:
  struct Budget {
    std::size_t left;
    std::size_t most;
  };

  static void Take(Budget& budget, std::size_t count, char const* what) {
    if (count > budget.left) Refuse(budget.most, what);
    budget.left -= count;
  }
  [[noreturn]] static void Refuse(std::size_t most, char const* what);

  Budget m_keys;
  Budget m_transforms;
};

}  // namespace corvanta::importer
