#include "tests/node_kinds/node_kind.h"

namespace corvanta::node_kinds {
namespace {

using namespace data::domain;
using namespace data::domain::scenegraph::item;

// clang-format off
std::vector<Row> WithItemRows(std::vector<Row> const& rows) {
  using N = NSceneGraphItemNode;
  std::vector<Row> all = {
      Both(L"translation.x", 0.0, &N::GetTranslationX, &N::SetTranslationX),
      Both(L"translation.y", 0.0, &N::GetTranslationY, &N::SetTranslationY),
      Both(L"translation.z", 0.0, &N::GetTranslationZ, &N::SetTranslationZ),
      Both(L"rotation.x", 0.0, &N::GetRotationX, &N::SetRotationX),
      Both(L"rotation.y", 0.0, &N::GetRotationY, &N::SetRotationY),
      Both(L"rotation.z", 0.0, &N::GetRotationZ, &N::SetRotationZ),
      Both(L"rotation.pivot.x", 0.0, &N::GetRotationPivotX, &N::SetRotationPivotX),
      Both(L"rotation.pivot.y", 0.0, &N::GetRotationPivotY, &N::SetRotationPivotY),
      Both(L"rotation.pivot.z", 0.0, &N::GetRotationPivotZ, &N::SetRotationPivotZ),
      Both(L"scale.x", 1.0, &N::GetScaleX, &N::SetScaleX),
      Both(L"scale.y", 1.0, &N::GetScaleY, &N::SetScaleY),
      Both(L"scale.z", 1.0, &N::GetScaleZ, &N::SetScaleZ),
      Both(L"transform.isAbsolute", false, &N::TransformIsAbsolute, &N::SetTransformIsAbsoluteFlag),
      Both(L"isVisible", true, &N::IsVisible, &N::SetIsVisibleFlag),
      Both(L"dropsShadow", true, &N::DropsShadow, &N::SetDropsShadowFlag),
      Both(L"isSelfshadowed", true, &N::IsSelfshadowed, &N::SetIsSelfShadowedFlag),
      Both(L"showsNormal", false, &N::ShowsNormal, &N::SetShowsNormalFlag),
      Both(L"chordalTolerance", 0.01, &N::GetChordalTolerance, &N::SetChordalTolerance),
      Both(L"chordalTolerance.overrides", false, &N::OverridesChordalTolerance, &N::SetOverridesChordalToleranceFlag),
      Both(L"chordalTolerance.isFinal", false, &N::ChordalToleranceIsFinal, &N::SetChordalToleranceIsFinalFlag),
      Both(L"usesTopology", false, &N::UsesTopology, &N::SetUsesTopologyFlag),
      Both(L"hasIndependentTopology", false, &N::HasIndependentTopology, &N::SetHasIndependentTopologyFlag),
      Both(L"topologyTolerance", 0.001, &N::GetTopologyTolerance, &N::SetTopologyTolerance),
      Both(L"topologyTolerance.overrides", false, &N::OverridesTopologyTolerance, &N::SetOverridesTopologyToleranceFlag),
      Both(L"topologyTolerance.isFinal", false, &N::TopologyToleranceIsFinal, &N::SetTopologyToleranceIsFinalFlag)};
  all.insert(all.end(), rows.begin(), rows.end());
  return all;
}

template <class Node>
NodeKind Item(char const* className, wchar_t const* name, bool isCopied, std::vector<Row> const& rows) {
  return MakeKind<NSceneGraphItemDomain, Node>(
      {className, DT_SCENEGRAPH_ITEM, L"scenegraphitem", L"scene graph item", name, isCopied, WithItemRows(rows)});
}

NodeKind Model() {
  using N = NSceneGraphModelNode;
  return Item<N>("NSceneGraphModelNode", L"model", true, {
      Unsaved(Both(L"isWired", false, &N::IsWired, &N::SetIsWiredFlag)),
      Both(L"billboardType", 0, &N::GetBillboardType, &N::SetBillboardType)});
}

NodeKind Camera() {
  using N = NSceneGraphCameraNode;
  return Item<N>("NSceneGraphCameraNode", L"camera", false, {
      Both(L"interest.x", 0.0, &N::GetInterestX, &N::SetInterestX),
      Both(L"interest.y", 0.0, &N::GetInterestY, &N::SetInterestY),
      Both(L"interest.z", 0.0, &N::GetInterestZ, &N::SetInterestZ),
      Both(L"up.x", 0.0, &N::GetUpX, &N::SetUpX),
      Both(L"up.y", 1.0, &N::GetUpY, &N::SetUpY),
      Both(L"up.z", 0.0, &N::GetUpZ, &N::SetUpZ),
      Both(L"translation.x.saved", 0.0, &N::GetTranslationXSaved, &N::SetTranslationXSaved),
      Both(L"translation.y.saved", 0.0, &N::GetTranslationYSaved, &N::SetTranslationYSaved),
      Both(L"translation.z.saved", 0.0, &N::GetTranslationZSaved, &N::SetTranslationZSaved),
      Both(L"interest.x.saved", 0.0, &N::GetInterestXSaved, &N::SetInterestXSaved),
      Both(L"interest.y.saved", 0.0, &N::GetInterestYSaved, &N::SetInterestYSaved),
      Both(L"interest.z.saved", 0.0, &N::GetInterestZSaved, &N::SetInterestZSaved),
      Both(L"up.x.saved", 0.0, &N::GetUpXSaved, &N::SetUpXSaved),
      Both(L"up.y.saved", 1.0, &N::GetUpYSaved, &N::SetUpYSaved),
      Both(L"up.z.saved", 0.0, &N::GetUpZSaved, &N::SetUpZSaved),
      Both(L"cameraNavigation", 0, &N::GetNavigationType, &N::SetNavigationType),
      Both(L"fixesRoll", true, &N::FixesRoll, &N::SetFixesRollFlag)});
}

NodeKind Tree() {
  using N = scenegraph::tree::NSceneGraphTreeNode;
  return MakeKind<scenegraph::tree::NSceneGraphTreeDomain, N>({"NSceneGraphTreeNode", DT_SCENEGRAPH_TREE, L"scenegraphtree", L"scene graph tree", L"scene graph tree", true, {
      Both(L"coordConversion", L"none", &N::GetCoordConversion, &N::SetCoordConversion),
      Both(L"unit", 1.0, &N::GetUnit, &N::SetUnit)}});
}
// clang-format on

INSTANTIATE_TEST_SUITE_P(
    SceneGraph, NodeKindTest,
    testing::Values(Tree(), Model(), Camera(),
                    Item<NSceneGraphGroupNode>("NSceneGraphGroupNode", L"group", true, {}),
                    Item<NSceneGraphLightNode>("NSceneGraphLightNode", L"light", false, {}),
                    Item<NSceneGraphReferenceNode>("NSceneGraphReferenceNode", L"reference", false,
                                                   {})),
    NameOfKind);

}  // namespace
}  // namespace corvanta::node_kinds
