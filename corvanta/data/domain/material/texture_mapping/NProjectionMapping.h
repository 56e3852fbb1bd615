#pragma once

#include <map>
#include <memory>
#include <vector>

#include "corvanta/core/node/NNodeReference.h"
#include "corvanta/data/domain/fwd.h"
#include "corvanta/data/domain/material/texture_mapping/NTextureMapping.h"
#include "corvanta/data/domain/scenegraph/NSceneGraphPath.h"
#include "corvanta/data/structs/UVW.h"
#include "corvanta/data/structs/XYZ.h"

namespace corvanta::data::domain::material::texture_mapping {

/// Lays a texture by throwing each vertex through a projection node. Says which node serves which
/// model.
///
/// A model without a node of its own, or whose node has gone, borrows the first entry: its node,
/// and its path with the frame.
class CORVANTA_API NProjectionMapping : public NTextureMapping {
 public:
  using ModelPath = scenegraph::NSceneGraphPath<scenegraph::item::NSceneGraphModelNode const>;
  using ProjectionReference = core::node::NNodeReference<projection::NProjectionNode const>;
  using ModelToProjectionMap = std::map<ModelPath, ProjectionReference>;

  /// The vertices of a mesh; three floats each.
  struct Vertices {
    unsigned int count;
    float const* coords;
    float const* normals;
  };
  /// The triangles of a mesh, three indices each. A triangle with an index outside the vertices
  /// counts as absent, and so does a last run of one or two.
  struct Indices {
    unsigned int count;
    unsigned int const* indices;
  };

  NProjectionMapping();
  ~NProjectionMapping() override;

  /// The node isn't notified: its AddModel is for the caller to call.
  /// Fails: false, and no change, if `path` has an entry.
  bool AddProjectionData(ModelPath const& path, ProjectionReference const& projection);
  /// Gives the entry of `oldPath` to `newPath`; its node, if it is there, does the same with its
  /// target.
  /// Fails: false if `oldPath` has no entry, and if `newPath` has one, which stays as it is; the
  /// entry of `oldPath` is gone then too.
  bool ReplaceModel(ModelPath const& oldPath, ModelPath const& newPath);
  /// The same, but the entry of `newPath` names `projection`. It is the old node that replaces its
  /// target.
  bool ReplaceModel(ModelPath const& oldPath, ModelPath const& newPath,
                    ProjectionReference const& projection);
  ModelToProjectionMap const& GetModelToProjectionMap() const;

  /// Makes `coords` the texture coordinates of the vertices.
  ///
  /// Where the projection runs around and has a seam, each triangle on it gets copies of its lower
  /// corners, a turn further on, behind the vertices: `newIndices` replaces the indices, and
  /// `vertexMap` has the source of each vertex. Without a seam both become empty. In `newIndices` a
  /// triangle with an index outside the vertices is three times 0xFFFFFFFF.
  ///
  /// The first use of a path takes its frame; see NProjectionNode::GetModelToProjectionTransform.
  /// Fails: false for an empty map, no vertices or no indices, a path that names no model, an
  /// unknown method, and a node without targets; in the last two `coords` has been resized. Throws
  /// NProjectionNodeError for a path that is no target of its node.
  /// Requires: the vectors aren't what `vertices` and `indices` point into.
  bool ComputeTextureCoords(ModelPath const& path, Vertices const& vertices, Indices const& indices,
                            std::vector<structs::UVW>& coords,
                            std::vector<unsigned int>& newIndices,
                            std::vector<unsigned int>& vertexMap) const;
  /// Makes `tangents` and `binormals` the frames of the texture coordinates, of length 1, in the
  /// model's space; one of each a vertex, without copies at a seam.
  /// Fails: as ComputeTextureCoords, but a node without targets throws too.
  bool ComputeTangents(ModelPath const& path, Vertices const& vertices,
                       std::vector<structs::XYZ>& tangents,
                       std::vector<structs::XYZ>& binormals) const;

 private:
  struct Block;
  struct Choice;

  NTextureMappingType GetTypeImpl() const override;

  /// Fails: a choice without a node.
  Choice Choose(ModelPath const& path) const;

  std::unique_ptr<Block> const m_block;
};

}  // namespace corvanta::data::domain::material::texture_mapping
