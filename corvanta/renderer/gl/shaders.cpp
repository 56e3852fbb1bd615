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

out vec3 place;
out vec3 normalAt;
out vec3 tangentAt;
out vec3 binormalAt;
out vec2 coords[5];

void main() {
  vec4 global = world * vec4(position, 1.0);
  place = global.xyz;
  normalAt = normalWorld * normal;
  tangentAt = mat3(world) * tangent;
  binormalAt = mat3(world) * binormal;
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
// mirrors at an angle: C. Schlick, An inexpensive BRDF model for physically-based rendering, 1994.
// Tone mapping: E. Reinhard et al., Photographic tone reproduction for digital images, 2002.
char const* const kSurfaceFragmentShader = R"(const int kSpot = 2;
const int kHeights = 1;
const int kAdd = 1;
const int kCover = 2;

in vec3 place;
in vec3 normalAt;
in vec3 tangentAt;
in vec3 binormalAt;
in vec2 coords[5];
out vec4 result;

uniform vec4 eye;  // a place, or with w = 0 the direction to the camera
uniform vec3 diffuse;
uniform vec3 ambient;
uniform vec3 specular;
uniform vec3 emissive;
uniform float power;
uniform float opacity;

uniform int bounds;  // two bits for each: it ends at the borders of u, of v
uniform int colorOperation;
uniform int bumpKind;
uniform float bumpScale;
uniform bool opacityInAlpha;
uniform bool wired;  // a line has no face
uniform sampler2D colorMap;
uniform sampler2D bumpMap;
uniform sampler2D specularMap;
uniform sampler2D emissiveMap;
uniform sampler2D opacityMap;

uniform int farCount;  // directional lamps, which come first
uniform int lampCount;
uniform int shineCount;  // farCount for what has highlights, otherwise 0
uniform int lampKind[7];
uniform vec3 lampColor[7];
uniform vec3 lampPlace[7];
uniform vec3 lampDirection[7];
uniform vec2 lampCone[7];  // cosines of half the angles
uniform float lampRange[7];
uniform int lampFade[7];

uniform float mirror;  // how much of the surroundings a surface reflects
uniform float mirrorFloor;
uniform float mirrorBlur;
uniform int skyKind;
uniform mat3 skyTurn;
uniform samplerCube skyCube;
uniform sampler2D skyFlat;

uniform float exposure;
uniform float gamma;
uniform float white;  // 0: no tone mapping

// A processor that draws goes both ways at a branch, but leaves out a loop without rounds. These
// are 1, or 0 for what there isn't.
uniform int used[5];  // textures
uniform int mirrorCount;
uniform int gammaCount;

// Whether a texture covers this place.
bool Covers(int slot) {
  bvec2 outside = bvec2(floor(coords[slot]));
  int ends = bounds >> 2 * slot;
  return !((ends & 1) != 0 && outside.x) && !((ends & 2) != 0 && outside.y);
}

vec3 Surroundings(vec3 direction, float blur) {
  vec3 d = skyTurn * direction;
  if (skyKind == 0) return textureLod(skyCube, d, blur).rgb;
  if (skyKind == 1) {
    return textureLod(skyFlat, vec2(atan(d.x, -d.z) / 6.2831853 + 0.5, asin(d.y) / 3.1415927 + 0.5), blur).rgb;
  }
  float flat2 = length(d.xy);
  vec2 around = flat2 > 0.0 ? d.xy / flat2 : vec2(0.0);
  return textureLod(skyFlat, 0.5 + around * acos(clamp(-d.z, -1.0, 1.0)) / 6.2831853, blur).rgb;
}

vec3 Normal(vec3 towards) {
  vec3 face = cross(dFdx(place), dFdy(place));
  vec3 n = dot(normalAt, normalAt) > 0.0 ? normalize(normalAt) : normalize(face);
  for (int once = 0; once < used[1]; ++once) {
    if (!Covers(1) || dot(tangentAt, tangentAt) == 0.0 || dot(binormalAt, binormalAt) == 0.0) break;
    vec3 t = normalize(tangentAt);
    vec3 b = normalize(binormalAt);
    if (bumpKind == kHeights) {
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
  float side = wired || dot(face, face) == 0.0 ? dot(n, towards) : dot(n, face);
  return side < 0.0 ? -n : n;
}

float Fade(int lamp, float distance) {
  float part = clamp(distance / lampRange[lamp], 0.0, 1.0);
  if (lampFade[lamp] == 1) return 1.0 - part;
  if (lampFade[lamp] == 2) return (1.0 - part) * (1.0 - part);
  float square = part * part;
  float edge = 1.0 - square * square;
  return edge * edge;
}

vec3 Display(vec3 light) {
  vec3 c = max(light * exposure, 0.0);
  if (white > 0.0) c = c * (1.0 + c / (white * white)) / (1.0 + c);
  for (int once = 0; once < gammaCount; ++once) c = pow(c, vec3(1.0 / gamma));
  return min(c, 1.0);
}

vec3 Highlight(vec3 n, vec3 l, vec3 towards, float facing) {
  vec3 halfway = l + towards;
  float turned = max(dot(n, halfway), 0.0) * inversesqrt(max(dot(halfway, halfway), 1e-12));
  return vec3(pow(turned, power) * facing);
}

void main() {
  vec3 towards = normalize(eye.xyz - place * eye.w);
  vec3 n = Normal(towards);
  vec3 base = diffuse;
  vec3 around = ambient;
  float alpha = opacity;
  for (int once = 0; once < used[0]; ++once) {
    vec4 texel = texture(colorMap, coords[0]);
    if (!Covers(0)) break;
    if (colorOperation == kAdd) {
      base += texel.rgb;
      around += ambient * texel.rgb;
    } else if (colorOperation == kCover) {
      base = mix(base, texel.rgb, texel.a);
      alpha *= texel.a;
    } else {
      base *= texel.rgb;
      around *= texel.rgb;
      alpha *= texel.a;
    }
  }
  for (int once = 0; once < used[4]; ++once) {
    vec4 texel = texture(opacityMap, coords[4]);
    if (Covers(4)) alpha *= opacityInAlpha ? texel.a : texel.r;
  }
#ifdef HAS_HOLES
  if (alpha < 1.0 / 255.0) discard;
#endif
  vec3 shine = specular;
  vec3 glow = emissive;
  for (int once = 0; once < used[2]; ++once) {
    vec3 texel = texture(specularMap, coords[2]).rgb;
    if (Covers(2)) shine *= texel;
  }
  for (int once = 0; once < used[3]; ++once) {
    vec3 texel = texture(emissiveMap, coords[3]).rgb;
    if (Covers(3)) glow *= texel;
  }

  vec3 spread = around + glow;
  vec3 highlight = vec3(0.0);
  for (int i = 0; i < farCount; ++i) {
    spread += base * lampColor[i] * max(-dot(n, lampDirection[i]), 0.0);
  }
  for (int i = 0; i < shineCount; ++i) {
    float facing = max(-dot(n, lampDirection[i]), 0.0);
    highlight += shine * lampColor[i] * Highlight(n, -lampDirection[i], towards, facing);
  }
  for (int i = farCount; i < lampCount; ++i) {
    vec3 way = lampPlace[i] - place;
    float distance = length(way);
    vec3 l = way / max(distance, 1e-30);
    float reach = Fade(i, distance);
    if (lampKind[i] == kSpot) {
      reach *= smoothstep(lampCone[i].y, lampCone[i].x, dot(-l, lampDirection[i]));
    }
    float facing = max(dot(n, l), 0.0);
    spread += base * lampColor[i] * reach * facing;
    highlight += shine * lampColor[i] * reach * Highlight(n, l, towards, facing);
  }
  for (int once = 0; once < mirrorCount; ++once) {
    float grazing = mix(mirrorFloor, 1.0, pow(1.0 - clamp(dot(n, towards), 0.0, 1.0), 5.0));
    highlight += mirror * grazing * Surroundings(reflect(-towards, n), mirrorBlur);
  }
  // A highlight is seen on glass that is otherwise clear.
  highlight = max(highlight, 0.0);
  alpha = clamp(max(alpha, max(highlight.r, max(highlight.g, highlight.b))), 0.0, 1.0);
  result = vec4(Display(spread + highlight) * alpha, alpha);
}
)";

char const* const kFlatFragmentShader = R"(#version 330 core
out vec4 result;
uniform vec4 color;
void main() { result = color; }
)";

char const* const kSkyVertexShader = R"(#version 330 core
out vec2 point;
void main() {
  point = vec2(gl_VertexID == 1 ? 3.0 : -1.0, gl_VertexID == 2 ? 3.0 : -1.0);
  gl_Position = vec4(point, 1.0, 1.0);
}
)";

