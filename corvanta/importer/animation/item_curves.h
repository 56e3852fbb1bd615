#pragma once

#include <array>
#include <boost/intrusive_ptr.hpp>
#include <cstddef>
#include <unordered_map>
#include <vector>

#include "corvanta/data/domain/animation/NAnimationNode.h"
#include "corvanta/data/domain/animation/NNodeAnimationTarget.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphItemNode.h"
#include "corvanta/export.h"
#include "corvanta/importer/animation/keys.h"
#include "corvanta/vx_math/Matrix.h"

namespace corvanta::importer {

/// Three attributes that belong together: x, y and z.
using NAttributeNames = std::array<wchar_t const*, 3>;

/// The curves that move an item.
struct NItemCurves {
  using Curve = boost::intrusive_ptr<data::operators::animation::NKeyFrameAnimation>;

  boost::intrusive_ptr<data::domain::animation::NNodeAnimationTarget> target;
  std::array<std::array<Curve, 3>, 3> curves;  // translation, rotation, scale; x y z; may be null
};

/// The items that an animation moves.
class CORVANTA_API NCurvesByItem {
 public:
  using Item = data::domain::scenegraph::item::NSceneGraphItemNode;

  /// Fails: null for an item that doesn't move.
  NItemCurves const* Find(Item const& item) const;
  /// A new entry for `item`.
  /// Fails: null if it has one.
  NItemCurves* Add(Item& item);

 private:
  std::unordered_map<Item const*, NItemCurves> m_entries;
};

/// Makes a curve of each of the three values of `keys` and binds it to `animation`.
/// Fails: null pointers without keys.
CORVANTA_API std::array<NItemCurves::Curve, 3> AddCurves(
    data::domain::animation::NAnimationNode& animation,
    boost::intrusive_ptr<data::domain::animation::NNodeAnimationTarget> const& target,
    NAttributeNames const& names, NTripleKeys const& keys);

/// The local matrix of `item` at `frame`. What no curve moves is as it stands now.
VX_Math::Matrix GetTransform(NCurvesByItem::Item const& item, NItemCurves const* curves,
                             double frame);

}  // namespace corvanta::importer
