#include "corvanta/data/animation/detail/Players.h"

#include <algorithm>
#include <map>

#include "corvanta/data/animation/NAnimation.h"
#include "corvanta/data/domain/scene/NSceneNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"

namespace corvanta::data::animation::detail {

namespace {

using domain::scenegraph::item::NSceneGraphItemNode;

constexpr double kTimesAUnit = 10.0;

struct ItemKeys {
  boost::intrusive_ptr<NSceneGraphItemNode> item;
  std::vector<ItemKey> keys;
};
// By reference, not by address: in the order in which the items were first referred to.
using KeysOfItems = std::map<core::node::NNodeReference<NSceneGraphItemNode const>, ItemKeys>;

/// Keys of one time stay in their order.
template <class Key>
void SortByTime(std::vector<Key>& keys) {
  std::stable_sort(keys.begin(), keys.end(),
                   [](Key const& a, Key const& b) { return a.time < b.time; });
}

}  // namespace

Players::Players(NAnimation const& animation) {
  KeysOfItems items;
  std::vector<CameraKey> cameraKeys;
  for (auto const& [key, tenths] : animation.GetKeys()) {
    double const time = tenths / kTimesAUnit;
    if (!key->itemIsIgnored) {
      if (auto item = key->itemPath.GetNode()) {
        ItemKeys& itemKeys = items[key->itemPath.GetItemRef()];
        itemKeys.item = std::move(item);
        itemKeys.keys.push_back({time, key->itemTranslation, key->itemRotation, key->itemScale,
                                 key->itemRotationPivot});
      }
    }
    if (!key->cameraIsIgnored) {
      cameraKeys.push_back({time, key->cameraTranslation, key->cameraUp, key->cameraInterest});
    }
    for (std::size_t i = 0; i != 3; ++i) {
      if (!key->materialIsIgnored) {
        m_materialTrack.Add(time, key->materialSwitches[i], key->materialIndices[i]);
      }
      if (!key->modelIsIgnored) {
        m_modelTrack.Add(time, key->modelSwitches[i], key->modelSetIndices[i]);
      }
    }
    if (!key->environmentIsIgnored) m_environmentTrack.Add(time, key->environment);
  }
  for (auto& [reference, itemKeys] : items) {
    SortByTime(itemKeys.keys);
    if (itemKeys.keys.size() == 1) {
      m_itemPoses.emplace_back(itemKeys.item, itemKeys.keys.front());
    } else {
      m_itemTracks.emplace_back(itemKeys.item, itemKeys.keys);
    }
  }
  SortByTime(cameraKeys);
  if (cameraKeys.size() == 1) m_cameraPose.emplace(cameraKeys.front());
  if (cameraKeys.size() >= 2) m_cameraTrack.emplace(cameraKeys);
}

void Players::Play(NAnimationEngineArgs const& args, Step const& step) const {
  // All that takes memory comes before the first change; edits made by listeners count from the
  // next step.
  bool const movesTrack = m_cameraTrack && m_cameraTrack->MustPlay(step);
  bool const movesPose = m_cameraPose && m_cameraPose->MustPlay(step);
  NAnimationEngineArgs::Cameras cameras;
  if (movesTrack || movesPose) args.GetCameras(cameras);
  auto const materials = m_materialTrack.Prepare(step);
  auto const models = m_modelTrack.Prepare(step);
  auto const environments = m_environmentTrack.Prepare(args, step);

  for (ItemTrack const& track : m_itemTracks) track.Play(step);
  for (ItemPose const& pose : m_itemPoses) pose.Play(step);
  if (movesTrack) m_cameraTrack->Play(cameras, step);
  if (movesPose) m_cameraPose->Play(cameras);
  for (auto const& [model, material, use] : materials) model->SetMaterial(material, *use);
  for (auto const& [model, isVisible] : models) model->SetIsVisibleFlag(isVisible);
  for (auto const& scene : environments.scenes) {
    if (scene) scene->SetEnvironment(environments.environment);
  }
}

}  // namespace corvanta::data::animation::detail
