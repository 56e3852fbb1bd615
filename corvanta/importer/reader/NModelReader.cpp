#include "corvanta/importer/reader/NModelReader.h"

#include <assimp/scene.h>

#include <boost/algorithm/string/case_conv.hpp>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "corvanta/importer/reader/NAssimpConverter.h"
#include "corvanta/importer/reader/NAssimpFile.h"
#include "corvanta/importer/reader/NGltfConverter.h"
#include "corvanta/importer/reader/NGltfFile.h"

namespace corvanta::importer::reader {

namespace {

// Of the formats whose text or whose home says so.
bool MultipliesColor(std::filesystem::path const& path) {
  std::string extension = path.extension().string();
  boost::algorithm::to_lower(extension);
  return extension == ".obj" || extension == ".x";
}

// Of an FBX file they are 1 where a shape is the only one of its channel, whatever it says.
bool HasWeights(std::filesystem::path const& path) {
  std::string extension = path.extension().string();
  boost::algorithm::to_lower(extension);
  return extension != ".fbx";
}

// Collada's own axis is in its transforms already.
NUpAxis GetUp(std::filesystem::path const& path, aiScene const& scene) {
  std::string extension = path.extension().string();
  boost::algorithm::to_lower(extension);
  std::int32_t axis = NUA_Y;
  if (extension == ".stl" || extension == ".3mf" || extension == ".blend") return NUA_Z;
  bool const isSaid = extension == ".fbx" && scene.mMetaData != nullptr &&
                      scene.mMetaData->Get("UpAxis", axis) && axis >= 0 && axis <= 2;
  return isSaid ? static_cast<NUpAxis>(axis) : NUA_Y;
}

// Only FBX says it, in centimetres.
double GetUnit(std::filesystem::path const& path, aiScene const& scene) {
  std::string extension = path.extension().string();
  boost::algorithm::to_lower(extension);
  if (extension != ".fbx" || scene.mMetaData == nullptr) return 1.0;
  double centimetres = 0.0;
  float narrow = 0.0f;
  if (scene.mMetaData->Get("UnitScaleFactor", narrow)) centimetres = static_cast<double>(narrow);
  scene.mMetaData->Get("UnitScaleFactor", centimetres);
  double const metres = centimetres / 100.0;
  return metres >= 1e-9 && metres <= 1e9 ? metres : 1.0;
}

}  // namespace

struct NModelReader::Sources {
  std::optional<NGltfFile> gltf{};
  std::optional<NGltfConverter> gltfConverter{};
  std::optional<NAssimpFile> assimp{};
};

NModelReader::NModelReader(NFileOpener& opener, std::filesystem::path const& path)
    : m_sources(std::make_unique<Sources>()) {
  std::vector<std::string> notes;
  auto const add = [&notes](std::vector<std::string> const& more) {
    notes.insert(notes.end(), more.begin(), more.end());
  };
  if (NGltfFile::IsGltf(path)) m_sources->gltf.emplace(opener, path);
  if (m_sources->gltf && !m_sources->gltf->IsOld()) {
    auto& converter = m_sources->gltfConverter.emplace(m_sources->gltf->GetModel(), m_writer);
    converter.Convert();
    add(m_sources->gltf->GetNotes());
    add(converter.GetNotes());
  } else {
    auto const& assimp = m_sources->assimp.emplace(opener, path);
    m_writer.SetUp(GetUp(path, assimp.GetScene()));
    m_writer.SetUnit(GetUnit(path, assimp.GetScene()));
    NAssimpConverter converter(assimp.GetScene(), MultipliesColor(path), m_writer,
                               HasWeights(path));
    converter.Convert();
    add(assimp.GetNotes());
    add(converter.GetNotes());
  }
  for (std::string const& note : notes) {
    neutral::NText const text = m_writer.AddText(note);
    m_writer.Get<neutral::NText>().push_back(text);
  }
}

NModelReader::~NModelReader() = default;

}  // namespace corvanta::importer::reader
