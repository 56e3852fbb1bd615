#include "corvanta/importer/reader/gltf_surface.h"

#include <algorithm>
#include <cmath>

#include "corvanta/data/domain/material/NMaterialOptions.h"

namespace corvanta::importer::reader {

namespace {

using data::domain::material::kMostCutOff;
using neutral::NTriple;

constexpr char kSpecularGlossiness[] = "KHR_materials_pbrSpecularGlossiness";
constexpr double kLeastPower = 0.01;
constexpr double kLargestPower = 10'000.0;
constexpr double kLeastOpacity = 0.1;  // of what lets light through

double Part(double value) { return std::isfinite(value) ? std::clamp(value, 0.0, 1.0) : 0.0; }

NTriple Scale(NTriple const& color, double factor) {
  NTriple scaled;
  std::transform(color.begin(), color.end(), scaled.begin(),
                 [factor](float part) { return static_cast<float>(part * factor); });
  return scaled;
}

NTriple Mix(NTriple const& a, NTriple const& b, double share) {
  NTriple mixed;
  for (std::size_t k = 0; k != 3; ++k) {
    mixed[k] = static_cast<float>(a[k] + (b[k] - a[k]) * share);
  }
  return mixed;
}

NTriple Sum(NTriple const& a, NTriple const& b) {
  return {std::min(a[0] + b[0], 1.0f), std::min(a[1] + b[1], 1.0f), std::min(a[2] + b[2], 1.0f)};
}

// By ITU-R BT.709.
double GetLuminance(NTriple const& c) { return 0.2126 * c[0] + 0.7152 * c[1] + 0.0722 * c[2]; }

NTriple GetTriple(std::vector<double> const& values, float otherwise) {
  NTriple triple{otherwise, otherwise, otherwise};
  for (std::size_t k = 0; k != std::min<std::size_t>(values.size(), 3); ++k) {
    triple[k] = static_cast<float>(values[k]);
  }
  return triple;
}

std::vector<double> GetList(tinygltf::Value const& object, char const* key) {
  std::vector<double> values;
  auto const& list = object.Get(key);
  for (std::size_t i = 0; i != list.ArrayLen(); ++i) {
    auto const& value = list.Get(static_cast<int>(i));
    values.push_back(value.IsNumber() ? value.GetNumberAsDouble() : 0.0);
  }
  return values;
}

// What is reflected at normal incidence, and the index of refraction that does so: A. Fresnel's
// equations for a dielectric in air.
double GetReflectance(double index) {
  double const root = (index - 1.0) / (index + 1.0);
  return root * root;
}
float GetIndex(double reflectance) {
  double const root = std::sqrt(std::clamp(reflectance, 0.0, 0.96));
  return static_cast<float>((1.0 + root) / (1.0 - root));
}

// The exponent of Blinn's highlight that has the width of a GGX one of that roughness: B. Karis,
// Specular BRDF Reference, 2013.
float GetPower(double roughness) {
  double const alpha = roughness * roughness;
  double const power = alpha > 0.0 ? 2.0 / (alpha * alpha) - 2.0 : kLargestPower;
  return static_cast<float>(std::clamp(power, kLeastPower, kLargestPower));
}

double GetExtension(tinygltf::Material const& material, char const* name, char const* key,
                    double otherwise) {
  auto const* const extension = FindExtension(material.extensions, name);
  return extension == nullptr ? otherwise : GetNumber(*extension, key, otherwise);
}

// A material by its reflectances.
struct Reflection {
  NTriple diffuse;
  NTriple normal;  // at normal incidence
  double metalness = 0.0;
  double roughness = 1.0;
  double opacity = 1.0;
};

Reflection ReadSpecularGlossiness(tinygltf::Value const& source) {
  auto const factor = GetList(source, "diffuseFactor");
  return {GetTriple(factor, 1.0f), GetTriple(GetList(source, "specularFactor"), 1.0f), 0.0,
          1.0 - Part(GetNumber(source, "glossinessFactor", 1.0)),
          factor.size() == 4 ? Part(factor[3]) : 1.0};
}

Reflection ReadMetallicRoughness(tinygltf::Material const& material) {
  auto const& pbr = material.pbrMetallicRoughness;
  NTriple const base = GetTriple(pbr.baseColorFactor, 1.0f);
  // Where a texture says what is metal, the material's own colours are those of what isn't.
  bool const isVarying = pbr.metallicRoughnessTexture.index >= 0;
  double const metalness = isVarying ? 0.0 : Part(pbr.metallicFactor);
  double const roughness = Part(pbr.roughnessFactor);

  double const index = GetExtension(material, "KHR_materials_ior", "ior", 1.5);
  double reflectance = GetReflectance(std::isfinite(index) && index >= 1.0 ? index : 1.5);
  NTriple tint{1.0f, 1.0f, 1.0f};
  if (auto const* const specular = FindExtension(material.extensions, "KHR_materials_specular")) {
    reflectance *= Part(GetNumber(*specular, "specularFactor", 1.0));
    tint = GetTriple(GetList(*specular, "specularColorFactor"), 1.0f);
  }
  NTriple dielectric = Scale(tint, reflectance);
  for (float& part : dielectric) part = static_cast<float>(Part(part));
  Reflection reflection{Scale(base, 1.0 - metalness), Mix(dielectric, base, metalness), metalness,
                        roughness,
                        pbr.baseColorFactor.size() == 4 ? Part(pbr.baseColorFactor[3]) : 1.0};
  return reflection;
}

// The factor of the alpha is part of it.
long GetCutOff(double cutOff, double alpha) {
  if (!(cutOff > 0.0)) return 0;
  double const share = std::min(cutOff / std::max(alpha, 1e-6), 1.0);
  return static_cast<long>(std::ceil(share * static_cast<double>(kMostCutOff) - 1e-6));
}

double GetOpacity(tinygltf::Material const& material, Reflection const& reflection) {
  double const own = material.alphaMode == "BLEND" ? reflection.opacity : 1.0;
  double const transmission =
      Part(GetExtension(material, "KHR_materials_transmission", "transmissionFactor", 0.0)) *
      (1.0 - reflection.metalness);
  if (transmission == 0.0) return own;
  double const passing = transmission * (1.0 - GetLuminance(reflection.normal)) *
                         Part(GetLuminance(reflection.diffuse));
  return own * std::max(1.0 - passing, kLeastOpacity);
}

}  // namespace

NGltfSurface GetSurface(tinygltf::Material const& material) {
  auto const& pbr = material.pbrMetallicRoughness;
  auto const* const glossy = FindExtension(material.extensions, kSpecularGlossiness);
  NGltfSurface surface{material.extensions.count("KHR_materials_unlit") != 0,
                       glossy != nullptr,
                       material.alphaMode == "BLEND",
                       0,
                       Part(pbr.metallicFactor),
                       Part(pbr.roughnessFactor)};
  if (material.alphaMode == "MASK") {
    auto const factor = glossy != nullptr ? GetList(*glossy, "diffuseFactor") : pbr.baseColorFactor;
    surface.cutOff = GetCutOff(material.alphaCutoff, factor.size() == 4 ? Part(factor[3]) : 1.0);
  }
  return surface;
}

void SetSurface(tinygltf::Material const& material, neutral::NMaterial& to) {
  NGltfSurface const kind = GetSurface(material);
  Reflection const reflection =
      kind.isSpecularGlossiness
          ? ReadSpecularGlossiness(*FindExtension(material.extensions, kSpecularGlossiness))
          : ReadMetallicRoughness(material);
  to.opacity = static_cast<float>(GetOpacity(material, reflection));
  to.isOneSided = material.doubleSided ? 0 : 1;
  if (kind.isUnlit) {
    NTriple const black{};
    to.diffuse = black;
    to.ambient = black;
    to.specular = black;
    to.emissive = GetTriple(material.pbrMetallicRoughness.baseColorFactor, 1.0f);
    return;
  }
  to.diffuse = reflection.diffuse;
  // Light from all sides comes back from within and from the surface alike.
  to.ambient = Sum(reflection.diffuse, reflection.normal);
  to.specular = reflection.normal;
  to.shininess = GetPower(reflection.roughness);
  to.emissive = Scale(
      GetTriple(material.emissiveFactor, 0.0f),
      std::max(GetExtension(material, "KHR_materials_emissive_strength", "emissiveStrength", 1.0),
               0.0));
  to.roughness = static_cast<float>(reflection.roughness);
  to.refractiveIndex = GetIndex(GetLuminance(reflection.normal));
  to.clearcoatIndex = GetIndex(
      0.04 * Part(GetExtension(material, "KHR_materials_clearcoat", "clearcoatFactor", 0.0)));
  to.reflection = 1.0f;
}

}  // namespace corvanta::importer::reader
