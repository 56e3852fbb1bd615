#pragma once

/// The sources of the shaders. Matrices come as the library holds them: its rows, which row vectors
/// are multiplied from the left, are the columns of the shading language.
namespace corvanta::renderer {

extern char const* const kSurfaceVertexShader;
/// Behind its version line. With HAS_HOLES it leaves out what is clear, which keeps a driver from
/// leaving out what is hidden.
extern char const* const kSurfaceFragmentShader;
extern char const* const kFlatFragmentShader;
extern char const* const kSkyVertexShader;
extern char const* const kSkyFragmentShader;

/// The textures of a surface, in the order of their units and coordinates.
enum NSlot : unsigned {
  NS_COLOR,
  NS_BUMP,
  NS_SPECULAR,
  NS_EMISSIVE,
  NS_OPACITY,
  NS_COUNT,
};
/// The units of the surroundings: a cube map, a flat picture.
inline constexpr int kCubeUnit = 5;
inline constexpr int kFlatUnit = 6;
inline constexpr unsigned kUnitCount = 7;
inline constexpr unsigned kLampCount = 7;

/// Where the vertex shader reads a vertex; a slot's coordinates stand at kFirstCoords + slot.
inline constexpr unsigned kPosition = 0;
inline constexpr unsigned kNormal = 1;
inline constexpr unsigned kFirstCoords = 2;
inline constexpr unsigned kTangent = 7;
inline constexpr unsigned kBinormal = 8;

}  // namespace corvanta::renderer
