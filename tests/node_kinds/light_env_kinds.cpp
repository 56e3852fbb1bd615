#include "tests/node_kinds/node_kind.h"

namespace corvanta::node_kinds {
namespace {

using namespace data::domain;

// clang-format off
NodeKind LightEnv() {
  using N = light_env::NLightEnvNode;
  return MakeKind<light_env::NLightEnvDomain, N>({"NLightEnvNode", DT_LIGHT_ENV, L"lightenvironment", L"light environment", L"light environment", true, {
      Both(L"lamps.coefficient", 1.0, &N::GetLampsCoefficient, &N::SetLampsCoefficient),
      Both(L"lamps.rotation.y", 0.0, &N::GetLampsRotationY, &N::SetLampsRotationY),
      Both(L"lamps.scale", 1.0, &N::GetLampsScale, &N::SetLampsScale)}});
}

std::vector<Row> LampRows() {
  using N = light_env::NLamp;
  return {
      Both(L"enabled", true, &N::IsEnabled, &N::SetEnabled),
      Both(L"type", L"directional", &N::GetType, &N::SetType),
      Both(L"color.r", 1.0, &N::GetColorR, &N::SetColorR),
      Both(L"color.g", 1.0, &N::GetColorG, &N::SetColorG),
      Both(L"color.b", 1.0, &N::GetColorB, &N::SetColorB),
      Both(L"direction.x", 1.0, &N::GetDirectionX, &N::SetDirectionX),
      Both(L"direction.y", -1.0, &N::GetDirectionY, &N::SetDirectionY),
      Both(L"direction.z", -1.0, &N::GetDirectionZ, &N::SetDirectionZ),
      Both(L"position.x", 1.0, &N::GetPositionX, &N::SetPositionX),
      Both(L"position.y", 1.0, &N::GetPositionY, &N::SetPositionY),
      Both(L"position.z", 1.0, &N::GetPositionZ, &N::SetPositionZ),
      Both(L"emitMinus", false, &N::IsEmitMinus, &N::SetEmitMinus),
      Both(L"makesShadow", true, &N::IsMakesShadow, &N::SetMakesShadow),
      Both(L"makesSelfShadow", true, &N::IsMakesSelfShadow, &N::SetMakesSelfShadow),
      Both(L"shadow.darkness", 1.0, &N::GetShadowDarkness, &N::SetShadowDarkness),
      Both(L"shadow.softness", 1.0, &N::GetShadowSoftness, &N::SetShadowSoftness),
      Both(L"attenuation.type", 0, &N::GetAttenuationType, &N::SetAttenuationType),
      Both(L"attenuation.range", 5000.0, &N::GetAttenuationRange, &N::SetAttenuationRange),
      Both(L"spreadAngle", 90.0, &N::GetSpreadAngle, &N::SetSpreadAngle),
      Both(L"falloffAngle", 95.0, &N::GetFalloffAngle, &N::SetFalloffAngle),
      Both(L"shadow.depthBias", 0.0, &N::GetShadowDepthBias, &N::SetShadowDepthBias)};
}
// clang-format on

INSTANTIATE_TEST_SUITE_P(LightEnv, NodeKindTest, testing::Values(LightEnv()), NameOfKind);

TEST(Lamp, StartsAsListedAndIsReachedByItsAccessors) {
  Pointer<light_env::NLightEnvDomain> const domain(
      new light_env::NLightEnvDomain(nullptr, nullptr, nullptr));
  auto const lamp = domain->CreateNode(NNodeID())->CreateLamp(L"lamp");
  std::vector<Row> rows = LampRows();
  ExpectDefaults(*lamp, rows);
  for (std::size_t i = 0; i != rows.size(); ++i) {
    rows[i].value = MakeProbe(rows[i], i);
    rows[i].set(*lamp, rows[i].value);
  }
  ExpectDefaults(*lamp, rows);
}

}  // namespace
}  // namespace corvanta::node_kinds
