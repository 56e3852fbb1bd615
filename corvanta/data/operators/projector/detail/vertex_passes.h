#pragma once

#include <cstddef>

#include "corvanta/data/operators/projector/NProjector.h"

/// What the projectors compute for a run of vertices, several at a time: the widest instructions of
/// the machine are chosen when the library loads. Every result equals that of the projector's own
/// ProjectWithNormal and ComputeTangentFrame.
namespace corvanta::data::operators::projector::detail {

inline constexpr std::size_t kBlock = 32;

/// Projects kBlock vertices; `vertices.count` isn't read.
/// Fails: false where a result can't be told for certain; `coords` is then to be filled one by one.
using ProjectBlock = bool(NVertices const& vertices, structs::UVW* coords);

ProjectBlock ProjectPlaneBlock;
ProjectBlock ProjectCylinderBlock;
ProjectBlock ProjectSphereBlock;
ProjectBlock ProjectTriplanarBlock;
ProjectBlock ProjectBoxBlock;

/// The ProjectVertices of a projector that has a `block`.
void ProjectInBlocks(NProjector const& projector, ProjectBlock& block, NVertices const& vertices,
                     structs::UVW* coords);

/// The tangent frames of kBlock vertices, as by ComputeTangentFrames.
/// Fails: as ProjectBlock.
using ComputeFrames = bool(NVertices const& vertices, VX_Math::Matrix const& toModel,
                           structs::XYZ* tangents, structs::XYZ* binormals);

ComputeFrames ComputePlaneFrames;
ComputeFrames ComputeRoundFrames;
ComputeFrames ComputeTriplanarFrames;
ComputeFrames ComputeBoxFrames;

/// The ComputeTangentFrames of a projector that has a `block`.
void ComputeFramesInBlocks(NProjector const& projector, ComputeFrames& block,
                           NVertices const& vertices, VX_Math::Matrix const& toModel,
                           structs::XYZ* tangents, structs::XYZ* binormals);

}  // namespace corvanta::data::operators::projector::detail
