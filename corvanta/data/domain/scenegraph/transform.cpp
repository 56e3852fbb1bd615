#include "corvanta/data/domain/scenegraph/transform.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

#include "corvanta/core/reference_countable/hold.h"
#include "corvanta/data/domain/detail/attribute_effects.h"
#include "corvanta/data/domain/scenegraph/detail/item_access.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphCameraNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphReferenceNode.h"

namespace corvanta::data::domain::scenegraph {

namespace {

using detail::NItemAccess;
using enum domain::detail::NAttributeEffect;
using item::NSceneGraphItemNode;
using item::NSceneGraphReferenceNode;
using tree::NSceneGraphTreeNode;
using VX_Math::Matrix;

/// What a change of an item's or a camera item's attributes dirties.
constexpr std::pair<std::wstring_view, core::attribute::detail::NNameEffects> kEffects[] = {
#define CORVANTA_ROWS_EFFECTS
#include "corvanta/data/domain/scenegraph/item/item_attributes.def"
#define CORVANTA_ROWS_EFFECTS
#include "corvanta/data/domain/scenegraph/item/camera_item_attributes.def"
};

/// One tree's part of the product: from an item up to where the tree ends.
class Ascent {
 public:
  Ascent(NSceneGraphItemNode const& item, Matrix& matrix) : m_item(&item), m_out(matrix) {}

  /// Takes in the item that it stands at.
  /// Fails: false for an absolute item, at which the product ends.
  bool MultiplyItem() {
    m_out.MultRight(m_item->GetTransform());
    return !m_item->TransformIsAbsolute();
  }
  void MoveUp() {
    m_item = NItemAccess::GetParent(*m_item);
    if (m_item == nullptr) throw NGetGlobalTransformException();
  }
  NSceneGraphItemNode const& GetItem() const { return *m_item; }

 private:
  NSceneGraphItemNode const* m_item;
  Matrix& m_out;
};

/// Multiplies up to the item that `reference` shows as a root.
/// Fails: false for an absolute item on the way.
bool AscendToReference(NSceneGraphItemNode const& item, NSceneGraphReferenceNode const& reference,
                       Matrix& out) {
  Ascent ascent(item, out);
  if (!ascent.MultiplyItem()) return false;
  // Recording the reference may reach listeners, so it comes before the items are walked uncounted.
  reference.VerifyReference();
  while (!NItemAccess::IsReferrer(ascent.GetItem(), reference)) {
    ascent.MoveUp();
    if (!ascent.MultiplyItem()) return false;
  }
  return true;
}

}  // namespace

NGetGlobalTransformException::~NGetGlobalTransformException() = default;

bool IsSceneGraphTransformAttribute(wchar_t const* name) {
  if (name == nullptr) return false;
  std::wstring_view const wanted = name;
  return std::any_of(std::begin(kEffects), std::end(kEffects), [wanted](auto const& row) {
    return (row.second & NAE_GLOBAL) != 0 && row.first == wanted;
  });
}

Matrix& GetGlobalTransform(
    NSceneGraphItemNode const& item, NSceneGraphTreeNode const& tree,
    std::vector<boost::intrusive_ptr<NSceneGraphReferenceNode const>> const& checkPoints,
    Matrix& out) {
  // Only through check points are listeners reached.
  auto const heldItem = checkPoints.empty() ? nullptr : core::reference_countable::Hold(item);
  auto const heldTree = checkPoints.empty() ? nullptr : core::reference_countable::Hold(tree);
  Matrix product;
  NSceneGraphItemNode const* current = &item;
  bool isFirst = true;
  for (auto point = checkPoints.rbegin(); point != checkPoints.rend(); ++point) {
    auto const shown = *point ? (*point)->GetSceneGraph() : nullptr;
    if (!shown) throw NGetGlobalTransformException();
    if (!isFirst) product.MultRight(shown->GetControlTransform().Inverse());
    bool const isRelative = AscendToReference(*current, **point, product);
    product.MultRight(shown->GetControlTransform());
    if (!isRelative) return out = product;
    current = point->get();
    isFirst = false;
  }
  auto const root = tree.GetRoot();
  if (!root) throw NGetGlobalTransformException();
  if (!isFirst) product.MultRight(tree.GetControlTransform().Inverse());
  Ascent ascent(*current, product);
  while (ascent.MultiplyItem() && &ascent.GetItem() != root.get()) ascent.MoveUp();
  product.MultRight(tree.GetControlTransform());
  return out = product;
}

Matrix GetGlobalTransform(
    NSceneGraphItemNode const& item, NSceneGraphTreeNode const& tree,
    std::vector<boost::intrusive_ptr<NSceneGraphReferenceNode const>> const& checkPoints) {
  Matrix out;
  return GetGlobalTransform(item, tree, checkPoints, out);
}

}  // namespace corvanta::data::domain::scenegraph
