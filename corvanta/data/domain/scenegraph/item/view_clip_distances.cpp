#include "corvanta/data/domain/scenegraph/item/view_clip_distances.h"

#include <cmath>

#include "corvanta/data/domain/environment/NEnvironmentNode.h"
#include "corvanta/data/domain/scene/NSceneNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"
#include "corvanta/data/domain/scenegraph/item/view.h"
#include "corvanta/data/domain/scenegraph/tree/NSceneGraphTreeNode.h"
#include "corvanta/data/domain/scenegraph/tree/bounding_box.h"
#include "corvanta/data/internal/internal_data.h"
#include "corvanta/data/view/NView.h"

namespace corvanta::data::domain::scenegraph::item {

using VX_Math::Box3;
using VX_Math::Matrix;

namespace {

constexpr float kMargin = 1.05f;

/// What the environment takes up, on both sides of the floor.
Box3 GetEnvironmentBox(NSceneGraphModelNode const& model) {
  Box3 box = model.GetBoundingBox(Matrix::Identity(), Matrix::Identity());
  if (box.IsEmpty()) return box;
  box.Transform(model.GetTransform());
  box.min *= kMargin;
  box.max *= kMargin;
  // A model that lies below the floor altogether counts above it too.
  box.max.y = std::fabs(box.max.y);
  box.min.y = -box.max.y;
  return box;
}

}  // namespace

std::pair<double, double> GetClipDistances(NSceneGraphPath<NSceneGraphCameraNode> const& camera,
                                           data::view::NView const& view) {
  NSceneGraphPath<NSceneGraphCameraNode> const path = camera;  // a listener may change or end it
  auto const scene = view.GetScene();
  auto const tree = scene ? scene->GetSceneGraph() : nullptr;
  auto const environment = tree ? scene->GetEnvironment() : nullptr;
  auto const model = environment ? environment->GetEnvironmentMapModel() : nullptr;
  if (!model) return {0, 0};
  Box3 box = tree::GetBoundingBox(*tree);
  box.ExtendBy(GetEnvironmentBox(*model));
  auto const item = path.GetNode();
  core::domain::NDomainManager const* const manager = item ? item->GetDomainManager() : nullptr;
  if (manager != nullptr) {
    boost::intrusive_ptr<NSceneGraphItemNode> const postures(
        internal::GetPostureSceneRoot(*manager));
    if (postures) {
      box.ExtendBy(postures->GetBoundingBox(postures->GetTransform(), Matrix::Identity()));
    }
  }
  return GetClipDistances(path, box);
}

}  // namespace corvanta::data::domain::scenegraph::item
