#include "corvanta/renderer/scene/NDrawList.h"

#include <cmath>
#include <exception>
#include <utility>

namespace corvanta::renderer {

namespace {

bool IsFinite(VX_Math::Matrix const& matrix) {
  for (int row = 0; row != 4; ++row) {
    for (int column = 0; column != 4; ++column) {
      if (!std::isfinite(matrix(row, column))) return false;
    }
  }
  return true;
}

}  // namespace

void NDrawList::Clear() {
  m_items.clear();
  m_found = {};
  m_ranges.clear();
  m_begins.clear();
  m_hiddenDepth = 0;
  m_isWalked = false;
}

bool NDrawList::Update(data::domain::scenegraph::tree::NSceneGraphTreeNode& tree,
                       NDirtyFlags const& flags) {
  bool const isOther = GetTree().Get().get() != &tree;
  if (flags.structure || isOther || !m_isWalked) {
    Clear();
    Start(tree, nullptr);
    m_isWalked = true;
    // A vector that grows holds up to thrice as much meanwhile.
    m_items.reserve(m_found.size());
    // What was moved is given back meanwhile.
    for (; !m_found.empty(); m_found.pop_front()) m_items.push_back(std::move(m_found.front()));
    for (NDrawItem& item : m_items) UpdateTransform(item);
    return true;
  }
  if (flags.transforms) {
    for (NDrawItem& item : m_items) UpdateTransform(item);
    return false;
  }
  for (Item const* const moved : flags.movedItems) {
    auto const [begin, end] = m_ranges.equal_range(moved);
    for (auto range = begin; range != end; ++range) {
      for (std::size_t i = range->second.first; i != range->second.second; ++i)
        UpdateTransform(m_items[i]);
    }
  }
  return false;
}

void NDrawList::UpdateTransform(NDrawItem& item) {
  try {
    item.path.GetGlobalTransform(item.global);
  } catch (std::exception const&) {
    // An item that two lists hold, and whose parent leads elsewhere.
    item.hasFiniteTransform = false;
    return;
  }
  item.normals = item.global.Inverse().Transpose();
  item.hasFiniteTransform = IsFinite(item.global);
  // A flat model has no inverse; its normals are then those of its faces.
  if (!IsFinite(item.normals)) {
    item.normals = VX_Math::Matrix();
    item.normals.SetScale(0.0f);
  }
}

void NDrawList::BeforeCommon(Item& item, void const*, NCheckPoints const&) {
  if (m_hiddenDepth != 0 || !(m_isRoot || item.IsVisible())) ++m_hiddenDepth;
  m_isRoot = false;
  m_begins.push_back(m_found.size());
}

void NDrawList::AfterCommon(Item& item, void const*, NCheckPoints const&) {
  std::size_t const begin = m_begins.back();
  m_begins.pop_back();
  if (m_hiddenDepth != 0) {
    --m_hiddenDepth;
  } else if (begin != m_found.size()) {
    m_ranges.emplace(&item, std::pair(begin, m_found.size()));
  }
}

void NDrawList::Before(data::domain::scenegraph::tree::NSceneGraphTreeNode&, void const*,
                       NCheckPoints const&) {
  m_isRoot = true;
}

// A tree without a root has set the flag for nobody.
void NDrawList::After(data::domain::scenegraph::tree::NSceneGraphTreeNode&, void const*,
                      NCheckPoints const&) {
  m_isRoot = false;
}

void NDrawList::After(Model& model, void const*, NCheckPoints const& checkPoints) {
  if (m_hiddenDepth != 0) return;
  auto const tree = GetTree().Get();
  m_found.push_back({&model, NDrawItem::Path(model, *tree, checkPoints), {}, {}, false});
}

}  // namespace corvanta::renderer
