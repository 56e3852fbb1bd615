#include "corvanta/importer/reader/NGltfConverter.h"

#include <algorithm>
#include <cmath>

#include "corvanta/importer/NImportError.h"
#include "corvanta/importer/reader/NGltfAnimations.h"

namespace corvanta::importer::reader {

namespace {

neutral::NLightKind GetKind(std::string const& type) {
  if (type == "directional") return neutral::NLK_DIRECTIONAL;
  if (type == "point") return neutral::NLK_POINT;
  return type == "spot" ? neutral::NLK_SPOT : neutral::NLK_OTHER;
}

int GetLight(tinygltf::Node const& node) {
  auto const* const light = FindExtension(node.extensions, "KHR_lights_punctual");
  return light == nullptr ? -1 : GetWhole(*light, "light");
}

}  // namespace

NGltfConverter::NGltfConverter(tinygltf::Model const& model, neutral::NSceneWriter& writer)
    : m_model(model),
      m_writer(writer),
      m_accessors(model),
      m_nodes(model),
      m_materials(model, m_accessors, writer),
      m_deformations(model, m_accessors, writer),
      m_meshes(model, m_accessors, m_materials, m_deformations, writer) {}

void NGltfConverter::Convert() {
  for (auto const& light : m_model.lights) AddLight(light);
  for (auto const& camera : m_model.cameras) AddCamera(camera);
  m_deformations.AddSkins(m_nodes);
  auto const& places = m_nodes.GetPlaces();
  for (NGltfNodes::Place const& place : places) {
    bool const isFile = place.node >= 0;
    auto const number = static_cast<std::size_t>(isFile ? place.node : 0);
    if (isFile) {
      AddNode(m_model.nodes[number], number, place.childCount);
    } else {
      tinygltf::Node root;
      root.name = "ROOT";
      AddNode(root, 0, place.childCount);
    }
  }
  bool const isEmpty = m_model.meshes.empty() && m_model.lights.empty() &&
                       m_model.cameras.empty() && places.size() == 1;
  if (isEmpty || (!m_model.meshes.empty() && !m_meshes.HasTriangles())) {
    throw NImportError("no faces, lines or points");
  }
  AddAnimations();
}

void NGltfConverter::AddLight(tinygltf::Light const& light) {
  neutral::NTriple color{1.0f, 1.0f, 1.0f};
  for (std::size_t k = 0; k != 3; ++k) {
    double const own = light.color.size() == 3 ? light.color[k] : 1.0;
    color[k] = static_cast<float>(own * light.intensity);
  }
  m_writer.Get<neutral::NLight>().push_back({m_writer.AddText(light.name),
                                             GetKind(light.type),
                                             {},
                                             {0.0f, 0.0f, -1.0f},
                                             color,
                                             static_cast<float>(light.spot.innerConeAngle),
                                             static_cast<float>(light.spot.outerConeAngle)});
}

void NGltfConverter::AddCamera(tinygltf::Camera const& source) {
  neutral::NCamera camera{
      m_writer.AddText(source.name), {}, {0.0f, 0.0f, -1.0f}, {0.0f, 1.0f, 0.0f}, 0.0f, 0.0f, 0.0f};
  if (source.type == "orthographic") {
    auto const& lens = source.orthographic;
    camera.orthographicWidth = static_cast<float>(lens.xmag);
    camera.aspect = static_cast<float>(lens.ymag != 0.0 ? lens.xmag / lens.ymag : 1.0);
  } else {
    auto const& lens = source.perspective;
    camera.aspect = static_cast<float>(lens.aspectRatio);
    double const aspect = lens.aspectRatio > 0.0 ? lens.aspectRatio : 1.0;
    camera.horizontalAngle =
        static_cast<float>(2.0 * std::atan(std::tan(lens.yfov * 0.5) * aspect));
  }
  m_writer.Get<neutral::NCamera>().push_back(camera);
}

// The light or camera `number` at `node`, whose name it takes where it has none.
template <class T>
neutral::NNumbers NGltfConverter::AddOne(tinygltf::Node const& node, int number) {
  auto& elements = m_writer.Get<T>();
  if (!IsIn(elements, number)) return {};
  auto const own = static_cast<std::uint32_t>(number);
  if (elements[own].name.count == 0) elements[own].name = m_writer.AddText(node.name);
  ++m_itemCount;
  return m_writer.Add(std::span<std::uint32_t const>(&own, 1));
}

void NGltfConverter::AddNode(tinygltf::Node const& source, std::size_t number,
                             std::size_t childCount) {
  neutral::NNode node{};
  node.name = m_writer.AddText(GetName(source.name, "nodes", number));
  node.transform = GetTransform(source, number);
  if (source.mesh >= 0) {
    if (!IsIn(m_model.meshes, source.mesh)) {
      throw NImportError("node \"" + GetName(source.name, "nodes", number) +
                         "\": a mesh that isn't there");
    }
    auto const& primitives = m_meshes.GetPrimitives(static_cast<std::size_t>(source.mesh));
    node.meshes = m_writer.Add(primitives);
    m_itemCount += primitives.size();
    m_deformations.SetUp(source, node);
  }
  node.lights = AddOne<neutral::NLight>(source, GetLight(source));
  node.cameras = AddOne<neutral::NCamera>(source, source.camera);
  node.childCount = childCount;
  if (++m_itemCount > neutral::kMostItems) {
    throw NImportError("more than " + std::to_string(neutral::kMostItems) + " items");
  }
  m_writer.Get<neutral::NNode>().push_back(node);
}

void NGltfConverter::AddAnimations() {
  NGltfAnimations const animations(m_model, m_accessors);
  for (std::size_t i = 0; i != m_model.animations.size(); ++i) {
    auto const& source = animations.GetAnimations()[i];
    std::vector<neutral::NChannel> channels;
    std::vector<neutral::NWeightChannel> weights;
    double duration = 0.0;
    auto const take = [&duration](auto const& keys) {
      if (!keys.empty()) duration = std::max(duration, keys.back().time);
    };
    auto const addName = [this](std::size_t node) {
      return m_writer.AddText(GetName(m_model.nodes[node].name, "nodes", node));
    };
    for (auto const& channel : source.channels) {
      auto const node = static_cast<std::size_t>(channel.node);
      channels.push_back({addName(node), m_nodes.GetFirstPlace(node),
                          m_writer.Add(channel.positions), m_writer.Add(channel.rotations),
                          m_writer.Add(channel.scales)});
      take(channel.positions);
      take(channel.rotations);
      take(channel.scales);
    }
    for (auto const& channel : source.weights) {
      auto const node = static_cast<std::size_t>(channel.node);
      weights.push_back(
          {addName(node), m_nodes.GetFirstPlace(node), channel.target, m_writer.Add(channel.keys)});
      take(channel.keys);
    }
    m_writer.Get<neutral::NAnimation>().push_back(
        {m_writer.AddText(m_model.animations[i].name), 1000.0, duration, m_writer.Add(channels),
         source.faultCount, m_writer.AddText(source.firstFault), m_writer.Add(weights)});
  }
}

std::vector<std::string> NGltfConverter::GetNotes() const {
  std::vector<std::string> notes = m_nodes.GetNotes();
  for (auto const& more :
       {m_materials.GetNotes(), m_meshes.GetNotes(), m_deformations.GetNotes()}) {
    notes.insert(notes.end(), more.begin(), more.end());
  }
  return notes;
}

}  // namespace corvanta::importer::reader