char const* const kSkyFragmentShader = R"(#version 330 core
in vec2 point;
out vec4 result;
uniform mat4 fromView;  // to global directions
uniform bool isPerspective;  // from an eye at 0
uniform int skyKind;  // 3: a picture that fills the view
uniform mat3 skyTurn;
uniform samplerCube skyCube;
uniform sampler2D skyFlat;
uniform float exposure;
uniform float gamma;
uniform float white;

void main() {
  vec4 near = fromView * vec4(point, 0.0, 1.0);
  vec4 far = fromView * vec4(point, 1.0, 1.0);
  vec3 way = near.xyz / near.w;
  if (!isPerspective) way = far.xyz / far.w - way;
  vec3 d = normalize(skyTurn * way);
  vec3 c;
  if (skyKind == 0) {
    c = texture(skyCube, d).rgb;
  } else if (skyKind == 1) {
    c = textureLod(skyFlat, vec2(atan(d.x, -d.z) / 6.2831853 + 0.5, asin(d.y) / 3.1415927 + 0.5), 0.0).rgb;
  } else if (skyKind == 2) {
    float flat2 = length(d.xy);
    vec2 around = flat2 > 0.0 ? d.xy / flat2 : vec2(0.0);
    c = textureLod(skyFlat, 0.5 + around * acos(clamp(-d.z, -1.0, 1.0)) / 6.2831853, 0.0).rgb;
  } else {
    c = texture(skyFlat, 0.5 + 0.5 * point).rgb;
  }
  c = max(c * exposure, 0.0);
  if (white > 0.0) c = c * (1.0 + c / (white * white)) / (1.0 + c);
  result = vec4(min(pow(c, vec3(1.0 / gamma)), 1.0), 1.0);
}
)";

}  // namespace corvanta::renderer
