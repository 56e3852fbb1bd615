#include "corvanta/renderer/gl/shaders.h"

namespace corvanta::renderer {

namespace {

constexpr char kVersion[] = "#version 330 core\n";

constexpr char const* kFeatureNames[] = {
    "COLOR_MAP",     "BUMP_MAP",      "SPECULAR_MAP",  "EMISSIVE_MAP",    "OPACITY_MAP",
    "METALNESS_MAP", "ROUGHNESS_MAP", "OCCLUSION_MAP", "METAL_ROUGHNESS", "BOUNDS",
    "LIT",           "HIGHLIGHTS",    "REFLECTION",    "IRRADIANCE",      "CUBE",
    "CONTRAST",      "ROUGH",         "COAT",          "FLECKS",          "BLEND",
    "MASK",          "WIREFRAME",     "TONE_MAPPING",  "GAMMA",           "GLOW",
    "LINES"};

// The coordinates of the textures, of which the first five have their own.
constexpr char const* kCoordsNames[] = {"colorCoords",     "bumpCoords",     "specularCoords",
                                        "emissiveCoords",  "opacityCoords",  "metalnessCoords",
                                        "roughnessCoords", "occlusionCoords"};

std::string MakeHead(NSurfaceKey const& key) {
  std::string head = kVersion;
  unsigned bit = 0;
  for (char const* const name : kFeatureNames) {
    if ((key.features >> bit++ & 1u) != 0) head += std::string("#define ") + name + '\n';
  }
  unsigned used = key.features & ((1u << kCoordsCount) - 1);
  for (std::size_t i = 0; i != key.coords.size(); ++i) {
    std::size_t const slot = kCoordsCount + i;
    if ((key.features >> slot & 1u) == 0) continue;
    used |= 1u << key.coords[i];
    head += std::string("#define ") + kCoordsNames[slot] + ' ' + kCoordsNames[key.coords[i]] + '\n';
  }
  for (unsigned i = 0; i != kCoordsCount; ++i) {
    if ((used >> i & 1u) != 0) head += "#define COORDS" + std::to_string(i) + '\n';
  }
  if (key.hasLocalLamps) head += "#define LOCAL_LAMPS\n";
  return head + "#define DIRECTIONAL_COUNT " + std::to_string(key.directionalCount) + '\n';
}

constexpr char kSurfaceVertexShader[] = R"(
layout(location = 0) in vec3 position;
layout(location = 1) in vec3 normal;
layout(location = 2) in vec2 coords0;
layout(location = 3) in vec2 coords1;
layout(location = 4) in vec2 coords2;
layout(location = 5) in vec2 coords3;
layout(location = 6) in vec2 coords4;
layout(location = 7) in vec3 tangent;
layout(location = 8) in vec3 binormal;
layout(location = 9) in mat4 world;
layout(location = 13) in mat3 normalWorld;

uniform mat4 viewProjection;
uniform vec2 depthRange;

out vec3 worldPosition;
out vec3 worldNormal;
#ifdef COORDS0
out vec2 colorCoords;
#endif
#ifdef COORDS1
out vec2 bumpCoords;
#endif
#ifdef BUMP_MAP
out vec3 worldTangent;
out vec3 worldBinormal;
#endif
#ifdef COORDS2
out vec2 specularCoords;
#endif
#ifdef COORDS3
out vec2 emissiveCoords;
#endif
#ifdef COORDS4
out vec2 opacityCoords;
#endif
#ifdef FLECKS
out vec3 fleckPosition;  // moves and turns with the model
#endif

void main() {
  vec4 global = world * vec4(position, 1.0);
  worldPosition = global.xyz;
  worldNormal = normalWorld * normal;
#ifdef COORDS0
  colorCoords = coords0;
#endif
#ifdef COORDS1
  bumpCoords = coords1;
#endif
#ifdef BUMP_MAP
  worldTangent = mat3(world) * tangent;
  worldBinormal = mat3(world) * binormal;
#endif
#ifdef COORDS2
  specularCoords = coords2;
#endif
#ifdef COORDS3
  emissiveCoords = coords3;
#endif
#ifdef COORDS4
  opacityCoords = coords4;
#endif
#ifdef FLECKS
  fleckPosition = position * vec3(length(world[0].xyz), length(world[1].xyz), length(world[2].xyz));
#endif
  gl_Position = viewProjection * global;
  gl_Position.z = depthRange.x * gl_Position.z + depthRange.y * gl_Position.w;
}
)";

// Lambert and Blinn-Phong: J. F. Blinn, Models of light reflection for computer synthesized
// pictures, 1977. Rough surfaces: M. Oren and S. K. Nayar, Generalization of Lambert's reflectance
// model, 1994. Bumps: J. F. Blinn, Simulation of wrinkled surfaces, 1978. What a smooth surface
// reflects at an angle: C. Schlick, An inexpensive BRDF model for physically-based rendering, 1994.
// Light from an environment: R. Ramamoorthi and P. Hanrahan, An efficient representation for
// irradiance environment maps, 2001. Flecks: S. Ershov, K. Kolchin and K. Myszkowski, Rendering
// pearlescent appearance based on paint-composition modelling, 2001. Tone mapping: E. Reinhard et
// al., Photographic tone reproduction for digital images, 2002.
constexpr char kSurfaceFragmentShader[] = R"(
#if defined(HIGHLIGHTS) || defined(COAT) || defined(FLECKS)
#define SHINY
#endif
#if defined(SHINY) || defined(REFLECTION) || defined(ROUGH) || defined(WIREFRAME)
#define VIEW
#endif
#if defined(REFLECTION) || defined(IRRADIANCE)
#define ENVIRONMENT
#endif
const int kSpot = 2;
const int kHeights = 1;
const int kAdd = 1;
const int kCover = 2;
const int kIgnoreAlpha = 3;
const float kCoatPower = 400.0;
const float kFleckPower = 64.0;

in vec3 worldPosition;
in vec3 worldNormal;
#ifdef COORDS0
in vec2 colorCoords;
#endif
#ifdef COORDS1
in vec2 bumpCoords;
#endif
#ifdef BUMP_MAP
in vec3 worldTangent;
in vec3 worldBinormal;
#endif
#ifdef COORDS2
in vec2 specularCoords;
#endif
#ifdef COORDS3
in vec2 emissiveCoords;
#endif
#ifdef COORDS4
in vec2 opacityCoords;
#endif
#ifdef FLECKS
in vec3 fleckPosition;
#endif
out vec4 result;

uniform vec4 viewpoint;  // a position, or with w = 0 the direction to the camera
uniform vec3 diffuse;
uniform vec3 ambient;
uniform vec3 specular;
uniform vec3 emissive;
uniform float power;
uniform float opacity;
uniform float cutOff;
uniform vec2 rough;  // the two factors of the formula for rough surfaces
uniform float coatReflectance;
uniform vec3 fleckColor;
uniform float fleckSize;
uniform float fleckPerturbation;

uniform int bounds;  // two bits for each: it ends at the borders of u, of v
uniform int colorOperation;
uniform int bumpContent;
uniform float bumpScale;
uniform bool opacityInAlpha;
uniform sampler2D colorMap;
uniform sampler2D bumpMap;
uniform sampler2D specularMap;
uniform sampler2D emissiveMap;
uniform sampler2D opacityMap;
uniform sampler2D metalnessMap;
uniform sampler2D roughnessMap;
uniform sampler2D occlusionMap;
uniform vec3 dataScales;  // of metalness, roughness, occlusion

uniform int lampCount;
uniform int lampType[16];
uniform vec3 lampColor[16];
uniform vec3 lampPosition[16];
uniform vec3 lampDirection[16];
uniform vec2 lampCone[16];  // cosines of half the angles
uniform float lampRange[16];
uniform int lampAttenuation[16];

uniform float reflection;  // a factor of the reflected environment
uniform vec3 mirror;           // what is reflected along the normal
uniform vec3 fresnel;          // at a grazing angle; a factor and a constant for both
uniform float reflectionLod;
uniform float environmentContrast;
uniform float irradiance;      // a factor of the light from the environment
uniform vec3 harmonics[9];     // of that light
uniform int environmentProjection;
uniform mat3 environmentRotation;
uniform samplerCube environmentCube;
uniform sampler2D environmentImage;

uniform float diffuseWeight;
uniform float exposure;
uniform float gamma;
uniform float white;

// What roughness makes of the surface: the factors of the formula for rough surfaces, the exponent
// of the highlight, the blur of what is mirrored.
#ifdef ROUGHNESS_MAP
vec2 roughFactors;
float exponent;
float mirrorLod;
float mostMirrored;

void SetRoughness(float r) {
  float square = r * r;
  roughFactors = vec2(1.0 - 0.5 * square / (square + 0.33), 0.45 * square / (square + 0.09));
  exponent = clamp(2.0 / max(square * square, 1e-6) - 2.0, 0.01, 10000.0);
  mirrorLod = 8.0 * r;
  mostMirrored = 1.0 - r;
}
#else
#define roughFactors rough
#define exponent power
#define mirrorLod reflectionLod
#endif

// Whether a texture covers this position.
bool Covers(int slot, vec2 coords) {
#ifdef BOUNDS
  bvec2 outside = bvec2(floor(coords));
  int ends = bounds >> 2 * slot;
  return !((ends & 1) != 0 && outside.x) && !((ends & 2) != 0 && outside.y);
#else
  return true;
#endif
}

#ifdef ENVIRONMENT
vec3 Contrast(vec3 light) {
#ifdef CONTRAST
  return 0.18 * pow(max(light, 0.0) / 0.18, vec3(environmentContrast));
#else
  return light;
#endif
}
#endif

#ifdef REFLECTION
vec3 SampleEnvironment(vec3 direction, float blur) {
  vec3 d = environmentRotation * direction;
#ifdef CUBE
  return Contrast(textureLod(environmentCube, d, blur).rgb);
#else
  if (environmentProjection == 1) {
    return Contrast(textureLod(environmentImage, vec2(atan(d.x, -d.z) / 6.2831853 + 0.5, asin(d.y) / 3.1415927 + 0.5), blur).rgb);
  }
  float sine = length(d.xy);
  vec2 around = sine > 0.0 ? d.xy / sine : vec2(0.0);
  return Contrast(textureLod(environmentImage, 0.5 + around * acos(clamp(-d.z, -1.0, 1.0)) / 6.2831853, blur).rgb);
#endif
}
#endif

#ifdef IRRADIANCE
vec3 Irradiance(vec3 n) {
  vec3 d = environmentRotation * n;
  vec3 light = harmonics[0] + harmonics[1] * d.y + harmonics[2] * d.z + harmonics[3] * d.x +
               harmonics[4] * (d.x * d.y) + harmonics[5] * (d.y * d.z) +
               harmonics[6] * (3.0 * d.z * d.z - 1.0) + harmonics[7] * (d.x * d.z) +
               harmonics[8] * (d.x * d.x - d.y * d.y);
  return Contrast(max(light, 0.0));
}
#endif

vec3 GetNormal(vec3 toViewpoint) {
  vec3 face = cross(dFdx(worldPosition), dFdy(worldPosition));
  vec3 n = dot(worldNormal, worldNormal) > 0.0 ? normalize(worldNormal) : normalize(face);
#ifdef BUMP_MAP
  if (Covers(1, bumpCoords) && dot(worldTangent, worldTangent) != 0.0 && dot(worldBinormal, worldBinormal) != 0.0) {
    vec3 t = normalize(worldTangent);
    vec3 b = normalize(worldBinormal);
    if (bumpContent == kHeights) {
      vec2 texel = 1.0 / vec2(textureSize(bumpMap, 0));
      float du = texture(bumpMap, bumpCoords + vec2(texel.x, 0.0)).r - texture(bumpMap, bumpCoords - vec2(texel.x, 0.0)).r;
      float dv = texture(bumpMap, bumpCoords + vec2(0.0, texel.y)).r - texture(bumpMap, bumpCoords - vec2(0.0, texel.y)).r;
      n = normalize(n - bumpScale * 2.0 * (du * t + dv * b));
    } else {
      vec3 m = texture(bumpMap, bumpCoords).xyz * 2.0 - 1.0;
      n = normalize(m.x * bumpScale * t + m.y * bumpScale * b + m.z * n);
    }
  }
#endif
  // Both sides are seen; the one towards the camera is lit.
#ifdef WIREFRAME
  float side = dot(n, toViewpoint);
#else
  float side = dot(n, face);
#endif
  return side < 0.0 ? -n : n;
}

float Attenuation(int lamp, float distance) {
  float share = clamp(distance / lampRange[lamp], 0.0, 1.0);
  if (lampAttenuation[lamp] == 1) return 1.0 - share;
  if (lampAttenuation[lamp] == 2) return (1.0 - share) * (1.0 - share);
  float square = share * share;
  float edge = 1.0 - square * square;
  return edge * edge;
}

vec3 ApplyExposure(vec3 light) {
  vec3 c = max(light * exposure, 0.0);
#ifdef TONE_MAPPING
  c = c * (1.0 + c / (white * white)) / (1.0 + c);
#endif
#ifdef GAMMA
  c = pow(c, vec3(1.0 / gamma));
#endif
  return c;
}

// What a surface turned by `cosine` to a lamp throws back in all directions.
float Scatter(vec3 n, vec3 l, vec3 toViewpoint, float cosine) {
#ifdef ROUGH
  float seen = max(dot(n, toViewpoint), 0.0);
  float s = dot(l, toViewpoint) - cosine * seen;
  return cosine * (roughFactors.x + roughFactors.y * (s > 0.0 ? s / max(max(cosine, seen), 1e-4) : s));
#else
  return cosine;
#endif
}

float Schlick(float normal, float cosine) {
  return mix(normal, 1.0, pow(1.0 - clamp(cosine, 0.0, 1.0), 5.0));
}

#ifdef SHINY
#ifdef FLECKS
// Where the fleck at this position is tilted to: each coordinate from -1 to 1.
vec3 GetTilt() {
  uvec3 cell = uvec3(ivec3(floor(fleckPosition / fleckSize)));
  uint h = cell.x * 73856093u ^ cell.y * 19349663u ^ cell.z * 83492791u;
  vec3 tilt;
  for (int i = 0; i < 3; ++i) {
    h = (h ^ (h >> 16)) * 0x7feb352du;
    h = (h ^ (h >> 15)) * 0x846ca68bu;
    h ^= h >> 16;
    tilt[i] = float(h & 0xffffu) / 32767.5 - 1.0;
  }
  return tilt;
}
#endif

vec3 Highlight(vec3 specularColor, vec3 n, vec3 fleck, vec3 l, vec3 toViewpoint, float cosine) {
  vec3 halfway = l + toViewpoint;
  halfway *= inversesqrt(max(dot(halfway, halfway), 1e-12));
  float cosineToHalf = max(dot(n, halfway), 0.0);
  vec3 light = vec3(0.0);
#ifdef HIGHLIGHTS
  light += specularColor * pow(cosineToHalf, exponent);
#endif
#ifdef FLECKS
  light += fleckColor * pow(max(dot(fleck, halfway), 0.0), kFleckPower);
#endif
#ifdef COAT
  light += Schlick(coatReflectance, dot(l, halfway)) * (kCoatPower + 8.0) / 8.0 * pow(cosineToHalf, kCoatPower);
#endif
  return light * cosine;
}
#endif

void main() {
#ifdef VIEW
  vec3 toViewpoint = normalize(viewpoint.xyz - worldPosition * viewpoint.w);
#else
  vec3 toViewpoint = vec3(0.0);
#endif
  vec3 n = GetNormal(toViewpoint);
  vec3 diffuseColor = diffuse;
  vec3 ambientColor = ambient;
  float alpha = opacity;
#ifdef COLOR_MAP
  vec4 colorTexel = texture(colorMap, colorCoords);
  if (Covers(0, colorCoords)) {
    float texelAlpha = colorTexel.a;
#ifdef OPACITY_MAP
    texelAlpha = 1.0;
#endif
    if (colorOperation == kAdd) {
      diffuseColor += colorTexel.rgb;
      ambientColor += ambient * colorTexel.rgb;
    } else if (colorOperation == kCover) {
      diffuseColor = mix(diffuseColor, colorTexel.rgb, colorTexel.a);
      alpha *= texelAlpha;
    } else {
      diffuseColor *= colorTexel.rgb;
      ambientColor *= colorTexel.rgb;
      alpha *= colorOperation == kIgnoreAlpha ? 1.0 : texelAlpha;
    }
  }
#endif
#ifdef OPACITY_MAP
  vec4 opacityTexel = texture(opacityMap, opacityCoords);
  if (Covers(4, opacityCoords)) alpha *= opacityInAlpha ? opacityTexel.a : opacityTexel.r;
#endif
#ifdef MASK
  if (alpha < cutOff) discard;
  alpha = 1.0;
#endif
#ifdef BLEND
  if (alpha < 1.0 / 255.0) discard;
#endif
  vec3 specularColor = specular;
#ifdef SPECULAR_MAP
  vec3 specularTexel = texture(specularMap, specularCoords).rgb;
  if (Covers(2, specularCoords)) specularColor *= specularTexel;
#endif
  vec3 mirrored = mirror;
#ifdef SPECULAR_MAP
  if (Covers(2, specularCoords)) mirrored *= specularTexel;
#endif
#ifdef METALNESS_MAP
  vec3 metalTexel = texture(metalnessMap, metalnessCoords).rgb;
  if (Covers(5, metalnessCoords)) {
    float metalness = clamp(dataScales.x * metalTexel.b, 0.0, 1.0);
    specularColor = mix(specularColor, diffuseColor, metalness);
    mirrored = mix(mirrored, diffuseColor, metalness);
    diffuseColor *= 1.0 - metalness;
  }
#endif
#ifdef ROUGHNESS_MAP
#ifdef METAL_ROUGHNESS
  float roughTexel = metalTexel.g;
#else
  float roughTexel = texture(roughnessMap, roughnessCoords).g;
#endif
  SetRoughness(clamp(dataScales.y * (Covers(6, roughnessCoords) ? roughTexel : 1.0), 0.0, 1.0));
#endif
  float open = 1.0;
#ifdef OCCLUSION_MAP
  float occlusionTexel = texture(occlusionMap, occlusionCoords).r;
  if (Covers(7, occlusionCoords)) open = mix(1.0, occlusionTexel, dataScales.z);
  ambientColor *= open;
#endif
  vec3 emission = emissive;
#ifdef EMISSIVE_MAP
  vec3 emissiveTexel = texture(emissiveMap, emissiveCoords).rgb;
  if (Covers(3, emissiveCoords)) emission *= emissiveTexel;
#endif

  vec3 fleck = n;
#ifdef FLECKS
  fleck = normalize(n + fleckPerturbation * GetTilt());
#endif
  vec3 arriving = vec3(0.0);
  vec3 highlight = vec3(0.0);
#ifdef LIT
#if DIRECTIONAL_COUNT > 0
  for (int i = 0; i < DIRECTIONAL_COUNT; ++i) {
    float cosine = max(-dot(n, lampDirection[i]), 0.0);
    arriving += lampColor[i] * Scatter(n, -lampDirection[i], toViewpoint, cosine);
#ifdef SHINY
    highlight += lampColor[i] * Highlight(specularColor, n, fleck, -lampDirection[i], toViewpoint, cosine);
#endif
  }
#endif
#ifdef LOCAL_LAMPS
  for (int i = DIRECTIONAL_COUNT; i < lampCount; ++i) {
    vec3 toLamp = lampPosition[i] - worldPosition;
    float distance = length(toLamp);
    vec3 l = toLamp / max(distance, 1e-30);
    float strength = Attenuation(i, distance);
    if (lampType[i] == kSpot) {
      strength *= smoothstep(lampCone[i].y, lampCone[i].x, dot(-l, lampDirection[i]));
    }
    float cosine = max(dot(n, l), 0.0);
    arriving += lampColor[i] * strength * Scatter(n, l, toViewpoint, cosine);
#ifdef SHINY
    highlight += lampColor[i] * strength * Highlight(specularColor, n, fleck, l, toViewpoint, cosine);
#endif
  }
#endif
#endif
#ifdef IRRADIANCE
  arriving += open * irradiance * Irradiance(n);
#endif
#ifdef LINES
  vec3 diffuseLight = emission + diffuseColor;
#else
  vec3 diffuseLight = ambientColor + emission + diffuseColor * (diffuseWeight * arriving);
#endif
#ifdef COAT
  float coat = Schlick(coatReflectance, dot(n, toViewpoint));
  diffuseLight *= 1.0 - coat;
#endif
#ifdef REFLECTION
  vec3 grazing = vec3(fresnel.x);
#ifdef ROUGHNESS_MAP
  // A rough surface never mirrors all: S. Lagarde, Memo on Fresnel equations, 2013.
  grazing = max(vec3(mostMirrored), mirrored);
#endif
  mirrored = mix(mirrored, grazing, pow(1.0 - clamp(dot(n, toViewpoint), 0.0, 1.0), 5.0));
  vec3 direction = reflect(-toViewpoint, n);
  vec3 image = open * reflection * max(fresnel.z + fresnel.y * mirrored, 0.0) * SampleEnvironment(direction, mirrorLod);
#ifdef COAT
  image = (1.0 - coat) * image + reflection * coat * SampleEnvironment(direction, 0.0);
#endif
  highlight += image;
#endif
  // A highlight is seen on glass that is otherwise invisible.
  highlight = max(highlight, 0.0);
  vec3 c = ApplyExposure(diffuseLight + highlight);
#ifdef BLEND
  alpha = clamp(max(alpha, max(highlight.r, max(highlight.g, highlight.b))), 0.0, 1.0);
  result = vec4(min(c, 1.0) * alpha, alpha);
#else
  result = vec4(min(c, 1.0), 1.0);
#ifdef GLOW
  result.a = max(max(c.r, max(c.g, c.b)) - 1.0, 0.0);
#endif
#endif
}
)";

}  // namespace

