#include "app/import/NModelFile.h"

#include <assimp/DefaultIOSystem.h>
#include <assimp/postprocess.h>

#include <assimp/MemoryIOWrapper.h>
#include <algorithm>
#include <assimp/DefaultLogger.hpp>
#include <assimp/Importer.hpp>
#include <assimp/LogStream.hpp>
#include <boost/algorithm/string/case_conv.hpp>
#include <cstdint>
#include <exception>
#include <optional>
#include <system_error>
#include <utility>

#include "app/import/NImportError.h"
#include "app/import/check.h"
#include "app/import/escape.h"
#include "app/import/large_stack.h"

namespace corvanta::app {

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

// A file that isn't there may be one that the model names in the manner of URIs. The model's own
// may have been mended.
class NFiles : public Assimp::DefaultIOSystem {
 public:
  NFiles(std::filesystem::path const& model, std::optional<std::string> mended)
      : m_model(model.string()),
        m_folder(model.parent_path().string()),
        m_mended(std::move(mended)) {}

  bool Exists(char const* path) const override {
    return DefaultIOSystem::Exists(path) || DefaultIOSystem::Exists(GetPlain(path).c_str());
  }
  Assimp::IOStream* Open(char const* path, char const* mode) override {
    if (m_mended && path == m_model) {
      return new Assimp::MemoryIOStream(reinterpret_cast<std::uint8_t const*>(m_mended->data()),
                                        m_mended->size());
    }
    Assimp::IOStream* const stream = DefaultIOSystem::Open(path, mode);
    return stream != nullptr ? stream : DefaultIOSystem::Open(GetPlain(path).c_str(), mode);
  }

 private:
  std::string GetPlain(std::string const& path) const {
    std::size_t const own = path.compare(0, m_folder.size(), m_folder) == 0 ? m_folder.size() : 0;
    return path.substr(0, own) + Unescape(path.substr(own));
  }

  std::string const m_model;
  std::string const m_folder;
  std::optional<std::string> const m_mended;
};

}  // namespace

NModelFile::NModelFile(std::filesystem::path const& path) {
  std::error_code error;
  auto const status = std::filesystem::status(path, error);
  if (!std::filesystem::exists(status)) throw NImportError("no such file");
  if (!std::filesystem::is_regular_file(status)) throw NImportError("not a file");
  m_importer = std::make_unique<Assimp::Importer>();
  RunOnLargeStack([this, &path] { Read(path); });
}

// Assimp's hierarchy is taken down by recursion too.
NModelFile::~NModelFile() {
  RunOnLargeStack([this] { m_importer.reset(); });
}

void NModelFile::ReadGltf(std::filesystem::path const& path) {
  std::string extension = path.extension().string();
  boost::algorithm::to_lower(extension);
  if (extension != ".gltf" && extension != ".glb") return;
  try {
    m_gltf = std::make_unique<NGltfFile>(path);
  } catch (std::exception const& error) {
    m_gltfFault = error.what();
  }
}

NGltfFile* NModelFile::GetGltf() const {
  if (!m_gltfFault.empty()) throw NImportError(m_gltfFault);
  return m_gltf.get();
}

void NModelFile::Read(std::filesystem::path const& path) {
  NLog const log(m_notes);
  ReadGltf(path);
  m_importer->SetIOHandler(  // the importer's own from here on
      new NFiles(path, m_gltf ? m_gltf->GetMended() : std::nullopt));
  // Everything is checked before the steps of post-processing, which trust the indices.
  bool const isRead = m_importer->ReadFile(path.string(), 0) != nullptr;
  // Some readers drop or mend such a face, and only say so.
  auto const complaint = std::find_if(m_notes.begin(), m_notes.end(), &IsAboutIndices);
  if (complaint != m_notes.end()) throw NImportError("an index is out of range: " + *complaint);
  if (!isRead) throw NImportError(m_importer->GetErrorString());
  CheckScene(*m_importer->GetScene());

  m_scene = m_importer->ApplyPostProcessing(aiProcess_Triangulate | aiProcess_GenUVCoords |
                                            aiProcess_TransformUVCoords);
  if (m_scene == nullptr) throw NImportError(m_importer->GetErrorString());
}

}  // namespace corvanta::app
