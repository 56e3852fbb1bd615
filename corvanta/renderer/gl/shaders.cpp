#include "corvanta/renderer/gl/shaders.h"

namespace corvanta::renderer {

char const* const kSurfaceVertexShader = R"(#version 330 core
layout(location = 0) in vec3 position;
layout(location = 1) in vec3 normal;
layout(location = 2) in vec2 coords0;
layout(location = 3) in vec2 coords1;
layout(location = 4) in vec2 coords2;
layout(location = 5) in vec2 coords3;
layout(location = 6) in vec2 coords4;
layout(location = 7) in vec3 tangent;
layout(location = 8) in vec3 binormal;

uniform mat4 world;
uniform mat3 normalWorld;
uniform mat4 viewProjection;
uniform vec2 depthRange;

out vec3 worldPosition;
out vec3 worldNormal;
out vec3 worldTangent;
out vec3 worldBinormal;
out vec2 coords[5];

void main() {
  vec4 global = world * vec4(position, 1.0);
  worldPosition = global.xyz;
  worldNormal = normalWorld * normal;
  worldTangent = mat3(world) * tangent;
  worldBinormal = mat3(world) * binormal;
  coords[0] = coords0;
  coords[1] = coords1;
  coords[2] = coords2;
  coords[3] = coords3;
  coords[4] = coords4;
  gl_Position = viewProjection * global;
  gl_Position.z = depthRange.x * gl_Position.z + depthRange.y * gl_Position.w;
}
)";

// Lambert and Blinn-Phong: J. F. Blinn, Models of light reflection for computer synthesized
// pictures, 1977. Bumps: J. F. Blinn, Simulation of wrinkled surfaces, 1978. What a smooth surface
// reflects at an angle: C. Schlick, An inexpensive BRDF model for physically-based rendering, 1994.
// Tone mapping: E. Reinhard et al., Photographic tone reproduction for digital images, 2002.
char const* const kSurfaceFragmentShader = R"(const int kSpot = 2;
const int kHeights = 1;
const int kAdd = 1;
const int kCover = 2;

in vec3 worldPosition;
in vec3 worldNormal;
in vec3 worldTangent;
in vec3 worldBinormal;
in vec2 coords[5];
out vec4 result;

uniform vec4 viewpoint;  // a position, or with w = 0 the direction to the camera
uniform vec3 diffuse;
uniform vec3 ambient;
uniform vec3 specular;
uniform vec3 emissive;
uniform float power;
uniform float opacity;

uniform int bounds;  // two bits for each: it ends at the borders of u, of v
uniform int colorOperation;
uniform int bumpContent;
uniform float bumpScale;
uniform bool opacityInAlpha;
uniform bool wireframe;  // a line has no face of its own
uniform sampler2D colorMap;
uniform sampler2D bumpMap;
uniform sampler2D specularMap;
uniform sampler2D emissiveMap;
uniform sampler2D opacityMap;

uniform int directionalCount;  // of the lamps, which come first
uniform int lampCount;
uniform int specularCount;  // directionalCount for what has highlights, otherwise 0
uniform int lampType[16];
uniform vec3 lampColor[16];
uniform vec3 lampPosition[16];
uniform vec3 lampDirection[16];
uniform vec2 lampCone[16];  // cosines of half the angles
uniform float lampRange[16];
uniform int lampAttenuation[16];

uniform float reflection;  // a factor of the reflected environment
uniform float normalReflectance;
uniform float reflectionLod;
uniform int environmentProjection;
uniform mat3 environmentRotation;
uniform samplerCube environmentCube;
uniform sampler2D environmentImage;

uniform float exposure;
uniform float gamma;
uniform float white;  // 0: no tone mapping

// A software driver runs both sides of a branch, but skips a loop without rounds. Each of these is
// 1, or 0 for what a material or the camera lacks.
uniform int used[5];  // textures
uniform int reflectionCount;
uniform int gammaCount;

// Whether a texture covers this position.
bool Covers(int slot) {
  bvec2 outside = bvec2(floor(coords[slot]));
  int ends = bounds >> 2 * slot;
  return !((ends & 1) != 0 && outside.x) && !((ends & 2) != 0 && outside.y);
}

