#pragma once

#include <boost/intrusive_ptr.hpp>
#include <vector>

#include "corvanta/core/domain/NDomainManager.h"
#include "corvanta/data/domain/projection/NProjectionDomain.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphItemDomain.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"
#include "corvanta/data/domain/scenegraph/tree/NSceneGraphTreeDomain.h"
#include "corvanta/data/events/NEventMultiplexer.h"
#include "corvanta/data/events/attribute_change/NMultiplexer.h"

namespace corvanta::mapping {

using core::node::NNodeID;
using data::domain::projection::NProjectionNode;
using data::domain::scenegraph::item::NSceneGraphModelNode;
using Model = boost::intrusive_ptr<NSceneGraphModelNode>;
using Path = NProjectionNode::ModelPath;
using Tree = boost::intrusive_ptr<data::domain::scenegraph::tree::NSceneGraphTreeNode>;
using Projection = boost::intrusive_ptr<NProjectionNode>;

/// Models, each the root of a tree, and projections.
struct World {
  core::domain::NDomainManager manager;
  boost::intrusive_ptr<data::events::NEventMultiplexer> events{new data::events::NEventMultiplexer};
  data::events::attribute_change::NMultiplexer* attributes =
      &events->GetAttributeChangeEventMultiplexer();
  boost::intrusive_ptr<data::domain::scenegraph::item::NSceneGraphItemDomain> items{
      new data::domain::scenegraph::item::NSceneGraphItemDomain(
          &manager, attributes, &events->GetSceneGraphModelEventMultiplexer(),
          &events->GetSceneGraphHierarchyEventMultiplexer(),
          &events->GetSceneGraphTreeHostEventMultiplexer())};
  boost::intrusive_ptr<data::domain::scenegraph::tree::NSceneGraphTreeDomain> trees{
      new data::domain::scenegraph::tree::NSceneGraphTreeDomain(
          &manager, attributes, &events->GetSceneGraphTreeEventMultiplexer())};
  boost::intrusive_ptr<data::domain::projection::NProjectionDomain> projections{
      new data::domain::projection::NProjectionDomain(&manager, attributes)};

  Model MakeModel() { return items->CreateNode<NSceneGraphModelNode>(NNodeID()); }
  Tree MakeTree(Model const& root) {
    Tree made = trees->CreateNode(NNodeID());
    made->SetRoot(*root);
    return made;
  }
  Path MakePath(Model const& model) { return {*model, *MakeTree(model)}; }
  Path MakePath() { return MakePath(MakeModel()); }
  Projection MakeProjection(wchar_t const* method) {
    Projection made = projections->CreateNode(NNodeID());
    made->SetProjectionMethod(method);
    return made;
  }
};

}  // namespace corvanta::mapping
