#include "tests/node_kinds/node_kind.h"

namespace corvanta::node_kinds {
namespace {

using namespace data::domain;

// clang-format off
NodeKind Geometry() {
  return MakeKind<geometry::NGeometryDomain, geometry::NGeometryNode>(
      {"NGeometryNode", DT_GEOMETRY, L"geometry", L"geometry", L"geometry", true, {}});
}

NodeKind Material() {
  using N = material::NMaterialNode;
  return MakeKind<material::NMaterialDomain, N>({"NMaterialNode", DT_MATERIAL, L"material", L"material", L"material", true, {
      Both(L"type", 0, &N::GetType, &N::SetType),
      Both(L"diffuse.r", 0.0, &N::GetDiffuseR, &N::SetDiffuseR),
      Both(L"diffuse.g", 0.0, &N::GetDiffuseG, &N::SetDiffuseG),
      Both(L"diffuse.b", 0.0, &N::GetDiffuseB, &N::SetDiffuseB),
      Both(L"ambient.r", 0.0, &N::GetAmbientR, &N::SetAmbientR),
      Both(L"ambient.g", 0.0, &N::GetAmbientG, &N::SetAmbientG),
      Both(L"ambient.b", 0.0, &N::GetAmbientB, &N::SetAmbientB),
      Both(L"specular.r", 0.0, &N::GetSpecularR, &N::SetSpecularR),
      Both(L"specular.g", 0.0, &N::GetSpecularG, &N::SetSpecularG),
      Both(L"specular.b", 0.0, &N::GetSpecularB, &N::SetSpecularB),
      Both(L"emissive.r", 0.0, &N::GetEmissiveR, &N::SetEmissiveR),
      Both(L"emissive.g", 0.0, &N::GetEmissiveG, &N::SetEmissiveG),
      Both(L"emissive.b", 0.0, &N::GetEmissiveB, &N::SetEmissiveB),
      Both(L"transparency", 1.0, &N::GetTransparency, &N::SetTransparency),
      Both(L"power", 22.0, &N::GetPower, &N::SetPower),
      Both(L"eccentricity", 0.3, &N::GetEccentricity, &N::SetEccentricity),
      Both(L"specularRollOff", 0.7, &N::GetSpecularRollOff, &N::SetSpecularRollOff),
      Both(L"refractiveIndex", 1.8, &N::GetRefractiveIndex, &N::SetRefractiveIndex),
      Both(L"backRefractiveIndex", 1.0, &N::GetBackRefractiveIndex, &N::SetBackRefractiveIndex),
      Both(L"clearcoatIndex", 1.8, &N::GetClearcoatIndex, &N::SetClearcoatIndex),
      Both(L"scale", 1.0, &N::GetScale, &N::SetScale),
      Both(L"bias", 0.0, &N::GetBias, &N::SetBias),
      Both(L"roughness", 0.0, &N::GetRoughness, &N::SetRoughness),
      Both(L"fleck.size", 1.0, &N::GetFleckSize, &N::SetFleckSize),
      Both(L"fleck.perturbation", 0.3, &N::GetFleckPerturbation, &N::SetFleckPerturbation),
      Both(L"fleck.specular.r", 0.0, &N::GetFleckSpecularR, &N::SetFleckSpecularR),
      Both(L"fleck.specular.g", 0.0, &N::GetFleckSpecularG, &N::SetFleckSpecularG),
      Both(L"fleck.specular.b", 0.0, &N::GetFleckSpecularB, &N::SetFleckSpecularB),
      Both(L"pearskin.scale", 5.0, &N::GetPearskinScale, &N::SetPearskinScale),
      Both(L"pearskin.scale.x", 1.0, &N::GetPearskinScaleX, &N::SetPearskinScaleX),
      Both(L"pearskin.scale.y", 1.0, &N::GetPearskinScaleY, &N::SetPearskinScaleY),
      Both(L"pearskin.scale.z", 1.0, &N::GetPearskinScaleZ, &N::SetPearskinScaleZ),
      Both(L"pearskin.depth", 0.5, &N::GetPearskinDepth, &N::SetPearskinDepth),
      Both(L"environmentMap.isEnabled", false, &N::EnvironmentMapIsEnabled, &N::SetEnvironmentMapIsEnabledFlag),
      Both(L"environmentMap.rotation.x", 0.0, &N::GetEnvironmentMapRotationX, &N::SetEnvironmentMapRotationX),
      Both(L"environmentMap.rotation.y", 0.0, &N::GetEnvironmentMapRotationY, &N::SetEnvironmentMapRotationY),
      Both(L"environmentMap.rotation.z", 0.0, &N::GetEnvironmentMapRotationZ, &N::SetEnvironmentMapRotationZ),
      Both(L"ibl.coeff.diffuse", 0.0, &N::GetIblDiffuseCoeff, &N::SetIblDiffuseCoeff),
      Both(L"ibl.coeff.specular", 0.0, &N::GetIblSpecularCoeff, &N::SetIblSpecularCoeff),
      Both(L"ibl.roughness", 0.05, &N::GetIblRoughness, &N::SetIblRoughness),
      Both(L"ibl.contrast", 1.0, &N::GetIblContrast, &N::SetIblContrast)}});
}
// clang-format on

INSTANTIATE_TEST_SUITE_P(GeometryAndMaterial, NodeKindTest, testing::Values(Geometry(), Material()),
                         NameOfKind);

}  // namespace
}  // namespace corvanta::node_kinds
