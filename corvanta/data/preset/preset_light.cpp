#include <iterator>

#include "corvanta/data/domain/light/NLightNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphLightNode.h"
#include "corvanta/data/domain/scenegraph/tree/NSceneGraphTreeNode.h"
#include "corvanta/data/preset/detail/scene_box.h"
#include "corvanta/data/preset/preset.h"

// A listener may let go of what an argument holds.
// NOLINTBEGIN(performance-unnecessary-value-param)
namespace corvanta::data::preset {

using domain::light::NLightNode;
using domain::scenegraph::item::NSceneGraphLightNode;
using domain::scenegraph::tree::NSceneGraphTreeNode;
using VX_Math::Box3;
using VX_Math::Vec3;

namespace {

/// The rotation of a light in a tree whose axes are the global ones, and in another.
struct Rotation {
  Vec3 plain;
  Vec3 converted;
};

// clang-format off
constexpr Rotation kRig[] = {
    {{  70,   0,    0}, {   0,   70,   0}},
    {{-115,   0,    0}, {   0, -115,   0}},
    {{  65,  60, -180}, {-180,   65,  60}},
    {{  65, -60,  180}, { 180,   65, -60}},
    {{ -25,   0,    0}, {   0,  -25,   0}},
    {{ 160,  60,  180}, { 180,  160,  60}},
    {{ 160, -60,  180}, { 180,  160, -60}},
};
// clang-format on
constexpr Rotation kBeyondRig{};
constexpr Rotation kOneSide{{-60, 90, 0}, {0, -60, 90}};
constexpr std::size_t kDimLights = 4;  // at the begin of the rig

void SetColor(NLightNode& light, double value) {
  light.SetColorR(value);
  light.SetColorG(value);
  light.SetColorB(value);
}

void Turn(NSceneGraphLightNode& item, Vec3 const& degrees) {
  item.SetRotationX(degrees.x);
  item.SetRotationY(degrees.y);
  item.SetRotationZ(degrees.z);
}

/// Puts `item` away from the centre of `box`, on its own z axis.
void Place(NSceneGraphLightNode& item, Box3 const& box, NSceneGraphTreeNode const& tree) {
  Vec3 position(0, 0, 2 * detail::GetLongestSide(box));
  item.GetTransform().MultDirMatrix(position, position);
  position += box.GetCenter();
  tree.GetControlTransform().Inverse().MultVecMatrix(position, position);
  item.SetTranslationX(position.x);
  item.SetTranslationY(position.y);
  item.SetTranslationZ(position.z);
}

}  // namespace

unsigned int GetDefaultLightCount() { return std::size(kRig); }

void PresetLight(boost::intrusive_ptr<NLightNode>, bool) {}

void PresetLight(std::vector<boost::intrusive_ptr<NLightNode>> lights, bool isDefault) {
  if (!isDefault) return;
  for (std::size_t i = 0; i != lights.size() && i != std::size(kRig); ++i) {
    if (!lights[i]) continue;
    SetColor(*lights[i], i < kDimLights ? 0.1 : 0.45);
    if (i >= kDimLights) lights[i]->SetShadowDarkness(0.2);
  }
}

void PresetSceneGraphLight(boost::intrusive_ptr<NSceneGraphLightNode> item,
                           boost::intrusive_ptr<view::NView> view,
                           boost::intrusive_ptr<NSceneGraphTreeNode> tree, bool isDefault) {
  PresetSceneGraphLight(std::vector{item}, view, tree, isDefault);
}

void PresetSceneGraphLight(std::vector<boost::intrusive_ptr<NSceneGraphLightNode>> items,
                           boost::intrusive_ptr<view::NView> view,
                           boost::intrusive_ptr<NSceneGraphTreeNode> tree, bool isDefault) {
  if (!view || !tree) return;
  Box3 const box = detail::GetSceneBox(*view);
  bool const isPlain = tree->GetCoordConversion() == domain::scenegraph::tree::CCV_NONE;
  for (std::size_t i = 0; i != items.size(); ++i) {
    auto const light = items[i] ? items[i]->GetLightNode() : nullptr;
    if (!light) continue;
    if (light->GetType() != domain::light::LT_POINT) {
      Rotation const& rotation = !isDefault ? kOneSide : i < std::size(kRig) ? kRig[i] : kBeyondRig;
      Turn(*items[i], isPlain ? rotation.plain : rotation.converted);
    }
    items[i]->SetTransformIsAbsoluteFlag(true);
    Place(*items[i], box, *tree);
  }
}

}  // namespace corvanta::data::preset
// NOLINTEND(performance-unnecessary-value-param)