vec3 SampleEnvironment(vec3 direction, float blur) {
  vec3 d = environmentRotation * direction;
  if (environmentProjection == 0) return textureLod(environmentCube, d, blur).rgb;
  if (environmentProjection == 1) {
    return textureLod(environmentImage, vec2(atan(d.x, -d.z) / 6.2831853 + 0.5, asin(d.y) / 3.1415927 + 0.5), blur).rgb;
  }
  float sine = length(d.xy);
  vec2 around = sine > 0.0 ? d.xy / sine : vec2(0.0);
  return textureLod(environmentImage, 0.5 + around * acos(clamp(-d.z, -1.0, 1.0)) / 6.2831853, blur).rgb;
}

vec3 GetNormal(vec3 toViewpoint) {
  vec3 face = cross(dFdx(worldPosition), dFdy(worldPosition));
  vec3 n = dot(worldNormal, worldNormal) > 0.0 ? normalize(worldNormal) : normalize(face);
  for (int once = 0; once < used[1]; ++once) {
    if (!Covers(1) || dot(worldTangent, worldTangent) == 0.0 || dot(worldBinormal, worldBinormal) == 0.0) break;
    vec3 t = normalize(worldTangent);
    vec3 b = normalize(worldBinormal);
    if (bumpContent == kHeights) {
      vec2 texel = 1.0 / vec2(textureSize(bumpMap, 0));
      vec2 at = coords[1];
      float du = texture(bumpMap, at + vec2(texel.x, 0.0)).r - texture(bumpMap, at - vec2(texel.x, 0.0)).r;
      float dv = texture(bumpMap, at + vec2(0.0, texel.y)).r - texture(bumpMap, at - vec2(0.0, texel.y)).r;
      n = normalize(n - bumpScale * 2.0 * (du * t + dv * b));
    } else {
      vec3 m = texture(bumpMap, coords[1]).xyz * 2.0 - 1.0;
      n = normalize(m.x * bumpScale * t + m.y * bumpScale * b + m.z * n);
    }
  }
  // Both sides are seen; the one towards the camera is lit.
  float side = wireframe || dot(face, face) == 0.0 ? dot(n, toViewpoint) : dot(n, face);
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
  if (white > 0.0) c = c * (1.0 + c / (white * white)) / (1.0 + c);
  for (int once = 0; once < gammaCount; ++once) c = pow(c, vec3(1.0 / gamma));
  return min(c, 1.0);
}

vec3 Highlight(vec3 n, vec3 l, vec3 toViewpoint, float cosine) {
  vec3 halfway = l + toViewpoint;
  float cosineToHalf = max(dot(n, halfway), 0.0) * inversesqrt(max(dot(halfway, halfway), 1e-12));
  return vec3(pow(cosineToHalf, power) * cosine);
}

