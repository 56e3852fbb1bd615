#include <algorithm>
#include <optional>

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
      m_state.isWalking = false;
    });
    auto const tree = m_state.tree;
    std::size_t const recordCount = m_state.records.size();
    std::size_t const modelCount = m_state.models.size();
    try {
      m_state.bounds = {};
      m_state.bounds.Visit();
      m_state.controls.front() = tree ? tree->GetControlTransform() : Matrix();
      node.Accept(m_picker);
      while (!m_state.steps.empty()) {
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
    if (m_state.tree) Push(State::Step::kVisit, *m_state.tree);
  }

  /// The root stands for its children: its kind, visibility and geometry play no part.
  void Enter(NSceneGraphTreeNode const& tree) {
    auto const root = tree.GetRoot();
    // A tree that shows itself is cut at the second showing.
    if (!root || !m_state.bounds.Enter(tree)) return;
    PushStack();
    m_state.stack.MultMatrixLocal(tree.GetControlTransform());
    PushMatrix(*root);
    Push(State::Step::kLeaveTree, tree);
    Ray ray;
    if (MeetsBox(*root, ray)) PushChildren(*root, ray.bound ? &*ray.bound : nullptr);
  }

  void Enter(domain::scenegraph::item::NSceneGraphGroupNode const& group) {
    if (!group.IsVisible()) return;
    PushMatrix(group);
    Ray ray;
    if (MeetsBox(group, ray)) {
      Push(State::Step::kLeave, group);
      PushChildren(group, ray.bound ? &*ray.bound : nullptr);
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
    PushChildren(model, nullptr);
  }

  void Enter(NSceneGraphReferenceNode const& reference) {
    auto const tree = reference.GetSceneGraph();
    PushMatrix(reference);
    PushStack();
    m_state.stack.MultMatrixLocal(m_state.controls.back().Inverse());
    m_state.checkPoints.push_back(reference);
    m_state.controls.push_back(tree ? tree->GetControlTransform() : Matrix());
    Push(State::Step::kLeaveShown, reference);
    if (tree) Push(State::Step::kVisit, *tree);
  }

  /// The ray in the frame of the item at the top of the stack.
  struct Ray {
    Vec3 origin, direction;
    double distance = 0;
    std::optional<NCullingBound> bound;  // for the item's children
  };

  /// Takes back what a walk that an exception ends has left.
  void GiveUp(std::size_t recordCount, std::size_t modelCount) noexcept {
    while (m_state.pushed != 0) PopStack();
    m_state.checkPoints.clear();
    m_state.controls.erase(m_state.controls.begin() + 1, m_state.controls.end());
    m_state.records.erase(m_state.records.begin() + static_cast<std::ptrdiff_t>(recordCount),
                          m_state.records.end());
    m_state.models.resize(modelCount);
  }

  void Take(State::Step const& step) {
    switch (step.kind) {
      case State::Step::kVisit:
        m_state.bounds.Visit();
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
        m_state.bounds.Leave();
        break;
      case State::Step::kLeaveShown:
        LeaveShown(step.node);
        break;
    }
  }

  void LeaveModel(NSceneGraphModelNode const& model) {
    Ray ray;
    if (MeetsBox(model, ray)) {
      m_state.bounds.Visit(kVisitsOfARecord + m_state.checkPoints.size());
      m_state.models.emplace_back(&model);
      m_state.records.push_back({{ray.distance, ray.origin, ray.direction, m_state.stack.GetTop(),
                                  Vec3(), Vec3(), &model, m_state.checkPoints},
                                 m_state.nextPlace++});
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
    PushChildren(reference, nullptr);
  }

  void Push(State::Step::Kind kind, domain::NNode const& node) {
    m_state.steps.push_back({kind, &node});
  }

  /// `bound` may spare children that the ray can't meet; null spares none.
  void PushChildren(NSceneGraphItemNode const& item, NCullingBound const* bound) {
    if (bound != nullptr && bound->CanSpare()) {
      NChildIndex const* const index = NChildIndex::UseForPick(item);
      if (index != nullptr && index->FindMet(*bound, m_state.met)) {
        for (auto const& child : m_state.met) PushChild(*child.item);
        return;
      }
    }
    auto const& children = item.GetChildren();
    for (auto child = children.rbegin(); child != children.rend(); ++child) {
      if (bound == nullptr || bound->MayMeet(**child)) PushChild(**child);
    }
  }

  void PushChild(NSceneGraphItemNode const& child) {
    if (NItemAccess::GetListCount(child) > 1 && StandsIn(child)) return;
    Push(State::Step::kVisit, child);
  }

  /// Whether the walk is below `item` already, which two lists can make possible.
  bool StandsIn(NSceneGraphItemNode const& item) const {
    return std::any_of(m_state.steps.begin(), m_state.steps.end(), [&item](auto const& step) {
      return step.kind != State::Step::kVisit && step.node.get() == &item;
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

  bool MeetsBox(NSceneGraphItemNode const& item, Ray& ray) const {
    Matrix const& top = m_state.stack.GetTop();
    // A copy of the box: computing it may reach listeners.
    VX_Math::Box3 const box = item.GetBoundingBox(top, m_state.controls.back());
    Matrix const inverse = top.Inverse();
    inverse.MultVecMatrix(m_state.ray.GetOrigin(), ray.origin);
    inverse.MultDirMatrix(m_state.ray.GetDirection(), ray.direction);
    if (!m_picker.QueryIntersectionBox(ray.origin, ray.direction, box, ray.distance)) return false;
    if (!item.GetChildren().empty()) {
      ray.bound.emplace(top, inverse, m_state.ray.GetOrigin(), ray.origin, ray.direction);
    }
    return true;
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
