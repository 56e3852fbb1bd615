#include "corvanta/data/domain/environment/NEnvironmentNode.h"

#include <algorithm>
#include <string>

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
  return m_block->contents.lights.insert(light).second;
}

bool NEnvironmentNode::RemoveLight(NSceneGraphPath<NSceneGraphLightNode> const& light) {
  return m_block->contents.lights.erase(light) == 1;
}

std::vector<NNodeReference<NLightEnvNode>> const& NEnvironmentNode::GetLightEnvs() const noexcept {
  return m_block->contents.lightEnvs;
}

bool NEnvironmentNode::AddLightEnv(NNodeReference<NLightEnvNode> const& lightEnv) {
  auto& lightEnvs = m_block->contents.lightEnvs;
  boost::intrusive_ptr<NLightEnvNode> const node = lightEnv.Get();
  if (!node || std::find(lightEnvs.begin(), lightEnvs.end(), lightEnv) != lightEnvs.end()) {
    return false;
  }
  lightEnvs.push_back(lightEnv);
  EnvironmentEvents::NotifyObservers(
      [&](events::environment::NListener& listener) { listener.SignalAddLightEnv(*this, *node); });
  return true;
}

bool NEnvironmentNode::RemoveLightEnv(NNodeReference<NLightEnvNode> const& lightEnv) {
  // The argument may be the entry itself.
  NNodeReference<NLightEnvNode> const removed = lightEnv;
  if (std::erase(m_block->contents.lightEnvs, removed) == 0) return false;
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
  m_block->contents.image = image;
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
  m_block->contents.mapModel = model;
}

boost::intrusive_ptr<NGeometryNode> NEnvironmentNode::GetFloorGeometry() const {
  return m_block->contents.floorGeometry.Get();
}

NNodeReference<NGeometryNode> const& NEnvironmentNode::GetFloorGeometryRef() const noexcept {
  return m_block->contents.floorGeometry;
}

void NEnvironmentNode::SetFloorGeometry(NNodeReference<NGeometryNode> const& geometry) {
  m_block->contents.floorGeometry = geometry;
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
  m_block->contents.floorImage = image;
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

  CopyNodeTo(target);
  target.SetSceneGraph(tree);
  Contents& contents = target.m_block->contents;
  contents.lights.swap(copied.lights);
  contents.lightEnvs.swap(copied.lightEnvs);
  contents.image = copied.image;
  target.m_block->map->SetImageType(mapType);
  target.m_block->map->SetImage(mapImage);
  contents.mapModel = copied.mapModel;
  contents.floorGeometry = copied.floorGeometry;
  contents.floorImage = copied.floorImage;
}

void NEnvironmentNode::OnImageChange(NEnvironmentMap const&) {
  EnvironmentMapEvents::NotifyObservers([&](events::environment_map_change::NListener& listener) {
    listener.SignalImageChange(*this);
  });
}

void NEnvironmentNode::OnImageTypeChange(NEnvironmentMap const&) {
  EnvironmentMapEvents::NotifyObservers([&](events::environment_map_change::NListener& listener) {
    listener.SignalImageTypeChange(*this);
  });
}

}  // namespace corvanta::data::domain::environment
