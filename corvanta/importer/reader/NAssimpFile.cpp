#include "corvanta/importer/reader/NAssimpFile.h"

#include <assimp/postprocess.h>

#include <algorithm>
#include <assimp/DefaultLogger.hpp>
#include <assimp/Importer.hpp>
#include <assimp/LogStream.hpp>
#include <utility>

#include "corvanta/importer/NImportError.h"
#include "corvanta/importer/reader/NFiles.h"
#include "corvanta/importer/reader/check.h"

namespace corvanta::importer::reader {

namespace {

constexpr std::size_t kMostNotes = 10;

// Collects Assimp's warnings and errors while it lives. Assimp has one logger for the process.
class NLog {
 public:
  explicit NLog(std::vector<std::string>& notes) {
    Assimp::DefaultLogger::create(nullptr, Assimp::Logger::NORMAL, 0);
    Assimp::DefaultLogger::get()->attachStream(new Stream(notes),
                                               Assimp::Logger::Warn | Assimp::Logger::Err);
  }
  NLog(NLog const&) = delete;
  NLog& operator=(NLog const&) = delete;
  // The logger owns the stream.
  ~NLog() { Assimp::DefaultLogger::kill(); }

 private:
  class Stream : public Assimp::LogStream {
   public:
    explicit Stream(std::vector<std::string>& notes) : m_notes(notes) {}

    // A message is "Warn,  T0: text" and a line break.
    void write(char const* message) override {
      std::string text = message;
      if (auto const colon = text.find(": "); colon != std::string::npos) text.erase(0, colon + 2);
      while (!text.empty() && text.back() == '\n') text.pop_back();
      if (std::find(m_notes.begin(), m_notes.end(), text) != m_notes.end()) return;
      if (m_notes.size() < kMostNotes || IsAboutIndices(text)) m_notes.push_back(std::move(text));
    }

   private:
    std::vector<std::string>& m_notes;
  };
};

// Whether a mesh has lines or points beside faces; parted, these are meshes of their own.
bool HasMixedMesh(aiScene const& scene) {
  return std::any_of(scene.mMeshes, scene.mMeshes + scene.mNumMeshes, [](aiMesh const* mesh) {
    auto const isFace = [](aiFace const& face) { return face.mNumIndices >= 3; };
    aiFace const* const end = mesh->mFaces + mesh->mNumFaces;
    auto const count = std::count_if<aiFace const*>(mesh->mFaces, end, isFace);
    return count != 0 && static_cast<unsigned>(count) != mesh->mNumFaces;
  });
}

}  // namespace

NAssimpFile::NAssimpFile(NFileOpener& opener, std::filesystem::path const& path)
    : m_importer(std::make_unique<Assimp::Importer>()) {
  Read(opener, path);
}

NAssimpFile::~NAssimpFile() = default;

void NAssimpFile::Read(NFileOpener& opener, std::filesystem::path const& path) {
  NLog const log(m_notes);
  m_importer->SetIOHandler(new NFiles(opener, path));  // the importer's own from here on
  // Everything is checked before the steps of post-processing, which trust the indices.
  bool const isRead = m_importer->ReadFile(path.string(), 0) != nullptr;
  // Some readers drop or mend such a face, and only say so.
  auto const complaint = std::find_if(m_notes.begin(), m_notes.end(), &IsAboutIndices);
  if (complaint != m_notes.end()) throw NImportError("an index is out of range: " + *complaint);
  if (!isRead) {
    std::string const reason = m_importer->GetErrorString();
    bool const isUnknown = reason.rfind("No suitable reader", 0) == 0;
    throw NImportError(isUnknown ? kUnknownFormat : reason);
  }
  CheckScene(*m_importer->GetScene());

  unsigned const parting = HasMixedMesh(*m_importer->GetScene()) ? aiProcess_SortByPType : 0u;
  m_scene = m_importer->ApplyPostProcessing(aiProcess_Triangulate | aiProcess_GenUVCoords |
                                            aiProcess_TransformUVCoords | parting);
  if (m_scene == nullptr) throw NImportError(m_importer->GetErrorString());
}

}  // namespace corvanta::importer::reader
