#include "corvanta/importer/reader/NGltfMaterials.h"

#include <algorithm>
#include <cstring>
#include <numeric>
#include <tuple>

#include "corvanta/core/text/message.h"
#include "corvanta/data/domain/material/NMaterialOptions.h"
#include "corvanta/data/domain/texture/NTextureUse.h"
#include "corvanta/importer/NImportError.h"
#include "corvanta/importer/reader/gltf_surface.h"

namespace corvanta::importer::reader {

namespace {

using data::domain::texture::NTextureUse;
using enum data::domain::texture::NTextureUse;
using enum data::domain::material::NColorOperation;
using data::domain::material::kNearest;
using data::domain::material::MakeOperation;
using data::domain::material::NTextureWrap;

// How to decode a picture, by its first bytes: what files say of it is often wrong.
char const* GetExtension(unsigned char const* bytes, std::size_t size) {
  auto const begins = [&](char const* text) {
    std::size_t const length = std::strlen(text);
    return size >= length && std::memcmp(bytes, text, length) == 0;
  };
  if (begins("\x89PNG")) return "png";
  if (begins("\xFF\xD8")) return "jpg";
  if (begins("RIFF")) return "webp";
  if (begins("BM")) return "bmp";
  if (begins("GIF8")) return "gif";
  if (begins("DDS ")) return "dds";
  if (begins("\xABKTX")) return "ktx2";
  return "";
}

constexpr int kVertexColors = -2;

// A texture of a material, as the file names it.
struct Reference {
  NTextureUse use;
  int texture;  // kVertexColors where a mesh's own colours take its place
  NUvSet set;
  long combination = NCO_MULTIPLY;
  double scale = 1.0;
};

template <class Info>
Reference MakeReference(NTextureUse use, Info const& info) {
  Reference reference{use, info.index, {info.texCoord, {}}};
  if (auto const* const transform = FindExtension(info.extensions, "KHR_texture_transform")) {
    auto const pair = [transform](char const* key, std::size_t k, double otherwise) {
      auto const& list = transform->Get(key);
      if (!list.IsArray() || list.ArrayLen() != 2) return static_cast<float>(otherwise);
      auto const& value = list.Get(static_cast<int>(k));
      return static_cast<float>(value.IsNumber() ? value.GetNumberAsDouble() : otherwise);
    };
    reference.set.transform = {pair("offset", 0, 0.0), pair("offset", 1, 0.0),
                               static_cast<float>(GetNumber(*transform, "rotation", 0.0)),
                               pair("scale", 0, 1.0), pair("scale", 1, 1.0)};
    if (int const other = GetWhole(*transform, "texCoord"); other >= 0) {
      reference.set.texCoord = other;
    }
  }
  return reference;
}

Reference MakeReference(NTextureUse use, tinygltf::TextureInfo const& info, double scale) {
  Reference reference = MakeReference(use, info);
  reference.scale = scale;
  return reference;
}

// A texture that an extension has.
Reference MakeReference(NTextureUse use, tinygltf::Value const& extension, char const* key) {
  tinygltf::TextureInfo info;
  auto const& source = extension.Get(key);
  info.index = GetWhole(source, "index");
  info.texCoord = std::max(GetWhole(source, "texCoord"), 0);
  if (source.IsObject() && source.Get("extensions").IsObject()) {
    info.extensions = source.Get("extensions").Get<tinygltf::Value::Object>();
  }
  return MakeReference(use, info);
}

// The texture that gives a surface its colour and its opacity.
Reference GetColorReference(tinygltf::Material const& material, NGltfSurface const& surface) {
  if (!surface.isSpecularGlossiness) {
    return MakeReference(NTU_COLOR, material.pbrMetallicRoughness.baseColorTexture);
  }
  return MakeReference(NTU_COLOR, material.extensions.at("KHR_materials_pbrSpecularGlossiness"),
                       "diffuseTexture");
}

void AddOpacity(NGltfSurface const& surface, Reference const& color,
                std::vector<Reference>& references) {
  if (surface.cutOff == 0) return;
  references.push_back(color);
  references.back().use = NTU_OPACITY;
  references.back().combination = surface.cutOff;
}

// What a metal reflects has its colour; of what isn't one the extension says it.
void AddSpecular(tinygltf::Material const& material, NGltfSurface const& surface,
                 Reference const& color, std::vector<Reference>& references) {
  auto const* const extension = FindExtension(material.extensions, "KHR_materials_specular");
  if (surface.metalness >= 0.5) {
    references.push_back(color);
    references.back().use = NTU_SPECULAR;
    references.back().combination = NCO_MULTIPLY;
  } else if (extension != nullptr) {
    references.push_back(MakeReference(NTU_SPECULAR, *extension, "specularColorTexture"));
  }
}

std::vector<Reference> GetReferences(tinygltf::Material const& material) {
  auto const& pbr = material.pbrMetallicRoughness;
  NGltfSurface const surface = GetSurface(material);
  Reference color = GetColorReference(material, surface);
  if (color.texture < 0) color = {NTU_COLOR, kVertexColors, {}};
  color.combination = surface.isBlended ? NCO_MULTIPLY : NCO_IGNORE_ALPHA;
  std::vector<Reference> references;
  if (surface.isUnlit) {
    // The colour is emitted; as a colour of its own the picture says where the surface is.
    references = {color};
    references.back().use = NTU_EMISSIVE;
    if (surface.isBlended) references.push_back(color);
    AddOpacity(surface, color, references);
  } else {
    references = {color};
    AddOpacity(surface, color, references);
    if (surface.isSpecularGlossiness) {
      references.push_back(
          MakeReference(NTU_SPECULAR, material.extensions.at("KHR_materials_pbrSpecularGlossiness"),
                        "specularGlossinessTexture"));
    } else {
      auto const& both = pbr.metallicRoughnessTexture;
      references.push_back(MakeReference(NTU_METALNESS, both, surface.metalness));
      references.push_back(MakeReference(NTU_ROUGHNESS, both, surface.roughness));
      if (both.index < 0) AddSpecular(material, surface, color, references);
    }
    references.push_back(MakeReference(NTU_EMISSIVE, material.emissiveTexture));
    references.push_back(MakeReference(NTU_NORMAL, material.normalTexture));
    references.back().scale = material.normalTexture.scale;
    references.push_back(MakeReference(NTU_LIGHTMAP, material.occlusionTexture));
    references.back().scale = material.occlusionTexture.strength;
  }
  references.erase(std::remove_if(references.begin(), references.end(),
                                  [](Reference const& each) {
                                    return each.texture < 0 && each.texture != kVertexColors;
                                  }),
                   references.end());
  return references;
}

constexpr char kVariants[] = "KHR_materials_variants";

// Calls `use(variant, material)` for each variant in which a primitive has a material of its own.
template <class Use>
void ForEachMapping(tinygltf::Primitive const& primitive, Use const& use) {
  auto const* const extension = FindExtension(primitive.extensions, kVariants);
  if (extension == nullptr) return;
  auto const& mappings = extension->Get("mappings");
  for (std::size_t i = 0; i != mappings.ArrayLen(); ++i) {
    auto const& mapping = mappings.Get(static_cast<int>(i));
    int const material = GetWhole(mapping, "material");
    if (material < 0) continue;
    auto const& variants = mapping.Get("variants");
    for (std::size_t k = 0; k != variants.ArrayLen(); ++k) {
      auto const& variant = variants.Get(static_cast<int>(k));
      use(variant.IsInt() ? variant.GetNumberAsInt() : -1, material);
    }
  }
}

NTextureWrap GetWrap(int mode) {
  if (mode == TINYGLTF_TEXTURE_WRAP_MIRRORED_REPEAT) return NTextureWrap::NTW_MIRROR;
  return mode == TINYGLTF_TEXTURE_WRAP_CLAMP_TO_EDGE ? NTextureWrap::NTW_CLAMP
                                                     : NTextureWrap::NTW_REPEAT;
}

long GetOperation(long combination, tinygltf::Sampler const& sampler) {
  long const operation = MakeOperation(combination, GetWrap(sampler.wrapS), GetWrap(sampler.wrapT));
  bool const isNearest = sampler.magFilter == TINYGLTF_TEXTURE_FILTER_NEAREST;
  return isNearest ? operation | kNearest : operation;
}

}  // namespace

NGltfMaterials::NGltfMaterials(tinygltf::Model const& model, NGltfAccessors const& accessors,
                               neutral::NSceneWriter& writer)
    : m_model(model), m_accessors(accessors), m_writer(writer), m_sets(model.materials.size()) {
  for (auto const& image : model.images) AddPicture(image);
  AddVariants();
  ShareUvSets();
  for (std::size_t i = 0; i != m_sets.size(); ++i) AddMaterial(model.materials[i], m_sets[i]);
}

void NGltfMaterials::AddVariants() {
  auto const* const extension = FindExtension(m_model.extensions, kVariants);
  if (extension == nullptr) return;
  auto const& variants = extension->Get("variants");
  m_variantCount = variants.ArrayLen();
  if (m_variantCount > neutral::kMostVariants) {
    throw NImportError("more than " + std::to_string(neutral::kMostVariants) + " variants");
  }
  m_isMapped.resize(m_variantCount);
  for (std::size_t i = 0; i != m_variantCount; ++i) {
    auto const& variant = variants.Get(static_cast<int>(i));
    std::string const name = variant.IsObject() && variant.Get("name").IsString()
                                 ? variant.Get("name").Get<std::string>()
                                 : std::string();
    neutral::NText const text = m_writer.AddText(GetName(name, "variants", i));
    m_writer.Get<neutral::NVariant>().push_back({text});
  }
}

std::vector<neutral::NVariantUse> NGltfMaterials::GetVariants(
    tinygltf::Primitive const& primitive) {
  std::vector<neutral::NVariantUse> uses;
  ForEachMapping(primitive, [&](int variant, int material) {
    if (variant < 0 || static_cast<std::size_t>(variant) >= m_variantCount) return;
    uses.push_back({static_cast<std::uint32_t>(variant), GetNumber(material)});
    m_isMapped[static_cast<std::size_t>(variant)] = true;
  });
  return uses;
}

// Materials that variants put in each other's place look up the same sets of a mesh.
void NGltfMaterials::ShareUvSets() {
  std::vector<std::size_t> groups(m_sets.size());
  std::iota(groups.begin(), groups.end(), std::size_t{0});
  auto const find = [&groups](std::size_t material) {
    while (groups[material] != material) material = groups[material] = groups[groups[material]];
    return material;
  };
  for (auto const& mesh : m_model.meshes) {
    for (auto const& primitive : mesh.primitives) {
      ForEachMapping(primitive, [&](int, int material) {
        if (!IsIn(groups, material) || !IsIn(groups, primitive.material)) return;
        groups[find(static_cast<std::size_t>(material))] =
            find(static_cast<std::size_t>(primitive.material));
      });
    }
  }
  std::vector<std::vector<NUvSet>> shared(m_sets.size());
  std::vector<bool> isTransformed(m_sets.size());
  for (std::size_t i = 0; i != m_sets.size(); ++i) {
    std::size_t const group = find(i);
    for (Reference const& each : GetReferences(m_model.materials[i])) {
      if (each.texture == kVertexColors) continue;
      auto& sets = shared[group];
      if (std::find(sets.begin(), sets.end(), each.set) == sets.end()) sets.push_back(each.set);
      if (!(each.set.transform == NTextureTransform())) isTransformed[group] = true;
    }
  }
  for (std::size_t i = 0; i != m_sets.size(); ++i) {
    if (isTransformed[find(i)]) m_sets[i] = shared[find(i)];
  }
}

void NGltfMaterials::AddPicture(tinygltf::Image const& image) {
  neutral::NPicture picture{};
  if (!image.uri.empty()) {
    picture.name = m_writer.AddText(image.uri);
  } else {
    unsigned char const* bytes = image.image.data();
    std::size_t size = image.image.size();
    if (image.bufferView >= 0) std::tie(bytes, size) = m_accessors.GetBytes(image.bufferView);
    picture.isEmbedded = 1;
    picture.name = m_writer.AddText(image.name);
    picture.extension = m_writer.AddText(GetExtension(bytes, size));
    picture.bytes = m_writer.Reserve<std::uint8_t>(
        size, [bytes, size](std::uint8_t* to) { std::copy_n(bytes, size, to); });
  }
  m_writer.Get<neutral::NPicture>().push_back(picture);
}

void NGltfMaterials::AddMaterial(tinygltf::Material const& source,
                                 std::vector<NUvSet> const& sets) {
  auto const references = GetReferences(source);
  neutral::NMaterial material{};
  material.name = m_writer.AddText(source.name);
  SetSurface(source, material);
  std::vector<neutral::NTexture> textures;
  for (Reference const& each : references) {
    if (each.texture == kVertexColors) {
      textures.push_back({static_cast<std::uint32_t>(each.use), neutral::kNone, 0,
                          static_cast<std::uint32_t>(each.combination), 1.0f});
    }
    if (!IsIn(m_model.textures, each.texture)) continue;
    auto const& texture = m_model.textures[static_cast<std::size_t>(each.texture)];
    int picture = texture.source;
    if (auto const* const other = FindExtension(texture.extensions, "EXT_texture_webp")) {
      if (picture < 0) picture = GetWhole(*other, "source");
    }
    if (!IsIn(m_model.images, picture)) continue;
    auto const set = std::find(sets.begin(), sets.end(), each.set);
    auto const uvSet = sets.empty() ? each.set.texCoord : set - sets.begin();
    tinygltf::Sampler sampler;
    if (IsIn(m_model.samplers, texture.sampler)) {
      sampler = m_model.samplers[static_cast<std::size_t>(texture.sampler)];
    }
    textures.push_back({static_cast<std::uint32_t>(each.use), static_cast<std::uint32_t>(picture),
                        static_cast<std::uint32_t>(uvSet),
                        static_cast<std::uint32_t>(GetOperation(each.combination, sampler)),
                        static_cast<float>(each.scale)});
  }
  material.textures = m_writer.Add(textures);
  m_writer.Get<neutral::NMaterial>().push_back(material);
}

std::uint32_t NGltfMaterials::GetNumber(int material) {
  if (material >= 0) {
    if (!IsIn(m_model.materials, material)) throw NImportError("a material that isn't there");
    return static_cast<std::uint32_t>(material);
  }
  if (m_default == neutral::kNone) {
    m_default = static_cast<std::uint32_t>(m_writer.Get<neutral::NMaterial>().size());
    AddMaterial(tinygltf::Material(), {});
  }
  return m_default;
}

bool NGltfMaterials::HasColorTexture(int material) const {
  if (!IsIn(m_model.materials, material)) return false;
  auto const references = GetReferences(m_model.materials[static_cast<std::size_t>(material)]);
  return std::any_of(references.begin(), references.end(), [](Reference const& each) {
    bool const isColor = each.use == NTU_COLOR || each.use == NTU_EMISSIVE;
    return isColor && each.texture != kVertexColors;
  });
}

std::vector<NUvSet> NGltfMaterials::GetUvSets(tinygltf::Primitive const& primitive) const {
  std::vector<NUvSet> sets;
  if (IsIn(m_sets, primitive.material)) sets = m_sets[static_cast<std::size_t>(primitive.material)];
  for (int i = 0; sets.size() == static_cast<std::size_t>(i) &&
                  primitive.attributes.count("TEXCOORD_" + std::to_string(i)) != 0;
       ++i) {
    sets.push_back({i, {}});
  }
  sets.resize(std::min(sets.size(), neutral::kMostUvSets));
  return sets;
}

std::vector<std::string> NGltfMaterials::GetNotes() const {
  auto const count =
      static_cast<std::size_t>(std::count(m_isMapped.begin(), m_isMapped.end(), false));
  if (count == 0) return {};
  return {core::text::Plural(count, "variant changes no material", "variants change no material")};
}

}  // namespace corvanta::importer::reader
