#include "app/scene/hit_marks.h"

#include "corvanta/data/domain/geometry/NGeometryNode.h"
#include "corvanta/data/domain/material/NMaterialNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphGroupNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"
#include "corvanta/data/domain/scenegraph/tree/bounding_box.h"
#include "corvanta/data/internal/internal_data.h"
#include "corvanta/vx_math/Quaternion.h"

namespace corvanta::app {

namespace {

namespace item = data::domain::scenegraph::item;
namespace internal = data::internal;
using core::node::NNodeID;
using VX_Math::Matrix;
using VX_Math::Vec3;

// Of the scene's diagonal.
constexpr float kBallRadius = 0.015f;
constexpr float kRodScale = 0.15f;

// The numbers of the built-in materials of handles.
constexpr int kRed = 0;
constexpr int kYellow = 3;

void Add(data::document::NDocument& document, item::NSceneGraphItemNode& group,
         internal::GeometryReference const& geometry, int color, Matrix const& place) {
  auto const model = document.GetItems().CreateNode<item::NSceneGraphModelNode>(NNodeID());
  model->SetGeometryNode(geometry);
  if (auto* const material = internal::GetRGBMaterialNode(document.GetManager(), color)) {
    model->SetMaterial(*material);
  }
  item::SetTransform(*model, place);
  group.AddChild(*model);
}

}  // namespace

void MarkHits(data::document::NDocument& document, NStage& stage, std::vector<Vec3> const& points,
              Vec3 const* from) {
  auto const tree = stage.GetScene().GetSceneGraph();
  if (points.empty()) return;
  float const size = GetBoundingBox(*tree).GetSize().Length();
  auto const group = document.GetItems().CreateNode<item::NSceneGraphGroupNode>(NNodeID());
  group->SetName(L"hits");
  group->SetTransformIsAbsoluteFlag(true);
  int color = kRed;
  for (Vec3 const& point : points) {
    Matrix ball, move;
    ball.SetScale(size * kBallRadius);
    move.SetTranslate(point);
    Add(document, *group, internal::GetSphere(document.GetManager()), color, ball * move);
    color = kYellow;
  }
  if (from != nullptr) {
    Vec3 const way = points.back() - *from;
    Matrix rod, move;
    rod.SetScale(Vec3(way.Length(), size * kRodScale, size * kRodScale));
    move.SetTranslate(*from);
    Matrix const turn(VX_Math::Quaternion(Vec3(1.0f, 0.0f, 0.0f), way));
    Add(document, *group, internal::GetRod(document.GetManager()), kYellow, rod * turn * move);
  }
  tree->GetRoot()->AddChild(*group);
}

}  // namespace corvanta::app
