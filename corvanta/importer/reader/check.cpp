#include "corvanta/importer/reader/check.h"

#include <malloc.h>

#include <algorithm>
#include <cmath>
#include <type_traits>
#include <vector>

#include "corvanta/core/text/message.h"
#include "corvanta/importer/NImportError.h"
#include "corvanta/importer/neutral/scene.h"

namespace corvanta::importer::reader {

namespace {

constexpr unsigned kMostPixels = 65535;  // in a row or a column of what isn't packed

[[noreturn]] void Refuse(char const* what, aiString const& name, std::string const& reason) {
  std::string text = what;
  if (name.length != 0) text += std::string(" \"") + name.C_Str() + '"';
  throw NImportError(text + ": " + reason);
}

// Whether an array that `new` made has room for its count. It doesn't say its length, but the heap
// knows what it gave. In front of elements with a destructor stands their number.
template <class T>
bool Holds(T const* array, std::size_t count) {
  if (count == 0) return true;
  if (array == nullptr) return false;
  auto const* const start = reinterpret_cast<std::byte const*>(array);
  std::size_t const before = std::is_trivially_destructible_v<T> ? 0 : sizeof(std::size_t);
  void* const block = const_cast<std::byte*>(start - before);  // NOLINT: only asked for its size
  return malloc_usable_size(block) >= before + count * sizeof(T);
}

template <class T>
bool HoldsAll(T const* const* list, unsigned count) {
  return Holds(list, count) &&
         std::all_of(list, list + count, [](T const* element) { return element != nullptr; });
}

void CheckFaces(aiMesh const& mesh) {
  if (!Holds(mesh.mFaces, mesh.mNumFaces)) Refuse("mesh", mesh.mName, "faces that aren't there");
  for (unsigned i = 0; i != mesh.mNumFaces; ++i) {
    aiFace const& face = mesh.mFaces[i];
    if (!Holds(face.mIndices, face.mNumIndices)) {
      Refuse("mesh", mesh.mName, "a face without its indices");
    }
    if (face.mNumIndices > kMostCorners) {
      Refuse("mesh", mesh.mName,
             "a face of " + std::to_string(face.mNumIndices) + " corners; the most are " +
                 std::to_string(kMostCorners));
    }
    for (unsigned corner = 0; corner != face.mNumIndices; ++corner) {
      if (face.mIndices[corner] >= mesh.mNumVertices) {
        Refuse("mesh", mesh.mName,
               "index " + std::to_string(face.mIndices[corner]) +
                   " is out of range, the mesh has " +
                   core::text::Plural(mesh.mNumVertices, "vertex", "vertices"));
      }
    }
  }
}

void CheckDeformation(aiMesh const& mesh) {
  if (!HoldsAll(mesh.mBones, mesh.mNumBones))
    Refuse("mesh", mesh.mName, "fewer bones than it says");
  for (unsigned i = 0; i != mesh.mNumBones; ++i) {
    if (!Holds(mesh.mBones[i]->mWeights, mesh.mBones[i]->mNumWeights)) {
      Refuse("mesh", mesh.mName, "a bone without its weights");
    }
  }
  if (!HoldsAll(mesh.mAnimMeshes, mesh.mNumAnimMeshes)) {
    Refuse("mesh", mesh.mName, "fewer morph targets than it says");
  }
  for (unsigned i = 0; i != mesh.mNumAnimMeshes; ++i) {
    aiAnimMesh const& target = *mesh.mAnimMeshes[i];
    if ((target.mVertices != nullptr && !Holds(target.mVertices, target.mNumVertices)) ||
        (target.mNormals != nullptr && !Holds(target.mNormals, target.mNumVertices))) {
      Refuse("mesh", mesh.mName, "a morph target without its vertices");
    }
  }
}

void CheckMesh(aiScene const& scene, aiMesh const& mesh) {
  if (mesh.mMaterialIndex >= scene.mNumMaterials) {
    Refuse("mesh", mesh.mName, "a material that isn't there");
  }
  unsigned const count = mesh.mNumVertices;
  if (!Holds(mesh.mVertices, count)) Refuse("mesh", mesh.mName, "vertices that aren't there");
  if (mesh.mNormals != nullptr && !Holds(mesh.mNormals, count)) {
    Refuse("mesh", mesh.mName, "fewer normals than vertices");
  }
  for (aiVector3D const* const set : mesh.mTextureCoords) {
    if (set != nullptr && !Holds(set, count)) {
      Refuse("mesh", mesh.mName, "fewer texture coordinates than vertices");
    }
  }
  if (mesh.mColors[0] != nullptr && !Holds(mesh.mColors[0], count)) {
    Refuse("mesh", mesh.mName, "fewer colours than vertices");
  }
  for (unsigned i = 0; i != count; ++i) {
    aiVector3D const& point = mesh.mVertices[i];
    if (!std::isfinite(point.x) || !std::isfinite(point.y) || !std::isfinite(point.z)) {
      Refuse("mesh", mesh.mName, "vertex " + std::to_string(i) + " isn't finite");
    }
  }
  CheckDeformation(mesh);
  CheckFaces(mesh);
}

// A mesh without faces is a cloud of points.
bool IsDrawn(aiMesh const& mesh) {
  if (mesh.mNumFaces == 0) return mesh.mNumVertices != 0;
  return std::any_of(mesh.mFaces, mesh.mFaces + mesh.mNumFaces,
                     [](aiFace const& face) { return face.mNumIndices != 0; });
}

void CheckNode(aiScene const& scene, aiNode const& node) {
  for (unsigned row = 0; row != 4; ++row) {
    float const* const values = node.mTransformation[row];
    if (!std::all_of(values, values + 4, [](float value) { return std::isfinite(value); })) {
      Refuse("node", node.mName, "its transform isn't finite");
    }
  }
  bool const hasMeshes = Holds(node.mMeshes, node.mNumMeshes);
  if (!hasMeshes || std::any_of(node.mMeshes, node.mMeshes + node.mNumMeshes,
                                [&](unsigned mesh) { return mesh >= scene.mNumMeshes; })) {
    Refuse("node", node.mName, "a mesh that isn't there");
  }
  if (!HoldsAll(node.mChildren, node.mNumChildren)) {
    Refuse("node", node.mName, "a child that isn't there");
  }
}

// Nodes that stand at several places, or below themselves, are met at each.
void CheckHierarchy(aiScene const& scene) {
  std::size_t items = 0;
  std::vector<aiNode const*> open{scene.mRootNode};
  while (!open.empty()) {
    aiNode const& node = *open.back();
    open.pop_back();
    CheckNode(scene, node);
    items += 1 + node.mNumMeshes;
    if (items + open.size() + node.mNumChildren > neutral::kMostItems) {
      throw NImportError("more than " + std::to_string(neutral::kMostItems) + " items");
    }
    open.insert(open.end(), node.mChildren, node.mChildren + node.mNumChildren);
  }
}

void CheckKeys(aiNodeAnim const& channel) {
  if (!Holds(channel.mPositionKeys, channel.mNumPositionKeys) ||
      !Holds(channel.mRotationKeys, channel.mNumRotationKeys) ||
      !Holds(channel.mScalingKeys, channel.mNumScalingKeys)) {
    Refuse("animation of", channel.mNodeName, "fewer keys than it says");
  }
}

void CheckKeys(aiMeshMorphAnim const& channel) {
  bool const hasKeys = Holds(channel.mKeys, channel.mNumKeys);
  if (!hasKeys ||
      !std::all_of(channel.mKeys, channel.mKeys + channel.mNumKeys, [](aiMeshMorphKey const& key) {
        return Holds(key.mValues, key.mNumValuesAndWeights) &&
               Holds(key.mWeights, key.mNumValuesAndWeights);
      })) {
    Refuse("animation of", channel.mName, "fewer keys than it says");
  }
}

void CheckPicture(aiTexture const& picture) {
  bool const isPacked = picture.mHeight == 0;
  if (!isPacked && std::max(picture.mWidth, picture.mHeight) > kMostPixels) {
    Refuse("picture", picture.mFilename, "too many pixels");
  }
  std::size_t const size =
      isPacked ? picture.mWidth : std::size_t{picture.mWidth} * picture.mHeight * sizeof(aiTexel);
  if (!Holds(reinterpret_cast<std::byte const*>(picture.pcData), size)) {
    Refuse("picture", picture.mFilename, "fewer bytes than it says");
  }
}

void CheckLists(aiScene const& scene) {
  if (!HoldsAll(scene.mMeshes, scene.mNumMeshes) ||
      !HoldsAll(scene.mMaterials, scene.mNumMaterials) ||
      !HoldsAll(scene.mTextures, scene.mNumTextures) ||
      !HoldsAll(scene.mLights, scene.mNumLights) || !HoldsAll(scene.mCameras, scene.mNumCameras) ||
      !HoldsAll(scene.mAnimations, scene.mNumAnimations)) {
    throw NImportError("a list shorter than it says");
  }
  for (unsigned i = 0; i != scene.mNumTextures; ++i) CheckPicture(*scene.mTextures[i]);
  for (unsigned i = 0; i != scene.mNumAnimations; ++i) {
    aiAnimation const& animation = *scene.mAnimations[i];
    if (!HoldsAll(animation.mChannels, animation.mNumChannels) ||
        !HoldsAll(animation.mMorphMeshChannels, animation.mNumMorphMeshChannels) ||
        !HoldsAll(animation.mMeshChannels, animation.mNumMeshChannels)) {
      Refuse("animation", animation.mName, "a channel that isn't there");
    }
    std::for_each(animation.mChannels, animation.mChannels + animation.mNumChannels,
                  [](aiNodeAnim const* channel) { CheckKeys(*channel); });
    std::for_each(animation.mMorphMeshChannels,
                  animation.mMorphMeshChannels + animation.mNumMorphMeshChannels,
                  [](aiMeshMorphAnim const* channel) { CheckKeys(*channel); });
  }
}

}  // namespace

void CheckScene(aiScene const& scene) {
  if (scene.mRootNode == nullptr) throw NImportError("no root node");
  CheckLists(scene);
  for (unsigned i = 0; i != scene.mNumMeshes; ++i) CheckMesh(scene, *scene.mMeshes[i]);

  bool const isEmpty = scene.mNumMeshes == 0 && scene.mNumLights == 0 && scene.mNumCameras == 0 &&
                       scene.mRootNode->mNumChildren == 0;
  bool const isDrawn = std::any_of(scene.mMeshes, scene.mMeshes + scene.mNumMeshes,
                                   [](aiMesh const* mesh) { return IsDrawn(*mesh); });
  if (isEmpty || (scene.mNumMeshes != 0 && !isDrawn)) {
    throw NImportError("no faces, lines or points");
  }
  CheckHierarchy(scene);
}

bool IsAboutIndices(std::string const& message) {
  return message.find("out of range") != std::string::npos ||
         message.find("out-of-range") != std::string::npos;
}

}  // namespace corvanta::importer::reader
