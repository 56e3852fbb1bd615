#pragma once

#include <gmock/gmock.h>

#include <boost/crc.hpp>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "corvanta/data/domain/light_env/NLamp.h"
#include "corvanta/data/domain/light_env/NLightEnvNode.h"
#include "corvanta/importer/import.h"
#include "tests/render/world.h"
#include "tests/support/temporary_files.h"

namespace corvanta::render_tests {

using nlohmann::json;
using Texel = std::array<unsigned char, 4>;

/// A PNG file of those pixels, rows from the top.
inline std::string MakePng(unsigned width, unsigned height, std::vector<Texel> const& texels) {
  auto const word = [](std::uint32_t value) {
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>(value >> shift);
    return bytes;
  };
  auto const chunk = [&word](std::string const& typed) {
    boost::crc_32_type crc;
    crc.process_bytes(typed.data(), typed.size());
    return word(static_cast<std::uint32_t>(typed.size() - 4)) + typed + word(crc.checksum());
  };
  std::string packed("\x78\x01", 2);
  std::uint32_t a = 1, b = 0;  // Adler-32
  for (unsigned y = 0; y != height; ++y) {
    std::string row(1, '\0');
    for (unsigned x = 0; x != width; ++x) {
      for (unsigned char const part : texels[y * width + x]) row += static_cast<char>(part);
    }
    for (char const c : row) b = (b + (a = (a + static_cast<unsigned char>(c)) % 65521)) % 65521;
    for (std::size_t at = 0; at < row.size(); at += 65535) {
      auto const size = static_cast<unsigned>(std::min<std::size_t>(row.size() - at, 65535));
      packed += static_cast<char>(y + 1 == height && at + size == row.size());
      for (unsigned const half : {size, ~size}) {
        packed += {static_cast<char>(half), static_cast<char>(half >> 8)};
      }
      packed += row.substr(at, size);
    }
  }
  packed += word(b << 16 | a);
  return "\x89PNG\r\n\x1A\n" +
         chunk("IHDR" + word(width) + word(height) + std::string("\x08\x06\0\0\0", 5)) +
         chunk("IDAT" + packed) + chunk("IEND");
}

/// A primitive of a glTF file; what is empty is left out. At first it is a square from -4 to 4 in x
/// and y at z = 0 that faces the camera, with texture coordinates from 0 to 1.
struct Primitive {
  std::vector<float> positions{-4, -4, 0, 4, -4, 0, 4, 4, 0, -4, 4, 0};
  std::vector<float> normals{0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1};
  std::vector<float> uvs{0, 1, 1, 1, 1, 0, 0, 0};
  std::vector<float> colors{};  // four a vertex
  std::vector<unsigned> indices{0, 1, 2, 0, 2, 3};
  int mode = 4;
};

/// Models from files in a black environment with one lamp, which shines along -z.
class FileWorld : public World {
 protected:
  void SetUp() override {
    World::SetUp();
    if (IsSkipped()) return;
    m_environment = m_document.GetEnvironments().CreateNode(NNodeID());
    SetColor(*m_environment, L"color", 0, 0, 0);
    SetColor(*m_environment, L"ambientLight", 0, 0, 0);
    m_environment->SetHdrBloom(0);
    m_scene->SetEnvironment(m_environment);
    auto const lamps = m_document.GetLightEnvs().CreateNode(NNodeID());
    m_environment->AddLightEnv(lamps);
    m_lamp = lamps->CreateLamp(L"lamp");
    m_lamp->SetDirectionX(0);
    m_lamp->SetDirectionY(0);
    m_lamp->SetDirectionZ(-1);
  }

  /// Shows the model of a file in place of the one before.
  void Show(std::string const& name, std::string const& content) {
    m_files.Write(name, content);
    if (m_shown) m_root->RemoveChild(*m_shown);
    m_model = importer::ImportModel(m_document, (m_files.GetFolder() / name).string());
    m_shown = World::Show(m_model.tree, *m_root);
  }

  /// Shows a glTF file of one primitive with one material. Textures are numbered as `pictures` are.
  void ShowGltf(json const& material, std::vector<std::string> const& pictures = {},
                Primitive const& primitive = {}, json const& sampler = json::object()) {
    std::string bytes;
    json accessors = json::array(), views = json::array(), attributes;
    auto const add = [&](auto const& values, unsigned width, char const* type, int component) {
      auto const size = values.size() * sizeof(values[0]);
      views.push_back({{"buffer", 0}, {"byteOffset", bytes.size()}, {"byteLength", size}});
      accessors.push_back({{"bufferView", views.size() - 1},
                           {"componentType", component},
                           {"count", values.size() / width},
                           {"type", type}});
      bytes.append(reinterpret_cast<char const*>(values.data()), size);
      return accessors.size() - 1;
    };
    attributes["POSITION"] = add(primitive.positions, 3, "VEC3", 5126);
    if (!primitive.normals.empty()) attributes["NORMAL"] = add(primitive.normals, 3, "VEC3", 5126);
    if (!primitive.uvs.empty()) attributes["TEXCOORD_0"] = add(primitive.uvs, 2, "VEC2", 5126);
    if (!primitive.colors.empty()) attributes["COLOR_0"] = add(primitive.colors, 4, "VEC4", 5126);
    json drawn = {{"attributes", attributes}, {"material", 0}, {"mode", primitive.mode}};
    if (!primitive.indices.empty()) drawn["indices"] = add(primitive.indices, 1, "SCALAR", 5125);
    m_files.Write("model.bin", bytes);
    json file = {{"asset", {{"version", "2.0"}}},
                 {"scene", 0},
                 {"scenes", {{{"nodes", {0}}}}},
                 {"nodes", {{{"mesh", 0}, {"name", "model"}}}},
                 {"meshes", {{{"primitives", {drawn}}}}},
                 {"materials", {material}},
                 {"accessors", accessors},
                 {"bufferViews", views},
                 {"samplers", {sampler}},
                 {"buffers", {{{"uri", "model.bin"}, {"byteLength", bytes.size()}}}}};
    for (std::size_t i = 0; i != pictures.size(); ++i) {
      std::string const name = "picture" + std::to_string(m_pictureCount++) + ".png";
      m_files.Write(name, pictures[i]);
      file["images"].push_back({{"uri", name}});
      file["textures"].push_back({{"source", i}, {"sampler", 0}});
    }
    Show("model.gltf", file.dump());
  }

  support::TemporaryFiles m_files;
  boost::intrusive_ptr<data::domain::environment::NEnvironmentNode> m_environment;
  boost::intrusive_ptr<data::domain::light_env::NLamp> m_lamp;
  importer::NImportedModel m_model;
  boost::intrusive_ptr<item::NSceneGraphReferenceNode> m_shown;
  int m_pictureCount = 0;
};

}  // namespace corvanta::render_tests
