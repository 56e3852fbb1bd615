#include "app/scene/model_box.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <exception>
#include <functional>
#include <limits>
#include <utility>

#include "corvanta/data/domain/geometry/NGeometryNode.h"
#include "corvanta/data/domain/geometry/NSurface.h"
#include "corvanta/data/domain/scenegraph/NSceneGraphPath.h"
#include "corvanta/data/domain/scenegraph/NSceneGraphTraverser.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"
#include "corvanta/data/domain/scenegraph/tree/NSceneGraphTreeNode.h"
#include "corvanta/data/domain/scenegraph/tree/bounding_box.h"

namespace corvanta::app {

namespace {

using data::domain::scenegraph::item::NSceneGraphItemNode;
using data::domain::scenegraph::item::NSceneGraphModelNode;
using data::domain::scenegraph::tree::NSceneGraphTreeNode;
using VX_Math::Vec3;

/// Shows the models that are seen, each with its global transform.
class ModelFinder : private data::domain::scenegraph::NSceneGraphTraverser {
 public:
  using Show = std::function<void(NSceneGraphModelNode const&, VX_Math::Matrix const&)>;

  ModelFinder(NOverview::Tree const& tree, Show show) : m_show(std::move(show)) {
    Start(*tree, nullptr);
  }

 private:
  using NSceneGraphTraverser::After;
  using NSceneGraphTraverser::Before;

  // A root's own visibility counts for nothing.
  void BeforeCommon(NSceneGraphItemNode& item, void const*, NCheckPoints const&) override {
    if (m_hiddenDepth != 0 || !(m_isRoot || item.IsVisible())) ++m_hiddenDepth;
    m_isRoot = false;
  }
  void AfterCommon(NSceneGraphItemNode&, void const*, NCheckPoints const&) override {
    if (m_hiddenDepth != 0) --m_hiddenDepth;
  }
  void Before(NSceneGraphTreeNode&, void const*, NCheckPoints const&) override { m_isRoot = true; }
  void After(NSceneGraphTreeNode&, void const*, NCheckPoints const&) override { m_isRoot = false; }
  void After(NSceneGraphModelNode& model, void const*, NCheckPoints const& checkPoints) override {
    if (m_hiddenDepth != 0) return;
    try {
      VX_Math::Matrix global;
      data::domain::scenegraph::NSceneGraphPath<NSceneGraphModelNode>(model, GetTree(), checkPoints)
          .GetGlobalTransform(global);
      m_show(model, global);
    } catch (std::exception const&) {
      // An item that two lists hold, and whose parent leads elsewhere.
    }
  }

  Show const m_show;
  std::size_t m_hiddenDepth = 0;
  bool m_isRoot = false;
};

/// Calls `point` with those of a model, in its own frame: the vertices while there are any left
/// that may be read, then the corners of the box.
template <class Point>
void VisitPoints(NSceneGraphModelNode const& model, std::size_t& left, Point const& point) {
  auto const geometry = model.GetGeometryNode();
  std::size_t count = 0;
  if (geometry) {
    for (auto const& surface : geometry->GetSurfaces()) count += surface->GetCoords().size();
  }
  if (count <= left) {
    left -= count;
    if (!geometry) return;
    for (auto const& surface : geometry->GetSurfaces()) {
      for (auto const& v : surface->GetCoords()) point(Vec3(v.x, v.y, v.z));
    }
    return;
  }
  VX_Math::Box3 const box = model.GetBoundingBoxWithoutChildren();
  for (unsigned corner = 0; corner != 8; ++corner) {
    point(Vec3(corner & 1 ? box.max.x : box.min.x, corner & 2 ? box.max.y : box.min.y,
               corner & 4 ? box.max.z : box.min.z));
  }
}

/// A direction in the frame of a model.
struct Direction {
  Vec3 vector;
  float offset;
  std::size_t index;

  float GetReach(VX_Math::Box3 const& box) const {
    float reach = offset;
    for (int axis = 0; axis != 3; ++axis) {
      reach += std::max(vector[axis] * box.min[axis], vector[axis] * box.max[axis]);
    }
    // Sums of another order.
    return reach + 1e-5f * std::abs(reach);
  }
};

constexpr std::size_t kMostVertices = 4'000'000;

}  // namespace

NModelExtent GetModelExtent(NOverview::Tree const& tree, std::vector<Vec3> const& directions) {
  constexpr float kNowhere = -std::numeric_limits<float>::infinity();
  std::vector<float> reach(directions.size(), kNowhere);
  NModelExtent extent;
  extent.extremes.resize(directions.size());
  std::size_t left = kMostVertices;
  ModelFinder(tree, [&](auto const& model, VX_Math::Matrix const& global) {
    VX_Math::Box3 const box = model.GetBoundingBoxWithoutChildren();
    if (!box.IsEmpty()) {
      VX_Math::Box3 part = box;
      part.Transform(global);
      extent.box.ExtendBy(part);
    }
    // The directions in the frame of the model, and what its origin adds: those in which the box
    // reaches farther than what was found.
    std::vector<Direction> own;
    for (std::size_t i = 0; i != directions.size(); ++i) {
      Vec3 const& d = directions[i];
      auto const along = [&](int row) {
        return global(row, 0) * d.x + global(row, 1) * d.y + global(row, 2) * d.z;
      };
      Direction const direction{Vec3(along(0), along(1), along(2)), along(3), i};
      // What isn't finite is looked at.
      if (!(direction.GetReach(box) <= reach[i])) own.push_back(direction);
    }
    if (own.empty()) return;
    VisitPoints(model, left, [&](Vec3 const& v) {
      for (Direction const& direction : own) {
        float const distance = direction.vector.Dot(v) + direction.offset;
        if (!(distance > reach[direction.index]) || !std::isfinite(distance)) continue;
        reach[direction.index] = distance;
        global.MultVecMatrix(v, extent.extremes[direction.index]);
      }
    });
  });
  if (std::find(reach.begin(), reach.end(), kNowhere) != reach.end()) extent.extremes.clear();
  Vec3 const size = extent.box.max - extent.box.min;
  bool const isKnown = !extent.box.IsEmpty() && std::isfinite(size.x + size.y + size.z);
  if (!isKnown) extent.box = data::domain::scenegraph::tree::GetBoundingBox(*tree);
  return extent;
}

}  // namespace corvanta::app
