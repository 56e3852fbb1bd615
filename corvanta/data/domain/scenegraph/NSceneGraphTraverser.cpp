#include "corvanta/data/domain/scenegraph/NSceneGraphTraverser.h"

#include <algorithm>
#include <atomic>
#include <optional>
#include <unordered_set>
#include <utility>
#include <vector>

#include "corvanta/core/detail/scope_exit.h"
#include "corvanta/core/reference_countable/hold.h"
#include "corvanta/data/domain/scenegraph/NSceneGraphPathError.h"
#include "corvanta/data/domain/scenegraph/NSceneGraphWalkError.h"
#include "corvanta/data/domain/scenegraph/detail/NWalkBounds.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphCameraNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphGroupNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphLightNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphReferenceNode.h"
#include "corvanta/data/domain/scenegraph/tree/NSceneGraphTreeNode.h"
#include "corvanta/data/domain/scenegraph/walk_budget.h"
#include "corvanta/data/error_code/error_code.h"

namespace corvanta::data::domain::scenegraph {

using item::NSceneGraphCameraNode;
using item::NSceneGraphGroupNode;
using item::NSceneGraphItemNode;
using item::NSceneGraphLightNode;
using item::NSceneGraphModelNode;
using item::NSceneGraphReferenceNode;
using tree::NSceneGraphTreeNode;

namespace {

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

struct Walk {
  detail::NWalkBounds bounds{};
  NCheckPoints* points = nullptr;  // the list that the innermost trees' hooks get, if it is ours
};

}  // namespace

struct NSceneGraphTraverser::Block {
  /// Calls `walk` as a walk of its own, also in a hook of another walk.
  template <class F>
  void Run(F&& run) {
    std::optional<Walk> outer = std::exchange(walk, std::optional<Walk>(std::in_place));
    core::detail::ScopeExit const end([&] { walk = std::move(outer); });
    run();
  }

  core::node::NNodeReference<NSceneGraphTreeNode> tree;
  std::optional<Walk> walk;  // the running one
};

NSceneGraphTraverser::NSceneGraphTraverser() : m_block(new Block) {}

NSceneGraphTraverser::NSceneGraphTraverser(NSceneGraphTraverser const&) : NSceneGraphTraverser() {}

NSceneGraphTraverser& NSceneGraphTraverser::operator=(NSceneGraphTraverser const&) { return *this; }

NSceneGraphTraverser::~NSceneGraphTraverser() = default;

void NSceneGraphTraverser::Start(NSceneGraphTreeNode& tree, void const* data) {
  auto const held = core::reference_countable::Hold(tree);
  m_block->tree = tree;
  m_block->Run([&] { Traverse(tree, data, {}); });
}

void NSceneGraphTraverser::Start(NSceneGraphPath<NSceneGraphItemNode> const& path,
                                 void const* data) {
  boost::intrusive_ptr<NSceneGraphItemNode> const item = path.GetNode();
  if (!item) return;
  // A hook may change the path.
  NCheckPoints const checkPoints = path.GetCheckPoints();
  m_block->tree = path.GetTreeRef();
  std::vector<boost::intrusive_ptr<NSceneGraphTreeNode const>> held;
  if (IsValid(path)) {
    held.push_back(m_block->tree.Get());
    for (auto const& checkPoint : checkPoints) {
      auto const reference = checkPoint.Get();
      held.push_back(reference ? reference->GetSceneGraph() : nullptr);
    }
  }
  m_block->Run([&] {
    for (auto const& tree : held) {
      if (tree) m_block->walk->bounds.Enter(*tree);
    }
    Traverse(*item, data, checkPoints);
  });
}

void NSceneGraphTraverser::TraverseExternal(NSceneGraphReferenceNode const& reference,
                                            void const* data, NCheckPoints const& checkPoints) {
  if (!m_block->walk) {
    m_block->Run([&] { TraverseExternal(reference, data, checkPoints); });
    return;
  }
  auto const held = core::reference_countable::Hold(reference);
  boost::intrusive_ptr<NSceneGraphTreeNode> const tree = reference.GetSceneGraph();
  if (!tree) return;
  NCheckPoints*& points = m_block->walk->points;
  if (&checkPoints == points && points->size() != points->capacity()) {
    // One list serves many levels. It never moves, since hooks further out stand on it.
    points->push_back(reference);
    core::detail::ScopeExit const shorten([list = points] { list->pop_back(); });
    Traverse(*tree, data, *points);
    return;
  }
  NCheckPoints inner;
  inner.reserve(std::max<std::size_t>(8, 2 * checkPoints.size()));
  inner = checkPoints;
  inner.push_back(reference);
  NCheckPoints* const outer = std::exchange(points, &inner);
  core::detail::ScopeExit const restore([&points, outer] { points = outer; });
  Traverse(*tree, data, inner);
}

core::node::NNodeReference<NSceneGraphTreeNode> const& NSceneGraphTraverser::GetTree()
    const noexcept {
  return m_block->tree;
}

void NSceneGraphTraverser::Traverse(NSceneGraphTreeNode& tree, void const* data,
                                    NCheckPoints const& checkPoints) {
  detail::RequireStack();
  detail::NWalkBounds& bounds = m_block->walk->bounds;
  if (!bounds.Enter(tree)) return;
  core::detail::ScopeExit const leave([&bounds] { bounds.Leave(); });
  bounds.Visit();
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
      m_block->walk->bounds.Visit();
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

NSceneGraphPathError::~NSceneGraphPathError() = default;

wchar_t const* NSceneGraphPathError::GetErrorCodeImpl() const {
  return error_code::NE_SCENE_GRAPH_PATH;
}

NSceneGraphWalkError::~NSceneGraphWalkError() = default;

char const* NSceneGraphWalkError::what() const noexcept {
  return m_reason == kTooManyVisits
             ? "Scene Graph Walk Error: more visits than the budget of a walk allows"
             : "Scene Graph Walk Error: references are nested deeper than the stack carries";
}

wchar_t const* NSceneGraphWalkError::GetErrorCodeImpl() const {
  return error_code::NE_SCENE_GRAPH_WALK;
}

namespace {

std::atomic<std::uint64_t> g_budget{kDefaultWalkBudget};

}  // namespace

void SetWalkBudget(std::uint64_t visits) noexcept {
  g_budget.store(visits, std::memory_order_relaxed);
}

std::uint64_t GetWalkBudget() noexcept { return g_budget.load(std::memory_order_relaxed); }

}  // namespace corvanta::data::domain::scenegraph
