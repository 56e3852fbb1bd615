#include "app/scene/common_tree.h"

#include "corvanta/data/domain/scenegraph/item/NSceneGraphGroupNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphReferenceNode.h"

namespace corvanta::app {

namespace {

namespace item = data::domain::scenegraph::item;
using core::node::NNodeID;
using core::node::NNodeReference;
using data::domain::scenegraph::tree::NSceneGraphTreeNode;

}  // namespace

boost::intrusive_ptr<NSceneGraphTreeNode> CreateCommonTree(
    data::document::NDocument& document,
    std::vector<boost::intrusive_ptr<NSceneGraphTreeNode>> const& trees) {
  auto const root = document.GetItems().CreateNode<item::NSceneGraphGroupNode>(NNodeID());
  root->SetName(L"scene");
  for (auto const& tree : trees) {
    auto const shown = document.GetItems().CreateNode<item::NSceneGraphReferenceNode>(NNodeID());
    shown->SetName(tree->GetName());
    shown->SetSceneGraph(NNodeReference<NSceneGraphTreeNode>(*tree));
    root->AddChild(*shown);
  }
  auto const common = document.GetTrees().CreateNode(NNodeID());
  common->SetName(L"scene");
  common->SetRoot(NNodeReference<item::NSceneGraphItemNode>(*root));
  return common;
}

}  // namespace corvanta::app
