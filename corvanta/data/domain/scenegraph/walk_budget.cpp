#include "corvanta/data/domain/scenegraph/walk_budget.h"

#include <atomic>

namespace corvanta::data::domain::scenegraph {

namespace {

std::atomic<std::uint64_t> g_budget{kDefaultWalkBudget};

}  // namespace

void SetWalkBudget(std::uint64_t visits) noexcept {
  g_budget.store(visits, std::memory_order_relaxed);
}

std::uint64_t GetWalkBudget() noexcept { return g_budget.load(std::memory_order_relaxed); }

}  // namespace corvanta::data::domain::scenegraph
