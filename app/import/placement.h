#pragma once

#include <assimp/camera.h>
#include <assimp/light.h>
#include <assimp/matrix4x4.h>
#include <assimp/scene.h>
#include <assimp/vector3.h>

#include "corvanta/vx_math/Matrix.h"
#include "corvanta/vx_math/Vec3.h"

namespace corvanta::app {

inline VX_Math::Vec3 ToVec3(aiVector3D const& v) { return {v.x, v.y, v.z}; }

/// Assimp's matrices are for column vectors, the scene's for row vectors.
VX_Math::Matrix ToMatrix(aiMatrix4x4 const& m);

/// Where a light or a camera stands in the frame of its node. A light shines along -z of its item;
/// a camera's item only carries its position.
VX_Math::Matrix GetPlace(aiLight const& light);
VX_Math::Matrix GetPlace(aiCamera const& camera, aiNode const& node);

/// Whether two transforms are the same but for rounding.
bool IsSameTransform(VX_Math::Matrix const& a, VX_Math::Matrix const& b);

}  // namespace corvanta::app
