#pragma once

#include <boost/intrusive_ptr.hpp>
#include <concepts>
#include <exception>
#include <string>
#include <vector>

#include "corvanta/data/domain/scenegraph/check_points.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphReferenceNode.h"
#include "corvanta/export.h"
#include "corvanta/vx_math/Matrix.h"

namespace corvanta::data::domain::scenegraph {

/// The items named don't connect to the tree.
struct CORVANTA_API NGetGlobalTransformException : std::exception {
  ~NGetGlobalTransformException() override;
};

/// Whether `name` is an attribute that a global transform or a view depends on: translation,
/// rotation, pivot, scale, interest, "transform.isAbsolute". The up vector and "isVisible" aren't.
CORVANTA_API bool IsSceneGraphTransformAttribute(wchar_t const* name);
inline bool IsSceneGraphTransformAttribute(std::wstring const& name) {
  return IsSceneGraphTransformAttribute(name.c_str());
}

/// The global matrix of `item`, which is in the tree shown by the last of the `checkPoints`
/// (outermost first), or in `tree` when there are none.
///
/// It is the product of the local matrices from the item up, closed with the control transform of
/// each tree; at a reference the inverse of the outer tree's comes in. An absolute item ends it
/// with the control transform of its own tree.
/// Units: row vectors.
/// Fails: throws NGetGlobalTransformException for a null check point, a reference without a tree, a
/// tree without a root, and where the parents end before the root or the reference's tree.
/// Cost: a matrix product an item; nothing is cached here.
CORVANTA_API VX_Math::Matrix GetGlobalTransform(
    item::NSceneGraphItemNode const& item, tree::NSceneGraphTreeNode const& tree,
    std::vector<boost::intrusive_ptr<item::NSceneGraphReferenceNode const>> const& checkPoints);
/// The same into `out`, which it returns.
CORVANTA_API VX_Math::Matrix& GetGlobalTransform(
    item::NSceneGraphItemNode const& item, tree::NSceneGraphTreeNode const& tree,
    std::vector<boost::intrusive_ptr<item::NSceneGraphReferenceNode const>> const& checkPoints,
    VX_Math::Matrix& out);

/// The two above with the check points of a path; one that has gone counts as null. Templates, so
/// that a braced list means the forms above.
template <std::same_as<NCheckPoints> T>
VX_Math::Matrix& GetGlobalTransform(item::NSceneGraphItemNode const& item,
                                    tree::NSceneGraphTreeNode const& tree, T const& checkPoints,
                                    VX_Math::Matrix& out) {
  return GetGlobalTransform(item, tree,
                            std::vector<boost::intrusive_ptr<item::NSceneGraphReferenceNode const>>(
                                checkPoints.begin(), checkPoints.end()),
                            out);
}
template <std::same_as<NCheckPoints> T>
VX_Math::Matrix GetGlobalTransform(item::NSceneGraphItemNode const& item,
                                   tree::NSceneGraphTreeNode const& tree, T const& checkPoints) {
  VX_Math::Matrix out;
  return GetGlobalTransform(item, tree, checkPoints, out);
}

}  // namespace corvanta::data::domain::scenegraph
