#include "tests/node_kinds/node_kind.h"

namespace corvanta::node_kinds {
namespace {

using namespace data::domain;

// clang-format off
NodeKind Light() {
  using N = light::NLightNode;
  return MakeKind<light::NLightDomain, N>({"NLightNode", DT_LIGHT, L"light", L"light", L"light", true, {
      Both(L"type", L"directional", &N::GetType, &N::SetType),
      Both(L"color.r", 1.0, &N::GetColorR, &N::SetColorR),
      Both(L"color.g", 1.0, &N::GetColorG, &N::SetColorG),
      Both(L"color.b", 1.0, &N::GetColorB, &N::SetColorB),
      Both(L"extension", 0, &N::GetExtension, &N::SetExtension),
      Both(L"makesShadow", true, &N::MakesShadow, &N::SetMakesShadow),
      Both(L"makesSelfShadow", true, &N::MakesSelfShadow, &N::SetMakesSelfShadow),
      Both(L"shadow.darkness", 1.0, &N::GetShadowDarkness, &N::SetShadowDarkness),
      Both(L"shadow.softness", 1.0, &N::GetShadowSoftness, &N::SetShadowSoftness),
      Both(L"attenuation.type", 0, &N::GetAttenuationType, &N::SetAttenuationType),
      Both(L"attenuation.range", 5000.0, &N::GetAttenuationRange, &N::SetAttenuationRange),
      Read(L"spreadAngle", 90.0, &N::GetSpreadAngle),
      Read(L"falloffAngle", 95.0, &N::GetFallOffAngle)}});
}

NodeKind Camera() {
  using N = camera::NCameraNode;
  return MakeKind<camera::NCameraDomain, N>({"NCameraNode", DT_CAMERA, L"camera", L"camera", L"camera", true, {
      Both(L"type", 0, &N::GetCameraType, &N::SetCameraType),
      Both(L"viewAngle.horizontal", 20.0, &N::GetHorizontalViewAngle, &N::SetHorizontalViewAngle),
      Both(L"viewAngle.vertical", 20.0, &N::GetVerticalViewAngle, &N::SetVerticalViewAngle),
      Both(L"viewAngle.usesVertical", true, &N::UsesVerticalViewAngle, &N::SetUsesVerticalViewAngleFlag),
      Named(L"exposure", 1.0),
      Named(L"gamma", 1.0),
      Both(L"projectionType", 0, &N::GetProjectionType, &N::SetProjectionType),
      Both(L"dof.isEnabled", false, &N::IsDofEnabled, &N::SetDofEnabled),
      Both(L"dof.cocScale", 1.0, &N::GetDofCocScale, &N::SetDofCocScale),
      Both(L"dof.nearClamp", 0.7, &N::GetDofNearClamp, &N::SetDofNearClamp),
      Both(L"dof.farClamp", 1.5, &N::GetDofFarClamp, &N::SetDofFarClamp),
      Both(L"horizontalTiltAngle", 0.0, &N::GetHorizontalTiltAngle, &N::SetHorizontalTiltAngle),
      Both(L"verticalTiltAngle", 0.0, &N::GetVerticalTiltAngle, &N::SetVerticalTiltAngle)}});
}

NodeKind Image() {
  return MakeKind<image::NImageDomain, image::NImageNode>({"NImageNode", DT_IMAGE, L"image", L"image", L"image", true, {
      Named(L"formatHint", 0),
      Empty(L"locator")}});
}

NodeKind Texture() {
  using N = texture::NTextureNode;
  return MakeKind<texture::NTextureDomain, N>({"NTextureNode", DT_TEXTURE, L"texture", L"texture", L"texture", true, {
      Both(L"type", 0, &N::GetType, &N::SetType),
      Both(L"bumpScale", 1.0, &N::GetBumpScale, &N::SetBumpScale),
      Both(L"operation", 0, &N::GetOperationType, &N::SetOperationType)}});
}

NodeKind Sound() {
  return MakeKind<sound::NSoundDomain, sound::NSoundNode>(
      {"NSoundNode", DT_SOUND, L"sound", L"sound", L"sound", false, {}});
}

NodeKind Movie() {
  return MakeKind<movie::NMovieDomain, movie::NMovieNode>(
      {"NMovieNode", DT_MOVIE, L"movie", L"movie", L"movie", false, {}});
}
// clang-format on

INSTANTIATE_TEST_SUITE_P(Content, NodeKindTest,
                         testing::Values(Light(), Camera(), Image(), Texture(), Sound(), Movie()),
                         NameOfKind);

}  // namespace
}  // namespace corvanta::node_kinds
