#include "app/import/NAnimations.h"

#include <algorithm>
#include <cmath>

#include "app/import/angles.h"
#include "app/import/placement.h"
#include "app/output/text.h"
#include "corvanta/core/text/convert.h"

namespace corvanta::app {

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
  void Add(Key const* keys, unsigned count) {
    for (unsigned i = 0; i != count; ++i) AddTime(keys[i].mTime / ticksPerSecond);
  }
  void AddTime(double seconds) {
    if (!IsUsableTime(seconds)) return;
    first = std::min(first, seconds);
    last = std::max(last, seconds);
  }
};

}  // namespace

NAnimations::NAnimations(NDocument& document, aiScene const& scene, NHierarchy const& hierarchy,
                         data::domain::scenegraph::tree::NSceneGraphTreeNode const& tree,
                         NGltfAnimations const* gltf)
    : m_document(document), m_hierarchy(hierarchy) {
  for (auto const& [camera, item] : hierarchy.GetCameras()) {
    aiCamera const& source = *scene.mCameras[camera];
    m_cameras.push_back({item, ToVec3(source.mLookAt), ToVec3(source.mUp)});
  }
  for (unsigned i = 0; i != scene.mNumAnimations; ++i) {
    aiAnimation const& source = *scene.mAnimations[i];
    std::vector<Channel> channels;
    if (gltf == nullptr) {
      channels = GetChannels(source);
    } else {
      for (auto const& [node, keys] : gltf->GetChannels(i)) channels.push_back({node, keys.get()});
    }
    m_nodes.push_back(CreateNode(tree, source, channels));
  }
  if (gltf != nullptr) m_unreadCount = gltf->GetFaultCount();
}

std::vector<NAnimations::Channel> NAnimations::GetChannels(aiAnimation const& source) const {
  std::vector<Channel> channels;
  for (unsigned i = 0; i != source.mNumChannels; ++i) {
    aiNodeAnim const& keys = *source.mChannels[i];
    channels.push_back({m_hierarchy.QueryNode(keys.mNodeName.C_Str()), &keys});
  }
  return channels;
}

NAnimations::Range NAnimations::GetRange(aiAnimation const& source,
                                         std::vector<Channel> const& channels) {
  double const ticks = source.mTicksPerSecond;
  Range range{std::isfinite(ticks) && ticks > 0.0 ? ticks : kUnknownTicks, kUsualRate, 0, 0};
  if (range.ticksPerSecond >= kLeastRate && range.ticksPerSecond <= kLargestRate) {
    range.fps = range.ticksPerSecond;
  }
  Extent extent{range.ticksPerSecond};
  extent.AddTime(source.mDuration / range.ticksPerSecond);
  for (auto const& [node, keys] : channels) {
    extent.Add(keys->mPositionKeys, keys->mNumPositionKeys);
    extent.Add(keys->mRotationKeys, keys->mNumRotationKeys);
    extent.Add(keys->mScalingKeys, keys->mNumScalingKeys);
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
    data::domain::scenegraph::tree::NSceneGraphTreeNode const& tree, aiAnimation const& source,
    std::vector<Channel> const& channels) {
  auto const node = m_document.GetAnimations().CreateNode(core::node::NNodeID());
  if (source.mName.length != 0) node->SetName(core::text::ToWide(source.mName.C_Str()));
  Range const range = GetRange(source, channels);
  node->SetFps(range.fps);
  node->SetStartFrame(range.start);
  node->SetEndFrame(range.end);
  NCurvesByItem curves;
  for (Channel const& channel : channels) AddChannel(*node, channel, range, curves);
  for (NMovableCamera const& camera : m_cameras) AddCameraCurves(*node, tree, camera, curves);
  m_morphCount += source.mNumMeshChannels + source.mNumMorphMeshChannels;
  m_idleCount += node->GetAnimations().empty();
  return node;
}

void NAnimations::AddChannel(data::domain::animation::NAnimationNode& node, Channel const& source,
                             Range const& range, NCurvesByItem& curves) {
  aiNodeAnim const& channel = *source.keys;
  auto const item = m_hierarchy.QueryItem(source.node);
  if (!item) {
    if (m_strayCount++ == 0) m_firstStray = channel.mNodeName.C_Str();
    return;
  }
  NTripleKeys const translations = ReadKeys(channel.mPositionKeys, channel.mNumPositionKeys,
                                            range.ticksPerSecond, range.fps, m_faults);
  NTurnKeys const turns = ReadKeys(channel.mRotationKeys, channel.mNumRotationKeys,
                                   range.ticksPerSecond, range.fps, m_faults);
  NTripleKeys const scales = ReadKeys(channel.mScalingKeys, channel.mNumScalingKeys,
                                      range.ticksPerSecond, range.fps, m_faults);
  if (translations.empty() && turns.empty() && scales.empty()) return;
  NItemCurves* const entry = curves.Add(*item);
  if (entry == nullptr) {
    ++m_doubledCount;
    return;
  }
  NTripleKeys const angles =
      ToAngles(turns, {item->GetRotationX(), item->GetRotationY(), item->GetRotationZ()});
  entry->curves = {AddCurves(node, entry->target, kTranslation, translations),
                   AddCurves(node, entry->target, kRotation, angles),
                   AddCurves(node, entry->target, kScale, scales)};
}

std::vector<std::string> NAnimations::GetNotes() const {
  std::vector<std::string> notes;
  auto const note = [&notes](std::size_t count, char const* one, char const* many) {
    if (count != 0) notes.push_back(Plural(count, one, many));
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
  note(m_unreadCount, "animation channel can't be read and was left out",
       "animation channels can't be read and were left out");
  note(m_morphCount, "animation channel changes a mesh and was left out",
       "animation channels change meshes and were left out");
  note(m_idleCount, "animation moves nothing", "animations move nothing");
  return notes;
}

}  // namespace corvanta::app
