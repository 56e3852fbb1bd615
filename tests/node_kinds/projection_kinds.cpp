#include "tests/node_kinds/node_kind.h"

namespace corvanta::node_kinds {
namespace {

// clang-format off
NodeKind Projection() {
  using N = data::domain::projection::NProjectionNode;
  return MakeKind<data::domain::projection::NProjectionDomain, N>({"NProjectionNode", data::domain::DT_PROJECTION, L"projection", L"projection", L"projection", false, {
      Both(L"method", L"plane", &N::GetProjectionMethod, &N::SetProjectionMethod),
      Both(L"translation.x", 0.0, &N::GetTranslationX, &N::SetTranslationX),
      Both(L"translation.y", 0.0, &N::GetTranslationY, &N::SetTranslationY),
      Both(L"translation.z", 0.0, &N::GetTranslationZ, &N::SetTranslationZ),
      Both(L"rotation.x", 0.0, &N::GetRotationX, &N::SetRotationX),
      Both(L"rotation.y", 0.0, &N::GetRotationY, &N::SetRotationY),
      Both(L"rotation.z", 0.0, &N::GetRotationZ, &N::SetRotationZ),
      Both(L"scale.x", 1.0, &N::GetScaleX, &N::SetScaleX),
      Both(L"scale.y", 1.0, &N::GetScaleY, &N::SetScaleY),
      Both(L"scale.z", 1.0, &N::GetScaleZ, &N::SetScaleZ),
      Named(L"flip.u", false),
      Named(L"flip.v", false),
      Named(L"flip.w", false),
      Both(L"uvwOrder", 36, &N::GetUVWOrder, &N::SetUVWOrder),
      Written(L"repeat.u", 1.0, &N::SetRepeatU),
      Written(L"repeat.v", 1.0, &N::SetRepeatV),
      Written(L"repeat.w", 1.0, &N::SetRepeatW),
      Both(L"wrap.u", true, &N::WrapU, &N::SetWrapUFlag),
      Both(L"wrap.v", true, &N::WrapV, &N::SetWrapVFlag),
      Both(L"wrap.w", true, &N::WrapW, &N::SetWrapWFlag),
      Written(L"offset.u", 0.0, &N::SetOffsetU),
      Written(L"offset.v", 0.0, &N::SetOffsetV),
      Written(L"offset.w", 0.0, &N::SetOffsetW),
      Both(L"need_conversion_to_relative_scale", true, &N::NeedConversionToRelativeScale, &N::SetNeedConversionToRelativeScaleFlag),
      Both(L"use_scene_graph_unit", true, &N::IsUseSceneGraphUnit, &N::SetUseSceneGraphUnit)}});
}
// clang-format on

INSTANTIATE_TEST_SUITE_P(Projection, NodeKindTest, testing::Values(Projection()), NameOfKind);

}  // namespace
}  // namespace corvanta::node_kinds
