#include "corvanta/data/history/NChangeSet.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <unordered_map>
#include <utility>

#include "corvanta/data/domain/geometry/NGeometryNode.h"
#include "corvanta/data/history/NChangeSetListener.h"
#include "corvanta/data/history/detail/NLevel.h"

namespace corvanta::data::history {

using core::attribute::NAttribute;
using core::variant::NVariant;

bool AreSame(NVariant const& a, NVariant const& b) noexcept {
  if (a.GetKind() != core::variant::NVK_DOUBLE || b.GetKind() != core::variant::NVK_DOUBLE) {
    return a == b;
  }
  double const x = a.GetDouble();
  double const y = b.GetDouble();
  return std::bit_cast<std::uint64_t>(x) == std::bit_cast<std::uint64_t>(y) ||
         (std::isnan(x) && std::isnan(y));
}

char const* GetText(NChangeKind kind) noexcept {
  constexpr char const* kTexts[] = {
      "nodeAdded",      "nodeRemoved",      "childAdded",
      "childRemoved",   "textureAdded",     "textureRemoved",
      "lightEnvAdded",  "lightEnvRemoved",  "lampCreated",
      "lampDeleted",    "surfaceAdded",     "surfaceRemoved",
      "nameChanged",    "referenceChanged", "environmentMapTypeChanged",
      "locatorChanged", "contentsChanged"};
  return kTexts[kind];
}

NChangeSetListener::~NChangeSetListener() = default;

namespace {

std::size_t CountBytes(std::wstring const& text) { return text.size() * sizeof(wchar_t); }

std::size_t CountBytes(NVariant const& value) {
  return value.GetKind() == core::variant::NVK_STRING ? CountBytes(value.GetString()) : 0;
}

std::size_t CountBytes(domain::geometry::NSurface const& surface) {
  std::size_t const vertex =
      2 * sizeof(structs::XYZ) + surface.GetUVWsMap().size() * sizeof(structs::UVW);
  return surface.GetCoords().size() * vertex + surface.GetIndices().size() * sizeof(unsigned int);
}

/// With what the change keeps although it has left the document.
std::size_t CountBytes(NChange const& change) {
  constexpr std::size_t kNode = 1000;
  std::size_t bytes = sizeof change;
  if (change.texts) {
    bytes += sizeof(NChange::Texts) + CountBytes(change.texts->nameBefore) +
             CountBytes(change.texts->nameAfter);
  }
  if (change.contents) bytes += change.contents->bytes;
  if (change.kind == NCK_NODE_REMOVED) {
    bytes += kNode;
    auto const* const geometry =
        dynamic_cast<domain::geometry::NGeometryNode const*>(change.element.GetNode());
    if (geometry != nullptr) {
      for (auto const& surface : geometry->GetSurfaces()) bytes += CountBytes(*surface);
    }
  } else if (change.kind == NCK_SURFACE_REMOVED) {
    bytes +=
        CountBytes(dynamic_cast<domain::geometry::NSurface const&>(*change.element.GetObject()));
  }
  return bytes;
}

std::size_t CountBytes(NChangeSet::Data const& data) {
  std::size_t bytes = sizeof data + CountBytes(data.name) + CountBytes(data.mergeKey);
  for (auto const& change : data.attributes) {
    bytes += sizeof change + CountBytes(change.GetBefore()) + CountBytes(change.GetAfter());
  }
  for (auto const& change : data.changes) bytes += CountBytes(change);
  return bytes;
}

std::shared_ptr<NChangeSet::Data const> const& GetEmptyData() {
  static auto const& data =
      *new std::shared_ptr<NChangeSet::Data const>(std::make_shared<NChangeSet::Data const>());
  return data;
}

}  // namespace

NChangeSet::NChangeSet() : m_data(GetEmptyData()) {}

std::optional<NChangeSet> NChangeSet::MergedWith(NChangeSet const& other) const {
  auto const& later = other.GetAttributeChanges();
  bool const isAlike = GetChanges().empty() && other.GetChanges().empty() &&
                       later.size() == GetAttributeChanges().size();
  if (!isAlike) return std::nullopt;
  std::unordered_map<NAttribute const*, NAttributeChange const*> found;
  for (auto const& change : later) found.emplace(&change.GetAttribute(), &change);
  auto const merged = std::make_shared<Data>(*m_data);
  for (auto& change : merged->attributes) {
    auto const match = found.find(&change.GetAttribute());
    if (match == found.end()) return std::nullopt;
    change.SetAfter(NVariant(match->second->GetAfter()));
  }
  merged->bytes = CountBytes(*merged);
  return NChangeSet(merged);
}

namespace detail {

NLevel::NLevel(NLevel&& other) noexcept
    : owner(other.owner),
      isEnded(other.isEnded),
      m_isMarking(std::exchange(other.m_isMarking, false)),
      m_data(std::move(other.m_data)),
      m_index(std::move(other.m_index)) {
  other.m_data = {};
  other.m_index.clear();
}

NLevel& NLevel::operator=(NLevel&& other) noexcept {
  if (this == &other) return *this;
  ClearMarks();
  owner = other.owner;
  isEnded = other.isEnded;
  m_isMarking = std::exchange(other.m_isMarking, false);
  m_data = std::exchange(other.m_data, {});
  m_index = std::exchange(other.m_index, {});
  return *this;
}

bool NLevel::IsIn(NAttribute const& attribute, bool isOutside) const noexcept {
  return m_isMarking && !isOutside ? attribute.IsRecorded() : m_index.count(&attribute) != 0;
}

void NLevel::Add(NAttribute& attribute, core::node::NNode* node, bool isOutside,
                 NVariant&& before) {
  if (IsIn(attribute, isOutside)) return;
  m_data.attributes.emplace_back(attribute, node, std::move(before));
  if (m_isMarking && !isOutside) {
    attribute.SetIsRecorded(true);
    return;
  }
  try {
    m_index.emplace(&attribute, isOutside);
  } catch (...) {
    m_data.attributes.pop_back();
    throw;
  }
}

void NLevel::Append(NLevel&& inner) {
  inner.ClearMarks();
  for (auto& change : inner.m_data.attributes) {
    auto const found = inner.m_index.find(&change.GetAttribute());
    bool const isOutside = found != inner.m_index.end() && found->second;
    Add(change.GetAttribute(), change.GetNode(), isOutside, NVariant(change.GetBefore()));
  }
  auto& changes = m_data.changes;
  changes.reserve(changes.size() + inner.m_data.changes.size());
  for (auto& change : inner.m_data.changes) changes.push_back(std::move(change));
  if (!inner.m_data.name.empty()) m_data.name = std::move(inner.m_data.name);
  if (!inner.m_data.isComplete) m_data.isComplete = false;
}

void NLevel::ClearMarks() noexcept {
  if (!m_isMarking) return;
  for (auto const& change : m_data.attributes) {
    if (m_index.empty() || m_index.count(&change.GetAttribute()) == 0) {
      change.GetAttribute().SetIsRecorded(false);
    }
  }
  m_isMarking = false;
}

NChangeSet NLevel::Close(NChangeOrigin origin) {
  ClearMarks();
  std::erase_if(m_data.attributes, [](NAttributeChange& change) {
    change.SetAfter(change.GetAttribute().GetValue());
    return AreSame(change.GetBefore(), change.GetAfter());
  });
  auto& attributes = m_data.attributes;
  if (attributes.capacity() > 2 * attributes.size() + 8) attributes.shrink_to_fit();
  m_data.origin = origin;
  m_data.bytes = CountBytes(m_data);
  return NChangeSet(std::make_shared<NChangeSet::Data const>(std::move(m_data)));
}

}  // namespace detail

}  // namespace corvanta::data::history
