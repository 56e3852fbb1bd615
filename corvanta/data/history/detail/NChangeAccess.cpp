#include "corvanta/data/history/detail/NChangeAccess.h"

#include <algorithm>
#include <iterator>

#include "corvanta/core/domain/NDomainBase.h"
#include "corvanta/data/domain/environment/NEnvironmentNode.h"
#include "corvanta/data/domain/geometry/NGeometryNode.h"
#include "corvanta/data/domain/geometry/NSurface.h"
#include "corvanta/data/domain/image/NImageNode.h"
#include "corvanta/data/domain/light/NLightNode.h"
#include "corvanta/data/domain/light_env/NLightEnvNode.h"
#include "corvanta/data/domain/material/NMaterialNode.h"
#include "corvanta/data/domain/scene/NSceneNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphCameraNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphLightNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"
#include "corvanta/data/domain/scenegraph/tree/NSceneGraphTreeHost.h"
#include "corvanta/data/domain/texture/NTextureNode.h"

namespace corvanta::data::history::detail {

using core::node::NNodeReference;
using domain::environment::NEnvironmentNode;
using domain::geometry::NGeometryNode;
using domain::geometry::NSurface;
using domain::image::NImageNode;
using domain::light_env::NLamp;
using domain::light_env::NLightEnvNode;
using domain::material::NMaterialNode;
using domain::scenegraph::item::NSceneGraphItemNode;
using domain::scenegraph::item::NSceneGraphModelNode;

namespace {

template <class T>
T& SubjectAs(NChange const& change) {
  return dynamic_cast<T&>(*change.subject.GetObject());
}

template <class T>
T& ElementAs(NChange const& change) {
  return dynamic_cast<T&>(*change.element.GetObject());
}

template <class T, class Reference>
bool Set(NChange const& change, events::detail::NAnyReference const& to,
         void (T::*setter)(Reference const&)) {
  (SubjectAs<T>(change).*setter)(Reference(to));
  return true;
}

environment_map::NEnvironmentMap& GetMap(NChange const& change) {
  auto* const material = dynamic_cast<NMaterialNode*>(change.subject.GetNode());
  return material ? material->GetEnvironmentMap()
                  : SubjectAs<NEnvironmentNode>(change).GetEnvironmentMap();
}

}  // namespace

bool NChangeAccess::Apply(NChange const& change, bool isForward) {
  // What comes and what goes are neighbours, the former even.
  bool const isAdded = (change.kind % 2 == 0) == isForward;
  switch (change.kind) {
    case NCK_NODE_ADDED:
    case NCK_NODE_REMOVED:
      return ApplyNode(change, isAdded);
    case NCK_CHILD_ADDED:
    case NCK_CHILD_REMOVED:
      return ApplyChild(change, isAdded, isForward);
    case NCK_TEXTURE_ADDED:
    case NCK_TEXTURE_REMOVED:
      return ApplyTexture(change, isAdded);
    case NCK_LIGHT_ENV_ADDED:
    case NCK_LIGHT_ENV_REMOVED:
      return ApplyLightEnv(change, isAdded);
    case NCK_LAMP_CREATED:
    case NCK_LAMP_DELETED:
      return ApplyLamp(change, isAdded);
    case NCK_SURFACE_ADDED:
    case NCK_SURFACE_REMOVED:
      return ApplySurface(change, isAdded);
    case NCK_NAME:
      return ApplyName(change, isForward);
    case NCK_REFERENCE:
      return ApplyReference(change, isForward);
    case NCK_ENVIRONMENT_MAP_TYPE:
      return ApplyEnvironmentMapType(change, isForward);
    case NCK_LOCATOR:
      return ApplyLocator(change, isForward);
    case NCK_CONTENTS:
      change.contents->apply(*change.subject.GetObject(),
                             isForward ? change.contents->now : change.contents->previous);
      return true;
  }
  return false;
}

bool NChangeAccess::ApplyNode(NChange const& change, bool isAdded) {
  auto& domain = SubjectAs<core::domain::NDomainBase>(change);
  core::node::NNode& node = *change.element.GetNode();
  if (!isAdded) return domain.RemoveNode(node);
  // Outside of a namespace a name changes unheard.
  std::wstring const& name = change.texts->nameBefore;
  if (node.GetNamespace() == nullptr && node.GetName() != name) node.SetName(name);
  auto const& names = dynamic_cast<core::name::NNamespace const&>(domain);
  return names.QueryNamedObject(name) == nullptr &&
         domain.AddNodeBefore(node, change.next.GetNode());
}

bool NChangeAccess::ApplyChild(NChange const& change, bool isAdded, bool isForward) {
  auto& parent = static_cast<NSceneGraphItemNode&>(*change.subject.GetNode());
  auto& child = static_cast<NSceneGraphItemNode&>(*change.element.GetNode());
  auto* const previousParent = static_cast<NSceneGraphItemNode*>(change.previousParent.GetNode());
  if (!isAdded) {
    if (!parent.IsChild(child)) return false;
    // An insert by index left the child in the list of the parent that it had.
    bool const isListed = !isForward && previousParent && previousParent->IsChild(child);
    if (isListed) previousParent->DirtyBoundingBox();
    parent.TakeOut(child, isListed ? previousParent : nullptr);
    return true;
  }
  auto* const newParent = isForward ? &parent : previousParent;
  // A list that an insert by index left behind may hold an item from above.
  bool const isCycle = newParent == &parent && parent.IsOrStandsBelow(child);
  if (parent.IsChild(child) || isCycle) return false;
  auto const* const next = static_cast<NSceneGraphItemNode const*>(change.next.GetNode());
  auto const end = parent.GetChildren().cend();
  auto const place = next == nullptr ? end : parent.FindChild(*next);
  if (next != nullptr && place == end) return false;
  parent.Insert(child, place, newParent);
  return true;
}

bool NChangeAccess::ApplyTexture(NChange const& change, bool isAdded) {
  auto& material = SubjectAs<NMaterialNode>(change);
  if (!isAdded) {
    auto const& textures = material.GetTextures();
    if (change.index >= textures.size()) return false;
    auto const entry = std::next(textures.begin(), change.index);
    if (!entry->first.Equals(change.after)) return false;
    return material.RemoveTexture(change.index);
  }
  return material.AddTexture(NNodeReference<domain::texture::NTextureNode>(change.after),
                             ElementAs<domain::material::texture_mapping::NTextureMapping>(change),
                             change.index);
}

bool NChangeAccess::ApplyLightEnv(NChange const& change, bool isAdded) {
  auto& environment = SubjectAs<NEnvironmentNode>(change);
  NNodeReference<NLightEnvNode> const lightEnv(change.after);
  auto const& listed = environment.GetLightEnvs();
  if (!isAdded) return environment.RemoveLightEnv(lightEnv);
  bool const isListed = std::find(listed.begin(), listed.end(), lightEnv) != listed.end();
  if (isListed || change.index > listed.size()) return false;
  environment.InsertLightEnv(lightEnv, change.index);
  return true;
}

bool NChangeAccess::ApplyLamp(NChange const& change, bool isAdded) {
  auto& lightEnv = SubjectAs<NLightEnvNode>(change);
  auto& lamp = ElementAs<NLamp>(change);
  // A listener of a deletion may have deleted the lamp before it.
  bool const isListed = lamp.GetOwner() == &lightEnv;
  if (isListed == isAdded) return true;
  if (!isAdded) return lightEnv.DeleteLamp(&lamp);
  if (lamp.GetOwner() != nullptr) return false;
  std::wstring const& name = change.texts->nameBefore;
  if (lightEnv.QueryNamedObject(name) != nullptr) return false;
  if (lamp.GetName() != name) lamp.SetName(name);
  lightEnv.PutBack(lamp, change.index);
  return true;
}

bool NChangeAccess::ApplySurface(NChange const& change, bool isAdded) {
  auto& geometry = SubjectAs<NGeometryNode>(change);
  auto& surface = ElementAs<NSurface>(change);
  return isAdded ? geometry.AddSurface(surface) : geometry.RemoveSurface(surface);
}

bool NChangeAccess::ApplyName(NChange const& change, bool isForward) {
  auto& object = SubjectAs<core::name::NNamedObject>(change);
  std::wstring const& name = isForward ? change.texts->nameAfter : change.texts->nameBefore;
  auto const* const space = object.GetNamespace();
  auto const* const other = space == nullptr ? nullptr : space->QueryNamedObject(name);
  if (other != nullptr && other != &object) return false;
  object.SetName(name);
  return true;
}

bool NChangeAccess::ApplyReference(NChange const& change, bool isForward) {
  namespace item = domain::scenegraph::item;
  namespace tree = domain::scenegraph::tree;
  events::detail::NAnyReference const& to = isForward ? change.after : change.before;
  switch (change.reference) {
    case events::NRK_GEOMETRY:
      return Set(change, to, &NSceneGraphModelNode::SetGeometryNode);
    case events::NRK_MATERIAL: {
      auto& model = SubjectAs<NSceneGraphModelNode>(change);
      if (model.GetDomainManager() == nullptr) return false;
      model.SetMaterial(NNodeReference<NMaterialNode>(to));
      return true;
    }
    case events::NRK_TREE:
      return Set(change, to, &tree::NSceneGraphTreeHost::SetSceneGraph);
    case events::NRK_ROOT:
      return Set(change, to, &tree::NSceneGraphTreeNode::SetRoot);
    case events::NRK_ENVIRONMENT:
      return Set(change, to, &domain::scene::NSceneNode::SetEnvironment);
    case events::NRK_TEXTURE_IMAGE:
      return Set(change, to, &domain::texture::NTextureNode::SetImage);
    case events::NRK_ENVIRONMENT_MAP_IMAGE:
      GetMap(change).SetImage(NNodeReference<NImageNode>(to));
      return true;
    case events::NRK_FLOOR_IMAGE:
      return Set(change, to, &NEnvironmentNode::SetFloorImage);
    case events::NRK_FLOOR_GEOMETRY:
      return Set(change, to, &NEnvironmentNode::SetFloorGeometry);
    case events::NRK_BACKDROP:
      return Set(change, to, &NEnvironmentNode::Set2DImage);
    case events::NRK_ENVIRONMENT_MAP_MODEL:
      return Set(change, to, &NEnvironmentNode::SetEnvironmentMapModel);
    case events::NRK_LIGHT:
      return Set(change, to, &item::NSceneGraphLightNode::SetLightNode);
    case events::NRK_CAMERA:
      return Set(change, to, &item::NSceneGraphCameraNode::SetCameraNode);
  }
  return false;
}

bool NChangeAccess::ApplyEnvironmentMapType(NChange const& change, bool isForward) {
  GetMap(change).SetImageType(static_cast<environment_map::NEnvironmentMapImageType>(
      isForward ? change.typeAfter : change.typeBefore));
  return true;
}

bool NChangeAccess::ApplyLocator(NChange const& change, bool isForward) {
  auto const& locator = isForward ? change.texts->locatorAfter : change.texts->locatorBefore;
  if (auto* const material = dynamic_cast<NMaterialNode*>(change.subject.GetNode())) {
    material->SetBrdfTextureLocator(locator);
  } else {
    auto& image = SubjectAs<NImageNode>(change);
    image.ExchangeLocator(core::locator::NLocator(locator));
    // The locator has no signal but that of this attribute, whose own change is another one.
    auto* const hint = image.QueryAttribute(domain::image::AN_FORMAT_HINT);
    hint->SetValue(hint->GetValue(), true);
  }
  return true;
}

}  // namespace corvanta::data::history::detail
