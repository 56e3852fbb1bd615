#include "corvanta/importer/reader/NAssimpConverter.h"

#include <assimp/material.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <iterator>
#include <string_view>
#include <type_traits>
#include <utility>

#include "corvanta/data/domain/material/NMaterialOptions.h"
#include "corvanta/data/domain/texture/NTextureUse.h"

namespace corvanta::importer::reader {

namespace {

static_assert(std::is_same_v<ai_real, float>);
static_assert(sizeof(aiVector3D) == sizeof(neutral::NTriple));

using neutral::NTriple;

using data::domain::texture::NTextureUse;
using enum data::domain::texture::NTextureUse;

constexpr std::array<std::pair<aiTextureType, NTextureUse>, 17> kUses{{
    {aiTextureType_DIFFUSE, NTU_COLOR},
    {aiTextureType_BASE_COLOR, NTU_COLOR},
    {aiTextureType_SPECULAR, NTU_SPECULAR},
    {aiTextureType_AMBIENT, NTU_AMBIENT},
    {aiTextureType_EMISSIVE, NTU_EMISSIVE},
    {aiTextureType_EMISSION_COLOR, NTU_EMISSIVE},
    {aiTextureType_HEIGHT, NTU_HEIGHT},
    {aiTextureType_DISPLACEMENT, NTU_HEIGHT},
    {aiTextureType_NORMALS, NTU_NORMAL},
    {aiTextureType_NORMAL_CAMERA, NTU_NORMAL},
    {aiTextureType_OPACITY, NTU_OPACITY},
    {aiTextureType_LIGHTMAP, NTU_LIGHTMAP},
    {aiTextureType_AMBIENT_OCCLUSION, NTU_LIGHTMAP},
    {aiTextureType_METALNESS, NTU_METALNESS},
    {aiTextureType_DIFFUSE_ROUGHNESS, NTU_ROUGHNESS},
    {aiTextureType_SHININESS, NTU_OTHER},
    {aiTextureType_UNKNOWN, NTU_OTHER},
}};

using enum data::domain::material::NColorOperation;
using data::domain::material::MakeOperation;
using data::domain::material::NTextureWrap;

NTextureWrap GetWrap(aiTextureMapMode mode) {
  if (mode == aiTextureMapMode_Mirror) return NTextureWrap::NTW_MIRROR;
  return mode == aiTextureMapMode_Clamp ? NTextureWrap::NTW_CLAMP : NTextureWrap::NTW_REPEAT;
}

// What Assimp puts where an OBJ file gives no colour.
constexpr NTriple kUnsaid{0.6f, 0.6f, 0.6f};

NTriple ToTriple(aiVector3D const& v) { return {v.x, v.y, v.z}; }
NTriple ToTriple(aiColor3D const& c) { return {c.r, c.g, c.b}; }

// Files have them as they are shown. Their opacities are often nothing.
neutral::NTexel ToTexel(aiColor4D const& color) {
  auto const toByte = [](float part) {
    return static_cast<std::uint8_t>(255.0f * (part > 0.0f ? std::min(part, 1.0f) : 0.0f) + 0.5f);
  };
  return {toByte(color.r), toByte(color.g), toByte(color.b), 255};
}

std::string ToString(aiString const& text) {
  return std::string(text.data, strnlen(text.data, std::min<std::size_t>(text.length, MAXLEN)));
}

bool GetColor(aiMaterial const& source, char const* key, unsigned type, unsigned index,
              neutral::NMaybe<NTriple>& color) {
  aiColor4D found;
  if (aiGetMaterialColor(&source, key, type, index, &found) != AI_SUCCESS) return false;
  color = NTriple{found.r, found.g, found.b};
  return true;
}

void GetNumber(aiMaterial const& source, char const* key, unsigned type, unsigned index,
               neutral::NMaybe<float>& number) {
  float value = 0.0f;
  if (source.Get(key, type, index, value) == AI_SUCCESS) number = value;
}

// Texels as they are stored are the rows of a TGA file with 32 bits a pixel, from the top.
void WriteTarga(aiTexture const& picture, std::uint8_t* to) {
  auto const low = [](unsigned size) { return static_cast<std::uint8_t>(size & 0xFFu); };
  unsigned const width = picture.mWidth;
  unsigned const height = picture.mHeight;
  std::array<std::uint8_t, 18> const header{0,           0,
                                            2,           0,
                                            0,           0,
                                            0,           0,
                                            0,           0,
                                            0,           0,
                                            low(width),  low(width >> 8),
                                            low(height), low(height >> 8),
                                            32,          0x28};
  to = std::copy(header.begin(), header.end(), to);
  for (std::size_t i = 0; i != std::size_t{width} * height; ++i) {
    aiTexel const& texel = picture.pcData[i];
    for (std::uint8_t const byte : {texel.b, texel.g, texel.r, texel.a}) *to++ = byte;
  }
}

neutral::NLightKind GetKind(aiLight const& light) {
  switch (light.mType) {
    case aiLightSource_DIRECTIONAL:
      return neutral::NLK_DIRECTIONAL;
    case aiLightSource_POINT:
      return neutral::NLK_POINT;
    case aiLightSource_SPOT:
      return neutral::NLK_SPOT;
    default:
      return neutral::NLK_OTHER;
  }
}

// The entries of `name` are used up, so that of several nodes of one name the first gets them.
std::vector<std::uint32_t> Take(std::multimap<std::string, unsigned>& byName,
                                std::string const& name) {
  std::vector<std::uint32_t> numbers;
  if (byName.empty()) return numbers;
  auto const [begin, end] = byName.equal_range(name);
  std::transform(begin, end, std::back_inserter(numbers),
                 [](auto const& entry) { return entry.second; });
  byName.erase(begin, end);
  return numbers;
}

neutral::NTripleKey ToKey(aiVectorKey const& key) { return {key.mTime, ToTriple(key.mValue)}; }
neutral::NTurnKey ToKey(aiQuatKey const& key) {
  aiQuaternion const& q = key.mValue;
  return {key.mTime, {q.x, q.y, q.z, q.w}};
}

template <class To, class From>
neutral::NRange<To> AddKeys(neutral::NSceneWriter& writer, From const* keys, unsigned count) {
  return writer.Reserve<To>(count, [keys, count](To* to) {
    std::transform(keys, keys + count, to, [](From const& key) { return ToKey(key); });
  });
}

}  // namespace

void NAssimpConverter::Convert() {
  auto const forEach = [](auto* const* list, unsigned count, auto const& add) {
    for (unsigned i = 0; i != count; ++i) add(*list[i]);
  };
  m_isColored.resize(m_scene.mNumMaterials);
  forEach(m_scene.mMeshes, m_scene.mNumMeshes, [this](auto& mesh) {
    if (mesh.HasVertexColors(0)) m_isColored[mesh.mMaterialIndex] = true;
  });
  // The pictures in the file come first: materials name them by their numbers.
  forEach(m_scene.mTextures, m_scene.mNumTextures, [this](auto& picture) { AddPicture(picture); });
  forEach(m_scene.mMaterials, m_scene.mNumMaterials,
          [this](auto& material) { AddMaterial(material); });
  forEach(m_scene.mMeshes, m_scene.mNumMeshes, [this](auto& mesh) { AddMesh(mesh); });
  forEach(m_scene.mLights, m_scene.mNumLights, [this](auto& light) { AddLight(light); });
  forEach(m_scene.mCameras, m_scene.mNumCameras, [this](auto& camera) { AddCamera(camera); });
  AddNodes();
  forEach(m_scene.mAnimations, m_scene.mNumAnimations,
          [this](auto& animation) { AddAnimation(animation); });
}

neutral::NText NAssimpConverter::AddText(aiString const& text) {
  return m_writer.AddText(ToString(text));
}

void NAssimpConverter::AddMesh(aiMesh const& source) {
  unsigned const count = source.mNumVertices;
  auto const addTriples = [&](aiVector3D const* triples) {
    return m_writer.Reserve<NTriple>(count, [triples, count](NTriple* to) {
      std::memcpy(to, triples, count * sizeof(NTriple));
    });
  };
  neutral::NMesh mesh{};
  mesh.name = AddText(source.mName);
  mesh.material = source.mMaterialIndex;
  if (count != 0) mesh.positions = addTriples(source.mVertices);
  if (source.HasNormals()) mesh.normals = addTriples(source.mNormals);
  mesh.uvSetCount = std::min<std::size_t>(source.GetNumUVChannels(), neutral::kMostUvSets);
  for (std::size_t set = 0; set != mesh.uvSetCount; ++set) {
    mesh.uvs[set] = addTriples(source.mTextureCoords[set]);
  }
  if (source.HasVertexColors(0)) {
    aiColor4D const* const colors = source.mColors[0];
    mesh.colors = m_writer.Reserve<neutral::NTexel>(count, [colors, count](neutral::NTexel* to) {
      std::transform(colors, colors + count, to, &ToTexel);
    });
  }
  if (source.mNumFaces == 0) {
    // A cloud of points.
    mesh.triangles = m_writer.Reserve<neutral::NTriangle>(count, [count](neutral::NTriangle* to) {
      for (std::uint32_t i = 0; i != count; ++i) to[i] = {i, i, i};
    });
  } else {
    AddFaces(source, mesh);
  }
  m_deformations.AddTo(source, mesh);
  m_writer.Get<neutral::NMesh>().push_back(mesh);
}

void NAssimpConverter::AddFaces(aiMesh const& source, neutral::NMesh& mesh) {
  auto const isDrawn = [](aiFace const& face) {
    return face.mNumIndices >= 1 && face.mNumIndices <= 3;
  };
  aiFace const* const end = source.mFaces + source.mNumFaces;
  auto const count = std::count_if<aiFace const*>(source.mFaces, end, isDrawn);
  mesh.triangles = m_writer.Reserve<neutral::NTriangle>(
      static_cast<std::size_t>(count), [=, &source](neutral::NTriangle* to) {
        for (aiFace const* face = source.mFaces; face != end; ++face) {
          if (!isDrawn(*face)) continue;
          unsigned const last = face->mNumIndices - 1;
          *to++ = {face->mIndices[0], face->mIndices[std::min(last, 1u)], face->mIndices[last]};
        }
      });
}

void NAssimpConverter::AddMaterial(aiMaterial const& source) {
  neutral::NMaterial material{};
  aiString name;
  if (source.Get(AI_MATKEY_NAME, name) == AI_SUCCESS) material.name = AddText(name);
  if (!GetColor(source, AI_MATKEY_COLOR_DIFFUSE, material.diffuse)) {
    GetColor(source, AI_MATKEY_BASE_COLOR, material.diffuse);
  }
  GetColor(source, AI_MATKEY_COLOR_AMBIENT, material.ambient);
  GetColor(source, AI_MATKEY_COLOR_SPECULAR, material.specular);
  GetColor(source, AI_MATKEY_COLOR_EMISSIVE, material.emissive);
  GetNumber(source, AI_MATKEY_SHININESS, material.shininess);
  GetNumber(source, AI_MATKEY_OPACITY, material.opacity);
  auto textures = GetTextures(source);
  // Many exporters write black, or what an application has there without the texture.
  bool hasPicture = std::any_of(textures.begin(), textures.end(), [](auto const& texture) {
    return texture.use == static_cast<std::uint32_t>(NTU_COLOR);
  });
  if (!hasPicture && m_isColored[m_writer.Get<neutral::NMaterial>().size()]) {
    hasPicture = true;
    textures.push_back({static_cast<std::uint32_t>(NTU_COLOR), neutral::kNone, 0,
                        static_cast<std::uint32_t>(NCO_IGNORE_ALPHA), 1.0f});
  }
  if (hasPicture && (!m_multipliesColor || material.diffuse.value == kUnsaid)) {
    material.diffuse.isSet = 0;
  }
  material.textures = m_writer.Add(textures);
  m_writer.Get<neutral::NMaterial>().push_back(material);
}

std::vector<neutral::NTexture> NAssimpConverter::GetTextures(aiMaterial const& source) {
  neutral::NMaybe<float> bumpScale{};
  GetNumber(source, AI_MATKEY_BUMPSCALING, bumpScale);
  std::vector<neutral::NTexture> textures;
  for (auto const& [type, use] : kUses) {
    for (unsigned i = 0; i != source.GetTextureCount(type); ++i) {
      aiString file;
      unsigned uvSet = 0;
      std::array<aiTextureMapMode, 3> modes{};
      if (source.GetTexture(type, i, &file, nullptr, &uvSet, nullptr, nullptr, modes.data()) !=
          AI_SUCCESS) {
        continue;
      }
      int flags = 0;
      source.Get(AI_MATKEY_TEXFLAGS(type, i), flags);
      bool const isOpaque = use == NTU_COLOR && (flags & aiTextureFlags_IgnoreAlpha) != 0;
      long const operation = MakeOperation(isOpaque ? NCO_IGNORE_ALPHA : NCO_MULTIPLY,
                                           GetWrap(modes[0]), GetWrap(modes[1]));
      bool const isBump = use == NTU_HEIGHT || use == NTU_NORMAL;
      textures.push_back({static_cast<std::uint32_t>(use), GetPicture(file), uvSet,
                          static_cast<std::uint32_t>(operation),
                          isBump && bumpScale.isSet != 0 ? bumpScale.value : 1.0f});
    }
  }
  return textures;
}

void NAssimpConverter::AddPicture(aiTexture const& source) {
  neutral::NPicture picture{};
  picture.name = AddText(source.mFilename);
  picture.isEmbedded = 1;
  if (source.mHeight != 0) {
    picture.extension = m_writer.AddText("tga");
    std::size_t const size = 18 + std::size_t{source.mWidth} * source.mHeight * 4;
    picture.bytes = m_writer.Reserve<std::uint8_t>(
        size, [&source](std::uint8_t* to) { WriteTarga(source, to); });
  } else {
    picture.extension = m_writer.AddText(
        {source.achFormatHint, strnlen(source.achFormatHint, sizeof(source.achFormatHint))});
    picture.bytes = m_writer.Reserve<std::uint8_t>(source.mWidth, [&source](std::uint8_t* to) {
      std::memcpy(to, source.pcData, source.mWidth);
    });
  }
  m_writer.Get<neutral::NPicture>().push_back(picture);
}

std::uint32_t NAssimpConverter::GetPicture(aiString const& name) {
  int const embedded = m_scene.GetEmbeddedTextureAndIndex(name.C_Str()).second;
  if (embedded >= 0 && static_cast<unsigned>(embedded) < m_scene.mNumTextures) {
    return static_cast<std::uint32_t>(embedded);
  }
  auto& pictures = m_writer.Get<neutral::NPicture>();
  auto const [entry, isNew] =
      m_pictures.try_emplace(ToString(name), static_cast<std::uint32_t>(pictures.size()));
  if (isNew) {
    neutral::NPicture picture{};
    picture.name = AddText(name);
    pictures.push_back(picture);
  }
  return entry->second;
}

void NAssimpConverter::AddLight(aiLight const& light) {
  m_writer.Get<neutral::NLight>().push_back(
      {AddText(light.mName), GetKind(light), ToTriple(light.mPosition), ToTriple(light.mDirection),
       ToTriple(light.mColorDiffuse), light.mAngleInnerCone, light.mAngleOuterCone});
}

void NAssimpConverter::AddCamera(aiCamera const& camera) {
  m_writer.Get<neutral::NCamera>().push_back(
      {AddText(camera.mName), ToTriple(camera.mPosition), ToTriple(camera.mLookAt),
       ToTriple(camera.mUp), camera.mHorizontalFOV, camera.mAspect, camera.mOrthographicWidth});
}

void NAssimpConverter::AddNodes() {
  ByName lights;
  ByName cameras;
  for (unsigned i = 0; i != m_scene.mNumLights; ++i) {
    lights.emplace(ToString(m_scene.mLights[i]->mName), i);
  }
  for (unsigned i = 0; i != m_scene.mNumCameras; ++i) {
    cameras.emplace(ToString(m_scene.mCameras[i]->mName), i);
  }
  bool const needsNames = m_scene.mNumAnimations != 0 ||
                          std::any_of(m_scene.mMeshes, m_scene.mMeshes + m_scene.mNumMeshes,
                                      [](aiMesh const* mesh) { return mesh->mNumBones != 0; });
  m_nodes = {m_scene.mRootNode};
  for (std::size_t i = 0; i != m_nodes.size(); ++i) {
    aiNode const& node = *m_nodes[i];
    AddNode(node, lights, cameras);
    m_nodes.insert(m_nodes.end(), node.mChildren, node.mChildren + node.mNumChildren);
    if (needsNames) m_nodesByName.emplace(ToString(node.mName), static_cast<std::uint32_t>(i));
  }
  m_deformations.AddSkins(m_nodesByName);
}

void NAssimpConverter::AddNode(aiNode const& source, ByName& lights, ByName& cameras) {
  std::string const name = ToString(source.mName);
  auto const& m = source.mTransformation;
  neutral::NNode node{};
  node.name = m_writer.AddText(name);
  node.transform = {m.a1, m.b1, m.c1, m.d1, m.a2, m.b2, m.c2, m.d2,
                    m.a3, m.b3, m.c3, m.d3, m.a4, m.b4, m.c4, m.d4};
  node.meshes = m_writer.Add(std::span<std::uint32_t const>(source.mMeshes, source.mNumMeshes));
  node.lights = m_writer.Add(Take(lights, name));
  node.cameras = m_writer.Add(Take(cameras, name));
  node.childCount = source.mNumChildren;
  m_deformations.SetUp(source, node);
  m_writer.Get<neutral::NNode>().push_back(node);
}

neutral::NChannel NAssimpConverter::GetChannel(aiNodeAnim const& keys) {
  auto const node = m_nodesByName.find(ToString(keys.mNodeName));
  return {AddText(keys.mNodeName), node == m_nodesByName.end() ? neutral::kNone : node->second,
          AddKeys<neutral::NTripleKey>(m_writer, keys.mPositionKeys, keys.mNumPositionKeys),
          AddKeys<neutral::NTurnKey>(m_writer, keys.mRotationKeys, keys.mNumRotationKeys),
          AddKeys<neutral::NTripleKey>(m_writer, keys.mScalingKeys, keys.mNumScalingKeys)};
}

void NAssimpConverter::AddAnimation(aiAnimation const& source) {
  std::vector<neutral::NChannel> channels;
  for (unsigned i = 0; i != source.mNumChannels; ++i) {
    channels.push_back(GetChannel(*source.mChannels[i]));
  }
  auto const weights = m_deformations.AddChannels(source, m_nodesByName, m_nodes);
  m_writer.Get<neutral::NAnimation>().push_back(
      {AddText(source.mName), source.mTicksPerSecond, source.mDuration, m_writer.Add(channels),
       weights.faultCount, m_writer.AddText(weights.firstFault), m_writer.Add(weights.weights)});
}

}  // namespace corvanta::importer::reader