std::string MakeSurfaceVertexShader(NSurfaceKey const& key) {
  return MakeHead(key) + kSurfaceVertexShader;
}

std::string MakeSurfaceFragmentShader(NSurfaceKey const& key) {
  return MakeHead(key) + kSurfaceFragmentShader;
}

char const* const kFlatVertexShader = R"(#version 330 core
layout(location = 0) in vec3 position;
layout(location = 9) in mat4 world;
layout(location = 13) in vec4 color;
uniform mat4 viewProjection;
uniform vec2 depthRange;
flat out vec4 instanceColor;

void main() {
  instanceColor = color;
  gl_Position = viewProjection * (world * vec4(position, 1.0));
  gl_Position.z = depthRange.x * gl_Position.z + depthRange.y * gl_Position.w;
}
)";

char const* const kFlatFragmentShader = R"(#version 330 core
flat in vec4 instanceColor;
out vec4 result;
void main() { result = instanceColor; }
)";

char const* const kBackgroundVertexShader = R"(#version 330 core
out vec2 clipPosition;
void main() {
  clipPosition = vec2(gl_VertexID == 1 ? 3.0 : -1.0, gl_VertexID == 2 ? 3.0 : -1.0);
  gl_Position = vec4(clipPosition, 1.0, 1.0);
}
)";

