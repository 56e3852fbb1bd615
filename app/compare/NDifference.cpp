#include "app/compare/NDifference.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "app/compare/NMatching.h"
#include "app/output/text.h"
#include "corvanta/core/text/convert.h"
#include "corvanta/data/domain/animation/NAnimationNode.h"
#include "corvanta/data/domain/geometry/NGeometryNode.h"
#include "corvanta/data/domain/geometry/NSurface.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphItemNode.h"

namespace corvanta::app {

namespace {

namespace domain = data::domain;
using core::node::NNode;
using core::text::ToNarrow;
using core::variant::NVariant;
using domain::scenegraph::item::NSceneGraphItemNode;

bool IsSame(NVariant const& a, NVariant const& b) {
  bool const areNumbers =
      a.GetKind() == core::variant::NVK_DOUBLE && b.GetKind() == core::variant::NVK_DOUBLE;
  return a == b || (areNumbers && std::isnan(a.GetDouble()) && std::isnan(b.GetDouble()));
}

template <class Element>
bool AreSame(std::vector<Element> const& a, std::vector<Element> const& b) {
  return a.size() == b.size() &&
         (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(Element)) == 0);
}

using Surface = boost::intrusive_ptr<domain::geometry::NSurface>;

/// Which array of two geometries differs somewhere; sizes are compared elsewhere.
template <class IsSamePair>
bool Differ(std::vector<Surface> const& a, std::vector<Surface> const& b,
            IsSamePair const& isSame) {
  return !std::equal(a.begin(), a.end(), b.begin(), b.end(),
                     [&](Surface const& x, Surface const& y) { return isSame(*x, *y); });
}

std::vector<std::string> FindChangedArrays(domain::geometry::NGeometryNode const& before,
                                           domain::geometry::NGeometryNode const& after) {
  std::vector<Surface> const a(before.GetSurfaces().begin(), before.GetSurfaces().end());
  std::vector<Surface> const b(after.GetSurfaces().begin(), after.GetSurfaces().end());
  std::vector<std::string> changed;
  using S = domain::geometry::NSurface;
  if (Differ(a, b, [](S const& x, S const& y) { return AreSame(x.GetCoords(), y.GetCoords()); }))
    changed.emplace_back("coordinates");
  if (Differ(a, b, [](S const& x, S const& y) { return AreSame(x.GetNormals(), y.GetNormals()); }))
    changed.emplace_back("normals");
  if (Differ(a, b, [](S const& x, S const& y) { return AreSame(x.GetIndices(), y.GetIndices()); }))
    changed.emplace_back("indices");
  auto const isSameMap = [](S const& x, S const& y) {
    auto const& u = x.GetUVWsMap();
    auto const& v = y.GetUVWsMap();
    return std::equal(u.begin(), u.end(), v.begin(), v.end(), [](auto const& p, auto const& q) {
      return p.first == q.first && AreSame(p.second, q.second);
    });
  };
  if (Differ(a, b, isSameMap)) changed.emplace_back("texture coordinates");
  return changed;
}

/// All keys of an animation, with what each moves, as text.
std::vector<std::string> ListKeys(domain::animation::NAnimationNode const& node) {
  std::vector<std::string> keys;
  for (auto const& [context, curve] : node.GetAnimations()) {
    auto const target = context.target ? context.target->GetTarget() : nullptr;
    auto const* const named = dynamic_cast<NNode const*>(target.get());
    std::string const head = ToNarrow(
        named != nullptr ? named->GetName() + L'.' + context.attributeName : context.attributeName);
    for (auto const& [handle, key] : curve->GetKeyData()) {
      keys.push_back(head + ' ' + NumberText(key.time) + ' ' + NumberText(key.value));
    }
  }
  // Of one target the order is by addresses or numbers of this run.
  std::sort(keys.begin(), keys.end());
  return keys;
}

class Comparison {
 public:
  Comparison(data::document::NDocument const& before, data::document::NDocument const& after)
      : m_before(before), m_after(after), m_matching(before, after) {}

