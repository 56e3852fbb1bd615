#pragma once

#include <corvanta/corvanta.h>

#include <cmath>
#include <cstdio>
#include <string>

/// What the examples share: a document to fill, boxes to fill it with, and the printing of numbers.
namespace example {

namespace core = corvanta::core;
namespace data = corvanta::data;
namespace domain = corvanta::data::domain;
namespace item = corvanta::data::domain::scenegraph::item;
using core::node::NNodeID;
using domain::scenegraph::tree::NSceneGraphTreeNode;
using VX_Math::Vec3;
template <class T>
using Pointer = boost::intrusive_ptr<T>;

/// An event system, domains that report to it, and the nodes that the library itself brings.
/// A domain owns its nodes, so the nodes of a document live as long as it does.
struct Document {
  core::domain::NDomainManager manager;
  Pointer<data::events::NEventMultiplexer> const events{new data::events::NEventMultiplexer};
  data::events::attribute_change::NMultiplexer* const attributes =
      &events->GetAttributeChangeEventMultiplexer();
  Pointer<item::NSceneGraphItemDomain> const items{new item::NSceneGraphItemDomain(
      &manager, attributes, &events->GetSceneGraphModelEventMultiplexer(),
      &events->GetSceneGraphHierarchyEventMultiplexer(),
      &events->GetSceneGraphTreeHostEventMultiplexer())};
  Pointer<domain::scenegraph::tree::NSceneGraphTreeDomain> const trees{
      new domain::scenegraph::tree::NSceneGraphTreeDomain(
          &manager, attributes, &events->GetSceneGraphTreeEventMultiplexer())};
  Pointer<domain::geometry::NGeometryDomain> const geometries{new domain::geometry::NGeometryDomain(
      &manager, attributes, &events->GetGeometryChangeEventMultiplexer())};
  Pointer<domain::material::NMaterialDomain> const materials{new domain::material::NMaterialDomain(
      &manager, attributes, &events->GetEnvironmentMapChangeEventMultiplexer(),
      &events->GetMaterialEventMultiplexer())};
  Pointer<domain::texture::NTextureDomain> const textures{new domain::texture::NTextureDomain(
      &manager, attributes, &events->GetTextureEventMultiplexer())};
  Pointer<domain::image::NImageDomain> const images{
      new domain::image::NImageDomain(&manager, attributes)};
  Pointer<domain::projection::NProjectionDomain> const projections{
      new domain::projection::NProjectionDomain(&manager, attributes)};
  Pointer<domain::camera::NCameraDomain> const cameras{
      new domain::camera::NCameraDomain(&manager, attributes)};
  Pointer<domain::light::NLightDomain> const lights{
      new domain::light::NLightDomain(&manager, attributes)};
  Pointer<domain::environment::NEnvironmentDomain> const environments{
      new domain::environment::NEnvironmentDomain(
          &manager, attributes, &events->GetEnvironmentMapChangeEventMultiplexer(),
          &events->GetEnvironmentEventMultiplexer())};
  Pointer<domain::scene::NSceneDomain> const scenes{new domain::scene::NSceneDomain(
      &manager, attributes, &events->GetSceneGraphTreeHostEventMultiplexer(),
      &events->GetSceneEventMultiplexer())};

  Document() { data::internal::Initialize(manager, *events); }
  Document(Document const&) = delete;
  Document& operator=(Document const&) = delete;
  ~Document() { data::internal::Uninitialize(manager); }
};

/// A tree whose root is an empty group.
inline Pointer<NSceneGraphTreeNode> CreateTree(Document& document, wchar_t const* name) {
  auto const root = document.items->CreateNode<item::NSceneGraphGroupNode>(NNodeID());
  root->SetName(name);
  auto const tree = document.trees->CreateNode(NNodeID());
  tree->SetName(name);
  tree->SetRoot(root);
  return tree;
}

/// A model of the built-in cube, which reaches from -1 to 1, made `size` large about `center`.
inline Pointer<item::NSceneGraphModelNode> AddBox(Document& document,
                                                  item::NSceneGraphItemNode& parent,
                                                  wchar_t const* name, Vec3 const& center,
                                                  Vec3 const& size) {
  auto const model = document.items->CreateNode<item::NSceneGraphModelNode>(NNodeID());
  model->SetName(name);
  model->SetGeometryNode(data::internal::GetCube(document.manager));
  item::SetTransform(*model, item::CalcTransformMatrix(size * 0.5f, {}, {}, center));
  parent.AddChild(*model);
  return model;
}

inline std::string Name(core::name::NNamedObject const& object) {
  return core::text::ToNarrow(object.GetName());
}

/// A number with two decimals, without a negative zero.
inline std::string Text(double number) {
  char text[64];
  std::snprintf(text, sizeof text, "%.2f", std::fabs(number) < 0.005 ? 0.0 : number);
  return text;
}

inline std::string Text(Vec3 const& v) {
  return '(' + Text(v.x) + ", " + Text(v.y) + ", " + Text(v.z) + ')';
}

}  // namespace example
