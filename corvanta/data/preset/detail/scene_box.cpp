#include "corvanta/data/preset/detail/scene_box.h"

#include <algorithm>

#include "corvanta/data/domain/scene/NSceneNode.h"
#include "corvanta/data/domain/scenegraph/tree/NSceneGraphTreeNode.h"
#include "corvanta/data/domain/scenegraph/tree/bounding_box.h"

namespace corvanta::data::preset::detail {

using VX_Math::Box3;
using VX_Math::Vec3;

Box3 GetSceneBox(view::NView const& view) {
  auto const scene = view.GetScene();
  auto const tree = scene ? scene->GetSceneGraph() : nullptr;
  Box3 const box = tree ? domain::scenegraph::tree::GetBoundingBox(*tree) : Box3();
  return box.IsEmpty() ? Box3(Vec3(-1, -1, -1), Vec3(1, 1, 1)) : box;
}

float GetLongestSide(Box3 const& box) {
  Vec3 const size = box.GetSize();
  return std::max({size.x, size.y, size.z});
}

}  // namespace corvanta::data::preset::detail
