#include "corvanta/renderer/pass/NSurfacePrograms.h"

namespace corvanta::renderer {

namespace {

// Flecks of size 1 along the diagonal of all that is drawn.
constexpr float kFlecks = 500;

NEnvironmentTexture const& GetEnvironment(NPicture const& picture,
                                          NMaterialParameters const& material) {
  return material.environment.Exists() ? material.environment : picture.environment;
}

unsigned GetEnvironmentFeatures(NEnvironmentTexture const& environment,
                                NMaterialParameters const& material) {
  if (!environment.Exists()) return 0;
  unsigned features = 0;
  if (material.reflection > 0.0f) features |= NSF_REFLECTION;
  if (material.irradiance > 0.0f) features |= NSF_IRRADIANCE;
  if (features == 0) return 0;
  if (environment.projection == NEP_CUBE) features |= NSF_CUBE;
  if (material.environmentContrast != 1.0f) features |= NSF_CONTRAST;
  return features;
}

NSurfaceKey GetKey(NPicture const& picture, NMaterialParameters const& material, bool isWireframe) {
  NLamps const& lamps = picture.lamps;
  NSurfaceKey key;
  key.features = GetEnvironmentFeatures(GetEnvironment(picture, material), material);
  auto const add = [&key](bool isUsed, NSurfaceFeature feature) {
    if (isUsed) key.features |= feature;
  };
  for (NTextureSlot const slot : kTextureSlots) {
    if (material.HasTexture(slot)) key.features |= NSF_COLOR_MAP << slot;
  }
  for (std::size_t i = 0; i != key.coords.size(); ++i) {
    key.coords[i] = static_cast<unsigned char>(material.coordsSlots[kCoordsCount + i]);
  }
  add(material.HasOneMetalRoughness(), NSF_METAL_ROUGHNESS);
  add(material.bounds != 0, NSF_BOUNDS);
  add(material.isTransparent, NSF_BLEND);
  add(material.cutOff > 0.0f, NSF_MASK);
  add(isWireframe, NSF_WIREFRAME);
  add(picture.exposure.white > 0.0f, NSF_TONE_MAPPING);
  add(picture.exposure.gamma != 1.0f, NSF_GAMMA);
  add((picture.glow > 0.0f || picture.star > 0.0f) && !material.isTransparent, NSF_GLOW);
  if (lamps.count == 0) return key;
  key.features |= NSF_LIT;
  key.directionalCount = lamps.directionalCount;
  key.hasLocalLamps = lamps.count != lamps.directionalCount;
  add(material.specular != NColor{} || material.HasTexture(NTS_METALNESS), NSF_HIGHLIGHTS);
  add(material.roughness > 0.0f || material.HasTexture(NTS_ROUGHNESS), NSF_ROUGH);
  add(material.coatReflectance > 0.0f, NSF_COAT);
  add(material.fleckColor != NColor{}, NSF_FLECKS);
  return key;
}

}  // namespace

void NSurfacePrograms::Begin(NPicture const& picture) {
  m_picture = &picture;
  ++m_pictureNumber;
  m_fleckUnit.reset();
}

void NSurfacePrograms::Use(NMaterialParameters const& material, bool isWireframe) {
  Use(material, GetKey(*m_picture, material, isWireframe));
}

void NSurfacePrograms::UseForLines(NMaterialParameters const& material) {
  constexpr unsigned kFeatures = NSF_COLOR_MAP | NSF_EMISSIVE_MAP | NSF_OPACITY_MAP | NSF_BOUNDS |
                                 NSF_BLEND | NSF_MASK | NSF_TONE_MAPPING | NSF_GAMMA | NSF_GLOW;
  NSurfaceKey key;
  key.features = (GetKey(*m_picture, material, false).features & kFeatures) | NSF_LINES;
  Use(material, key);
}

void NSurfacePrograms::Use(NMaterialParameters const& material, NSurfaceKey const& key) {
  NPicture const& picture = *m_picture;
  Entry& entry = m_programs[key];
  if (!entry.program) entry.program = std::make_unique<NSurfaceProgram>(key);
  if (entry.picture != m_pictureNumber) {
    entry.program->Begin(picture.viewpoint, picture.lamps, picture.exposure);
    entry.picture = m_pictureNumber;
  }
  if ((key.features & NSF_FLECKS) != 0 && !m_fleckUnit) {
    VX_Math::Box3 const box = picture.scene.GetBox();
    m_fleckUnit = box.IsEmpty() ? 1.0f : box.GetSize().Length() / kFlecks;
  }
  entry.program->SetMaterial(material, picture.ambientLight, m_fleckUnit.value_or(1.0f),
                             GetEnvironment(picture, material));
}

}  // namespace corvanta::renderer
