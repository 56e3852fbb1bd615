#include "corvanta/importer/reader/gltf_pointers.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <nlohmann/json.hpp>
#include <string_view>

namespace corvanta::importer::reader {

namespace {

using nlohmann::json;

constexpr std::string_view kPointer = "KHR_animation_pointer";
constexpr std::size_t kHeaders = 20;  // bytes before the text of a binary file

json* Find(json& object, std::string_view key) {
  if (!object.is_object()) return nullptr;
  auto const found = object.find(std::string(key));
  return found == object.end() ? nullptr : &*found;
}

// Shows each element of a list below `object`.
template <class Use>
void ForEach(json& object, char const* key, Use const& use) {
  json* const list = Find(object, key);
  if (list == nullptr || !list->is_array()) return;
  for (json& element : *list) use(element);
}

// Fails: empty where no channel has a pointer.
std::string AddNodes(std::string_view text) {
  json root = json::parse(text, nullptr, false);
  bool isChanged = false;
  auto const change = [&isChanged](json& channel) {
    json* const target = Find(channel, "target");
    json* const extensions = target == nullptr ? nullptr : Find(*target, "extensions");
    if (extensions == nullptr || Find(*extensions, kPointer) == nullptr) return;
    (*target)["node"] = -1;
    isChanged = true;
  };
  ForEach(root, "animations",
          [&change](json& animation) { ForEach(animation, "channels", change); });
  return isChanged ? root.dump(-1, ' ', false, json::error_handler_t::replace) : "";
}

std::uint32_t ReadWord(std::string const& bytes, std::size_t at) {
  std::uint32_t word = 0;
  std::memcpy(&word, bytes.data() + at, sizeof word);
  return word;
}
void WriteWord(std::string& bytes, std::size_t at, std::size_t value) {
  auto const word = static_cast<std::uint32_t>(value);
  std::memcpy(bytes.data() + at, &word, sizeof word);
}

}  // namespace

std::string GetWithPointedNodes(std::string const& bytes) {
  bool const isBinary = bytes.compare(0, 4, "glTF") == 0 && bytes.size() >= kHeaders;
  std::size_t const begin = isBinary ? kHeaders : 0;
  std::size_t const length =
      isBinary ? std::min<std::size_t>(ReadWord(bytes, 12), bytes.size() - begin) : bytes.size();
  std::string_view const text(bytes.data() + begin, length);
  if (text.find(kPointer) == std::string_view::npos) return "";
  std::string changed = AddNodes(text);
  if (changed.empty() || !isBinary) return changed;
  changed.resize((changed.size() + 3) / 4 * 4, ' ');
  std::string whole = bytes.substr(0, begin) + changed + bytes.substr(begin + length);
  WriteWord(whole, 8, whole.size());
  WriteWord(whole, 12, changed.size());
  return whole;
}

}  // namespace corvanta::importer::reader
