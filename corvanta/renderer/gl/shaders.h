#pragma once

/// The sources of the shaders, and what they and the C++ code agree on. Matrices come as the
/// library holds them: its rows, which row vectors are multiplied from the left, are the columns of
/// the shading language.
namespace corvanta::renderer {

extern char const* const kSurfaceVertexShader;
/// Without its version line. With ALPHA_TEST it discards what is wholly transparent, which keeps a
/// driver from testing the depth first.
extern char const* const kSurfaceFragmentShader;
extern char const* const kFlatFragmentShader;
extern char const* const kBackgroundVertexShader;
extern char const* const kBackgroundFragmentShader;

/// The textures of a surface, in the order of their units and coordinates.
enum NTextureSlot : unsigned {
  NTS_COLOR,
  NTS_BUMP,
  NTS_SPECULAR,
  NTS_EMISSIVE,
  NTS_OPACITY,
  NTS_COUNT,
};
inline constexpr NTextureSlot kTextureSlots[] = {NTS_COLOR, NTS_BUMP, NTS_SPECULAR, NTS_EMISSIVE,
                                                 NTS_OPACITY};
static_assert(sizeof kTextureSlots / sizeof *kTextureSlots == NTS_COUNT);

/// The texture units of an environment: as a cube map, as a flat picture.
inline constexpr int kEnvironmentCubeUnit = 5;
inline constexpr int kEnvironmentImageUnit = 6;
inline constexpr unsigned kUnitCount = 7;
inline constexpr unsigned kLampCount = 16;
/// So many of the first lamps can make shadows: a stencil's eight bits, less the floor's.
inline constexpr unsigned kShadowCount = 7;

/// The locations of a vertex's attributes; a slot's coordinates are at kFirstCoords + slot.
inline constexpr unsigned kPosition = 0;
inline constexpr unsigned kNormal = 1;
inline constexpr unsigned kFirstCoords = 2;
inline constexpr unsigned kTangent = 7;
inline constexpr unsigned kBinormal = 8;

}  // namespace corvanta::renderer
