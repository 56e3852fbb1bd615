#include "corvanta/data/domain/environment/NEnvironmentNode.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

#include "corvanta/core/attribute/NTypedAttribute.h"
#include "corvanta/core/reference_countable/hold.h"
#include "corvanta/core/string_table/string_table.h"
#include "corvanta/data/domain/geometry/NGeometryNode.h"
#include "corvanta/data/domain/image/NImageNode.h"
#include "corvanta/data/domain/light_env/NLightEnvNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphLightNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"
#include "corvanta/data/domain/scenegraph/tree/NSceneGraphTreeNode.h"
#include "corvanta/data/environment_map/NEnvironmentMap.h"
#include "corvanta/data/environment_map/detail/NRotationTransform.h"
#include "corvanta/data/events/detail/NModelRecorder.h"

namespace corvanta::data::domain::environment {

using core::node::NNodeReference;
using environment_map::NEnvironmentMap;
using geometry::NGeometryNode;
using image::NImageNode;
using light_env::NLightEnvNode;
using scenegraph::NSceneGraphPath;
using scenegraph::item::NSceneGraphLightNode;
using scenegraph::item::NSceneGraphModelNode;

namespace {

constexpr unsigned kAttributeCount = 0
#define CORVANTA_ROWS_COUNT
#include "corvanta/data/domain/environment/environment_attributes.def"
    ;

/// What a node holds besides its attributes, its tree and its environment map.
struct Contents {
  std::set<NSceneGraphPath<NSceneGraphLightNode>> lights;
  std::vector<NNodeReference<NLightEnvNode>> lightEnvs;
  NNodeReference<NImageNode> image;
  NNodeReference<NSceneGraphModelNode> mapModel;
  NNodeReference<NGeometryNode> floorGeometry;
  NNodeReference<NImageNode> floorImage;
};

}  // namespace

struct NEnvironmentNode::Block {
  // In an aggregate or a default initializer, g++ would leak what was made before a failure.
  explicit Block(core::attribute::NAttributeHost& node) : host(node), map(new NEnvironmentMap) {}

