#pragma once

#include <boost/optional.hpp>
#include <map>
#include <memory>
#include <string>

#include "corvanta/core/observer/NObservable.h"
#include "corvanta/data/domain/NNode.h"
#include "corvanta/data/domain/projection/NCoordAdjustment.h"
#include "corvanta/data/domain/projection/NProjectionChangeListener.h"
#include "corvanta/data/domain/projection/NUVWOrder.h"
#include "corvanta/data/domain/scenegraph/NSceneGraphPath.h"
#include "corvanta/vx_math/Matrix.h"

namespace corvanta::data::domain::projection {

/// The methods of projection.
inline std::wstring const PM_PLANE = L"plane";
inline std::wstring const PM_CYLINDER = L"cylinder";
inline std::wstring const PM_SPHERE = L"sphere";
inline std::wstring const PM_TRIPLANAR = L"triplanar";
inline std::wstring const PM_BOX = L"box";

#define CORVANTA_ROWS_CONSTANTS
#include "corvanta/data/domain/projection/projection_attributes.def"

/// A projector in the scene: a box of space from which a texture is projected onto models, its
/// targets, and what becomes of the coordinates afterwards. NProjectionMapping computes them.
///
/// A target has a frame: its global transform when the projection was first used on it. The
/// projection keeps its place relative to the model in that frame, however the model moves.
class CORVANTA_API NProjectionNode
    : public NNode,
      public core::observer::NObservable<NProjectionNode, NProjectionChangeListener> {
 public:
  using ModelPath = scenegraph::NSceneGraphPath<scenegraph::item::NSceneGraphModelNode const>;
  /// A target's frame is there from its first use on.
  using TargetMap = std::map<ModelPath, boost::optional<VX_Math::Matrix>>;

  NProjectionNode(core::node::NNodeID const& id, core::domain::NDomainBase* domain,
                  events::attribute_change::NMultiplexer const* multiplexer);
  ~NProjectionNode() override;

#define CORVANTA_ROWS_ACCESSORS
#include "corvanta/data/domain/projection/projection_attributes.def"

  /// Makes `path` a target without a frame.
  /// Fails: false if it is one already.
  bool AddModel(ModelPath const& path);
  /// Makes `path` a target with a frame that was saved.
  /// Fails: false if it is one already.
  bool AddModelForDeserialization(ModelPath const& path, VX_Math::Matrix const& frame);
  /// Fails: false if it is no target.
  bool RemoveModel(ModelPath const& path);
  /// Gives the place of `oldPath`, with its frame if it has one, to `newPath`. A `newPath` that is
  /// a target already keeps its own frame. Nothing happens if `oldPath` is no target.
  void ReplaceModel(ModelPath const& oldPath, ModelPath const& newPath);
  bool Targets(ModelPath const& path) const;
  TargetMap const& GetTargets() const;

  /// The frame of the target `path`; the first call takes it.
  /// Units: row vectors; from the model's own frame to global coordinates.
  /// Fails: throws NProjectionNodeError if `path` is no target; at the first call also what
  /// GetGlobalTransform of the path throws.
  VX_Math::Matrix GetModelToProjectionTransform(ModelPath const& path) const;
  /// Scales, then turns, then moves the projector's unit box to its place.
  /// Cost: a load while it is clean.
  VX_Math::Matrix const& GetTransform() const;

  /// Flip, order, repeat times `scale`, and offset, as they are now.
  NCoordAdjustment GetCoordAdjustment(float scale) const;
  /// The last step for each vertex: GetCoordAdjustment(scale).AdjustCoord(...).
  void ConvertTextureCoord(float u, float v, float w, float& outU, float& outV, float& outW,
                           float scale) const;
  /// The last step for each tangent frame: GetCoordAdjustment(1).AdjustTangent(...).
  void ConvertTangent(float& tx, float& ty, float& tz, float& bx, float& by, float& bz) const;

 private:
  struct Block;

  /// Raises: after the attribute's own event, OnProjectionChange for the method.
  void OnAttributeChangeImpl(core::attribute::NAttribute const& attribute) override;
  void AcceptImpl(NNodeWatcher& visitor) const override { visitor.Visit(*this); }
  void AcceptImpl(NNodeModifier& visitor) override { visitor.Visit(*this); }

  std::unique_ptr<Block> const m_block;
};

/// How the target `path` has moved since its frame was taken: the identity, unless it has.
/// Fails: as NProjectionNode::GetModelToProjectionTransform, and as the path's GetGlobalTransform.
CORVANTA_API VX_Math::Matrix GetGlobalTransform(NProjectionNode const& projection,
                                                NProjectionNode::ModelPath const& path);

}  // namespace corvanta::data::domain::projection
