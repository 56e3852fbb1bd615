#include "app/import/gltf_nodes.h"

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include "app/import/NImportError.h"

namespace corvanta::app {

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

}  // namespace corvanta::app
