#include <algorithm>

#include "corvanta/core/detail/scope_exit.h"
#include "corvanta/core/reference_countable/hold.h"
#include "corvanta/data/domain/scene/NSceneNode.h"
#include "corvanta/data/domain/scenegraph/detail/culling_bound.h"
#include "corvanta/data/domain/scenegraph/detail/item_access.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphGroupNode.h"
#include "corvanta/data/operators/ray_picker/detail/state.h"

namespace corvanta::data::operators::ray_picker {

using domain::scenegraph::detail::NChildIndex;
using domain::scenegraph::detail::NCullingBound;
using domain::scenegraph::detail::NItemAccess;
using domain::scenegraph::item::NSceneGraphItemNode;
using domain::scenegraph::item::NSceneGraphModelNode;
using domain::scenegraph::item::NSceneGraphReferenceNode;
using domain::scenegraph::tree::NSceneGraphTreeNode;
using VX_Math::Matrix;
using VX_Math::Vec3;

namespace {

/// What a record counts in the budget of a walk, beside its check points: it takes some 200 bytes.
constexpr std::uint64_t kVisitsOfARecord = 16;

}  // namespace

/// What the visits do, on the state of their picker. A visit takes the matrix of its node, puts
/// what follows on the list of steps, and the outermost visit works that list off.
///
/// A step is for some of the rays, a run of the list of active ones. When it is over, or when the
/// step that leaves its node is, the list is cut back.
class NRayPicker::Walk {
 public:
  explicit Walk(NRayPicker& picker) : m_picker(picker), m_state(*picker.m_state) {}

  template <class Node>
  void Visit(Node const& node) {
    if (m_state.isWalking) {
      Enter(node);
    } else {
      Start(node);
    }
  }

 private:
  /// Enters `node` and works the steps off.
  void Start(domain::NNode const& node) {
    auto const held = core::reference_countable::Hold(node);  // the steps hold the rest
    m_state.isWalking = true;
    core::detail::ScopeExit const finish([this] {
      m_state.steps.clear();
      m_state.active.clear();
      m_state.isWalking = false;
    });
    auto const tree = m_state.tree;
    std::size_t const recordCount = m_state.records.size();
    std::size_t const modelCount = m_state.models.size();
    try {
      m_state.budget = {};
      m_state.budget.Visit();
      m_state.controls.front() = tree ? tree->GetControlTransform() : Matrix();
      for (std::uint32_t ray = 0; ray != m_state.rays.size(); ++ray) m_state.active.push_back(ray);
      m_state.current = {0, m_state.active.size(), m_state.active.size()};
      node.Accept(m_picker);
      while (!m_state.steps.empty()) {
        PrefetchAhead();
        State::Step const step = std::move(m_state.steps.back());
        m_state.steps.pop_back();
        Take(step);
      }
    } catch (...) {
      m_state.tree = tree;
      GiveUp(recordCount, modelCount);
      throw;
    }
  }

  void Enter(domain::scene::NSceneNode const& scene) {
    m_state.tree = scene.GetSceneGraph();
    m_state.controls.front() = m_state.tree ? m_state.tree->GetControlTransform() : Matrix();
    if (m_state.tree) PushAll(State::Step::kVisitTree, *m_state.tree);
  }

  /// The root stands for its children: its kind, visibility and geometry play no part.
  void Enter(NSceneGraphTreeNode const& tree) {
    auto const root = tree.GetRoot();
    // A tree that shows itself is cut at the second showing.
    if (!root || !m_state.budget.Enter(tree)) return;
    PushStack();
    m_state.stack.MultMatrixLocal(tree.GetControlTransform());
    PushMatrix(*root);
    Push(State::Step::kLeaveTree, tree);
    if (MeetsBox(*root)) PushChildren(*root);
  }

  void Enter(domain::scenegraph::item::NSceneGraphGroupNode const& group) {
    if (!group.IsVisible()) return;
    PushMatrix(group);
    if (MeetsBox(group)) {
      Push(State::Step::kLeave, group);
      PushChildren(group);
    } else {
      PopStack();
    }
  }

