#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <tuple>
#include <type_traits>

#include "corvanta/importer/NUpAxis.h"

/// What a model file holds, in one form for all readers: flat records that name each other by
/// number, so that a scene can pass between processes as one block of bytes. NSceneWriter makes
/// such a block, NSceneView checks and reads it.
///
/// Units: matrices are for row vectors, row after row; texture coordinates u, v, w; angles in
/// radians; colours from 0 to 1.
namespace corvanta::importer::neutral {

/// Consecutive elements of the scene's one array of `T`.
template <class T>
struct NRange {
  std::uint64_t first = 0;
  std::uint64_t count = 0;
};

using NText = NRange<char>;  // UTF-8, as far as the file is
using NTriple = std::array<float, 3>;
using NTexel = std::array<std::uint8_t, 4>;  // display values (sRGB) and an opacity
using NTriangle = std::array<std::uint32_t, 3>;
using NBytes = NRange<std::uint8_t>;
using NNumbers = NRange<std::uint32_t>;

/// The number of what isn't there.
inline constexpr std::uint32_t kNone = 0xFFFFFFFF;
/// How many nodes a scene may have together with the meshes, lights and cameras at them.
inline constexpr std::size_t kMostItems = 2'000'000;
inline constexpr std::size_t kMostUvSets = 8;
inline constexpr std::size_t kMostVariants = 256;
inline constexpr std::size_t kMostTargets = 4096;  // of a mesh

/// The nodes stand level by level: behind the root its children, behind these the children of the
/// first of them, and so on.
struct NNode {
  NText name;
  std::array<float, 16> transform;
  NNumbers meshes, lights, cameras;
  std::uint64_t childCount;
  NNumbers skins;         // none, or one a mesh; kNone for a mesh without
  NRange<float> weights;  // of the morph targets of its meshes; those that aren't there are 0
};

/// A choice of materials for the whole scene.
struct NVariant {
  NText name;
};
struct NVariantUse {
  std::uint32_t variant;
  std::uint32_t material;
};

/// What a joint of a skin has of a vertex.
struct NInfluence {
  std::uint32_t vertex;
  std::uint32_t joint;  // a place in a skin, which may have fewer
  float weight;         // above 0
};
struct NJoint {
  std::uint32_t node;          // kNone if the scene doesn't have it
  std::array<float, 16> bind;  // from the frame of the mesh to that of the joint
};
/// Moves the meshes that stand with it at a node, whose own place then counts for nothing.
struct NSkin {
  NRange<NJoint> joints;
};

/// What a morph target adds to a vertex where its weight is 1.
struct NOffset {
  std::uint32_t vertex;
  NTriple position, normal;
};
struct NMorphTarget {
  NRange<NOffset> offsets;
};

/// A line is the triangle of its first and twice its second end, a point that of thrice itself; a
/// mesh has either these alone or none of them.
struct NMesh {
  NText name;
  std::uint64_t material;
  NRange<NTriple> positions;
  NRange<NTriple> normals;  // none, or one a position
  std::array<NRange<NTriple>, kMostUvSets> uvs;
  std::uint64_t uvSetCount;
  NRange<NTexel> colors;  // none, or one a position; see NTexture
  NRange<NTriangle> triangles;
  NRange<NVariantUse> variants;   // those in which its material is another one
  std::uint64_t isFlat;           // whether faces without normals are flat
  NRange<NInfluence> influences;  // in any order
  NRange<NMorphTarget> targets;
};

template <class T>
struct NMaybe {
  T value;
  std::uint32_t isSet;
  void operator=(T const& v) {
    value = v;
    isSet = 1;
  }
};

/// A picture of a material. One of kNone stands for the colours of a mesh's vertices, where it has
/// some.
struct NTexture {
  std::uint32_t use;  // an NTextureUse
  std::uint32_t picture;
  std::uint32_t uvSet;
  std::uint32_t operation;  // of the texture's node; see NMaterialOptions.h
  float scale;              // of heights, normals, metalness, roughness or occlusion
};

/// What isn't set is the importer's to choose.
struct NMaterial {
  NText name;
  NMaybe<NTriple> diffuse, ambient, specular, emissive;
  NMaybe<float> shininess, opacity;
  NMaybe<float> roughness, refractiveIndex, clearcoatIndex;
  NMaybe<float> reflection;  // a factor of the mirrored surroundings
  NRange<NTexture> textures;
  std::uint64_t isOneSided;  // whether its back faces aren't seen
};

/// A picture in the file itself has bytes and an extension that says how to decode them; the name
/// of any other is the path by which the file calls it.
struct NPicture {
  NText name;
  std::uint64_t isEmbedded;
  NText extension;
  NBytes bytes;
};

enum NLightKind : std::uint64_t { NLK_OTHER, NLK_DIRECTIONAL, NLK_POINT, NLK_SPOT };

/// Position and direction are in the frame of its node.
struct NLight {
  NText name;
  std::uint64_t kind;
  NTriple position, direction, color;
  float innerAngle, outerAngle;
};

struct NCamera {
  NText name;
  NTriple position, ahead, up;
  float horizontalAngle;    // 0 where the file doesn't say
  float aspect;             // 0 where the file doesn't say
  float orthographicWidth;  // half of what is seen; 0 for a perspective
};

/// Keys are linear.
/// Units: time in ticks of the animation.
struct NTripleKey {
  double time;
  NTriple value;
};
struct NTurnKey {
  double time;
  std::array<float, 4> value;  // a quaternion, the vector part first
};

struct NWeightKey {
  double time;
  double value;
};

/// The weight of a morph target of the meshes at a node.
struct NWeightChannel {
  NText nodeName;
  std::uint32_t node;  // kNone if the scene doesn't have it
  std::uint32_t target;
  NRange<NWeightKey> keys;
};

struct NChannel {
  NText nodeName;
  std::uint64_t node;  // kNone if the scene doesn't have it
  NRange<NTripleKey> positions;
  NRange<NTurnKey> rotations;
  NRange<NTripleKey> scales;
};

struct NAnimation {
  NText name;
  double ticksPerSecond;  // 0 where the file doesn't say
  double duration;        // ticks
  NRange<NChannel> channels;
  std::uint64_t unreadChannelCount;  // those that aren't here
  NText firstUnread;                 // which is the first of them, and why
  NRange<NWeightChannel> weights;
};

/// Every kind of element that a scene has an array of.
using NElements =
    std::tuple<char, std::uint8_t, std::uint32_t, NTriple, NTexel, NTriangle, NTripleKey, NTurnKey,
               NTexture, NNode, NMesh, NMaterial, NPicture, NLight, NCamera, NChannel, NAnimation,
               NText, NVariant, NVariantUse, float, NInfluence, NJoint, NSkin, NOffset,
               NMorphTarget, NWeightKey, NWeightChannel>;

template <class T, class... Kinds>
constexpr std::size_t FindKind(std::tuple<Kinds...> const*) {
  std::size_t number = 0;
  (void)((std::is_same_v<T, Kinds> || (++number, false)) || ...);
  return number;
}
/// The number of `T` among them.
template <class T>
inline constexpr std::size_t kKind = FindKind<T>(static_cast<NElements const*>(nullptr));

/// The block begins with this; the arrays follow, each at a multiple of eight.
struct NHeader {
  static constexpr std::uint64_t kMark = 0x3365'6E65'6373'7663;  // "cvscene3"

  struct Array {
    std::uint64_t offset;  // bytes from the beginning
    std::uint64_t count;
  };

  std::uint64_t mark = kMark;
  std::uint64_t up = NUA_Y;  // an NUpAxis
  double unit = 1.0;         // metres
  std::array<Array, std::tuple_size_v<NElements>> arrays{};
};

}  // namespace corvanta::importer::neutral
