#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <draco/compression/encode.h>
#include <draco/mesh/triangle_soup_mesh_builder.h>

#include <cmath>
#include <cstring>

#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"
#include "corvanta/importer/NImportError.h"
#include "corvanta/importer/import.h"
#include "tests/app/program.h"

namespace corvanta::app_tests {
namespace {

namespace item = data::domain::scenegraph::item;
using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;

// A file whose models can be looked at.
class Read {
 public:
  explicit Read(std::string const& content, std::string const& name = "model.gltf") {
    m_files.Write(name, content);
    m_model = importer::ImportModel(m_document, (m_files.GetFolder() / name).string());
  }

  std::vector<std::string> const& GetNotes() const { return m_model.notes; }
  std::string GetRootName() const {
    std::wstring const name = m_model.tree->GetRoot()->GetName();
    return {name.begin(), name.end()};
  }
  boost::intrusive_ptr<data::domain::geometry::NSurface> GetSurface(
      std::wstring const& name) const {
    for (auto const& node : m_document.QueryNodes(name)) {
      if (auto const* const model = dynamic_cast<item::NSceneGraphModelNode*>(node.get()))
        return *model->GetGeometryNode()->GetSurfaces().begin();
    }
    throw std::out_of_range("no model of that name");
  }
  // Twice the area that its triangles cover, seen from above: those that are turned over count
  // less.
  double GetArea(std::wstring const& name) const {
    auto const surface = GetSurface(name);
    auto const& coords = surface->GetCoords();
    auto const& indices = surface->GetIndices();
    double area = 0.0;
    for (std::size_t i = 0; i != indices.size(); i += 3) {
      auto const &a = coords[indices[i]], &b = coords[indices[i + 1]], &c = coords[indices[i + 2]];
      area += (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
    }
    return area;
  }

 private:
  support::TemporaryFiles const m_files;
  data::document::NDocument m_document;
  importer::NImportedModel m_model;
};

std::string GetReason(std::string const& content, std::string const& name = "model.gltf") {
  try {
    Read const read(content, name);
  } catch (importer::NImportError const& error) {
    return error.what();
  }
  return "";
}

// All modes draw one convex outline, counter-clockwise, so that the areas tell the winding too.
TEST(GltfTest, EveryModeOfSurfacesBecomesTriangles) {
  Mesh pentagon;
  for (int i = 0; i != 5; ++i) {
    double const angle = i * 2 * 3.14159265358979 / 5;
    pentagon.coords.insert(pentagon.coords.end(), {static_cast<float>(std::cos(angle)),
                                                   static_cast<float>(std::sin(angle)), 0});
  }
  double const whole = 5 * std::sin(2 * 3.14159265358979 / 5);
  struct Row {
    int mode;
    std::vector<unsigned> indices;
    std::size_t count;
  };
  for (Row const& row : {Row{4, {0, 1, 2, 0, 2, 3, 0, 3, 4, 0}, 3}, Row{5, {0, 1, 4, 2, 3}, 3},
                         Row{6, {2, 3, 4, 0, 1}, 3}}) {
    for (bool const isIndexed : {true, false}) {
      SCOPED_TRACE(std::to_string(row.mode) + (isIndexed ? " indexed" : ""));
      Mesh mesh = pentagon;
      mesh.indices = row.indices;
      if (!isIndexed) {
        mesh.coords.clear();
        for (unsigned const i : row.indices) {
          auto const* const from = pentagon.coords.data() + 3 * i;
          mesh.coords.insert(mesh.coords.end(), from, from + 3);
        }
      }
      json file = json::parse(MakeGltf({mesh}, kOneNode));
      auto& primitive = file["meshes"][0]["primitives"][0];
      primitive["mode"] = row.mode;
      if (!isIndexed) primitive.erase("indices");
      Read const read(file.dump());
      EXPECT_NEAR(read.GetArea(L"only"), whole, 1e-5);
      EXPECT_EQ(read.GetSurface(L"only")->GetIndices().size(), 3 * row.count);
      EXPECT_EQ(read.GetSurface(L"only")->GetCoords().size(), 5u);
    }
  }
}

// Positions of 16 bits as KHR_mesh_quantization has them, plain and as fractions, with indices of 8
// bits; only the vertices in use arrive.
TEST(GltfTest, ReadsQuantizedMeshesAndOnlyWhatTheyUse) {
  std::string const bytes =
      ToBytes<std::int16_t>({9, 9, 9, 0, 0, 0, 0, 0, 200, 0, 0, 0, 0, 100, 0, 0}) +
      ToBytes<std::uint8_t>({1, 2, 3, 0});
  for (bool const isFraction : {false, true}) {
    json file = json::parse(MakeGltf({}, kOneNode));
    file["extensionsUsed"] = file["extensionsRequired"] = {"KHR_mesh_quantization"};
    file["buffers"] = {{{"byteLength", bytes.size()},
                        {"uri", "data:application/octet-stream;base64," + ToBase64(bytes)}}};
    file["bufferViews"] = {{{"buffer", 0}, {"byteLength", 32}, {"byteStride", 8}},
                           {{"buffer", 0}, {"byteOffset", 32}, {"byteLength", 3}}};
    file["accessors"] = {
        {{"bufferView", 0},
         {"componentType", 5122},
         {"normalized", isFraction},
         {"count", 4},
         {"type", "VEC3"}},
        {{"bufferView", 1}, {"componentType", 5121}, {"count", 3}, {"type", "SCALAR"}}};
    file["meshes"] = {{{"primitives", {{{"attributes", {{"POSITION", 0}}}, {"indices", 1}}}}}};
    Read const read(file.dump());
    double const unit = isFraction ? 1.0 / 32767 : 1.0;
    EXPECT_NEAR(read.GetArea(L"only"), 20000 * unit * unit, 1e-6);
    EXPECT_EQ(read.GetSurface(L"only")->GetCoords().size(), 3u);
    EXPECT_THAT(read.GetNotes(), testing::IsEmpty());
  }
}

// Each of many primitives takes a few vertices of one array.
TEST(GltfTest, APrimitiveTakesTheVerticesThatItUses) {
  constexpr unsigned kVertices = 50'000, kPrimitives = 400;
  Mesh mesh;
  for (unsigned i = 0; i != kVertices; ++i) {
    mesh.coords.insert(mesh.coords.end(), {static_cast<float>(i), i % 2 ? 1.0f : 0.0f, 0.0f});
  }
  mesh.indices = {0, 2, 1};
  json file = json::parse(MakeGltf({mesh}, kOneNode));
  auto& primitives = file["meshes"][0]["primitives"];
  for (unsigned i = 1; i != kPrimitives; ++i) primitives.push_back(primitives[0]);
  support::TemporaryFiles const files;
  files.Write("shared.gltf", file.dump());
  Result const result = RunProgram(files, {"info", "shared.gltf", "--memory", "40"});
  EXPECT_EQ(result.status, 0) << result.err;
}

// A grid that is packed by the encoder itself.
std::string MakePacked(std::size_t* triangleCount) {
  constexpr int kSide = 8;
  draco::TriangleSoupMeshBuilder builder;
  builder.Start(2 * kSide * kSide);
  int const position =
      builder.AddAttribute(draco::GeometryAttribute::POSITION, 3, draco::DT_FLOAT32);
  int face = 0;
  for (int i = 0; i != kSide * kSide; ++i) {
    float const x = static_cast<float>(i % kSide), y = static_cast<float>(i / kSide);
    std::array<float, 3> const a{x, y, 0}, b{x + 1, y, 0}, c{x + 1, y + 1, 0}, d{x, y + 1, 0};
    builder.SetAttributeValuesForFace(position, draco::FaceIndex(face++), a.data(), b.data(),
                                      c.data());
    builder.SetAttributeValuesForFace(position, draco::FaceIndex(face++), a.data(), c.data(),
                                      d.data());
  }
  *triangleCount = static_cast<std::size_t>(face);
  draco::Encoder encoder;
  draco::EncoderBuffer buffer;
  auto const mesh = builder.Finalize();
  if (!encoder.EncodeMeshToBuffer(*mesh, &buffer).ok()) return "";
  return {buffer.data(), buffer.size()};
}

TEST(GltfTest, UnpacksMeshes) {
  std::size_t triangleCount = 0;
  std::string const bytes = MakePacked(&triangleCount);
  json file = json::parse(MakeGltf({}, kOneNode));
  file["extensionsUsed"] = file["extensionsRequired"] = {"KHR_draco_mesh_compression"};
  auto const setBytes = [&file](std::string const& packed) {
    file["buffers"] = {{{"byteLength", packed.size()},
                        {"uri", "data:application/octet-stream;base64," + ToBase64(packed)}}};
    file["bufferViews"] = {{{"buffer", 0}, {"byteLength", packed.size()}}};
  };
  setBytes(bytes);
  file["accessors"] = {{{"componentType", 5126}, {"count", 81}, {"type", "VEC3"}},
                       {{"componentType", 5123}, {"count", 3 * triangleCount}, {"type", "SCALAR"}}};
  file["meshes"] = {{{"primitives",
                      {{{"attributes", {{"POSITION", 0}}},
                        {"indices", 1},
                        {"extensions",
                         {{"KHR_draco_mesh_compression",
                           {{"bufferView", 0}, {"attributes", {{"POSITION", 0}}}}}}}}}}}};
  Read const read(file.dump());
  EXPECT_NEAR(read.GetArea(L"only"), 2 * 64, 1e-4);
  EXPECT_EQ(read.GetSurface(L"only")->GetCoords().size(), 81u);
  EXPECT_THAT(read.GetNotes(), testing::IsEmpty());

  // Whatever is wrong costs one reason; the program that reads may end.
  json const good = file;
  for (auto const& [pointer, value] : std::vector<std::pair<char const*, json>>{
           {"/meshes/0/primitives/0/extensions/KHR_draco_mesh_compression/bufferView", 7},
           {"/meshes/0/primitives/0/extensions/KHR_draco_mesh_compression/attributes/POSITION", 9},
           {"/meshes/0/primitives/0/extensions/KHR_draco_mesh_compression/attributes", 1},
           {"/meshes/0/primitives/0/indices", 9},
           {"/meshes/0/primitives/0/attributes/POSITION", 9}}) {
    file[json::json_pointer(pointer)] = value;
    EXPECT_NE(GetReason(file.dump()), "") << pointer;
    file = good;
  }
  setBytes(bytes.substr(0, bytes.size() / 2));
  EXPECT_NE(GetReason(file.dump()), "");
}

TEST(GltfTest, AFileThatIsNotSoundIsRefusedWithItsReason) {
  json const good = json::parse(MakeGltf({Triangle()}, kOneNode));
  struct Row {
    char const* pointer;
    json value;
    char const* reason;
  };
  for (Row const& row : std::vector<Row>{
           {"/extensionsRequired", {"EXT_not_known"}, "\"EXT_not_known\", which isn't known"},
           {"/asset/version", "3.0", "\"3.0\""},
           {"/scenes/0/nodes/0", 7, "node 7 isn't there"},
           {"/scenes/0/nodes/0", -1, "node -1 isn't there"},
           {"/nodes/0/children", {4}, "node 4 isn't there"},
           {"/nodes/0/mesh", 3, "a mesh that isn't there"},
           {"/meshes/0/primitives/0/material", 0, "a material that isn't there"},
           {"/meshes/0/primitives/0/indices", 12, ""},
           {"/meshes/0/primitives/0/attributes/POSITION", 12, "accessor that isn't there"},
           {"/meshes/0/primitives/0/attributes/POSITION", 1, "of another kind"},
           {"/meshes/0/primitives/0/attributes/NORMAL", 1, "of another kind"},
           {"/accessors/0/count", 5, "leaves its buffer"},
           {"/accessors/0/count", 1'000'000'000'000'000, "leaves its buffer"},
           {"/accessors/0/byteOffset", 1'000'000'000'000'000, "leaves its buffer"},
           {"/accessors/0/componentType", 5124, "numbers of an unknown kind"},
           {"/accessors/1/componentType", 5126, "indices of an unknown kind"},
           {"/bufferViews/0/buffer", 5, "a buffer that isn't there"},
           {"/bufferViews/0/byteStride", 3, ""},
           {"/buffers/0/uri", "none.bin", "none.bin"},
           {"/images", {{{"bufferView", 9}}}, ""},
           {"/images", {{{"uri", "data:image/png;base64,"}}}, ""}}) {
    json file = good;
    file[json::json_pointer(row.pointer)] = row.value;
    std::string const reason = GetReason(file.dump());
    EXPECT_THAT(reason, HasSubstr(row.reason)) << row.pointer;
    EXPECT_NE(reason, "") << row.pointer;
    EXPECT_EQ(reason.find('\n'), std::string::npos);
  }
  EXPECT_NE(GetReason("glTF", "short.glb"), "");
  EXPECT_NE(GetReason(std::string("glTF\2\0\0\0\xFF\0\0\0\xFF\0\0\0JSON{}", 22), "cut.glb"), "");
}

// A buffer may have more bytes than the file says, not fewer.
TEST(GltfTest, BuffersMayBeLongerThanTheyAreSaidToBe) {
  json file = json::parse(MakeGltf({Triangle()}, kOneNode));
  std::size_t const whole = file["buffers"][0]["byteLength"];
  std::string const bytes =
      ToBytes<float>({0, 0, 0, 1, 0, 0, 0, 1, 0}) + ToBytes<std::uint32_t>({0, 1, 2});
  for (std::size_t const spare : {1u, 2u, 3u, 40u}) {
    std::string const longer = bytes + std::string(spare, 'x');
    file["buffers"][0]["uri"] = "data:application/octet-stream;base64," + ToBase64(longer);
    EXPECT_NEAR(Read(file.dump()).GetArea(L"only"), 1, 1e-6) << spare;
    support::TemporaryFiles const files;
    files.Write("all its.bin", longer);
    file["buffers"][0]["uri"] = "all%20its.bin";
    files.Write("m.gltf", file.dump());
    data::document::NDocument document;
    EXPECT_TRUE(importer::ImportModel(document, (files.GetFolder() / "m.gltf").string()).tree);
  }
  file["buffers"][0] = {{"byteLength", whole + 1},
                        {"uri", "data:application/octet-stream;base64," + ToBase64(bytes)}};
  EXPECT_NE(GetReason(file.dump()), "");
}

TEST(GltfTest, FindsItsTopsAndTellsWhatItLeavesOut) {
  json file = json::parse(MakeGltf(
      {Triangle()}, {{{"name", "below"}, {"mesh", 0}}, {{"name", "top"}, {"children", {0}}}}));
  file["scenes"][0]["nodes"] = {1};
  EXPECT_EQ(Read(file.dump()).GetRootName(), "top");
  file.erase("scene");
  file.erase("scenes");
  file["extensionsUsed"] = {"KHR_materials_ior", "EXT_one", "EXT_other"};
  Read const read(file.dump());
  EXPECT_EQ(read.GetRootName(), "top");
  EXPECT_THAT(read.GetNotes(), ElementsAre(HasSubstr("left out: EXT_one, EXT_other")));
}

// The first version names its parts where the second numbers them.
TEST(GltfTest, TheFirstVersionIsReadToo) {
  std::string const bytes =
      ToBytes<float>({0, 0, 0, 2, 0, 0, 0, 2, 0}) + ToBytes<std::uint16_t>({0, 1, 2, 0});
  json const file = {
      {"asset", {{"version", "1.0"}}},
      {"scene", "all"},
      {"scenes", {{"all", {{"nodes", {"only"}}}}}},
      {"nodes", {{"only", {{"name", "only"}, {"meshes", {"part"}}}}}},
      {"meshes",
       {{"part",
         {{"primitives",
           {{{"attributes", {{"POSITION", "corners"}}}, {"indices", "order"}, {"mode", 4}}}}}}}},
      {"buffers",
       {{"data",
         {{"byteLength", bytes.size()},
          {"uri", "data:application/octet-stream;base64," + ToBase64(bytes)}}}}},
      {"bufferViews",
       {{"first", {{"buffer", "data"}, {"byteOffset", 0}, {"byteLength", 36}, {"target", 34962}}},
        {"second",
         {{"buffer", "data"}, {"byteOffset", 36}, {"byteLength", 6}, {"target", 34963}}}}},
      {"accessors",
       {{"corners",
         {{"bufferView", "first"},
          {"byteOffset", 0},
          {"componentType", 5126},
          {"count", 3},
          {"type", "VEC3"}}},
        {"order",
         {{"bufferView", "second"},
          {"byteOffset", 0},
          {"componentType", 5123},
          {"count", 3},
          {"type", "SCALAR"}}}}}};
  EXPECT_NEAR(Read(file.dump()).GetArea(L"only"), 4, 1e-6);
}

}  // namespace
}  // namespace corvanta::app_tests
