#include "corvanta/importer/reader/NModelReader.h"

#include <exception>
#include <optional>
#include <string>
#include <vector>

#include "corvanta/importer/NImportError.h"
#include "corvanta/importer/reader/NAssimpConverter.h"
#include "corvanta/importer/reader/NAssimpFile.h"
#include "corvanta/importer/reader/NGltfAnimations.h"
#include "corvanta/importer/reader/NGltfFile.h"
#include "corvanta/importer/reader/gltf_nodes.h"

namespace corvanta::importer::reader {

struct NModelReader::Sources {
  Sources(NFileOpener& opener, std::filesystem::path const& path) : assimp(opener, path) {
    if (scene.mNumAnimations + scene.mNumCameras + scene.mNumLights == 0) return;
    // Where the file's own text can't be used, Assimp's scene has to do.
    try {
      ReadGltf();
    } catch (std::exception const& error) {
      if (scene.mNumAnimations == 0) return;
      notes.push_back(std::string("animations are played as if all their keys were linear: ") +
                      error.what());
    }
  }

  void ReadGltf() {
    NGltfFile* const file = assimp.GetGltf();
    if (file == nullptr) return;
    nodes = MatchNodes(file->GetRoot(), scene);
    shared = FindShared(file->GetRoot(), nodes, scene);
    if (scene.mNumAnimations != 0) samplers.emplace(*file, nodes, scene);
  }

  NAssimpFile assimp;
  aiScene const& scene = assimp.GetScene();
  NGltfNodes nodes{};
  NSharedContent shared{};
  std::optional<NGltfAnimations> samplers{};
  std::vector<std::string> notes{};
};

NModelReader::NModelReader(NFileOpener& opener, std::filesystem::path const& path)
    : m_sources(std::make_unique<Sources>(opener, path)) {
  NGltfAnimations const* const samplers = m_sources->samplers ? &*m_sources->samplers : nullptr;
  NAssimpConverter(m_sources->scene, m_sources->shared, samplers, m_writer).Convert();
  std::vector<std::string> notes = m_sources->notes;
  auto const& more = m_sources->assimp.GetNotes();
  notes.insert(notes.end(), more.begin(), more.end());
  for (std::string const& note : notes) {
    neutral::NText const text = m_writer.AddText(note);
    m_writer.Get<neutral::NText>().push_back(text);
  }
}

NModelReader::~NModelReader() = default;

}  // namespace corvanta::importer::reader
