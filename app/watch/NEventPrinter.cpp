#include "app/watch/NEventPrinter.h"

#include "app/output/text.h"
#include "corvanta/core/text/convert.h"
#include "corvanta/data/domain/environment/NEnvironmentNode.h"
#include "corvanta/data/domain/geometry/NGeometryNode.h"
#include "corvanta/data/domain/image/NImageNode.h"
#include "corvanta/data/domain/light_env/NLamp.h"
#include "corvanta/data/domain/light_env/NLightEnvNode.h"
#include "corvanta/data/domain/material/NMaterialNode.h"
#include "corvanta/data/domain/scene/NSceneNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"
#include "corvanta/data/domain/scenegraph/tree/NSceneGraphTreeHost.h"
#include "corvanta/data/domain/scenegraph/tree/NSceneGraphTreeNode.h"
#include "corvanta/data/domain/texture/NTextureNode.h"

namespace corvanta::app {

namespace domain = data::domain;
namespace item = data::domain::scenegraph::item;
namespace tree = data::domain::scenegraph::tree;

namespace {

using core::text::ToNarrow;

std::string Name(core::node::NNode const& node) { return Quoted(ToNarrow(node.GetName())); }

template <class Node>
NRecord NameOf(boost::intrusive_ptr<Node> const& node) {
  return node ? NRecord(ToNarrow(node->GetName())) : NRecord();
}

}  // namespace

NEventPrinter::~NEventPrinter() = default;

void NEventPrinter::Remember(core::attribute::NAttributeHost const& host) {
  for (auto at = host.GetAttributeBegin(); at != host.GetAttributeEnd(); ++at) {
    m_values.insert_or_assign(&*at, at->GetValue());
  }
}

void NEventPrinter::StartClock() { m_start = Clock::now(); }

void NEventPrinter::Print(char const* kind, core::node::NNode const* subject,
                          NRecord const& details) {
  double const microseconds =
      std::chrono::duration<double, std::micro>(Clock::now() - m_start).count();
  if (m_asJson) {
    NRecord record = {{"kind", kind}};
    if (subject != nullptr) {
      record["node"] = ToNarrow(subject->GetName());
      record["nodeKind"] = GetKind(*subject);
      record["id"] = ToNarrow(subject->GetID().ToString());
    }
    record.update(details);
    record["microseconds"] = microseconds;
    m_out << record.dump() << '\n';
    return;
  }
  m_out << kind;
  if (subject != nullptr) m_out << ' ' << GetKind(*subject) << ' ' << Name(*subject);
  if (details.contains("attribute")) {
    m_out << ' ' << details["attribute"].get<std::string>() << ": " << FormatValue(details["old"])
          << " -> " << FormatValue(details["new"]);
  } else {
    for (auto const& [key, value] : details.items()) {
      m_out << ' ' << key << ' ' << FormatValue(value);
    }
  }
  m_out << " after " << NumberText(static_cast<float>(microseconds)) << " us\n";
}

void NEventPrinter::OnAttributeChange(core::attribute::NAttributeHost& host,
                                      core::attribute::NAttribute const& attribute) {
  core::variant::NVariant const value = attribute.GetValue();
  auto const known = m_values.find(&attribute);
  NRecord const old = known == m_values.end() ? NRecord() : DescribeValue(known->second);
  // A host need not be a node: a lamp is none.
  Print(
      "attributeChange", dynamic_cast<core::node::NNode const*>(&host),
      {{"attribute", ToNarrow(attribute.GetName())}, {"old", old}, {"new", DescribeValue(value)}});
  if (known != m_values.end()) known->second = value;
}

void NEventPrinter::OnFloorImageChange(domain::environment::NEnvironmentNode const& environment) {
  Print("floorImageChange", &environment, {{"new", NameOf(environment.GetFloorImage())}});
}
void NEventPrinter::OnFloorGeometryChange(
    domain::environment::NEnvironmentNode const& environment) {
  Print("floorGeometryChange", &environment, {{"new", NameOf(environment.GetFloorGeometry())}});
}
void NEventPrinter::OnAddLightEnv(domain::environment::NEnvironmentNode const& environment,
                                  domain::light_env::NLightEnvNode const& lightEnv) {
  Print("addLightEnv", &environment, {{"lightEnv", ToNarrow(lightEnv.GetName())}});
}
void NEventPrinter::OnRemoveLightEnv(domain::environment::NEnvironmentNode const& environment,
                                     domain::light_env::NLightEnvNode const& lightEnv) {
  Print("removeLightEnv", &environment, {{"lightEnv", ToNarrow(lightEnv.GetName())}});
}
void NEventPrinter::OnEnvironmentMapImageChange(
    domain::environment::NEnvironmentNode const& environment) {
  Print("environmentMapImageChange", &environment);
}
void NEventPrinter::OnEnvironmentMapImageTypeChange(
    domain::environment::NEnvironmentNode const& environment) {
  Print("environmentMapImageTypeChange", &environment);
}
void NEventPrinter::OnEnvironmentChange(
    domain::scene::NSceneNode const& scene,
    boost::intrusive_ptr<domain::environment::NEnvironmentNode> const& oldEnvironment) {
  Print("environmentChange", &scene,
        {{"old", NameOf(oldEnvironment)}, {"new", NameOf(scene.GetEnvironment())}});
}
void NEventPrinter::OnLampChange(domain::light_env::NLightEnvNode const& lightEnv,
                                 domain::light_env::NLamp const& lamp,
                                 data::events::light_env::NLampEventType type) {
  constexpr char const* kTypes[] = {"lampCreated", "lampDeleted", "lampRenamed", "lampChanged"};
  Print(kTypes[type], &lightEnv, {{"lamp", ToNarrow(lamp.GetName())}});
}

void NEventPrinter::OnEnvironmentMapImageChange(domain::material::NMaterialNode const& material) {
  Print("environmentMapImageChange", &material);
}
void NEventPrinter::OnEnvironmentMapImageTypeChange(
    domain::material::NMaterialNode const& material) {
  Print("environmentMapImageTypeChange", &material);
}

void NEventPrinter::OnGeometryChange(
    item::NSceneGraphModelNode const& model,
    boost::intrusive_ptr<domain::geometry::NGeometryNode> const& oldGeometry) {
  Print("geometryChange", &model,
        {{"old", NameOf(oldGeometry)}, {"new", NameOf(model.GetGeometryNode())}});
}
void NEventPrinter::OnGeometryChange(domain::geometry::NGeometryNode const& geometry,
                                     domain::geometry::NSurface const&,
                                     domain::geometry::NGeometryChangeType type) {
  constexpr char const* kTypes[] = {"surfaceAdded", "surfaceRemoved", "surfaceChanged"};
  Print(kTypes[type], &geometry);
}

void NEventPrinter::OnAddTexture(domain::material::NMaterialNode const& material,
                                 unsigned int index) {
  Print("addTexture", &material, {{"index", index}});
}
void NEventPrinter::OnRemoveTexture(
    domain::material::NMaterialNode const& material,
    boost::intrusive_ptr<domain::texture::NTextureNode> const& texture,
    boost::intrusive_ptr<domain::material::texture_mapping::NTextureMapping> const&) {
  Print("removeTexture", &material, {{"texture", NameOf(texture)}});
}
void NEventPrinter::OnSetBrdfTextureLocator(domain::material::NMaterialNode const& material,
                                            core::locator::NLocator const&) {
  Print("setBrdfTextureLocator", &material);
}
void NEventPrinter::OnMaterialChange(
    item::NSceneGraphModelNode const& model,
    boost::intrusive_ptr<domain::material::NMaterialNode> const& oldMaterial) {
  Print("materialChange", &model,
        {{"old", NameOf(oldMaterial)}, {"new", NameOf(model.GetMaterialNode())}});
}

void NEventPrinter::OnAddChild(item::NSceneGraphItemNode const& parent,
                               item::NSceneGraphItemNode const& child) {
  Print("addChild", &parent, {{"child", ToNarrow(child.GetName())}});
}
void NEventPrinter::OnRemoveChild(item::NSceneGraphItemNode const& parent,
                                  item::NSceneGraphItemNode const& child) {
  Print("removeChild", &parent, {{"child", ToNarrow(child.GetName())}});
}

void NEventPrinter::OnSceneGraphTreeChange(
    tree::NSceneGraphTreeHost const& host,
    boost::intrusive_ptr<tree::NSceneGraphTreeNode> const& oldTree) {
  Print("sceneGraphTreeChange", dynamic_cast<core::node::NNode const*>(&host),
        {{"old", NameOf(oldTree)}, {"new", NameOf(host.GetSceneGraph())}});
}
void NEventPrinter::OnSceneGraphTreeRootChange(
    tree::NSceneGraphTreeNode const& changed,
    boost::intrusive_ptr<item::NSceneGraphItemNode> const& oldRoot) {
  Print("sceneGraphTreeRootChange", &changed,
        {{"old", NameOf(oldRoot)}, {"new", NameOf(changed.GetRoot())}});
}
void NEventPrinter::OnSceneGraphTreeRootChange(
    tree::NSceneGraphTreeHost const& host, tree::NSceneGraphTreeNode const& changed,
    boost::intrusive_ptr<item::NSceneGraphItemNode> const& oldRoot) {
  Print("sceneGraphTreeRootChange", dynamic_cast<core::node::NNode const*>(&host),
        {{"old", NameOf(oldRoot)}, {"new", NameOf(changed.GetRoot())}});
}

void NEventPrinter::OnTextureImageChange(domain::texture::NTextureNode const& texture) {
  Print("textureImageChange", &texture, {{"new", NameOf(texture.GetImage())}});
}

}  // namespace corvanta::app
