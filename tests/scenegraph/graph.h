#pragma once

#include "tests/support/world.h"

namespace corvanta::test {

namespace item = data::domain::scenegraph::item;
namespace scenegraph = data::domain::scenegraph;
namespace tree = data::domain::scenegraph::tree;
using Item = Pointer<item::NSceneGraphItemNode>;
using Group = Pointer<item::NSceneGraphGroupNode>;
using Model = Pointer<item::NSceneGraphModelNode>;
using Reference = Pointer<item::NSceneGraphReferenceNode>;
using Camera = Pointer<item::NSceneGraphCameraNode>;
using Tree = Pointer<tree::NSceneGraphTreeNode>;

/// A world in which hierarchies are put together.
struct Graph : support::World {
  template <class T = item::NSceneGraphGroupNode>
  Pointer<T> Make() {
    return items->CreateNode<T>(NNodeID());
  }
  Tree MakeTree(Item const& root) {
    Tree made = trees->CreateNode(NNodeID());
    if (root) made->SetRoot(root);
    return made;
  }
  Reference MakeReference(Tree const& shown) {
    auto made = Make<item::NSceneGraphReferenceNode>();
    made->SetSceneGraph(shown);
    return made;
  }
  /// A model of one triangle from corner to corner of a box.
  Model MakeModel(Vec3 const& min, Vec3 const& max) {
    auto geometry = geometries->CreateNode(NNodeID());
    Pointer<data::domain::geometry::NPolygonSurface> surface(
        new data::domain::geometry::NPolygonSurface);
    std::vector<float> const coords{min.x, min.y, min.z, max.x, max.y, max.z, min.x, max.y, min.z};
    surface->Assign(coords, coords, std::vector<unsigned int>{0, 1, 2}, {});
    geometry->AddSurface(*surface);
    auto model = Make<item::NSceneGraphModelNode>();
    model->SetGeometryNode(geometry);
    return model;
  }
};

inline bool Near(Vec3 const& a, Vec3 const& b, float tolerance = 1e-5f) {
  return (a - b).Length() <= tolerance * (1 + b.Length());
}

inline Vec3 Apply(Matrix const& m, Vec3 const& point) {
  Vec3 out;
  m.MultVecMatrix(point, out);
  return out;
}

inline void Move(item::NSceneGraphItemNode& moved, double x, double y, double z) {
  moved.SetTranslationX(x);
  moved.SetTranslationY(y);
  moved.SetTranslationZ(z);
}

}  // namespace corvanta::test
