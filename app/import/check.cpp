#include "app/import/check.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "app/import/NImportError.h"
#include "app/output/text.h"

namespace corvanta::app {

namespace {

[[noreturn]] void Refuse(char const* what, aiString const& name, std::string const& reason) {
  std::string text = what;
  if (name.length != 0) text += std::string(" \"") + name.C_Str() + '"';
  throw NImportError(text + ": " + reason);
}

void CheckMesh(aiScene const& scene, aiMesh const& mesh) {
  if (mesh.mMaterialIndex >= scene.mNumMaterials) {
    Refuse("mesh", mesh.mName, "a material that isn't there");
  }
  for (unsigned i = 0; i != mesh.mNumVertices; ++i) {
    aiVector3D const& point = mesh.mVertices[i];
    if (!std::isfinite(point.x) || !std::isfinite(point.y) || !std::isfinite(point.z)) {
      Refuse("mesh", mesh.mName, "vertex " + std::to_string(i) + " isn't finite");
    }
  }
  for (unsigned i = 0; i != mesh.mNumFaces; ++i) {
    aiFace const& face = mesh.mFaces[i];
    for (unsigned corner = 0; corner != face.mNumIndices; ++corner) {
      if (face.mIndices[corner] >= mesh.mNumVertices) {
        Refuse("mesh", mesh.mName,
               "index " + std::to_string(face.mIndices[corner]) +
                   " is out of range, the mesh has " +
                   Plural(mesh.mNumVertices, "vertex", "vertices"));
      }
    }
  }
}

bool HasFaces(aiMesh const& mesh) {
  return std::any_of(mesh.mFaces, mesh.mFaces + mesh.mNumFaces,
                     [](aiFace const& face) { return face.mNumIndices >= 3; });
}

void CheckNode(aiScene const& scene, aiNode const& node) {
  for (unsigned row = 0; row != 4; ++row) {
    float const* const values = node.mTransformation[row];
    if (!std::all_of(values, values + 4, [](float value) { return std::isfinite(value); })) {
      Refuse("node", node.mName, "its transform isn't finite");
    }
  }
  for (unsigned i = 0; i != node.mNumMeshes; ++i) {
    if (node.mMeshes[i] >= scene.mNumMeshes) Refuse("node", node.mName, "a mesh that isn't there");
  }
}

}  // namespace

void CheckScene(aiScene const& scene) {
  if (scene.mRootNode == nullptr) throw NImportError("no root node");
  for (unsigned i = 0; i != scene.mNumMeshes; ++i) CheckMesh(scene, *scene.mMeshes[i]);

  bool const isEmpty = scene.mNumMeshes == 0 && scene.mNumLights == 0 && scene.mNumCameras == 0 &&
                       scene.mRootNode->mNumChildren == 0;
  bool const hasFaces = std::any_of(scene.mMeshes, scene.mMeshes + scene.mNumMeshes,
                                    [](aiMesh const* mesh) { return HasFaces(*mesh); });
  if (isEmpty || (scene.mNumMeshes != 0 && !hasFaces)) throw NImportError("no faces");

  std::vector<aiNode const*> open{scene.mRootNode};
  while (!open.empty()) {
    aiNode const& node = *open.back();
    open.pop_back();
    CheckNode(scene, node);
    open.insert(open.end(), node.mChildren, node.mChildren + node.mNumChildren);
  }
}

bool IsAboutIndices(std::string const& message) {
  return message.find("out of range") != std::string::npos ||
         message.find("out-of-range") != std::string::npos;
}

}  // namespace corvanta::app
