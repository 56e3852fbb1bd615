#pragma once

#include <corvanta/names.h>

#include <cmath>
#include <cstdio>
#include <string>

/// What the examples share: a document to fill, boxes to fill it with, and the printing of numbers.
namespace example {

namespace core = corvanta::core;
namespace data = corvanta::data;
namespace domain = corvanta::data::domain;
namespace item = corvanta::data::domain::scenegraph::item;
using domain::scenegraph::tree::NSceneGraphTreeNode;
using VX_Math::Vec3;
template <class T>
using Pointer = boost::intrusive_ptr<T>;

/// A document with the nodes that the library itself brings.
/// A domain owns its nodes, so the nodes of a document live as long as it does.
struct Document : corvanta::NDocument {
  Document() { data::internal::Initialize(GetManager(), GetEvents()); }
};

/// A tree whose root is an empty group.
inline Pointer<NSceneGraphTreeNode> CreateTree(Document& document, wchar_t const* name) {
  auto const root = document.GetItems().CreateNode<item::NSceneGraphGroupNode>();
  root->SetName(name);
  auto const tree = document.GetTrees().CreateNode();
  tree->SetName(name);
  tree->SetRoot(root);
  return tree;
}

/// A model of the built-in cube, which reaches from -1 to 1, made `size` large about `center`.
inline Pointer<item::NSceneGraphModelNode> AddBox(Document& document,
                                                  item::NSceneGraphItemNode& parent,
                                                  wchar_t const* name, Vec3 const& center,
                                                  Vec3 const& size) {
  auto const model = document.GetItems().CreateNode<item::NSceneGraphModelNode>();
  model->SetName(name);
  model->SetGeometryNode(data::internal::GetCube(document.GetManager()));
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
