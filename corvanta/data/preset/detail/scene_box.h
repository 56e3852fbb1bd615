#pragma once

#include "corvanta/data/view/NView.h"
#include "corvanta/vx_math/Box3.h"

namespace corvanta::data::preset::detail {

/// The box of the tree of the view's scene, in global coordinates; one of side 2 about the origin
/// where that is empty or missing.
VX_Math::Box3 GetSceneBox(view::NView const& view);

float GetLongestSide(VX_Math::Box3 const& box);

}  // namespace corvanta::data::preset::detail
