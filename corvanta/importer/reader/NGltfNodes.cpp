#include "corvanta/importer/reader/NGltfNodes.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "corvanta/core/text/message.h"
#include "corvanta/importer/NImportError.h"

namespace corvanta::importer::reader {

NGltfNodes::NGltfNodes(tinygltf::Model const& model)
    : m_model(model), m_first(model.nodes.size(), neutral::kNone) {
  std::vector<int> const tops = FindTops();
  if (tops.empty()) throw NImportError("no root node");
  CutCycles(tops);
  Check(tops);
  if (tops.size() != 1) m_places.push_back({-1, tops.size()});
  auto const add = [this](std::vector<int> const& numbers) {
    for (int const number : numbers) {
      auto& first = m_first[static_cast<std::size_t>(number)];
      if (first == neutral::kNone) first = static_cast<std::uint32_t>(m_places.size());
      m_places.push_back({number, GetChildren(number).size()});
    }
  };
  add(tops);
  for (std::size_t i = 0; i != m_places.size(); ++i) {
    if (m_places[i].node >= 0) add(GetChildren(m_places[i].node));
  }
}

std::vector<int> NGltfNodes::FindTops() const {
  if (!m_model.scenes.empty()) {
    std::size_t const scene = IsIn(m_model.scenes, m_model.defaultScene)
                                  ? static_cast<std::size_t>(m_model.defaultScene)
                                  : 0;
    return m_model.scenes[scene].nodes;
  }
  std::vector<bool> isListed(m_model.nodes.size());
  for (auto const& node : m_model.nodes) {
    for (int const child : node.children) {
      if (IsIn(isListed, child)) isListed[static_cast<std::size_t>(child)] = true;
    }
  }
  std::vector<int> tops;
  for (std::size_t i = 0; i != isListed.size(); ++i) {
    if (!isListed[i]) tops.push_back(static_cast<int>(i));
  }
  return tops;
}

void NGltfNodes::CutCycles(std::vector<int> const& tops) {
  enum State : char { kNew, kOpen, kDone };
  struct Visit {
    int node;
    std::size_t next;  // child
  };
  std::vector<State> states(m_model.nodes.size(), kNew);
  std::map<int, std::vector<std::size_t>> cuts;  // places of children
  std::vector<Visit> path;
  auto const enter = [&](int node) {
    states[static_cast<std::size_t>(node)] = kOpen;
    path.push_back({node, 0});
  };
  for (int const top : tops) {
    if (IsIn(m_model.nodes, top) && states[static_cast<std::size_t>(top)] == kNew) enter(top);
    while (!path.empty()) {
      auto const [node, next] = path.back();
      auto const& children = m_model.nodes[static_cast<std::size_t>(node)].children;
      if (next == children.size()) {
        states[static_cast<std::size_t>(node)] = kDone;
        path.pop_back();
        continue;
      }
      ++path.back().next;
      int const child = children[next];
      if (!IsIn(m_model.nodes, child)) continue;
      State const state = states[static_cast<std::size_t>(child)];
      if (state == kOpen) cuts[node].push_back(next);
      if (state == kNew) enter(child);
    }
  }
  for (auto const& [node, places] : cuts) {
    auto const& children = m_model.nodes[static_cast<std::size_t>(node)].children;
    auto& mended = m_mended[node];
    for (std::size_t i = 0; i != children.size(); ++i) {
      if (!std::binary_search(places.begin(), places.end(), i)) mended.push_back(children[i]);
    }
    m_cutCount += places.size();
  }
}

std::vector<std::string> NGltfNodes::GetNotes() const {
  if (m_cutCount == 0) return {};
  return {core::text::Plural(m_cutCount, "node stands below itself, and was left out there",
                             "nodes stand below themselves, and were left out there")};
}

void NGltfNodes::Check(std::vector<int> const& tops) const {
  std::size_t const count = m_model.nodes.size();
  std::vector<std::size_t> listings(count);  // by nodes that the scene shows, not yet counted
  std::vector<double> places(count);         // of each node in the scene
  std::vector<bool> isKnown(count);
  std::vector<int> open;
  auto const meet = [&](int number) {
    if (!IsIn(m_model.nodes, number)) {
      throw NImportError("node " + std::to_string(number) + " isn't there");
    }
    auto const at = static_cast<std::size_t>(number);
    if (isKnown[at]) return;
    isKnown[at] = true;
    open.push_back(number);
  };
  for (int const top : tops) {
    meet(top);
    places[static_cast<std::size_t>(top)] += 1.0;
  }
  for (std::size_t i = 0; i != open.size(); ++i) {
    for (int const child : GetChildren(open[i])) {
      meet(child);
      ++listings[static_cast<std::size_t>(child)];
    }
  }
  // A node comes after all that list it.
  open.erase(
      std::remove_if(open.begin(), open.end(),
                     [&](int node) { return listings[static_cast<std::size_t>(node)] != 0; }),
      open.end());
  double total = 0.0;
  for (std::size_t i = 0; i != open.size(); ++i) {
    double const here = places[static_cast<std::size_t>(open[i])];
    total += here;
    for (int const child : GetChildren(open[i])) {
      auto const at = static_cast<std::size_t>(child);
      places[at] += here;
      if (--listings[at] == 0) open.push_back(child);
    }
  }
  if (total > static_cast<double>(neutral::kMostItems)) {
    throw NImportError("more than " + std::to_string(neutral::kMostItems) + " items");
  }
}

std::array<float, 16> GetTransform(tinygltf::Node const& node, std::size_t number) {
  // Column after column for column vectors is row after row for row vectors.
  std::array<double, 16> m{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
  if (node.matrix.size() == 16) {
    std::copy(node.matrix.begin(), node.matrix.end(), m.begin());
  } else {
    if (node.rotation.size() == 4) {
      double const length = std::hypot(std::hypot(node.rotation[0], node.rotation[1]),
                                       std::hypot(node.rotation[2], node.rotation[3]));
      double const scale = length > 0.0 ? 1.0 / length : 0.0;
      double const x = node.rotation[0] * scale, y = node.rotation[1] * scale;
      double const z = node.rotation[2] * scale, w = length > 0.0 ? node.rotation[3] * scale : 1.0;
      m = {1 - 2 * (y * y + z * z),
           2 * (x * y + z * w),
           2 * (x * z - y * w),
           0,
           2 * (x * y - z * w),
           1 - 2 * (x * x + z * z),
           2 * (y * z + x * w),
           0,
           2 * (x * z + y * w),
           2 * (y * z - x * w),
           1 - 2 * (x * x + y * y),
           0,
           0,
           0,
           0,
           1};
    }
    for (std::size_t axis = 0; node.scale.size() == 3 && axis != 3; ++axis) {
      for (std::size_t k = 0; k != 3; ++k) m[4 * axis + k] *= node.scale[axis];
    }
    if (node.translation.size() == 3) {
      std::copy(node.translation.begin(), node.translation.end(), m.begin() + 12);
    }
  }
  std::array<float, 16> transform;
  std::transform(m.begin(), m.end(), transform.begin(),
                 [](double value) { return static_cast<float>(value); });
  if (!std::all_of(transform.begin(), transform.end(),
                   [](float value) { return std::isfinite(value); })) {
    throw NImportError("node \"" + GetName(node.name, "nodes", number) +
                       "\": its transform isn't finite");
  }
  return transform;
}

}  // namespace corvanta::importer::reader