  void Enter(NSceneGraphModelNode const& model) {
    if (!model.IsVisible()) return;
    PushMatrix(model);
    if (model.GetChildren().empty()) {
      LeaveModel(model);
      return;
    }
    Push(State::Step::kLeaveModel, model);
    PushAllChildren(model);
  }

  void Enter(NSceneGraphReferenceNode const& reference) {
    auto const tree = reference.GetSceneGraph();
    PushMatrix(reference);
    PushStack();
    m_state.stack.MultMatrixLocal(m_state.controls.back().Inverse());
    m_state.checkPoints.push_back(reference);
    m_state.controls.push_back(tree ? tree->GetControlTransform() : Matrix());
    Push(State::Step::kLeaveShown, reference);
    if (tree) PushAll(State::Step::kVisitTree, *tree);
  }

  /// Takes back what a walk that an exception ends has left.
  void GiveUp(std::size_t recordCount, std::size_t modelCount) noexcept {
    while (m_state.pushed != 0) PopStack();
    m_state.checkPoints.clear();
    m_state.controls.erase(m_state.controls.begin() + 1, m_state.controls.end());
    m_state.records.erase(m_state.records.begin() + static_cast<std::ptrdiff_t>(recordCount),
                          m_state.records.end());
    m_state.models.resize(modelCount);
  }

  /// What the next visits read comes from everywhere, so that it is asked for in time.
  void PrefetchAhead() const {
    constexpr std::size_t kAhead = 4;
    if (m_state.steps.size() <= 2 * kAhead) return;
    State::Step const* const next = &m_state.steps.back();
    if (next[-static_cast<std::ptrdiff_t>(kAhead)].kind == State::Step::kVisit) {
      NItemAccess::Prefetch(static_cast<NSceneGraphItemNode const&>(
          *next[-static_cast<std::ptrdiff_t>(kAhead)].node));
    }
    __builtin_prefetch(next[-2 * static_cast<std::ptrdiff_t>(kAhead)].node.get());
  }

  void Take(State::Step const& step) {
    m_state.current = step.rays;
    if (step.rays.cut == State::Rays::kShared) m_state.current.cut = m_state.active.size();
    std::size_t const cut = m_state.current.cut;
    std::size_t const stepCount = m_state.steps.size();
    switch (step.kind) {
      case State::Step::kVisit:
      case State::Step::kVisitTree:
        m_state.budget.Visit();
        step.node->Accept(m_picker);
        break;
      case State::Step::kLeave:
        PopStack();
        break;
      case State::Step::kLeaveModel:
        LeaveModel(static_cast<NSceneGraphModelNode const&>(*step.node));
        break;
      case State::Step::kLeaveTree:
        PopStack();
        PopStack();
        m_state.budget.Leave();
        break;
      case State::Step::kLeaveShown:
        LeaveShown(step.node);
        break;
    }
    if (m_state.steps.size() == stepCount) m_state.active.resize(cut);
  }

  void LeaveModel(NSceneGraphModelNode const& model) {
    if (MeetsBox(model)) {
      for (State::LocalRay const& ray : m_state.local) {
        m_state.budget.Visit(kVisitsOfARecord + m_state.checkPoints.size());
        m_state.models.emplace_back(&model);
        m_state.records.push_back({{ray.distance, ray.origin, ray.direction, m_state.stack.GetTop(),
                                    Vec3(), Vec3(), &model, m_state.checkPoints},
                                   m_state.nextPlace++,
                                   ray.ray});
      }
    }
    PopStack();
  }

  /// The shown tree is done; the reference's own children follow.
  void LeaveShown(boost::intrusive_ptr<domain::NNode const> const& node) {
    auto const& reference = static_cast<NSceneGraphReferenceNode const&>(*node);
    PopStack();
    m_state.checkPoints.pop_back();
    m_state.controls.pop_back();
    Push(State::Step::kLeave, reference);
    PushAllChildren(reference);
  }

