#include "corvanta/importer/reader/NGltfFile.h"

#include <algorithm>
#include <array>
#include <boost/algorithm/string/case_conv.hpp>
#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>
#include <boost/algorithm/string/trim.hpp>
#include <cstdint>
#include <limits>
#include <nlohmann/json.hpp>
#include <string_view>
#include <utility>

#include "corvanta/importer/NImportError.h"
#include "corvanta/importer/escape.h"
#include "corvanta/importer/reader/NFiles.h"
#include "corvanta/importer/reader/gltf_pointers.h"

namespace corvanta::importer::reader {

namespace {

constexpr std::size_t kMostNotes = 10;
constexpr std::size_t kMostChars = 200;  // of a line: some quote a whole buffer

constexpr std::array<std::string_view, 15> kHonoured{"KHR_animation_pointer",
                                                     "KHR_draco_mesh_compression",
                                                     "KHR_lights_punctual",
                                                     "KHR_materials_clearcoat",
                                                     "KHR_materials_emissive_strength",
                                                     "KHR_materials_ior",
                                                     "KHR_materials_pbrSpecularGlossiness",
                                                     "KHR_materials_specular",
                                                     "KHR_materials_transmission",
                                                     "KHR_materials_unlit",
                                                     "KHR_materials_variants",
                                                     "KHR_mesh_quantization",
                                                     "KHR_texture_transform",
                                                     "KHR_xmp_json_ld",
                                                     "EXT_texture_webp"};
// A file may require these, and is still the same model without them.
constexpr std::array<std::string_view, 5> kSpared{
    "KHR_materials_anisotropy", "KHR_materials_dispersion", "KHR_materials_iridescence",
    "KHR_materials_sheen", "KHR_materials_volume"};

template <std::size_t N>
bool IsOne(std::string const& extension, std::array<std::string_view, N> const& names) {
  return std::find(names.begin(), names.end(), extension) != names.end();
}

// The library looks in several folders for a file; the first is the model's.
bool Exists(std::string const&, void*) { return true; }
std::string Expand(std::string const& path, void*) { return path; }
bool Refuse(std::string*, std::string const&, std::vector<unsigned char> const&, void*) {
  return false;
}

bool ReadWhole(std::vector<unsigned char>* to, std::string* error, std::string const& path,
               void* opener) {
  try {
    std::string const bytes = ReadFile(*static_cast<NFileOpener*>(opener), path);
    to->assign(bytes.begin(), bytes.end());
    return true;
  } catch (NImportError const& failure) {
    *error = failure.what();
    return false;
  }
}

// Pictures stay as they are packed: those in a buffer view where they are, others here.
bool KeepPicture(tinygltf::Image* image, int const, std::string*, std::string*, int, int,
                 unsigned char const* bytes, int size, void*) {
  image->as_is = true;
  if (image->bufferView < 0) image->image.assign(bytes, bytes + size);
  return true;
}

std::vector<std::string> GetLines(std::string const& text) {
  std::vector<std::string> lines;
  boost::split(lines, text, boost::is_any_of("\r\n"), boost::token_compress_on);
  for (std::string& line : lines) {
    boost::trim(line);
    if (line.size() > kMostChars) line = line.substr(0, kMostChars) + "...";
  }
  lines.erase(std::remove(lines.begin(), lines.end(), ""), lines.end());
  return lines;
}

std::uint32_t ReadWord(std::string const& bytes, std::size_t at) {
  std::uint32_t word = 0;  // little-endian, as all of glTF
  if (bytes.size() >= at + 4) std::memcpy(&word, bytes.data() + at, 4);
  return word;
}

// Bytes of a buffer, as far as they are there.
std::size_t GetLength(NFileOpener& opener, std::string const& uri, std::string const& folder) {
  constexpr std::string_view kCode = ";base64,";
  if (uri.compare(0, 5, "data:") != 0) {
    try {
      return ReadFile(opener, folder + '/' + Unescape(uri)).size();
    } catch (NImportError const&) {
      return 0;
    }
  }
  auto const begin = uri.find(kCode);
  if (begin == std::string::npos) return 0;
  auto const last = uri.find_last_not_of('=');
  return (last + 1 - std::min(last + 1, begin + kCode.size())) * 3 / 4;
}

// The text of a file with the true lengths of its buffers. Fails: empty if none is longer than it
// says.
std::string GetMended(NFileOpener& opener, std::string const& text, std::string const& folder) {
  using nlohmann::json;
  json root = json::parse(text, nullptr, false);
  if (!root.is_object() || !root.contains("buffers") || !root["buffers"].is_array()) return "";
  bool isMended = false;
  for (json& buffer : root["buffers"]) {
    if (!buffer.is_object() || !buffer.contains("uri") || !buffer["uri"].is_string()) continue;
    json& claimed = buffer["byteLength"];
    auto const length = GetLength(opener, buffer["uri"].get_ref<std::string const&>(), folder);
    if (!claimed.is_number_unsigned() || claimed.get<std::size_t>() >= length) continue;
    claimed = length;
    isMended = true;
  }
  return isMended ? root.dump(-1, ' ', false, json::error_handler_t::replace) : "";
}

}  // namespace

bool NGltfFile::IsGltf(std::filesystem::path const& path) {
  std::string extension = path.extension().string();
  boost::algorithm::to_lower(extension);
  return extension == ".gltf" || extension == ".glb";
}

NGltfFile::NGltfFile(NFileOpener& opener, std::filesystem::path const& path) {
  std::string bytes = ReadFile(opener, path.string());
  if (std::string pointed = GetWithPointedNodes(bytes); !pointed.empty())
    bytes = std::move(pointed);
  bool const isBinary = bytes.compare(0, 4, "glTF") == 0;
  m_isOld = isBinary && ReadWord(bytes, 4) == 1;
  if (m_isOld) return;
  Parse(opener, bytes, path.parent_path().string());
  // A file of the first version has objects where the second has lists, and nothing is read of it.
  m_isOld = m_model.asset.version.compare(0, 2, "1.") == 0;
  if (m_isOld) return;
  if (m_model.asset.version.compare(0, 2, "2.") != 0) {
    throw NImportError("glTF of the unknown version \"" + m_model.asset.version + '"');
  }
  CheckExtensions();
}

void NGltfFile::Parse(NFileOpener& opener, std::string const& bytes, std::string const& folder) {
  if (bytes.size() > std::numeric_limits<std::uint32_t>::max()) {
    throw NImportError("it has more bytes than a glTF file can have");
  }
  auto error = Load(opener, bytes, folder);
  if (error.empty()) return;
  // The library wants buffers of the very length that the file says; longer ones are allowed.
  std::string const mended = GetMended(opener, bytes, folder);
  if (!mended.empty()) error = Load(opener, mended, folder);
  if (!error.empty()) throw NImportError(error);
}

std::string NGltfFile::Load(NFileOpener& opener, std::string const& bytes,
                            std::string const& folder) {
  tinygltf::TinyGLTF parser;
  parser.SetFsCallbacks({&Exists, &Expand, &ReadWhole, &Refuse, &opener});
  parser.SetImageLoader(&KeepPicture, nullptr);
  std::string error;
  std::string warning;
  auto const size = static_cast<unsigned>(bytes.size());
  bool isRead = false;
  m_model = {};
  try {
    isRead =
        bytes.compare(0, 4, "glTF") == 0
            ? parser.LoadBinaryFromMemory(&m_model, &error, &warning,
                                          reinterpret_cast<unsigned char const*>(bytes.data()),
                                          size, folder)
            : parser.LoadASCIIFromString(&m_model, &error, &warning, bytes.data(), size, folder);
  } catch (std::bad_alloc const&) {
    throw;
  } catch (std::exception const& failure) {
    error = failure.what();
  }
  auto lines = GetLines(isRead ? warning : error);
  if (!isRead) return lines.empty() ? "it isn't glTF" : lines.front();
  lines.resize(std::min(lines.size(), kMostNotes));
  m_notes = lines;
  return "";
}

void NGltfFile::CheckExtensions() {
  for (std::string const& extension : m_model.extensionsRequired) {
    if (IsOne(extension, kHonoured) || IsOne(extension, kSpared)) continue;
    throw NImportError("it requires the extension \"" + extension + "\", which isn't known");
  }
  std::string unknown;
  for (std::string const& extension : m_model.extensionsUsed) {
    if (IsOne(extension, kHonoured)) continue;
    unknown += (unknown.empty() ? "" : ", ") + extension;
  }
  if (!unknown.empty()) m_notes.push_back("extensions that were left out: " + unknown);
}

}  // namespace corvanta::importer::reader
