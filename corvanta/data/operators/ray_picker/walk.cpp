#include <algorithm>
#include <optional>

#include "corvanta/core/detail/scope_exit.h"
#include "corvanta/data/domain/scene/NSceneNode.h"
#include "corvanta/data/domain/scenegraph/detail/item_access.h"
#include "corvanta/data/domain/scenegraph/detail/ray_bound.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphGroupNode.h"
#include "corvanta/data/operators/ray_picker/detail/state.h"

namespace corvanta::data::operators::ray_picker {

using domain::scenegraph::detail::NItemAccess;
using domain::scenegraph::detail::NRayBound;
using domain::scenegraph::item::NSceneGraphItemNode;
using domain::scenegraph::item::NSceneGraphModelNode;
using domain::scenegraph::item::NSceneGraphReferenceNode;
using domain::scenegraph::tree::NSceneGraphTreeNode;
using VX_Math::Matrix;
using VX_Math::Vec3;

/// What the visits do, on the state of their picker. A visit takes the matrix of its node, puts
/// what follows on the list of steps, and the outermost visit works that list off.
class NRayPicker::Walk {
 public:
  explicit Walk(NRayPicker& picker) : m_picker(picker), m_state(*picker.m_state) {}

  /// Works the steps off, unless a visit further out does.
  void Run() {
    if (m_state.isWalking) return;
    m_state.isWalking = true;
    core::detail::ScopeExit const finish([this] {
      m_state.steps.clear();
      m_state.isWalking = false;
    });
    while (!m_state.steps.empty()) {
      State::Step const step = std::move(m_state.steps.back());
      m_state.steps.pop_back();
      Take(step);
    }
  }

  void EnterScene(domain::scene::NSceneNode const& scene) {
    m_state.tree = scene.GetSceneGraph();
    if (!m_state.tree) return;
    m_state.controls.front() = m_state.tree->GetControlTransform();
    Push(State::Step::kVisit, *m_state.tree);
  }

  /// The root stands for its children: its kind, visibility and geometry play no part.
  void EnterTree(NSceneGraphTreeNode const& tree) {
    auto const root = tree.GetRoot();
    // A tree that shows itself is cut at the second showing.
    if (!root || std::count(m_state.trees.begin(), m_state.trees.end(), &tree) != 0) return;
    m_state.trees.push_back(&tree);
    m_state.stack.Push();
    m_state.stack.MultMatrixLocal(tree.GetControlTransform());
    PushMatrix(*root);
    Push(State::Step::kLeaveTree, tree);
    Ray ray;
    if (MeetsBox(*root, ray)) PushChildren(*root, ray.bound ? &*ray.bound : nullptr);
  }

  void EnterGroup(NSceneGraphItemNode const& group) {
    if (!group.IsVisible()) return;
    PushMatrix(group);
    Ray ray;
    if (MeetsBox(group, ray)) {
      Push(State::Step::kLeave, group);
      PushChildren(group, ray.bound ? &*ray.bound : nullptr);
    } else {
      m_state.stack.Pop();
    }
  }

  void EnterModel(NSceneGraphModelNode const& model) {
    if (!model.IsVisible()) return;
    PushMatrix(model);
    if (model.GetChildren().empty()) {
      LeaveModel(model);
      return;
    }
    Push(State::Step::kLeaveModel, model);
    PushChildren(model, nullptr);
  }

  void EnterReference(NSceneGraphReferenceNode const& reference) {
    auto const tree = reference.GetSceneGraph();
    PushMatrix(reference);
    m_state.stack.Push();
    m_state.stack.MultMatrixLocal(m_state.controls.back().Inverse());
    m_state.checkPoints.push_back(reference);
    m_state.controls.push_back(tree ? tree->GetControlTransform() : Matrix());
    Push(State::Step::kLeaveShown, reference);
    if (tree) Push(State::Step::kVisit, *tree);
  }

 private:
  /// The ray in the frame of the item at the top of the stack.
  struct Ray {
    Vec3 origin, direction;
    double distance = 0;
    std::optional<NRayBound> bound;  // for the item's children
  };

  void Take(State::Step const& step) {
    switch (step.kind) {
      case State::Step::kVisit:
        step.node->Accept(m_picker);
        break;
      case State::Step::kLeave:
        m_state.stack.Pop();
        break;
      case State::Step::kLeaveModel:
        LeaveModel(static_cast<NSceneGraphModelNode const&>(*step.node));
        break;
      case State::Step::kLeaveTree:
        m_state.stack.Pop();
        m_state.stack.Pop();
        m_state.trees.pop_back();
        break;
      case State::Step::kLeaveShown:
        LeaveShown(step.node);
        break;
    }
  }

  void LeaveModel(NSceneGraphModelNode const& model) {
    Ray ray;
    if (MeetsBox(model, ray)) {
      m_state.models.emplace_back(&model);
      m_state.records.push_back({ray.distance, ray.origin, ray.direction, m_state.stack.GetTop(),
                                 Vec3(), Vec3(), &model, m_state.checkPoints});
    }
    m_state.stack.Pop();
  }

  /// The shown tree is done; the reference's own children follow.
  void LeaveShown(boost::intrusive_ptr<domain::NNode const> const& node) {
    auto const& reference = static_cast<NSceneGraphReferenceNode const&>(*node);
    m_state.stack.Pop();
    m_state.checkPoints.pop_back();
    m_state.controls.pop_back();
    Push(State::Step::kLeave, reference);
    PushChildren(reference, nullptr);
  }

  void Push(State::Step::Kind kind, domain::NNode const& node) {
    m_state.steps.push_back({kind, &node});
  }

  /// `bound` may spare children that the ray can't meet; null spares none.
  void PushChildren(NSceneGraphItemNode const& item, NRayBound const* bound) {
    auto const& children = item.GetChildren();
    for (auto child = children.rbegin(); child != children.rend(); ++child) {
      if (bound != nullptr && !bound->MayMeet(**child)) continue;
      if (NItemAccess::GetListCount(**child) > 1 && StandsIn(**child)) continue;
      Push(State::Step::kVisit, **child);
    }
  }

  /// Whether the walk is below `item` already, which two lists can make possible.
  bool StandsIn(NSceneGraphItemNode const& item) const {
    return std::any_of(m_state.steps.begin(), m_state.steps.end(), [&item](auto const& step) {
      return step.kind != State::Step::kVisit && step.node.get() == &item;
    });
  }

  void PushMatrix(NSceneGraphItemNode const& item) {
    m_state.stack.Push();
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

void NRayPicker::VisitImpl(domain::scene::NSceneNode const& scene) {
  Walk walk(*this);
  walk.EnterScene(scene);
  walk.Run();
}

void NRayPicker::VisitImpl(NSceneGraphTreeNode const& tree) {
  Walk walk(*this);
  walk.EnterTree(tree);
  walk.Run();
}

void NRayPicker::VisitImpl(domain::scenegraph::item::NSceneGraphGroupNode const& group) {
  Walk walk(*this);
  walk.EnterGroup(group);
  walk.Run();
}

void NRayPicker::VisitImpl(NSceneGraphModelNode const& model) {
  Walk walk(*this);
  walk.EnterModel(model);
  walk.Run();
}

void NRayPicker::VisitImpl(NSceneGraphReferenceNode const& reference) {
  Walk walk(*this);
  walk.EnterReference(reference);
  walk.Run();
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
