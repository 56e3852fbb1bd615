#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "corvanta/importer/neutral/NSceneWriter.h"
#include "corvanta/importer/reader/NGltfAccessors.h"
#include "corvanta/importer/reader/gltf_model.h"

namespace corvanta::importer::reader {

/// KHR_texture_transform: scale, then rotation, then offset, of coordinates whose v grows
/// downwards.
struct NTextureTransform {
  float offsetU = 0.0f, offsetV = 0.0f;
  float rotation = 0.0f;  // radians
  float scaleU = 1.0f, scaleV = 1.0f;

  bool operator==(NTextureTransform const&) const = default;
  /// What the neutral form has for the file's u and v.
  neutral::NTriple Apply(float u, float v) const {
    if (*this == NTextureTransform()) return {u, 1.0f - v, 0.0f};
    float const c = std::cos(rotation), s = std::sin(rotation);
    float const x = u * scaleU, y = v * scaleV;
    return {c * x + s * y + offsetU, 1.0f - (c * y - s * x + offsetV), 0.0f};
  }
};

/// Texture coordinates that a material looks up.
struct NUvSet {
  int texCoord = 0;
  NTextureTransform transform{};
  bool operator==(NUvSet const&) const = default;
};

/// Puts the materials of a glTF 2 file and their pictures into the neutral form.
class NGltfMaterials {
 public:
  /// Requires: all of these stay until `writer` has written.
  /// Fails: throws NImportError for a picture that leaves its buffer.
  NGltfMaterials(tinygltf::Model const& model, NGltfAccessors const& accessors,
                 neutral::NSceneWriter& writer);

  /// The neutral form's number of the file's material; of -1, that of a material as the format has
  /// it where a file names none.
  /// Fails: throws NImportError for one that isn't there.
  std::uint32_t GetNumber(int material);
  bool HasColorTexture(int material) const;
  /// The sets of coordinates that a primitive needs, in the order of the numbers by which its
  /// material names them.
  std::vector<NUvSet> GetUvSets(tinygltf::Primitive const& primitive) const;
  /// The materials that the file's variants have for a primitive, by their numbers.
  /// Fails: throws NImportError for one that isn't there.
  std::vector<neutral::NVariantUse> GetVariants(tinygltf::Primitive const& primitive);

  /// What the neutral form can't say, in UTF-8.
  std::vector<std::string> GetNotes() const;

 private:
  void AddVariants();
  void ShareUvSets();
  void AddPicture(tinygltf::Image const& image);
  void AddMaterial(tinygltf::Material const& material, std::vector<NUvSet> const& sets);

  tinygltf::Model const& m_model;
  NGltfAccessors const& m_accessors;
  neutral::NSceneWriter& m_writer;
  std::vector<std::vector<NUvSet>> m_sets;  // of each material; none where those of the mesh do
  std::size_t m_variantCount = 0;
  std::vector<bool> m_isMapped;  // of each variant, whether a primitive has a material for it
  std::uint32_t m_default = neutral::kNone;
};

}  // namespace corvanta::importer::reader
