#include "corvanta/importer/animation/NAnimations.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "corvanta/core/text/message.h"
#include "corvanta/importer/NImportError.h"
#include "corvanta/importer/animation/NEffort.h"
#include "corvanta/importer/animation/angles.h"
#include "corvanta/importer/placement.h"

namespace corvanta::importer {

namespace {

constexpr NAttributeNames kTranslation = {L"translation.x", L"translation.y", L"translation.z"};
constexpr NAttributeNames kRotation = {L"rotation.x", L"rotation.y", L"rotation.z"};
constexpr NAttributeNames kScale = {L"scale.x", L"scale.y", L"scale.z"};

constexpr double kUnknownTicks = 25.0;  // ticks a second where the file doesn't say
constexpr double kLeastRate = 10.0;
constexpr double kLargestRate = 240.0;
constexpr double kUsualRate = 30.0;

// The first and the last time of all keys that can be used.
struct Extent {
  double ticksPerSecond;
  double first = 0.0;
  double last = 0.0;

  template <class Key>
  void Add(std::span<Key const> keys) {
    for (Key const& key : keys) AddTime(key.time / ticksPerSecond);
  }
  void AddTime(double seconds) {
    if (!IsUsableTime(seconds)) return;
    first = std::min(first, seconds);
    last = std::max(last, seconds);
  }
};

}  // namespace

NAnimations::NAnimations(NImportTarget& target, neutral::NSceneView const& scene,
                         NHierarchy const& hierarchy,
                         data::domain::scenegraph::tree::NSceneGraphTreeNode const& tree,
                         NEffort& effort)
    : m_target(target), m_scene(scene), m_hierarchy(hierarchy), m_effort(effort) {
  for (auto const& [camera, item] : hierarchy.GetCameras()) {
    auto const& source = scene.Get<neutral::NCamera>()[camera];
    m_cameras.push_back({item, ToVec3(source.ahead), ToVec3(source.up)});
  }
  for (auto const& source : scene.Get<neutral::NAnimation>()) {
    m_nodes.push_back(CreateNode(tree, source));
    if (m_unreadCount == 0) m_firstUnread = scene.GetString(source.firstUnread);
    m_unreadCount += source.unreadChannelCount;
  }
}

NAnimations::Range NAnimations::GetRange(neutral::NAnimation const& source) const {
  double const ticks = source.ticksPerSecond;
  Range range{std::isfinite(ticks) && ticks > 0.0 ? ticks : kUnknownTicks, kUsualRate, 0, 0};
  if (range.ticksPerSecond >= kLeastRate && range.ticksPerSecond <= kLargestRate) {
    range.fps = range.ticksPerSecond;
  }
  Extent extent{range.ticksPerSecond};
  extent.AddTime(source.duration / range.ticksPerSecond);
  for (neutral::NChannel const& channel : m_scene.Get(source.channels)) {
    extent.Add(m_scene.Get(channel.positions));
    extent.Add(m_scene.Get(channel.rotations));
    extent.Add(m_scene.Get(channel.scales));
  }
  for (neutral::NWeightChannel const& channel : m_scene.Get(source.weights)) {
    extent.Add(m_scene.Get(channel.keys));
  }
  if (extent.last > 0.0) {
    // What rounding adds to a whole number of frames isn't another frame.
    double const frames = extent.last * range.fps;
    range.end = std::max(1L, std::lround(std::ceil(frames - GetTimeTolerance(frames))));
    range.fps = static_cast<double>(range.end) / extent.last;
  }
  range.start = std::lround(std::floor(extent.first * range.fps));
  return range;
}

NAnimations::NodePointer NAnimations::CreateNode(
    data::domain::scenegraph::tree::NSceneGraphTreeNode const& tree,
    neutral::NAnimation const& source) {
  auto const node = m_target.Create(m_target.GetDocument().GetAnimations());
  SetName(*node, m_scene.GetText(source.name));
  Range const range = GetRange(source);
  node->SetFps(range.fps);
  node->SetStartFrame(range.start);
  node->SetEndFrame(range.end);
  NCurvesByItem curves;
  for (neutral::NChannel const& channel : m_scene.Get(source.channels)) {
    AddChannel(*node, channel, range, curves);
  }
  for (neutral::NWeightChannel const& channel : m_scene.Get(source.weights)) {
    AddWeights(*node, channel, range, curves);
  }
  for (NMovableCamera const& camera : m_cameras) {
    AddCameraCurves(*node, tree, camera, curves, m_effort);
  }
  m_idleCount += node->GetAnimations().empty();
  return node;
}

void NAnimations::AddChannel(data::domain::animation::NAnimationNode& node,
                             neutral::NChannel const& source, Range const& range,
                             NCurvesByItem& curves) {
  auto const item = m_hierarchy.QueryItem(source.node);
  if (!item) {
    if (m_strayCount++ == 0) m_firstStray = m_scene.GetString(source.nodeName);
    return;
  }
  auto const read = [&](auto const& keys) {
    return ReadKeys(m_scene.Get(keys), range.ticksPerSecond, range.fps, m_faults);
  };
  NTripleKeys const translations = read(source.positions);
  NTurnKeys const turns = read(source.rotations);
  NTripleKeys const scales = read(source.scales);
  if (translations.empty() && turns.empty() && scales.empty()) return;
  m_effort.AddKeys(translations.size() + scales.size());
  NItemCurves* const entry = curves.Add(*item);
  if (entry == nullptr) {
    ++m_doubledCount;
    return;
  }
  NTripleKeys const angles =
      ToAngles(turns, {item->GetRotationX(), item->GetRotationY(), item->GetRotationZ()}, m_effort);
  entry->curves = {AddCurves(node, entry->target, kTranslation, translations),
                   AddCurves(node, entry->target, kRotation, angles),
                   AddCurves(node, entry->target, kScale, scales)};
}

void NAnimations::AddWeights(data::domain::animation::NAnimationNode& node,
                             neutral::NWeightChannel const& source, Range const& range,
                             NCurvesByItem& curves) {
  auto const item = m_hierarchy.QueryItem(source.node);
  std::wstring const name = NDeformer::GetWeightName(source.target);
  if (!item || item->QueryAttribute(name) == nullptr) {
    if (m_strayCount++ == 0) m_firstStray = m_scene.GetString(source.nodeName);
    return;
  }
  NNumberKeys const keys =
      ReadKeys(m_scene.Get(source.keys), range.ticksPerSecond, range.fps, m_faults);
  if (keys.empty()) return;
  m_effort.AddKeys(keys.size());
  NItemCurves const* entry = curves.Find(*item);
  if (entry == nullptr) entry = curves.Add(*item);
  boost::intrusive_ptr const curve(new data::operators::animation::NKeyFrameAnimation);
  for (NKey<1> const& key : keys) curve->AddKey({key.time, key.values[0], 0});
  data::domain::animation::NAnimationContext const context(name, entry->target);
  m_doubledCount += !node.AddAnimation(context, *curve);
}

std::vector<std::string> NAnimations::GetNotes() const {
  std::vector<std::string> notes;
  auto const note = [&notes](std::size_t count, char const* one, char const* many) {
    if (count != 0) notes.push_back(core::text::Plural(count, one, many));
  };
  note(m_strayCount, "animation channel names no node and was left out",
       "animation channels name no node and were left out");
  if (m_strayCount != 0) notes.back() += "; the first names \"" + m_firstStray + '"';
  note(m_doubledCount, "animation channel moves a node that another one moves, and was left out",
       "animation channels move nodes that others move, and were left out");
  note(m_faults.unusable, "animation key isn't finite or stands too late, and was left out",
       "animation keys aren't finite or stand too late, and were left out");
  note(m_faults.unsorted, "animation key stood behind a later one and was put in order",
       "animation keys stood behind later ones and were put in order");
  note(m_unreadCount, "animation channel can't be played and was left out: ",
       "animation channels can't be played and were left out; the first is ");
  if (m_unreadCount != 0) notes.back() += m_firstUnread;
  note(m_idleCount, "animation moves nothing", "animations move nothing");
  return notes;
}

void NEffort::Refuse(std::size_t most, char const* what) {
  throw NImportError("its cameras and animations take more than " + std::to_string(most) + ' ' +
                     what);
}

}  // namespace corvanta::importer
