#include "corvanta/data/domain/scenegraph/NSceneGraphTraverser.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

#include "corvanta/core/detail/scope_exit.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphCameraNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphGroupNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphLightNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphReferenceNode.h"
#include "corvanta/data/domain/scenegraph/tree/NSceneGraphTreeNode.h"

namespace corvanta::data::domain::scenegraph {

using item::NSceneGraphCameraNode;
using item::NSceneGraphGroupNode;
using item::NSceneGraphItemNode;
using item::NSceneGraphLightNode;
using item::NSceneGraphModelNode;
using item::NSceneGraphReferenceNode;
using tree::NSceneGraphTreeNode;

namespace {

using Trees = std::vector<NSceneGraphTreeNode const*>;

/// Calls `hook` with `item` as what it is; not for an item of another kind.
template <class Hook>
void AsKind(NSceneGraphItemNode& item, Hook&& hook) {
  wchar_t const* const type = item.GetSceneGraphItemType();
  if (type == item::SGIT_GROUP) {
    hook(static_cast<NSceneGraphGroupNode&>(item));
  } else if (type == item::SGIT_MODEL) {
    hook(static_cast<NSceneGraphModelNode&>(item));
  } else if (type == item::SGIT_REFERENCE) {
    hook(static_cast<NSceneGraphReferenceNode&>(item));
  } else if (type == item::SGIT_LIGHT) {
    hook(static_cast<NSceneGraphLightNode&>(item));
  } else if (type == item::SGIT_CAMERA) {
    hook(static_cast<NSceneGraphCameraNode&>(item));
  }
}

}  // namespace

struct NSceneGraphTraverser::Block {
  core::node::NNodeReference<NSceneGraphTreeNode> tree;
  Trees shown;  // what the walk stands in, outermost first
};

NSceneGraphTraverser::NSceneGraphTraverser() : m_block(new Block) {}

NSceneGraphTraverser::NSceneGraphTraverser(NSceneGraphTraverser const&) : NSceneGraphTraverser() {}

NSceneGraphTraverser& NSceneGraphTraverser::operator=(NSceneGraphTraverser const&) { return *this; }

NSceneGraphTraverser::~NSceneGraphTraverser() = default;

void NSceneGraphTraverser::Start(NSceneGraphTreeNode& tree, void const* data) {
  boost::intrusive_ptr<NSceneGraphTreeNode> const held(tree.TryAddRef() ? &tree : nullptr, false);
  m_block->tree = tree;
  // A walk has a list of its own, also in a hook of another walk.
  Trees outer = std::exchange(m_block->shown, {});
  core::detail::ScopeExit const end([&] { m_block->shown = std::move(outer); });
  Traverse(tree, data, {});
}

void NSceneGraphTraverser::Start(NSceneGraphPath<NSceneGraphItemNode> const& path,
                                 void const* data) {
  boost::intrusive_ptr<NSceneGraphItemNode> const item = path.GetNode();
  if (!item) return;
  // A hook may change the path.
  NCheckPoints const checkPoints = path.GetCheckPoints();
  m_block->tree = path.GetTreeRef();
  std::vector<boost::intrusive_ptr<NSceneGraphTreeNode const>> held{path.GetTreeRef().Get()};
  for (auto const& checkPoint : checkPoints) {
    auto const reference = checkPoint.Get();
    held.emplace_back(reference ? reference->GetSceneGraph() : nullptr);
  }
  Trees outer = std::exchange(m_block->shown, {});
  core::detail::ScopeExit const end([&] { m_block->shown = std::move(outer); });
  for (auto const& tree : held) m_block->shown.push_back(tree.get());
  Traverse(*item, data, checkPoints);
}

void NSceneGraphTraverser::TraverseExternal(NSceneGraphReferenceNode const& reference,
                                            void const* data, NCheckPoints const& checkPoints) {
  boost::intrusive_ptr<NSceneGraphTreeNode> const tree = reference.GetSceneGraph();
  if (!tree) return;
  NCheckPoints inner;
  inner.reserve(checkPoints.size() + 1);
  inner = checkPoints;
  inner.push_back(reference);
  Traverse(*tree, data, inner);
}

core::node::NNodeReference<NSceneGraphTreeNode> const& NSceneGraphTraverser::GetTree()
    const noexcept {
  return m_block->tree;
}

void NSceneGraphTraverser::Traverse(NSceneGraphTreeNode& tree, void const* data,
                                    NCheckPoints const& checkPoints) {
  auto& shown = m_block->shown;
  if (std::find(shown.begin(), shown.end(), &tree) != shown.end()) return;
  shown.push_back(&tree);
  core::detail::ScopeExit const leave([&shown] { shown.pop_back(); });
  Before(tree, data, checkPoints);
  if (auto const root = tree.GetRoot()) Traverse(*root, data, checkPoints);
  After(tree, data, checkPoints);
}

void NSceneGraphTraverser::Traverse(NSceneGraphItemNode& item, void const* data,
                                    NCheckPoints const& checkPoints) {
  // What is still to be done, the next at the end: an item to enter, or one to leave.
  struct Step {
    boost::intrusive_ptr<NSceneGraphItemNode> item;
    bool isEntered;
  };
  std::vector<Step> steps{{&item, false}};
  std::unordered_set<NSceneGraphItemNode const*> entered;
  while (!steps.empty()) {
    boost::intrusive_ptr<NSceneGraphItemNode> const current = steps.back().item;
    if (steps.back().isEntered) {
      steps.pop_back();
      AsKind(*current, [&](auto& node) { After(node, data, checkPoints); });
      AfterCommon(*current, data, checkPoints);
      entered.erase(current.get());
    } else if (!entered.insert(current.get()).second) {
      steps.pop_back();
    } else {
      steps.back().isEntered = true;
      BeforeCommon(*current, data, checkPoints);
      AsKind(*current, [&](auto& node) { Before(node, data, checkPoints); });
      auto const& children = current->GetChildren();
      for (auto child = children.rbegin(); child != children.rend(); ++child) {
        steps.push_back({*child, false});
      }
    }
  }
}

void NSceneGraphTraverser::BeforeCommon(NSceneGraphItemNode&, void const*, NCheckPoints const&) {}
void NSceneGraphTraverser::AfterCommon(NSceneGraphItemNode&, void const*, NCheckPoints const&) {}
void NSceneGraphTraverser::Before(NSceneGraphReferenceNode& node, void const* data,
                                  NCheckPoints const& checkPoints) {
  TraverseExternal(node, data, checkPoints);
}
void NSceneGraphTraverser::Before(NSceneGraphModelNode&, void const*, NCheckPoints const&) {}
void NSceneGraphTraverser::Before(NSceneGraphLightNode&, void const*, NCheckPoints const&) {}
void NSceneGraphTraverser::Before(NSceneGraphGroupNode&, void const*, NCheckPoints const&) {}
void NSceneGraphTraverser::Before(NSceneGraphCameraNode&, void const*, NCheckPoints const&) {}
void NSceneGraphTraverser::Before(NSceneGraphTreeNode&, void const*, NCheckPoints const&) {}
void NSceneGraphTraverser::After(NSceneGraphReferenceNode&, void const*, NCheckPoints const&) {}
void NSceneGraphTraverser::After(NSceneGraphModelNode&, void const*, NCheckPoints const&) {}
void NSceneGraphTraverser::After(NSceneGraphLightNode&, void const*, NCheckPoints const&) {}
void NSceneGraphTraverser::After(NSceneGraphGroupNode&, void const*, NCheckPoints const&) {}
void NSceneGraphTraverser::After(NSceneGraphCameraNode&, void const*, NCheckPoints const&) {}
void NSceneGraphTraverser::After(NSceneGraphTreeNode&, void const*, NCheckPoints const&) {}

}  // namespace corvanta::data::domain::scenegraph