  std::vector<NDifference> Run() {
    for (std::size_t i = 0; i != m_before.GetDomains().size(); ++i) {
      auto const& old = *m_before.GetDomains()[i];
      for (auto at = old.GetNodeBegin(); at != old.GetNodeEnd(); ++at) {
        if (m_matching.GetAfter(*at) == nullptr) AddSingle(NDK_REMOVED, *at);
      }
      auto const& now = *m_after.GetDomains()[i];
      for (auto at = now.GetNodeBegin(); at != now.GetNodeEnd(); ++at) {
        if (m_matching.GetBefore(*at) == nullptr) AddSingle(NDK_ADDED, *at);
      }
      for (auto at = old.GetNodeBegin(); at != old.GetNodeEnd(); ++at) {
        if (auto const* const other = m_matching.GetAfter(*at)) CompareNodes(*at, *other);
      }
    }
    return std::move(m_differences);
  }

 private:
  bool IsSingle(NNode const& node) const {
    return m_matching.GetAfter(node) == nullptr && m_matching.GetBefore(node) == nullptr;
  }

  void AddSingle(NDifferenceKind kind, NNode const& node) {
    std::size_t below = 0;
    if (auto const* const item = dynamic_cast<NSceneGraphItemNode const*>(&node)) {
      auto const parent = item->GetParent();
      if (parent && IsSingle(*parent)) return;
      below = CountSinglesBelow(*item);
    }
    m_differences.push_back(
        {kind, GetKind(node), GetPlace(node), "", NRecord(nullptr), NRecord(nullptr), below});
  }

  std::size_t CountSinglesBelow(NSceneGraphItemNode const& top) const {
    std::size_t count = 0;
    std::vector<NSceneGraphItemNode const*> open{&top};
    while (!open.empty()) {
      auto const* const item = open.back();
      open.pop_back();
      for (auto const& child : item->GetChildren()) {
        if (!IsSingle(*child)) continue;
        ++count;
        open.push_back(child.get());
      }
    }
    return count;
  }

  void Add(NNode const& node, std::string what, NRecord before = nullptr, NRecord after = nullptr) {
    m_differences.push_back({NDK_CHANGED, GetKind(node), GetPlace(node), std::move(what),
                             std::move(before), std::move(after)});
  }

  void CompareNodes(NNode const& before, NNode const& after) {
    for (auto at = before.GetAttributeBegin(); at != before.GetAttributeEnd(); ++at) {
      auto const* const other = after.QueryAttribute(at->GetName());
      if (other == nullptr || IsSame(at->GetValue(), other->GetValue())) continue;
      Add(after, ToNarrow(at->GetName()), DescribeValue(at->GetValue()),
          DescribeValue(other->GetValue()));
    }
    NRecord old = DescribeNode(before);
    NRecord now = DescribeNode(after);
    RemoveIds(old);
    RemoveIds(now);
    for (auto const& [key, value] : now.items()) {
      if (!old.contains(key) || old[key] != value) Add(after, key, GetOr(old, key), value);
    }
    for (auto const& [key, value] : old.items()) {
      if (!now.contains(key)) Add(after, key, value, nullptr);
    }
    CompareStructure(before, after);
    CompareArrays(before, after);
  }

  static NRecord GetOr(NRecord const& record, std::string const& key) {
    return record.contains(key) ? record[key] : NRecord(nullptr);
  }

  void CompareStructure(NNode const& before, NNode const& after) {
    auto const* const old = dynamic_cast<NSceneGraphItemNode const*>(&before);
    auto const* const now = dynamic_cast<NSceneGraphItemNode const*>(&after);
    if (old == nullptr || now == nullptr) return;
    NNode const* const parent = old->GetParent().get();
    NNode const* const newParent = now->GetParent().get();
    bool const isMoved =
        parent == nullptr ? newParent != nullptr : m_matching.GetAfter(*parent) != newParent;
    // One below a parent that has gone or come has moved, too.
    if (isMoved) Add(after, "parent", GetName(parent), GetName(newParent));
    if (GetCommonChildren(*old, *now) != GetCommonChildren(*now, *old))
      Add(after, "order of children");
  }

