#include "tests/node_kinds/node_kind.h"

namespace corvanta::node_kinds {
namespace {

using namespace data::domain;

// clang-format off
NodeKind Environment() {
  using N = environment::NEnvironmentNode;
  return MakeKind<environment::NEnvironmentDomain, N>({"NEnvironmentNode", DT_ENVIRONMENT, L"environment", L"environment", L"environment", true, {
      Both(L"color.r", 0.2, &N::GetColorR, &N::SetColorR),
      Both(L"color.g", 0.2, &N::GetColorG, &N::SetColorG),
      Both(L"color.b", 0.2, &N::GetColorB, &N::SetColorB),
      Both(L"ambientLight.r", 0.1, &N::GetAmbientLightR, &N::SetAmbientLightR),
      Both(L"ambientLight.g", 0.1, &N::GetAmbientLightG, &N::SetAmbientLightG),
      Both(L"ambientLight.b", 0.1, &N::GetAmbientLightB, &N::SetAmbientLightB),
      Both(L"hdr.bloom", 300.0, &N::GetHdrBloom, &N::SetHdrBloom),
      Both(L"hdr.diffuse", 1.0, &N::GetHdrDiffuse, &N::SetHdrDiffuse),
      Both(L"hdr.exposure", 0.0, &N::GetHdrExposure, &N::SetHdrExposure),
      Both(L"hdr.gamma", 1.0, &N::GetHdrGamma, &N::SetHdrGamma),
      Both(L"hdr.light", 1.0, &N::GetHdrLight, &N::SetHdrLight),
      Both(L"hdr.star", 0.0, &N::GetHdrStar, &N::SetHdrStar),
      Both(L"environmentMap.rotation.x", 0.0, &N::GetEnvironmentMapRotationX, &N::SetEnvironmentMapRotationX),
      Both(L"environmentMap.rotation.y", 0.0, &N::GetEnvironmentMapRotationY, &N::SetEnvironmentMapRotationY),
      Both(L"environmentMap.rotation.z", 0.0, &N::GetEnvironmentMapRotationZ, &N::SetEnvironmentMapRotationZ),
      Both(L"2DImage.exposure", 1.0, &N::GetImageExposure, &N::SetImageExposure),
      Both(L"2DImage.gamma", 1.0, &N::GetImageGamma, &N::SetImageGamma),
      Both(L"floor.isVisible", false, &N::FloorIsVisible, &N::SetFloorIsVisibleFlag),
      Both(L"floor.showsShadow", true, &N::FloorShowsShadow, &N::SetFloorShowsShadowFlag),
      Both(L"floor.height", 0.0, &N::GetFloorHeight, &N::SetFloorHeight),
      Both(L"floor.reflection", 0.15, &N::GetFloorReflection, &N::SetFloorReflection),
      Both(L"floor.roughness", 1.0, &N::GetFloorRoughness, &N::SetFloorRoughness),
      Both(L"floor.shadingMode", 0, &N::GetFloorShadingMode, &N::SetFloorShadingMode),
      Both(L"floor.color.r", 0.25, &N::GetFloorColorR, &N::SetFloorColorR),
      Both(L"floor.color.g", 0.25, &N::GetFloorColorG, &N::SetFloorColorG),
      Both(L"floor.color.b", 0.25, &N::GetFloorColorB, &N::SetFloorColorB),
      Both(L"autoExposure.isEnabled", false, &N::AutoExposureIsEnabled, &N::SetAutoExposureIsEnabledFlag),
      Both(L"autoExposure.relativeExposure", 0.0, &N::GetRelativeExposure, &N::SetRelativeExposure),
      Both(L"toneMapping.isEnabled", false, &N::ToneMappingIsEnabled, &N::SetToneMappingIsEnabledFlag),
      Both(L"toneMapping.whiteBrightness", 1.0, &N::GetWhiteBrightness, &N::SetWhiteBrightness),
      Both(L"ssao.isEnabled", false, &N::IsSSAOEnabled, &N::SetSSAOEnabled),
      Both(L"ssao.radius", 0.05, &N::GetSSAORadius, &N::SetSSAORadius),
      Both(L"ssao.depthFalloff", 0.2, &N::GetSSAODepthFalloff, &N::SetSSAODepthFalloff),
      Both(L"ssao.contrast", 1.0, &N::GetSSAOContrast, &N::SetSSAOContrast)}});
}

NodeKind Scene() {
  using N = scene::NSceneNode;
  return MakeKind<scene::NSceneDomain, N>({"NSceneNode", DT_SCENE, L"scene", L"scene", L"scene", false, {
      Both(L"isSubsidiary", false, &N::IsSubsidiary, &N::SetIsSubsidiaryFlag)}});
}

std::vector<Row> ViewRows() {
  using N = data::view::NView;
  return {
      Both(L"left", 0.0, &N::GetLeft, &N::SetLeft),
      Both(L"right", 1.0, &N::GetRight, &N::SetRight),
      Both(L"top", 0.0, &N::GetTop, &N::SetTop),
      Both(L"bottom", 1.0, &N::GetBottom, &N::SetBottom)};
}

std::vector<Row> ViewManagerRows() {
  using N = data::view::NViewManager;
  return {
      Read(L"fixesAspect", false, &N::FixesAspect),
      Read(L"aspect", 1.0, &N::GetAspect)};
}
// clang-format on

INSTANTIATE_TEST_SUITE_P(Scene, NodeKindTest, testing::Values(Environment(), Scene()), NameOfKind);

TEST(View, StartsAsListedAndIsReachedByItsAccessors) {
  Pointer<data::view::NView> const view(new data::view::NView);
  std::vector<Row> rows = ViewRows();
  ExpectDefaults(*view, rows);
  for (std::size_t i = 0; i != rows.size(); ++i) {
    rows[i].value = MakeProbe(rows[i], i);
    rows[i].set(*view, rows[i].value);
  }
  ExpectDefaults(*view, rows);
  Pointer<data::view::NViewManager> const manager(new data::view::NViewManager(nullptr));
  ExpectDefaults(*manager, ViewManagerRows());
}

}  // namespace
}  // namespace corvanta::node_kinds
