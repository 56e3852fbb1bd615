#include "app/compare/NMatching.h"

#include <string>
#include <typeinfo>

namespace corvanta::app {

namespace {

using core::node::NNode;

bool IsSameKind(NNode const& a, NNode const& b) { return typeid(a) == typeid(b); }

}  // namespace

NMatching::NMatching(data::document::NDocument const& before,
                     data::document::NDocument const& after) {
  for (std::size_t i = 0; i != before.GetDomains().size(); ++i) {
    Match(*before.GetDomains()[i], *after.GetDomains()[i]);
  }
}

void NMatching::Match(core::domain::NDomainBase const& before,
                      core::domain::NDomainBase const& after) {
  for (auto at = before.GetNodeBegin(); at != before.GetNodeEnd(); ++at) {
    auto const same = after.QueryNode(at->GetID());
    if (same && IsSameKind(*at, *same)) Add(*at, *same);
  }
  std::unordered_map<std::wstring, NNode const*> names;
  for (auto at = after.GetNodeBegin(); at != after.GetNodeEnd(); ++at) {
    if (GetBefore(*at) == nullptr) names.emplace(at->GetName(), &*at);
  }
  for (auto at = before.GetNodeBegin(); at != before.GetNodeEnd(); ++at) {
    if (GetAfter(*at) != nullptr) continue;
    auto const named = names.find(at->GetName());
    if (named != names.end() && IsSameKind(*at, *named->second)) Add(*at, *named->second);
  }
}

void NMatching::Add(NNode const& before, NNode const& after) {
  m_after.emplace(&before, &after);
  m_before.emplace(&after, &before);
}

}  // namespace corvanta::app
