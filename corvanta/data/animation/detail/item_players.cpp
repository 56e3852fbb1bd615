#include "corvanta/data/animation/detail/item_players.h"

#include <utility>

#include "corvanta/vx_math/Matrix.h"
#include "corvanta/vx_math/euler_angles.h"

namespace corvanta::data::animation::detail {

namespace {

namespace item = domain::scenegraph::item;

constexpr float kDegrees = 57.2957763671875f;

ItemTransform::Attributes Query(item::NSceneGraphItemNode& node, wchar_t const* x, wchar_t const* y,
                                wchar_t const* z) {
  return {node.QueryAttribute(x), node.QueryAttribute(y), node.QueryAttribute(z)};
}

void Write(ItemTransform::Attributes const& attributes, Triple const& values) {
  for (std::size_t i = 0; i != 3; ++i) attributes[i]->SetValue(values[i], true);
}

/// What `get` takes out of each key.
template <class Get>
auto Pick(std::vector<ItemKey> const& keys, Get get) {
  std::vector<std::decay_t<decltype(get(keys[0]))>> picked;
  picked.reserve(keys.size());
  for (ItemKey const& key : keys) picked.push_back(get(key));
  return picked;
}

VX_Math::Quaternion GetRotation(ItemKey const& key) {
  VX_Math::Vec3 const degrees(static_cast<float>(key.rotation[0]),
                              static_cast<float>(key.rotation[1]),
                              static_cast<float>(key.rotation[2]));
  return VX_Math::CreateQuaternion(degrees, false);
}

/// The three coordinates of a triple, each cut by itself.
std::vector<SplineChannels<1>> MakeChannels(TrackTimes const& times,
                                            std::vector<ItemKey> const& keys,
                                            Triple ItemKey::*triple) {
  std::vector<SplineChannels<1>> channels;
  for (std::size_t i = 0; i != 3; ++i) {
    channels.emplace_back(times, Pick(keys, [&](ItemKey const& key) {
                            return std::array<double, 1>{(key.*triple)[i]};
                          }));
  }
  return channels;
}

Triple Evaluate(std::vector<SplineChannels<1>> const& channels, TrackTimes::Position const& at) {
  return {channels[0].Evaluate(at)[0], channels[1].Evaluate(at)[0], channels[2].Evaluate(at)[0]};
}

}  // namespace

ItemTransform::ItemTransform(boost::intrusive_ptr<item::NSceneGraphItemNode> moved)
    : item(std::move(moved)),
      translation(
          Query(*item, item::AN_TRANSLATION_X, item::AN_TRANSLATION_Y, item::AN_TRANSLATION_Z)),
      rotation(Query(*item, item::AN_ROTATION_X, item::AN_ROTATION_Y, item::AN_ROTATION_Z)),
      scale(Query(*item, item::AN_SCALE_X, item::AN_SCALE_Y, item::AN_SCALE_Z)),
      pivot(Query(*item, item::AN_ROTATION_PIVOT_X, item::AN_ROTATION_PIVOT_Y,
                  item::AN_ROTATION_PIVOT_Z)) {}

ItemTrack::ItemTrack(boost::intrusive_ptr<item::NSceneGraphItemNode> const& item,
                     std::vector<ItemKey> const& keys)
    : m_transform(item),
      m_times(Pick(keys, [](ItemKey const& key) { return key.time; })),
      m_translation(m_times, Pick(keys, [](ItemKey const& key) { return key.translation; })),
      m_scale(MakeChannels(m_times, keys, &ItemKey::scale)),
      m_pivot(MakeChannels(m_times, keys, &ItemKey::pivot)),
      m_rotation(m_times, Pick(keys, GetRotation)) {}

void ItemTrack::Play(Step const& step) const {
  if (!m_times.MustUpdate(step)) return;
  TrackTimes::Position const at = m_times.Find(step.time);
  Write(m_transform.translation, m_translation.Evaluate(at));
  Write(m_transform.scale, Evaluate(m_scale, at));
  Write(m_transform.pivot, Evaluate(m_pivot, at));
  VX_Math::Vec3 const radians =
      VX_Math::DecomposeToEulerAngles(VX_Math::Matrix(m_rotation.Evaluate(at)));
  Write(m_transform.rotation, {radians.x * kDegrees, radians.y * kDegrees, radians.z * kDegrees});
}

void ItemPose::Play(Step const& step) const {
  if (!Crosses(step, m_key.time)) return;
  Write(m_transform.translation, m_key.translation);
  Write(m_transform.rotation, m_key.rotation);
  Write(m_transform.scale, m_key.scale);
  Write(m_transform.pivot, m_key.pivot);
}

}  // namespace corvanta::data::animation::detail
