#include "corvanta/importer/reader/NGltfFile.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "corvanta/importer/NImportError.h"
#include "corvanta/importer/escape.h"
#include "corvanta/importer/reader/NFiles.h"

namespace corvanta::importer::reader {

namespace {

using nlohmann::json;

// Elements of a file that no buffer holds, so that a few bytes may claim them.
constexpr std::size_t kMostZeros = 16'000'000;

std::uint32_t ReadWord(std::string const& bytes, std::size_t at) {
  if (bytes.size() < 4 || at > bytes.size() - 4) throw NImportError("the file ends too early");
  std::uint32_t word;  // little-endian, as all of glTF
  std::memcpy(&word, bytes.data() + at, 4);
  return word;
}

std::string FromBase64(std::string_view text) {
  constexpr std::string_view kDigits =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::array<unsigned char, 256> values;
  values.fill(64);
  for (std::size_t i = 0; i != 64; ++i) values[static_cast<unsigned char>(kDigits[i])] = i & 63;
  std::string bytes;
  bytes.reserve(text.size() / 4 * 3);
  std::uint32_t bits = 0;
  int count = 0;
  for (char const c : text) {
    std::uint32_t const value = values[static_cast<unsigned char>(c)];
    if (value == 64) break;  // the padding
    bits = bits << 6 | value;
    if ((count += 6) < 8) continue;
    count -= 8;
    bytes += static_cast<char>(bits >> count & 255);
  }
  return bytes;
}

template <class Number>
float ReadNumber(char const* at, float largest) {
  Number number;
  std::memcpy(&number, at, sizeof(number));
  return std::max(static_cast<float>(number) / largest, -1.0f);
}

std::string ToWord(std::size_t number) {
  auto const word = static_cast<std::uint32_t>(number);
  std::string bytes(4, '\0');
  std::memcpy(bytes.data(), &word, 4);
  return bytes;
}

// Bytes of an index.
std::size_t GetIndexSize(int componentType) {
  if (componentType == 5121) return 1;
  if (componentType == 5123) return 2;
  if (componentType == 5125) return 4;
  throw NImportError("indices of an unknown kind");
}

struct Format {
  std::size_t size;  // bytes
  float (*read)(char const* at);
};

Format GetFormat(json const& accessor) {
  int const type = accessor.at("componentType").get<int>();
  if (type == 5126) {
    return {4, [](char const* at) {
              float number;
              std::memcpy(&number, at, 4);
              return number;
            }};
  }
  if (!accessor.value("normalized", false)) throw NImportError("integers");
  switch (type) {
    case 5120:
      return {1, [](char const* at) { return ReadNumber<std::int8_t>(at, 127.0f); }};
    case 5121:
      return {1, [](char const* at) { return ReadNumber<std::uint8_t>(at, 255.0f); }};
    case 5122:
      return {2, [](char const* at) { return ReadNumber<std::int16_t>(at, 32767.0f); }};
    case 5123:
      return {2, [](char const* at) { return ReadNumber<std::uint16_t>(at, 65535.0f); }};
    default:
      throw NImportError("numbers of an unknown kind");
  }
}

}  // namespace

NGltfFile::NGltfFile(NFileOpener& opener, std::filesystem::path const& path)
    : m_opener(opener), m_folder(path.parent_path()) {
  std::string const bytes = ReadFile(opener, path.string());
  m_isBinary = bytes.compare(0, 4, "glTF") == 0;
  if (!m_isBinary) {
    m_root = json::parse(bytes);
  } else {
    std::size_t const length = ReadWord(bytes, 12);
    m_root = json::parse(
        std::string_view(bytes).substr(std::min<std::size_t>(20, bytes.size()), length));
    std::size_t const next = 20 + length;
    if (bytes.size() > next + 8) m_chunk = bytes.substr(next + 8, ReadWord(bytes, next));
  }
  if (m_root.at("asset").at("version").get<std::string>().compare(0, 2, "2.") != 0) {
    throw NImportError("another version of glTF");
  }
}

std::vector<float> NGltfFile::ReadAccessor(std::size_t number, std::size_t width) {
  json const& accessor = m_root.at("accessors").at(number);
  auto const type = accessor.at("type").get<std::string>();
  if (type != (width == 1 ? "SCALAR" : "VEC" + std::to_string(width))) {
    throw NImportError("an accessor of another kind");
  }
  auto const count = accessor.at("count").get<std::size_t>();
  std::vector<float> numbers;
  if (accessor.contains("bufferView")) {
    numbers = ReadElements(accessor, accessor, count, width);
  } else if (count <= kMostZeros) {
    numbers.resize(count * width);
  } else {
    throw NImportError("an accessor of too many zeros");
  }
  if (accessor.contains("sparse")) SetSparse(accessor, width, numbers);
  return numbers;
}

void NGltfFile::SetSparse(json const& accessor, std::size_t width, std::vector<float>& numbers) {
  json const& sparse = accessor.at("sparse");
  auto const count = sparse.at("count").get<std::size_t>();
  auto const values = ReadElements(accessor, sparse.at("values"), count, width);
  auto const indices = ReadIndices(sparse.at("indices"), count);
  for (std::size_t i = 0; i != count; ++i) {
    if (indices[i] >= numbers.size() / width) throw NImportError("a sparse index is out of range");
    std::copy_n(values.begin() + static_cast<std::ptrdiff_t>(i * width), width,
                numbers.begin() + static_cast<std::ptrdiff_t>(indices[i] * width));
  }
}

std::vector<std::uint32_t> NGltfFile::ReadIndices(json const& source, std::size_t count) {
  std::size_t const size = GetIndexSize(source.at("componentType").get<int>());
  Place const place = FindElements(source, count, size);
  std::vector<std::uint32_t> indices(count);
  for (std::size_t i = 0; i != count; ++i) {
    std::memcpy(&indices[i], place.first + i * place.stride, size);
  }
  return indices;
}

// `source` names the buffer view: the accessor, or what is sparse of it.
std::vector<float> NGltfFile::ReadElements(json const& accessor, json const& source,
                                           std::size_t count, std::size_t width) {
  Format const format = GetFormat(accessor);
  Place const place = FindElements(source, count, format.size * width);
  std::vector<float> numbers;
  numbers.reserve(count * width);
  for (std::size_t i = 0; i != count; ++i) {
    char const* const element = place.first + i * place.stride;
    for (std::size_t k = 0; k != width; ++k)
      numbers.push_back(format.read(element + k * format.size));
  }
  return numbers;
}

NGltfFile::Place NGltfFile::FindElements(json const& source, std::size_t count,
                                         std::size_t elementSize) {
  json const& view = m_root.at("bufferViews").at(source.at("bufferView").get<std::size_t>());
  std::string const& buffer = GetBuffer(view.at("buffer").get<std::size_t>());
  auto const stride = view.value("byteStride", elementSize);
  auto const begin = view.value("byteOffset", std::size_t(0));
  auto const offset = source.value("byteOffset", std::size_t(0));
  std::size_t const size = buffer.size();
  // Each alone first, so that no sum or product runs over.
  if (count > size || stride > 255 || begin > size || offset > size ||
      (count != 0 && begin + offset + (count - 1) * stride + elementSize > size)) {
    throw NImportError("an accessor leaves its buffer");
  }
  return {buffer.data() + begin + offset, stride};
}

// Its elements need not be such as ReadAccessor takes.
void NGltfFile::CheckSparse(json const& accessor) {
  static std::map<std::string, std::size_t> const kWidths{
      {"SCALAR", 1}, {"VEC2", 2}, {"VEC3", 3}, {"VEC4", 4}, {"MAT2", 4}, {"MAT3", 9}, {"MAT4", 16}};
  static std::map<int, std::size_t> const kSizes{{5120, 1}, {5121, 1}, {5122, 2},
                                                 {5123, 2}, {5125, 4}, {5126, 4}};
  try {
    json const& sparse = accessor.at("sparse");
    auto const count = sparse.at("count").get<std::size_t>();
    FindElements(sparse.at("values"), count,
                 kWidths.at(accessor.at("type").get<std::string>()) *
                     kSizes.at(accessor.at("componentType").get<int>()));
    auto const indices = ReadIndices(sparse.at("indices"), count);
    auto const last = std::max_element(indices.begin(), indices.end());
    if (last != indices.end() && *last >= accessor.at("count").get<std::size_t>()) {
      throw NImportError("an index is out of range");
    }
  } catch (std::exception const& error) {
    throw NImportError(std::string("a sparse accessor can't be read: ") + error.what());
  }
}

std::optional<std::string> NGltfFile::GetMended() {
  auto const accessors = m_root.find("accessors");
  bool const isPacked = m_root.value("extensionsUsed", json::array()).dump().find("draco") !=
                        std::string::npos;  // whose accessors have their numbers elsewhere
  if (accessors == m_root.end() || isPacked) return std::nullopt;
  for (json const& accessor : *accessors) {
    if (accessor.contains("sparse")) CheckSparse(accessor);
  }
  json mended;
  std::size_t zeroCount = 0;
  for (std::size_t i = 0; i != accessors->size(); ++i) {
    json const& accessor = (*accessors)[i];
    if (accessor.contains("bufferView")) continue;
    std::size_t const count = accessor.value("count", std::size_t(0));
    if (count > kMostZeros || (zeroCount += count) > kMostZeros) {
      throw NImportError("accessors without a buffer view claim more than " +
                         std::to_string(kMostZeros) + " elements");
    }
    if (accessor.contains("sparse")) continue;
    if (mended.is_null()) mended = m_root;
    // It takes one that is sparse, with nothing set.
    json const nothing = {{"bufferView", 0}, {"componentType", 5121}};
    mended["accessors"][i]["sparse"] = {{"count", 0}, {"indices", nothing}, {"values", nothing}};
  }
  if (mended.is_null()) return std::nullopt;
  std::string text = mended.dump();
  if (!m_isBinary) return text;
  text.resize((text.size() + 3) / 4 * 4, ' ');
  return "glTF" + ToWord(2) + ToWord(28 + text.size() + m_chunk.size()) + ToWord(text.size()) +
         "JSON" + text + ToWord(m_chunk.size()) + std::string("BIN\0", 4) + m_chunk;
}

std::string const& NGltfFile::GetBuffer(std::size_t number) {
  json const& buffer = m_root.at("buffers").at(number);
  if (!buffer.contains("uri")) return m_chunk;
  if (auto const known = m_buffers.find(number); known != m_buffers.end()) return known->second;
  auto const& uri = buffer.at("uri").get_ref<std::string const&>();
  if (uri.compare(0, 5, "data:") != 0) {
    return m_buffers[number] = ReadFile(m_opener, (m_folder / Unescape(uri)).string());
  }
  auto const comma = uri.find(";base64,");
  if (comma == std::string::npos) throw NImportError("a buffer in an unknown code");
  return m_buffers[number] = FromBase64(std::string_view(uri).substr(comma + 8));
}

}  // namespace corvanta::importer::reader