std::string MakeBackgroundFragmentShader(NBackgroundKey const& key) {
  std::string head = kVersion;
  head += "#define PROJECTION ";
  head += std::to_string(key.projection);
  head += '\n';
  if (key.mapsTones) head += "#define TONE_MAPPING\n";
  if (key.hasGamma) head += "#define GAMMA\n";
  return head + R"(
in vec2 clipPosition;
out vec4 result;
uniform mat4 clipToWorld;  // without the camera's position
uniform bool isPerspective;
uniform mat3 environmentRotation;
uniform samplerCube environmentCube;
uniform sampler2D environmentImage;
uniform float exposure;
uniform float gamma;
uniform float white;

void main() {
#if PROJECTION == 3
  vec3 c = texture(environmentImage, 0.5 + 0.5 * clipPosition).rgb;
#else
  vec4 near = clipToWorld * vec4(clipPosition, 0.0, 1.0);
  vec4 far = clipToWorld * vec4(clipPosition, 1.0, 1.0);
  vec3 direction = near.xyz / near.w;
  if (!isPerspective) direction = far.xyz / far.w - direction;
  vec3 d = normalize(environmentRotation * direction);
#if PROJECTION == 0
  vec3 c = texture(environmentCube, d).rgb;
#elif PROJECTION == 1
  vec3 c = textureLod(environmentImage, vec2(atan(d.x, -d.z) / 6.2831853 + 0.5, asin(d.y) / 3.1415927 + 0.5), 0.0).rgb;
#else
  float sine = length(d.xy);
  vec2 around = sine > 0.0 ? d.xy / sine : vec2(0.0);
  vec3 c = textureLod(environmentImage, 0.5 + around * acos(clamp(-d.z, -1.0, 1.0)) / 6.2831853, 0.0).rgb;
#endif
#endif
  c = max(c * exposure, 0.0);
#ifdef TONE_MAPPING
  c = c * (1.0 + c / (white * white)) / (1.0 + c);
#endif
#ifdef GAMMA
  c = pow(c, vec3(1.0 / gamma));
#endif
  // As with a surface, alpha is what is above white.
  result = vec4(min(c, 1.0), max(max(c.r, max(c.g, c.b)) - 1.0, 0.0));
}
)";
}

}  // namespace corvanta::renderer
