#include "app/watch/NEventPrinter.h"

#include "app/output/text.h"
#include "corvanta/core/attribute/NAttribute.h"
#include "corvanta/core/text/convert.h"
#include "corvanta/data/domain/environment/NEnvironmentNode.h"
#include "corvanta/data/domain/geometry/NGeometryNode.h"
#include "corvanta/data/domain/image/NImageNode.h"
#include "corvanta/data/domain/material/NMaterialNode.h"
#include "corvanta/data/domain/scene/NSceneNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"
#include "corvanta/data/domain/scenegraph/tree/NSceneGraphTreeHost.h"
#include "corvanta/data/domain/scenegraph/tree/NSceneGraphTreeNode.h"
#include "corvanta/data/domain/texture/NTextureNode.h"

namespace corvanta::app {

namespace domain = data::domain;

namespace {

using core::text::ToNarrow;
using data::domain::scenegraph::item::NSceneGraphModelNode;

std::string Name(core::node::NNode const& node) { return Quoted(ToNarrow(node.GetName())); }

NRecord NameOf(core::name::NNamedObject const* object) {
  return object ? NRecord(ToNarrow(object->GetName())) : NRecord();
}

/// What takes the place of the signal's `other`, which is the old one.
NRecord Replace(data::events::NSignal const& signal, core::name::NNamedObject const* now) {
  return {{"old", NameOf(signal.other)}, {"new", NameOf(now)}};
}

template <class Node>
Node const& NodeOf(data::events::NSignal const& signal) {
  return dynamic_cast<Node const&>(*signal.node);
}

/// What is printed of a signal beside its node.
NRecord Describe(data::events::NSignal const& signal) {
  switch (signal.kind) {
    case data::events::NSK_FLOOR_IMAGE_CHANGE:
      return {
          {"new",
           NameOf(NodeOf<domain::environment::NEnvironmentNode>(signal).GetFloorImage().get())}};
    case data::events::NSK_FLOOR_GEOMETRY_CHANGE:
      return {
          {"new",
           NameOf(NodeOf<domain::environment::NEnvironmentNode>(signal).GetFloorGeometry().get())}};
    case data::events::NSK_TEXTURE_IMAGE_CHANGE:
      return {{"new", NameOf(NodeOf<domain::texture::NTextureNode>(signal).GetImage().get())}};
    case data::events::NSK_ADD_LIGHT_ENV:
    case data::events::NSK_REMOVE_LIGHT_ENV:
      return {{"lightEnv", NameOf(signal.other)}};
    case data::events::NSK_LAMP_CHANGE:
      return {{"lamp", NameOf(signal.other)}};
    case data::events::NSK_ADD_CHILD:
    case data::events::NSK_REMOVE_CHILD:
      return {{"child", NameOf(signal.other)}};
    case data::events::NSK_ADD_TEXTURE:
      return {{"index", signal.index}};
    case data::events::NSK_REMOVE_TEXTURE:
      return {{"texture", NameOf(signal.other)}};
    case data::events::NSK_ENVIRONMENT_CHANGE:
      return Replace(signal, NodeOf<domain::scene::NSceneNode>(signal).GetEnvironment().get());
    case data::events::NSK_GEOMETRY_CHANGE:
      return Replace(signal, NodeOf<NSceneGraphModelNode>(signal).GetGeometryNode().get());
    case data::events::NSK_MATERIAL_CHANGE:
      return Replace(signal, NodeOf<NSceneGraphModelNode>(signal).GetMaterialNode().get());
    case data::events::NSK_SCENE_GRAPH_TREE_CHANGE:
      return Replace(signal, signal.treeHost->GetSceneGraph().get());
    case data::events::NSK_SCENE_GRAPH_TREE_ROOT_CHANGE:
    case data::events::NSK_SHOWN_ROOT_CHANGE:
      return Replace(signal, signal.tree->GetRoot().get());
    default:
      return NRecord::object();
  }
}

}  // namespace

NEventPrinter::~NEventPrinter() = default;

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

void NEventPrinter::PrintAttributeChange(data::events::NSignal const& signal) {
  core::attribute::NAttribute const& attribute = *signal.attribute;
  Print(signal.name, signal.node,
        {{"attribute", ToNarrow(attribute.GetName())},
         {"old", DescribeValue(attribute.GetPreviousValue())},
         {"new", DescribeValue(attribute.GetValue())}});
}

void NEventPrinter::OnSignal(data::events::NSignal const& signal) {
  if (signal.kind == data::events::NSK_ATTRIBUTE_CHANGE) return PrintAttributeChange(signal);
  Print(signal.name, signal.node, Describe(signal));
}

}  // namespace corvanta::app