  /// A step for the rays of the present one.
  void Push(State::Step::Kind kind, domain::NNode const& node) {
    m_state.steps.push_back({kind, m_state.current, &node});
  }

  /// A visit for the rays of the present step, which goes on.
  void PushAll(State::Step::Kind kind, domain::NNode const& node) {
    m_state.steps.push_back(
        {kind, {m_state.current.first, m_state.current.end, State::Rays::kShared}, &node});
  }

  void PushAllChildren(NSceneGraphItemNode const& item) {
    auto const& children = item.GetChildren();
    for (auto child = children.rbegin(); child != children.rend(); ++child) {
      if (!IsBelow(**child)) PushAll(State::Step::kVisit, **child);
    }
  }

  /// Those children that a local ray may meet, for the rays that may.
  /// Requires: MeetsBox of `item` came last, and the step that leaves it is there.
  void PushChildren(NSceneGraphItemNode const& item) {
    if (item.GetChildren().empty()) return;
    m_state.bounds.clear();
    std::size_t const first = m_state.active.size();
    for (State::LocalRay const& ray : m_state.local) {
      m_state.active.push_back(ray.ray);
      m_state.bounds.emplace_back(m_state.stack.GetTop(), m_state.inverse,
                                  m_state.rays[ray.ray].line.GetOrigin(), ray.origin,
                                  ray.direction);
    }
    if (FindMet(item)) {
      PushMet(first);
      return;
    }
    auto const& children = item.GetChildren();
    for (auto child = children.rbegin(); child != children.rend(); ++child) {
      if (IsBelow(**child)) continue;
      std::size_t const own = m_state.active.size();
      for (std::size_t i = 0; i != m_state.local.size(); ++i) {
        if (m_state.bounds[i].MayMeet(**child)) m_state.active.push_back(m_state.local[i].ray);
      }
      PushFor(**child, first, own);
    }
  }

  /// A visit for the active rays from `own` on, none without such; the local rays are active from
  /// `local` on.
  void PushFor(NSceneGraphItemNode const& child, std::size_t local, std::size_t own) {
    std::size_t const count = m_state.active.size() - own;
    if (count == 0) return;
    if (count == m_state.local.size()) {
      m_state.active.resize(own);
      m_state.steps.push_back(
          {State::Step::kVisit, {local, local + count, State::Rays::kShared}, &child});
    } else {
      m_state.steps.push_back({State::Step::kVisit, {own, own + count, own}, &child});
    }
  }

  /// Asks the index of `item` for the children that each local ray may meet.
  /// Fails: false where all must be looked at.
  bool FindMet(NSceneGraphItemNode const& item) {
    m_state.met.clear();
    NChildIndex const* const index =
        m_state.bounds.front().CanSpare() ? NChildIndex::UseForPick(item) : nullptr;
    if (index == nullptr) return false;
    for (std::size_t i = 0; i != m_state.local.size(); ++i) {
      if (!index->FindMet(m_state.bounds[i], m_state.children)) return false;
      for (auto const& child : m_state.children) {
        m_state.met.push_back({child, m_state.local[i].ray});
      }
    }
    if (m_state.local.size() == 1) return true;
    std::sort(m_state.met.begin(), m_state.met.end(), [](State::Met const& a, State::Met const& b) {
      return a.child.order == b.child.order ? a.ray < b.ray : a.child.order > b.child.order;
    });
    return true;
  }

  /// Visits of what FindMet has found, a child each.
  void PushMet(std::size_t local) {
    for (std::size_t i = 0; i != m_state.met.size();) {
      NSceneGraphItemNode const& child = *m_state.met[i].child.item;
      std::size_t const own = m_state.active.size();
      bool const isBelow = IsBelow(child);
      for (; i != m_state.met.size() && m_state.met[i].child.item == &child; ++i) {
        if (!isBelow) m_state.active.push_back(m_state.met[i].ray);
      }
      PushFor(child, local, own);
    }
  }

