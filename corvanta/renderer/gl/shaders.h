#pragma once

#include <array>
#include <compare>
#include <string>

/// The sources of the shaders, and what they and the C++ code agree on. Matrices come as the
/// library holds them: its rows, which row vectors are multiplied from the left, are the columns of
/// the shading language.
namespace corvanta::renderer {

/// What a surface needs of its shaders. A software driver runs both sides of a branch, so that
/// there is a program for each set of these: a surface pays for what it uses alone.
enum NSurfaceFeature : unsigned {
  NSF_COLOR_MAP = 1u << 0,  ///< the maps are in the order of NTextureSlot
  NSF_BUMP_MAP = 1u << 1,
  NSF_SPECULAR_MAP = 1u << 2,
  NSF_EMISSIVE_MAP = 1u << 3,
  NSF_OPACITY_MAP = 1u << 4,
  NSF_METALNESS_MAP = 1u << 5,
  NSF_ROUGHNESS_MAP = 1u << 6,
  NSF_OCCLUSION_MAP = 1u << 7,
  NSF_METAL_ROUGHNESS = 1u << 8,  ///< the maps of metalness and roughness are one
  NSF_BOUNDS = 1u << 9,           ///< a texture ends at its borders
  NSF_LIT = 1u << 10,             ///< lamps light it
  NSF_HIGHLIGHTS = 1u << 11,
  NSF_REFLECTION = 1u << 12,  ///< it mirrors an environment
  NSF_IRRADIANCE = 1u << 13,  ///< an environment lights it
  NSF_CUBE = 1u << 14,        ///< the environment is a cube map
  NSF_CONTRAST = 1u << 15,    ///< of the environment's light
  NSF_ROUGH = 1u << 16,
  NSF_COAT = 1u << 17,
  NSF_FLECKS = 1u << 18,
  NSF_BLEND = 1u << 19,      ///< what is behind shines through
  NSF_MASK = 1u << 20,       ///< it is cut off by its opacity
  NSF_WIREFRAME = 1u << 21,  ///< a line has no face of its own
  NSF_TONE_MAPPING = 1u << 22,
  NSF_GAMMA = 1u << 23,
  NSF_GLOW = 1u << 24,   ///< the alpha of an opaque pixel is its light above white
  NSF_LINES = 1u << 25,  ///< of lines and points, which no lamp lights
};

/// Which program draws a surface.
struct NSurfaceKey {
  unsigned features = 0;     // of NSurfaceFeature
  int directionalCount = 0;  // of the lamps, which come first
  bool hasLocalLamps = false;
  /// At which of a vertex's coordinates the textures after the first five are looked up.
  std::array<unsigned char, 3> coords{};

  friend auto operator<=>(NSurfaceKey const&, NSurfaceKey const&) = default;
};

std::string MakeSurfaceVertexShader(NSurfaceKey const& key);
std::string MakeSurfaceFragmentShader(NSurfaceKey const& key);

extern char const* const kFlatVertexShader;
extern char const* const kFlatFragmentShader;
extern char const* const kBackgroundVertexShader;

/// Which program draws a background.
struct NBackgroundKey {
  int projection = 0;  // an NEnvironmentProjection
  bool mapsTones = false, hasGamma = false;

  friend auto operator<=>(NBackgroundKey const&, NBackgroundKey const&) = default;
};

std::string MakeBackgroundFragmentShader(NBackgroundKey const& key);

/// The textures of a surface, in the order of their units. A vertex has coordinates for the first
/// five; the others use those of one of these, or what it leaves free.
enum NTextureSlot : unsigned {
  NTS_COLOR,
  NTS_BUMP,
  NTS_SPECULAR,
  NTS_EMISSIVE,
  NTS_OPACITY,
  NTS_METALNESS,
  NTS_ROUGHNESS,
  NTS_OCCLUSION,
  NTS_COUNT,
};
inline constexpr NTextureSlot kTextureSlots[] = {NTS_COLOR,     NTS_BUMP,     NTS_SPECULAR,
                                                 NTS_EMISSIVE,  NTS_OPACITY,  NTS_METALNESS,
                                                 NTS_ROUGHNESS, NTS_OCCLUSION};
static_assert(sizeof kTextureSlots / sizeof *kTextureSlots == NTS_COUNT);
inline constexpr NTextureSlot kCoordsSlots[] = {NTS_COLOR, NTS_BUMP, NTS_SPECULAR, NTS_EMISSIVE,
                                                NTS_OPACITY};
inline constexpr unsigned kCoordsCount = sizeof kCoordsSlots / sizeof *kCoordsSlots;

/// The texture units of an environment: as a cube map, as a flat picture.
inline constexpr int kEnvironmentCubeUnit = NTS_COUNT;
inline constexpr int kEnvironmentImageUnit = NTS_COUNT + 1;
inline constexpr unsigned kUnitCount = NTS_COUNT + 2;
inline constexpr unsigned kLampCount = 16;
/// So many of the first lamps can make shadows: a stencil's eight bits, less the floor's.
inline constexpr unsigned kShadowCount = 7;

/// The locations of a vertex's attributes; a slot's coordinates are at kFirstCoords + slot.
inline constexpr unsigned kPosition = 0;
inline constexpr unsigned kNormal = 1;
inline constexpr unsigned kFirstCoords = 2;
inline constexpr unsigned kTangent = 7;
inline constexpr unsigned kBinormal = 8;
/// Of an instance: its transform, of four rows, and that of its normals, of three, or its colour.
inline constexpr unsigned kWorld = 9;
inline constexpr unsigned kNormalWorld = 13;
inline constexpr unsigned kColor = 13;

}  // namespace corvanta::renderer
