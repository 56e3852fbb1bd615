#pragma once

#include <cstddef>
#include <deque>
#include <map>
#include <unordered_map>
#include <utility>
#include <vector>

#include "corvanta/core/node/NNodeReference.h"
#include "corvanta/renderer/NRenderer.h"
#include "corvanta/renderer/scene/NDrawList.h"
#include "corvanta/renderer/scene/NMaterialParameters.h"
#include "corvanta/renderer/scene/NMeshes.h"
#include "corvanta/renderer/scene/NTextures.h"
#include "corvanta/vx_math/Box3.h"

namespace corvanta::renderer {

/// A model as it is drawn, beside its entry in the draw list.
struct NResolvedModel {
  NMaterialParameters const* material = nullptr;
  std::vector<NMeshPart> const* parts = nullptr;  // the same for all models of one mesh
};

/// The models of a tree, ready to be drawn: where each is, and what it needs on the graphics
/// processor. GetItems and GetModels have the same length and order.
class NResolvedScene {
 public:
  std::vector<NDrawItem> const& GetItems() const { return m_list.GetItems(); }
  std::vector<NResolvedModel> const& GetModels() const { return m_models; }
  NMeshes& GetMeshes() { return m_meshes; }
  NTextures& GetTextures() { return m_textures; }
  NUploads GetUploads() const;
  /// The box of all models, without vertices that aren't finite.
  VX_Math::Box3 GetBox() const;

  /// Drops the models, and keeps what was uploaded.
  void Clear();
  /// Brings up to date what `flags` name, and uploads what the models of `tree` need.
  void Update(data::domain::scenegraph::tree::NSceneGraphTreeNode& tree, NDirtyFlags const& flags);

 private:
  using Geometry = data::domain::geometry::NGeometryNode;
  using Material = data::domain::material::NMaterialNode;
  struct Entry {
    core::node::NNodeReference<Material const> material;
    NMaterialParameters parameters;
  };

  NMaterialParameters const& GetParameters(boost::intrusive_ptr<Material> const& material);
  void ForgetParameters(NDirtyFlags const& flags);
  void Resolve(std::size_t index);

  NDrawList m_list;
  std::vector<NResolvedModel> m_models;
  NTextures m_textures;
  NMeshes m_meshes;
  std::unordered_map<Material const*, Entry> m_parameters;
  // What draws a geometry with a material, as of the last walk.
  std::map<std::pair<Geometry const*, NMaterialParameters const*>, std::vector<NMeshPart> const*>
      m_meshParts;
  std::deque<std::vector<NMeshPart>> m_parts;
  NMaterialParameters const m_default = MakeDefaultMaterialParameters();
};

}  // namespace corvanta::renderer