  /// Those children of `item` that the other one has too, as nodes of the later document.
  std::vector<NNode const*> GetCommonChildren(NSceneGraphItemNode const& item,
                                              NSceneGraphItemNode const& other) const {
    std::vector<NNode const*> common;
    for (auto const& child : item.GetChildren()) {
      NNode const* const after = m_matching.GetAfter(*child);
      NNode const* const match = after != nullptr ? after : m_matching.GetBefore(*child);
      auto const* const twin = dynamic_cast<NSceneGraphItemNode const*>(match);
      if (twin == nullptr || twin->GetParent().get() != &other) continue;
      common.push_back(after != nullptr ? after : child.get());
    }
    return common;
  }

  void CompareArrays(NNode const& before, NNode const& after) {
    auto const* const geometry = dynamic_cast<domain::geometry::NGeometryNode const*>(&before);
    if (geometry != nullptr) {
      auto const& other = dynamic_cast<domain::geometry::NGeometryNode const&>(after);
      for (std::string const& what : FindChangedArrays(*geometry, other)) Add(after, what);
    }
    auto const* const animation = dynamic_cast<domain::animation::NAnimationNode const*>(&before);
    if (animation != nullptr) {
      auto const& other = dynamic_cast<domain::animation::NAnimationNode const&>(after);
      if (ListKeys(*animation) != ListKeys(other)) Add(after, "keys");
    }
  }

  static NRecord GetName(NNode const* node) {
    return node == nullptr ? NRecord(nullptr) : NRecord(ToNarrow(node->GetName()));
  }

  /// The names of the items above an item and its own, with slashes between.
  static std::string GetPlace(NNode const& node) {
    std::string place = ToNarrow(node.GetName());
    auto const* item = dynamic_cast<NSceneGraphItemNode const*>(&node);
    // As much as a line holds.
    constexpr int kMostLevels = 40;
    for (int i = 0; item != nullptr && item->GetParent(); ++i) {
      if (i == kMostLevels) return ".../" + place;
      item = item->GetParent().get();
      place = ToNarrow(item->GetName()) + '/' + place;
    }
    return place;
  }

  data::document::NDocument const& m_before;
  data::document::NDocument const& m_after;
  NMatching const m_matching;
  std::vector<NDifference> m_differences;
};

constexpr char const* kDifferenceWords[] = {"added", "removed", "changed"};

}  // namespace

std::vector<NDifference> Compare(data::document::NDocument const& before,
                                 data::document::NDocument const& after) {
  return Comparison(before, after).Run();
}

std::string FormatDifference(NDifference const& difference) {
  std::string line = kDifferenceWords[difference.kind];
  line += ' ' + difference.nodeKind + ' ' + Quoted(difference.place);
  if (difference.itemsBelow != 0) {
    line += " with " + Plural(difference.itemsBelow, "item", "items") + " below";
  }
  if (difference.kind != NDK_CHANGED) return line;
  line += ' ' + difference.what;
  bool const hasValues = !difference.before.is_null() || !difference.after.is_null();
  if (!hasValues) return line;
  return line + ": " + FormatValue(difference.before) + " -> " + FormatValue(difference.after);
}

NRecord DescribeDifference(NDifference const& difference) {
  NRecord record{{"kind", kDifferenceWords[difference.kind]},
                 {"nodeKind", difference.nodeKind},
                 {"place", difference.place}};
  if (difference.itemsBelow != 0) record["itemsBelow"] = difference.itemsBelow;
  if (difference.kind == NDK_CHANGED) {
    record["what"] = difference.what;
    record["before"] = difference.before;
    record["after"] = difference.after;
  }
  return record;
}

}  // namespace corvanta::app