  core::attribute::NAttributeHost& host;
#define CORVANTA_ROWS_SLOTS
#include "corvanta/data/domain/environment/environment_attributes.def"
  Contents contents{};
  boost::intrusive_ptr<NEnvironmentMap> const map;
  boost::intrusive_ptr<environment_map::detail::NRotationTransform> const mapTransform{
      new environment_map::detail::NRotationTransform(
          host, environment::AN_ENVIRONMENT_MAP_ROTATION_X,
          environment::AN_ENVIRONMENT_MAP_ROTATION_Y, environment::AN_ENVIRONMENT_MAP_ROTATION_Z)};
};

#define CORVANTA_ROWS_BODIES NEnvironmentNode
#include "corvanta/data/domain/environment/environment_attributes.def"

NEnvironmentNode::NEnvironmentNode(core::node::NNodeID const& id, core::domain::NDomainBase* domain,
                                   events::attribute_change::NMultiplexer const* multiplexer)
    : NNode(id, domain, multiplexer,
            core::string_table::GetString(core::string_table::DATA_ENVIRONMENT)),
      m_block((ReserveAttributes(kAttributeCount), new Block(*this))) {
  m_block->map->SetTransform(*m_block->mapTransform);
  m_block->map->AddObserver(*this);
}

NEnvironmentNode::~NEnvironmentNode() { m_block->mapTransform->ClearOwner(); }

std::set<NSceneGraphPath<NSceneGraphLightNode>> const& NEnvironmentNode::GetLights()
    const noexcept {
  return m_block->contents.lights;
}

bool NEnvironmentNode::AddLight(NSceneGraphPath<NSceneGraphLightNode> const& light) {
  if (m_block->contents.lights.count(light) != 0) return false;
  EditContents([&](Contents& contents) { contents.lights.insert(light); });
  return true;
}

bool NEnvironmentNode::RemoveLight(NSceneGraphPath<NSceneGraphLightNode> const& light) {
  if (m_block->contents.lights.count(light) == 0) return false;
  EditContents([&](Contents& contents) { contents.lights.erase(light); });
  return true;
}

/// Changes what no signal tells of.
template <class Edit>
void NEnvironmentNode::EditContents(Edit const& edit) {
  Contents& contents = m_block->contents;
  events::detail::NContentsChange change(GetRecorder(), contents);
  edit(contents);
  std::size_t const count = contents.lights.size() + contents.lightEnvs.size();
  change.Record(*this, contents, &ApplyContents, 2 * (sizeof(Contents) + count * 100));
}

void NEnvironmentNode::ApplyContents(core::reference_countable::NReferenceCountable& environment,
                                     std::shared_ptr<void const> const& contents) {
  Contents copy = *static_cast<Contents const*>(contents.get());
  dynamic_cast<NEnvironmentNode&>(environment).EditContents([&](Contents& edited) {
    std::swap(edited, copy);
  });
}

std::vector<NNodeReference<NLightEnvNode>> const& NEnvironmentNode::GetLightEnvs() const noexcept {
  return m_block->contents.lightEnvs;
}

bool NEnvironmentNode::AddLightEnv(NNodeReference<NLightEnvNode> const& lightEnv) {
  return AddLightEnv(lightEnv, static_cast<unsigned int>(m_block->contents.lightEnvs.size()));
}

bool NEnvironmentNode::AddLightEnv(NNodeReference<NLightEnvNode> const& lightEnv,
                                   unsigned int index) {
  auto const& lightEnvs = m_block->contents.lightEnvs;
  bool const isListed = std::find(lightEnvs.begin(), lightEnvs.end(), lightEnv) != lightEnvs.end();
  if (isListed || !lightEnv.Get() || index > lightEnvs.size()) return false;
  InsertLightEnv(lightEnv, index);
  return true;
}

/// Also one that has gone, of which nobody is notified.
void NEnvironmentNode::InsertLightEnv(NNodeReference<NLightEnvNode> const& lightEnv,
                                      unsigned int index) {
  auto& lightEnvs = m_block->contents.lightEnvs;
  boost::intrusive_ptr<NLightEnvNode> const node = lightEnv.Get();
  auto const entry = lightEnvs.insert(std::next(lightEnvs.begin(), index), lightEnv);
  auto* const recorder = GetRecorder();
  core::detail::NChangeScope const change(recorder);
  if (recorder) recorder->OnLightEnv(true, *this, index, *entry);
  if (!node) return;
  EnvironmentEvents::NotifyObservers(
      [&](events::environment::NListener& listener) { listener.SignalAddLightEnv(*this, *node); });
}

bool NEnvironmentNode::RemoveLightEnv(NNodeReference<NLightEnvNode> const& lightEnv) {
  // The argument may be the entry itself.
  NNodeReference<NLightEnvNode> const removed = lightEnv;
  auto& lightEnvs = m_block->contents.lightEnvs;
  auto const found = std::find(lightEnvs.begin(), lightEnvs.end(), removed);
  if (found == lightEnvs.end()) return false;
  auto const index = static_cast<unsigned int>(found - lightEnvs.begin());
  lightEnvs.erase(found);
  auto* const recorder = GetRecorder();
  core::detail::NChangeScope const change(recorder);
  if (recorder) recorder->OnLightEnv(false, *this, index, removed);
  boost::intrusive_ptr<NLightEnvNode> const node = removed.Get();
  if (node) {
    EnvironmentEvents::NotifyObservers([&](events::environment::NListener& listener) {
      listener.SignalRemoveLightEnv(*this, *node);
    });
  }
  return true;
}

boost::intrusive_ptr<NImageNode> NEnvironmentNode::Get2DImage() const {
  return m_block->contents.image.Get();
}

NNodeReference<NImageNode> const& NEnvironmentNode::Get2DImageRef() const noexcept {
  return m_block->contents.image;
}

void NEnvironmentNode::Set2DImage(NNodeReference<NImageNode> const& image) {
  auto const previous = m_block->contents.image;
  m_block->contents.image = image;
  core::detail::NChangeScope const change(GetRecorder());
  Record(events::NRK_BACKDROP, previous, m_block->contents.image);
}

void NEnvironmentNode::Record(events::NReferenceKind kind,
                              core::node::detail::NNodeReferenceImpl const& previous,
                              core::node::detail::NNodeReferenceImpl const& now) {
  auto* const recorder = GetRecorder();
  if (recorder == nullptr) return;
  recorder->OnReference(*this, kind, events::detail::NAnyReference(previous),
                        events::detail::NAnyReference(now));
}

NEnvironmentMap& NEnvironmentNode::GetEnvironmentMap() const noexcept { return *m_block->map; }

boost::intrusive_ptr<NSceneGraphModelNode> NEnvironmentNode::GetEnvironmentMapModel() const {
  return m_block->contents.mapModel.Get();
}

NNodeReference<NSceneGraphModelNode> const& NEnvironmentNode::GetEnvironmentMapModelRef()
    const noexcept {
  return m_block->contents.mapModel;
}

void NEnvironmentNode::SetEnvironmentMapModel(NNodeReference<NSceneGraphModelNode> const& model) {
  auto const previous = m_block->contents.mapModel;
  m_block->contents.mapModel = model;
  core::detail::NChangeScope const change(GetRecorder());
  Record(events::NRK_ENVIRONMENT_MAP_MODEL, previous, m_block->contents.mapModel);
}

boost::intrusive_ptr<NGeometryNode> NEnvironmentNode::GetFloorGeometry() const {
  return m_block->contents.floorGeometry.Get();
}

NNodeReference<NGeometryNode> const& NEnvironmentNode::GetFloorGeometryRef() const noexcept {
  return m_block->contents.floorGeometry;
}

void NEnvironmentNode::SetFloorGeometry(NNodeReference<NGeometryNode> const& geometry) {
  auto const previous = m_block->contents.floorGeometry;
  m_block->contents.floorGeometry = geometry;
  core::detail::NChangeScope const change(GetRecorder());
  Record(events::NRK_FLOOR_GEOMETRY, previous, m_block->contents.floorGeometry);
  EnvironmentEvents::NotifyObservers(
      [&](events::environment::NListener& listener) { listener.SignalFloorGeometryChange(*this); });
}

boost::intrusive_ptr<NImageNode> NEnvironmentNode::GetFloorImage() const {
  return m_block->contents.floorImage.Get();
}

NNodeReference<NImageNode> const& NEnvironmentNode::GetFloorImageRef() const noexcept {
  return m_block->contents.floorImage;
}

void NEnvironmentNode::SetFloorImage(NNodeReference<NImageNode> const& image) {
  auto const previous = m_block->contents.floorImage;
  m_block->contents.floorImage = image;
  core::detail::NChangeScope const change(GetRecorder());
  Record(events::NRK_FLOOR_IMAGE, previous, m_block->contents.floorImage);
  EnvironmentEvents::NotifyObservers(
      [&](events::environment::NListener& listener) { listener.SignalFloorImageChange(*this); });
}

void NEnvironmentNode::CopyTo(NEnvironmentNode& target) const {
  auto const held = core::reference_countable::Hold(*this);
  auto const heldTarget = core::reference_countable::Hold(target);
  // A listener of the target may change this node meanwhile.
  Contents copied = m_block->contents;
  auto const tree = GetSceneGraphRef();
  auto const mapType = m_block->map->GetImageType();
  auto const mapImage = m_block->map->GetImageRef();
  Introduction const introduction(target, tree);

  core::detail::NChangeGroup const group(target.GetRecorder());
  CopyNodeTo(target);
  target.SetSceneGraph(tree);
  target.EditContents([&](Contents& contents) {
    contents.lights.swap(copied.lights);
    contents.lightEnvs.swap(copied.lightEnvs);
    contents.image = copied.image;
  });
  target.m_block->map->SetImageType(mapType);
  target.m_block->map->SetImage(mapImage);
  target.EditContents([&](Contents& contents) {
    contents.mapModel = copied.mapModel;
    contents.floorGeometry = copied.floorGeometry;
    contents.floorImage = copied.floorImage;
  });
}

void NEnvironmentNode::OnImageChange(NEnvironmentMap const& map) {
  auto* const recorder = GetRecorder();
  core::detail::NChangeScope const change(recorder);
  if (recorder) {
    recorder->OnReference(*this, events::NRK_ENVIRONMENT_MAP_IMAGE, map.GetPreviousImageRef(),
                          map.GetImageRef());
  }
  EnvironmentMapEvents::NotifyObservers([&](events::environment_map_change::NListener& listener) {
    listener.SignalImageChange(*this);
  });
}

void NEnvironmentNode::OnImageTypeChange(NEnvironmentMap const& map) {
  auto* const recorder = GetRecorder();
  core::detail::NChangeScope const change(recorder);
  if (recorder) {
    recorder->OnEnvironmentMapType(*this, map.GetPreviousImageType(), map.GetImageType());
  }
  EnvironmentMapEvents::NotifyObservers([&](events::environment_map_change::NListener& listener) {
    listener.SignalImageTypeChange(*this);
  });
}

}  // namespace corvanta::data::domain::environment