void main() {
  vec3 toViewpoint = normalize(viewpoint.xyz - worldPosition * viewpoint.w);
  vec3 n = GetNormal(toViewpoint);
  vec3 diffuseColor = diffuse;
  vec3 ambientColor = ambient;
  float alpha = opacity;
  for (int once = 0; once < used[0]; ++once) {
    vec4 texel = texture(colorMap, coords[0]);
    if (!Covers(0)) break;
    if (colorOperation == kAdd) {
      diffuseColor += texel.rgb;
      ambientColor += ambient * texel.rgb;
    } else if (colorOperation == kCover) {
      diffuseColor = mix(diffuseColor, texel.rgb, texel.a);
      alpha *= texel.a;
    } else {
      diffuseColor *= texel.rgb;
      ambientColor *= texel.rgb;
      alpha *= texel.a;
    }
  }
  for (int once = 0; once < used[4]; ++once) {
    vec4 texel = texture(opacityMap, coords[4]);
    if (Covers(4)) alpha *= opacityInAlpha ? texel.a : texel.r;
  }
#ifdef ALPHA_TEST
  if (alpha < 1.0 / 255.0) discard;
#endif
  vec3 specularColor = specular;
  vec3 emission = emissive;
  for (int once = 0; once < used[2]; ++once) {
    vec3 texel = texture(specularMap, coords[2]).rgb;
    if (Covers(2)) specularColor *= texel;
  }
  for (int once = 0; once < used[3]; ++once) {
    vec3 texel = texture(emissiveMap, coords[3]).rgb;
    if (Covers(3)) emission *= texel;
  }

  vec3 diffuseLight = ambientColor + emission;
  vec3 highlight = vec3(0.0);
  for (int i = 0; i < directionalCount; ++i) {
    diffuseLight += diffuseColor * lampColor[i] * max(-dot(n, lampDirection[i]), 0.0);
  }
  for (int i = 0; i < specularCount; ++i) {
    float cosine = max(-dot(n, lampDirection[i]), 0.0);
    highlight += specularColor * lampColor[i] * Highlight(n, -lampDirection[i], toViewpoint, cosine);
  }
  for (int i = directionalCount; i < lampCount; ++i) {
    vec3 toLamp = lampPosition[i] - worldPosition;
    float distance = length(toLamp);
    vec3 l = toLamp / max(distance, 1e-30);
    float strength = Attenuation(i, distance);
    if (lampType[i] == kSpot) {
      strength *= smoothstep(lampCone[i].y, lampCone[i].x, dot(-l, lampDirection[i]));
    }
    float cosine = max(dot(n, l), 0.0);
    diffuseLight += diffuseColor * lampColor[i] * strength * cosine;
    highlight += specularColor * lampColor[i] * strength * Highlight(n, l, toViewpoint, cosine);
  }
  for (int once = 0; once < reflectionCount; ++once) {
    float fresnel = mix(normalReflectance, 1.0, pow(1.0 - clamp(dot(n, toViewpoint), 0.0, 1.0), 5.0));
    highlight += reflection * fresnel * SampleEnvironment(reflect(-toViewpoint, n), reflectionLod);
  }
  // A highlight is seen on glass that is otherwise invisible.
  highlight = max(highlight, 0.0);
  alpha = clamp(max(alpha, max(highlight.r, max(highlight.g, highlight.b))), 0.0, 1.0);
  result = vec4(ApplyExposure(diffuseLight + highlight) * alpha, alpha);
}
)";

char const* const kFlatFragmentShader = R"(#version 330 core
out vec4 result;
uniform vec4 color;
void main() { result = color; }
)";

char const* const kBackgroundVertexShader = R"(#version 330 core
out vec2 clipPosition;
void main() {
  clipPosition = vec2(gl_VertexID == 1 ? 3.0 : -1.0, gl_VertexID == 2 ? 3.0 : -1.0);
  gl_Position = vec4(clipPosition, 1.0, 1.0);
}
)";

char const* const kBackgroundFragmentShader = R"(#version 330 core
in vec2 clipPosition;
out vec4 result;
uniform mat4 clipToWorld;  // without the camera's position
uniform bool isPerspective;
uniform int environmentProjection;  // 3: a picture that fills the view
uniform mat3 environmentRotation;
uniform samplerCube environmentCube;
uniform sampler2D environmentImage;
uniform float exposure;
uniform float gamma;
uniform float white;

void main() {
  vec4 near = clipToWorld * vec4(clipPosition, 0.0, 1.0);
  vec4 far = clipToWorld * vec4(clipPosition, 1.0, 1.0);
  vec3 direction = near.xyz / near.w;
  if (!isPerspective) direction = far.xyz / far.w - direction;
  vec3 d = normalize(environmentRotation * direction);
  vec3 c;
  if (environmentProjection == 0) {
    c = texture(environmentCube, d).rgb;
  } else if (environmentProjection == 1) {
    c = textureLod(environmentImage, vec2(atan(d.x, -d.z) / 6.2831853 + 0.5, asin(d.y) / 3.1415927 + 0.5), 0.0).rgb;
  } else if (environmentProjection == 2) {
    float sine = length(d.xy);
    vec2 around = sine > 0.0 ? d.xy / sine : vec2(0.0);
    c = textureLod(environmentImage, 0.5 + around * acos(clamp(-d.z, -1.0, 1.0)) / 6.2831853, 0.0).rgb;
  } else {
    c = texture(environmentImage, 0.5 + 0.5 * clipPosition).rgb;
  }
  c = max(c * exposure, 0.0);
  if (white > 0.0) c = c * (1.0 + c / (white * white)) / (1.0 + c);
  result = vec4(min(pow(c, vec3(1.0 / gamma)), 1.0), 1.0);
}
)";

}  // namespace corvanta::renderer