  /// Whether the walk is below `child`: it would go in a circle.
  bool IsBelow(NSceneGraphItemNode const& child) const {
    return NItemAccess::GetListCount(child) > 1 && StandsIn(child);
  }

  /// Whether the walk is below `item` already, which two lists can make possible.
  bool StandsIn(NSceneGraphItemNode const& item) const {
    return std::any_of(m_state.steps.begin(), m_state.steps.end(), [&item](auto const& step) {
      return step.kind >= State::Step::kLeave && step.node.get() == &item;
    });
  }

  void PushStack() {
    m_state.stack.Push();
    ++m_state.pushed;
  }
  void PopStack() noexcept {
    m_state.stack.Pop();
    --m_state.pushed;
  }

  void PushMatrix(NSceneGraphItemNode const& item) {
    PushStack();
    if (item.TransformIsAbsolute()) {
      m_state.stack.LoadMatrix(item.GetTransform());
    } else {
      m_state.stack.MultMatrixLocal(item.GetTransform());
    }
  }

  /// Finds those of the present step's rays that meet the box of `item`, in its frame.
  /// Fails: false without any.
  bool MeetsBox(NSceneGraphItemNode const& item) {
    Matrix const& top = m_state.stack.GetTop();
    // A copy of the box: computing it may reach listeners.
    VX_Math::Box3 const box = item.GetBoundingBox(top, m_state.controls.back());
    Matrix const& inverse = m_state.inverse = top.Inverse();
    m_state.local.clear();
    for (std::size_t i = m_state.current.first; i != m_state.current.end; ++i) {
      State::LocalRay ray{m_state.active[i], {}, {}, 0};
      VX_Math::Line const& line = m_state.rays[ray.ray].line;
      inverse.MultVecMatrix(line.GetOrigin(), ray.origin);
      inverse.MultDirMatrix(line.GetDirection(), ray.direction);
      if (m_picker.QueryIntersectionBox(ray.origin, ray.direction, box, ray.distance)) {
        m_state.local.push_back(ray);
      }
    }
    return !m_state.local.empty();
  }

  NRayPicker& m_picker;
  State& m_state;
};

void NRayPicker::VisitImpl(domain::scene::NSceneNode const& scene) { Walk(*this).Visit(scene); }

void NRayPicker::VisitImpl(NSceneGraphTreeNode const& tree) { Walk(*this).Visit(tree); }

void NRayPicker::VisitImpl(domain::scenegraph::item::NSceneGraphGroupNode const& group) {
  Walk(*this).Visit(group);
}

void NRayPicker::VisitImpl(NSceneGraphModelNode const& model) { Walk(*this).Visit(model); }

void NRayPicker::VisitImpl(NSceneGraphReferenceNode const& reference) {
  Walk(*this).Visit(reference);
}

void NRayPicker::VisitImpl(domain::light_env::NLightEnvNode const&) {}
void NRayPicker::VisitImpl(domain::texture::NTextureNode const&) {}
void NRayPicker::VisitImpl(domain::sound::NSoundNode const&) {}
void NRayPicker::VisitImpl(domain::scenegraph::item::NSceneGraphLightNode const&) {}
void NRayPicker::VisitImpl(domain::scenegraph::item::NSceneGraphCameraNode const&) {}
void NRayPicker::VisitImpl(domain::projection::NProjectionNode const&) {}
void NRayPicker::VisitImpl(domain::movie::NMovieNode const&) {}
void NRayPicker::VisitImpl(domain::material::NMaterialNode const&) {}
void NRayPicker::VisitImpl(domain::light::NLightNode const&) {}
void NRayPicker::VisitImpl(domain::image::NImageNode const&) {}
void NRayPicker::VisitImpl(domain::geometry::NGeometryNode const&) {}
void NRayPicker::VisitImpl(domain::environment::NEnvironmentNode const&) {}
void NRayPicker::VisitImpl(domain::camera::NCameraNode const&) {}
void NRayPicker::VisitImpl(domain::animation::NAnimationNode const&) {}

}  // namespace corvanta::data::operators::ray_picker
