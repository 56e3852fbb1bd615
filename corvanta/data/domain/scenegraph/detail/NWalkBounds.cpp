#include "corvanta/data/domain/scenegraph/detail/NWalkBounds.h"

#include <algorithm>

#include <pthread.h>

#include "corvanta/data/domain/scenegraph/NSceneGraphWalkError.h"
#include "corvanta/data/domain/scenegraph/detail/item_access.h"
#include "corvanta/data/domain/scenegraph/item/detail/block.h"
#include "corvanta/data/domain/scenegraph/walk_budget.h"

namespace corvanta::data::domain::scenegraph::detail {

namespace {

constexpr std::size_t kSearchedInLine = 48;
constexpr std::size_t kStackKept = 256 * 1024;

/// The lowest addresses of the running thread's stack, which are kept for what a hook may call.
struct Reserve {
  std::uintptr_t begin = 0;
  std::size_t size = 0;  // 0: unknown
};

Reserve FindReserve() noexcept {
  pthread_attr_t attributes;
  if (pthread_getattr_np(pthread_self(), &attributes) != 0) return {};
  void* begin = nullptr;
  std::size_t size = 0;
  bool const isKnown = pthread_attr_getstack(&attributes, &begin, &size) == 0;
  pthread_attr_destroy(&attributes);
  if (!isKnown) return {};
  return {reinterpret_cast<std::uintptr_t>(begin), std::min(kStackKept, size / 4)};
}

}  // namespace

NWalkBounds::NWalkBounds() noexcept : m_left(GetWalkBudget()) {}

void NWalkBounds::ThrowTooManyVisits() {
  throw NSceneGraphWalkError(NSceneGraphWalkError::kTooManyVisits);
}

bool NWalkBounds::Enter(tree::NSceneGraphTreeNode const& tree) {
  auto const searched = m_trees.begin() + std::min(m_trees.size(), kSearchedInLine);
  if (std::find(m_trees.begin(), searched, &tree) != searched) return false;
  m_trees.push_back(&tree);
  if (m_trees.size() <= kSearchedInLine) return true;
  try {
    if (m_indexed.insert(&tree).second) return true;
  } catch (...) {
    m_trees.pop_back();
    throw;
  }
  m_trees.pop_back();
  return false;
}

void NWalkBounds::Leave() noexcept {
  if (m_trees.size() > kSearchedInLine) m_indexed.erase(m_trees.back());
  m_trees.pop_back();
}

void RequireStack() {
  thread_local Reserve const reserve = FindReserve();
  auto const here = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
  // Below the stack's begin the difference wraps: the code runs on a stack of its own.
  if (here - reserve.begin < reserve.size) {
    throw NSceneGraphWalkError(NSceneGraphWalkError::kTooDeep);
  }
}

item::NSceneGraphItemNode const* NItemAccess::GetParent(item::NSceneGraphItemNode const& item) {
  return item.m_block->parent;
}

void NItemAccess::Prefetch(item::NSceneGraphItemNode const& item) noexcept {
  auto const* const block = reinterpret_cast<char const*>(item.m_block.get());
  for (std::size_t at = 0; at < sizeof *item.m_block; at += 64) __builtin_prefetch(block + at);
}

bool NItemAccess::IsReferrer(item::NSceneGraphItemNode const& item,
                             item::NSceneGraphReferenceNode const& reference) {
  return item.IsReferrer(reference);
}

unsigned NItemAccess::GetListCount(item::NSceneGraphItemNode const& item) {
  return item.m_block->listCount;
}

}  // namespace corvanta::data::domain::scenegraph::detail
