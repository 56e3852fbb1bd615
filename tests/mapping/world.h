#pragma once

#include "tests/scenegraph/graph.h"

namespace corvanta::mapping {

using data::domain::projection::NProjectionNode;
using data::domain::scenegraph::item::NSceneGraphModelNode;
using test::Model;
using test::Tree;
using Path = NProjectionNode::ModelPath;
using Projection = Pointer<NProjectionNode>;

/// Models, each the root of a tree, and projections.
struct World : test::Graph {
  Model MakeModel() { return Make<NSceneGraphModelNode>(); }
  Path MakePath(Model const& model) { return {*model, *MakeTree(model)}; }
  Path MakePath() { return MakePath(MakeModel()); }
  Projection MakeProjection(wchar_t const* method) {
    Projection made = projections->CreateNode(NNodeID());
    made->SetProjectionMethod(method);
    return made;
  }
};

}  // namespace corvanta::mapping
