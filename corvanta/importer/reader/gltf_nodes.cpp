#include "corvanta/importer/reader/gltf_nodes.h"

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include "corvanta/importer/NImportError.h"
#include "corvanta/importer/neutral/scene.h"

namespace corvanta::importer::reader {

namespace {

using nlohmann::json;

std::optional<std::size_t> GetCamera(json const& node) {
  auto const camera = node.find("camera");
  if (camera == node.end()) return std::nullopt;
  return camera->get<std::size_t>();
}

std::optional<std::size_t> GetLight(json const& node) {
  static json::json_pointer const kLight("/extensions/KHR_lights_punctual/light");
  if (!node.contains(kLight)) return std::nullopt;
  return node.at(kLight).get<std::size_t>();
}

template <class Named, class GetNumber>
std::unordered_map<aiNode const*, unsigned> FindOthers(json const& root, NGltfNodes const& nodes,
                                                       Named* const* named, unsigned count,
                                                       GetNumber const& getNumber) {
  std::map<std::size_t, std::vector<aiNode const*>> users;
  for (std::size_t i = 0; i != nodes.size() && count != 0; ++i) {
    if (nodes[i] == nullptr) continue;
    if (auto const number = getNumber(root.at("nodes").at(i))) users[*number].push_back(nodes[i]);
  }
  std::map<std::string, unsigned> byName;
  for (unsigned i = 0; i != count; ++i) byName.emplace(named[i]->mName.C_Str(), i);
  std::unordered_map<aiNode const*, unsigned> others;
  for (auto const& [number, sharing] : users) {
    for (aiNode const* const known : sharing) {
      auto const found = byName.find(known->mName.C_Str());
      if (found == byName.end()) continue;
      for (aiNode const* const node : sharing) {
        if (node->mName != known->mName) others.emplace(node, found->second);
      }
      break;
    }
  }
  return others;
}

}  // namespace

std::string GetNodeName(json const& node, std::size_t number) {
  auto const name = node.value("name", std::string());
  return name.empty() ? "nodes[" + std::to_string(number) + ']' : name;
}

void CheckItemCount(json const& root) {
  static json const kNone = json::array();
  auto const getList = [](json const& owner, char const* name) -> json const& {
    auto const list = owner.find(name);
    return list != owner.end() && list->is_array() ? *list : kNone;
  };
  json const& nodes = getList(root, "nodes");
  std::vector<double> places(nodes.size());         // of each node in the scene
  std::vector<std::size_t> listings(nodes.size());  // not yet counted
  auto const forEachChild = [&](json const& list, auto const& what) {
    for (json const& number : list) {
      if (number.is_number_unsigned() && number < nodes.size()) what(number.get<std::size_t>());
    }
  };
  for (json const& node : nodes) {
    forEachChild(getList(node, "children"), [&](std::size_t child) { ++listings[child]; });
  }
  for (json const& scene : getList(root, "scenes")) {
    forEachChild(getList(scene, "nodes"), [&](std::size_t top) { places[top] += 1.0; });
  }
  // A node comes after all that list it; one that stands below itself never does.
  std::vector<std::size_t> open;
  for (std::size_t i = 0; i != nodes.size(); ++i) {
    if (listings[i] == 0) open.push_back(i);
  }
  double total = 0.0;
  while (!open.empty()) {
    std::size_t const node = open.back();
    open.pop_back();
    total += places[node];
    forEachChild(getList(nodes[node], "children"), [&](std::size_t child) {
      places[child] += places[node];
      if (--listings[child] == 0) open.push_back(child);
    });
  }
  if (total > static_cast<double>(neutral::kMostItems)) {
    throw NImportError("more than " + std::to_string(neutral::kMostItems) + " items");
  }
}

// The reader's nodes stand as those of the file.
NGltfNodes MatchNodes(json const& root, aiScene const& scene) {
  json const& nodes = root.at("nodes");
  NGltfNodes matched(nodes.size());
  auto const& tops = root.at("scenes").at(root.value("scene", std::size_t(0))).at("nodes");
  std::vector<std::pair<std::size_t, aiNode const*>> open;
  auto const add = [&open](json const& numbers, aiNode* const* places, std::size_t placeCount) {
    if (numbers.size() != placeCount) throw NImportError("other nodes");
    for (std::size_t i = 0; i != placeCount; ++i) {
      open.emplace_back(numbers[i].get<std::size_t>(), places[i]);
    }
  };
  if (tops.size() == 1) {
    add(tops, &scene.mRootNode, 1);
  } else {
    add(tops, scene.mRootNode->mChildren, scene.mRootNode->mNumChildren);
  }
  while (!open.empty()) {
    auto const [number, place] = open.back();
    open.pop_back();
    json const& node = nodes.at(number);
    if (GetNodeName(node, number) != place->mName.C_Str()) throw NImportError("other nodes");
    matched.at(number) = place;
    if (auto const children = node.find("children"); children != node.end()) {
      add(*children, place->mChildren, place->mNumChildren);
    }
  }
  return matched;
}

NSharedContent FindShared(json const& root, NGltfNodes const& nodes, aiScene const& scene) {
  return {FindOthers(root, nodes, scene.mLights, scene.mNumLights, GetLight),
          FindOthers(root, nodes, scene.mCameras, scene.mNumCameras, GetCamera)};
}

}  // namespace corvanta::importer::reader
