#pragma once

#include <array>
#include <boost/intrusive_ptr.hpp>
#include <vector>

#include "corvanta/core/attribute/NAttribute.h"
#include "corvanta/data/animation/detail/Step.h"
#include "corvanta/data/animation/detail/channels.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphItemNode.h"

namespace corvanta::data::animation::detail {

using Triple = std::array<double, 3>;

/// The item block of a key, with its time in the engine's unit.
struct ItemKey {
  double time;
  Triple translation;
  Triple rotation;
  Triple scale;
  Triple pivot;
};

/// An item and the attributes of its transform, which stay in place as long as it is held.
struct ItemTransform {
  explicit ItemTransform(boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphItemNode> moved);

  using Attributes = std::array<core::attribute::NAttribute*, 3>;

  boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphItemNode> item;
  Attributes translation;
  Attributes rotation;
  Attributes scale;
  Attributes pivot;
};

/// Moves an item that has two keys or more.
class ItemTrack {
 public:
  /// Requires: `keys` in order of time.
  ItemTrack(boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphItemNode> const& item,
            std::vector<ItemKey> const& keys);

  void Play(Step const& step) const;

 private:
  ItemTransform m_transform;
  TrackTimes m_times;
  SplineChannels<3> m_translation;
  std::vector<SplineChannels<1>> m_scale;  // x, y, z
  std::vector<SplineChannels<1>> m_pivot;
  SquadChannel m_rotation;
};

/// Puts an item that has one key into its pose when a step crosses the key's time.
class ItemPose {
 public:
  ItemPose(boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphItemNode> const& item,
           ItemKey const& key)
      : m_transform(item), m_key(key) {}

  void Play(Step const& step) const;

 private:
  ItemTransform m_transform;
  ItemKey m_key;
};

}  // namespace corvanta::data::animation::detail
