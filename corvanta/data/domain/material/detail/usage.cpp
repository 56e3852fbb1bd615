#include "corvanta/data/domain/material/detail/usage.h"

#include <boost/thread/lock_guard.hpp>
#include <boost/thread/mutex.hpp>
#include <iterator>
#include <map>

#include "corvanta/core/domain/NDomainManager.h"

namespace corvanta::data::domain::material::detail {

namespace {

using core::domain::NDomainManager;
using Uses = std::map<MaterialReference, unsigned int>;

struct Table {
  boost::mutex mutex;
  // By the manager's link, which no later manager shares. Whatever has come to nothing is erased.
  std::map<core::domain::detail::NLinkPointer<NDomainManager const>, Uses> managers;
};

/// Never destroyed: models may outlive every static.
Table& GetTable() {
  static Table& table = *new Table;
  return table;
}

void Decrement(Uses& uses, MaterialReference const& material) {
  auto const found = uses.find(material);
  if (found != uses.end() && --found->second == 0) uses.erase(found);
}

}  // namespace

void AddUse(NDomainManager const& manager, MaterialReference const& material) {
  Table& table = GetTable();
  boost::lock_guard<boost::mutex> const lock(table.mutex);
  auto const uses = table.managers.try_emplace(manager.GetLink()).first;
  try {
    ++uses->second[material];
  } catch (...) {
    if (uses->second.empty()) table.managers.erase(uses);
    throw;
  }
}

void RemoveUse(NDomainManager const* manager, MaterialReference const& material) noexcept {
  Table& table = GetTable();
  boost::lock_guard<boost::mutex> const lock(table.mutex);
  auto const first =
      manager == nullptr ? table.managers.begin() : table.managers.find(manager->GetLink());
  auto const last =
      manager == nullptr || first == table.managers.end() ? table.managers.end() : std::next(first);
  for (auto i = first; i != last;) {
    Decrement(i->second, material);
    i = i->second.empty() ? table.managers.erase(i) : std::next(i);
  }
}

NUse::NUse(NDomainManager const* manager, MaterialReference const& material)
    : m_manager(manager == nullptr || !material ? nullptr : manager->GetLink()),
      m_material(material) {
  if (m_manager) AddUse(*manager, material);
}

NUse::~NUse() {
  if (m_manager && m_manager->owner != nullptr) RemoveUse(m_manager->owner, m_material);
}

bool NUse::Keep(NDomainManager const* manager) noexcept {
  if (!m_manager || manager == nullptr || manager->GetLink() != m_manager) return false;
  m_manager.reset();
  return true;
}

bool HasUse(NDomainManager const& manager, MaterialReference const& material) {
  Table& table = GetTable();
  boost::lock_guard<boost::mutex> const lock(table.mutex);
  auto const uses = table.managers.find(manager.GetLink());
  return uses != table.managers.end() && uses->second.count(material) != 0;
}

}  // namespace corvanta::data::domain::material::detail
