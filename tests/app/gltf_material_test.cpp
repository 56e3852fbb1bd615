#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <iterator>
#include <numbers>

#include "corvanta/core/text/convert.h"
#include "corvanta/data/domain/material/texture_mapping/NUVWMapping.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"
#include "corvanta/data/domain/texture/NTextureUse.h"
#include "corvanta/importer/import.h"
#include "tests/app/program.h"

namespace corvanta::app_tests {
namespace {

namespace domain = data::domain;
using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using enum data::domain::texture::NTextureUse;

Mesh Textured() {
  Mesh mesh = Triangle();
  mesh.uvs = {{0.0f, 0.0f, 1.0f, 0.0f, 0.0f, 1.0f}};
  mesh.material = 0;
  return mesh;
}

// A model of one material.
class Made {
 public:
  explicit Made(json const& material) {
    json const more = {{"materials", {material}},
                       {"images", {{{"uri", "data:image/png;base64," + ToBase64(MakePng())}}}},
                       {"textures", {{{"source", 0}}}}};
    m_files.Write("m.gltf", MakeGltf({Textured()}, {{{"name", "only"}, {"mesh", 0}}}, more));
    m_model = importer::ImportModel(m_document, (m_files.GetFolder() / "m.gltf").string());
    m_item = dynamic_cast<domain::scenegraph::item::NSceneGraphModelNode*>(
        m_model.tree->GetRoot().get());
  }

  domain::material::NMaterialNode& Get() const { return *m_item->GetMaterialNode(); }
  std::vector<std::string> const& GetNotes() const { return m_model.notes; }
  double At(std::string const& attribute) const {
    return Get().QueryAttribute(core::text::ToWide(attribute))->GetValue().GetDouble();
  }
  // The uses of its textures, and where the last of them puts each vertex.
  std::vector<long> GetUses() const {
    std::vector<long> uses;
    for (auto const& [texture, mapping] : Get().GetTextures())
      uses.push_back(texture.Get()->GetType());
    return uses;
  }
  std::vector<data::structs::UVW> GetCoords(std::size_t texture) const {
    std::vector<data::structs::UVW> coords;
    auto const textures = Get().GetTextures();
    auto const& mapping =
        *std::next(textures.begin(), static_cast<std::ptrdiff_t>(texture))->second;
    dynamic_cast<domain::material::texture_mapping::NUVWMapping const&>(mapping)
        .ComputeTextureCoords(**m_item->GetGeometryNode()->GetSurfaces().begin(), coords);
    return coords;
  }

 private:
  support::TemporaryFiles const m_files;
  data::document::NDocument m_document;
  importer::NImportedModel m_model;
  domain::scenegraph::item::NSceneGraphModelNode* m_item = nullptr;
};

json const kPicture = {{"index", 0}};

// Row by row of the table in docs/materials.md, with numbers that were worked out by hand.
TEST(GltfMaterialTest, AttributesFollowTheTable) {
  struct Row {
    char const* name;
    json material;
    std::vector<std::pair<char const*, double>> expected;
  };
  json const red = {1.0, 0.25, 0.0, 0.5};
  auto const pbr = [](json const& base, double metalness, double roughness) {
    return json{
        {"baseColorFactor", base}, {"metallicFactor", metalness}, {"roughnessFactor", roughness}};
  };
  for (Row const& row : std::vector<Row>{
           {"the format's own",
            json::object(),
            {{"diffuse.r", 0},
             {"specular.g", 1},
             {"ambient.b", 1},
             {"power", 0.01},
             {"roughness", 1},
             {"transparency", 1},
             {"ibl.coeff.specular", 1},
             {"clearcoatIndex", 1}}},
           {"plastic",
            {{"pbrMetallicRoughness", pbr(red, 0, 0.5)}},
            {{"diffuse.g", 0.25},
             {"specular.g", 0.04},
             {"ambient.g", 0.29},
             {"power", 30},
             {"ibl.roughness", 0.5},
             {"refractiveIndex", 1.5},
             {"transparency", 1}}},
           {"metal",
            {{"pbrMetallicRoughness", pbr(red, 1, 0)}},
            {{"diffuse.r", 0},
             {"specular.r", 1},
             {"specular.g", 0.25},
             {"specular.b", 0},
             {"power", 10000},
             {"ambient.g", 0.25},
             // The root of 0.2126 + 0.7152 / 4 is 0.6256.
             {"refractiveIndex", 1.62557 / 0.37443}}},
           {"half",
            {{"pbrMetallicRoughness", pbr(red, 0.5, 1)}},
            {{"diffuse.g", 0.125}, {"specular.g", 0.145}}},
           {"blended",
            {{"pbrMetallicRoughness", pbr(red, 0, 1)}, {"alphaMode", "BLEND"}},
            {{"transparency", 0.5}}},
           {"cut",
            {{"pbrMetallicRoughness", pbr(red, 0, 1)}, {"alphaMode", "MASK"}},
            {{"transparency", 1}}},
           {"diamond",
            {{"pbrMetallicRoughness", pbr(red, 0, 1)},
             {"extensions",
              {{"KHR_materials_ior", {{"ior", 2.0}}},
               {"KHR_materials_specular",
                {{"specularFactor", 0.5}, {"specularColorFactor", {1, 0.5, 0}}}}}}},
            {{"specular.r", 1.0 / 18}, {"specular.g", 1.0 / 36}, {"specular.b", 0}}},
           {"paint",
            {{"extensions", {{"KHR_materials_clearcoat", {{"clearcoatFactor", 1.0}}}}}},
            {{"clearcoatIndex", 1.5}}},
           {"lamp",
            {{"emissiveFactor", {1, 0.5, 0}},
             {"extensions", {{"KHR_materials_emissive_strength", {{"emissiveStrength", 4.0}}}}}},
            {{"emissive.r", 4}, {"emissive.g", 2}}},
           {"glass",
            {{"pbrMetallicRoughness", pbr({0.5, 0.5, 0.5, 1}, 0, 0)},
             {"extensions", {{"KHR_materials_transmission", {{"transmissionFactor", 1.0}}}}}},
            {{"transparency", 0.52}, {"diffuse.g", 0.5}}},
           {"clear glass",
            {{"pbrMetallicRoughness", pbr({1, 1, 1, 1}, 0, 0)},
             {"extensions", {{"KHR_materials_transmission", {{"transmissionFactor", 1.0}}}}}},
            {{"transparency", 0.1}}},
           {"unlit",
            {{"pbrMetallicRoughness", pbr(red, 0, 1)},
             {"extensions", {{"KHR_materials_unlit", json::object()}}}},
            {{"emissive.g", 0.25}, {"diffuse.r", 0}, {"ambient.r", 0}, {"specular.r", 0}}},
           {"glossy",
            {{"extensions",
              {{"KHR_materials_pbrSpecularGlossiness",
                {{"diffuseFactor", {0.5, 0, 0, 1}},
                 {"specularFactor", {0.25, 0, 0}},
                 {"glossinessFactor", 0.5}}}}}},
            {{"diffuse.r", 0.5}, {"specular.r", 0.25}, {"power", 30}}}}) {
    Made const made(row.material);
    for (auto const& [attribute, value] : row.expected) {
      EXPECT_NEAR(made.At(attribute), value, 1e-3 * std::max(1.0, value))
          << row.name << ' ' << attribute;
    }
  }
}

TEST(GltfMaterialTest, TexturesKeepTheirUsesAndFactors) {
  Made const full({{"pbrMetallicRoughness",
                    {{"baseColorTexture", kPicture},
                     {"metallicRoughnessTexture", kPicture},
                     {"metallicFactor", 0.75},
                     {"roughnessFactor", 0.5}}},
                   {"normalTexture", {{"index", 0}, {"scale", 0.5}}},
                   {"occlusionTexture", {{"index", 0}, {"strength", 0.25}}},
                   {"alphaMode", "MASK"}});
  EXPECT_THAT(full.GetUses(), ElementsAre(NTU_COLOR, NTU_OPACITY, NTU_METALNESS, NTU_ROUGHNESS,
                                          NTU_NORMAL, NTU_LIGHTMAP));
  std::vector<double> scales;
  std::vector<long> operations;
  for (auto const& [texture, mapping] : full.Get().GetTextures()) {
    scales.push_back(texture.Get()->GetBumpScale());
    operations.push_back(texture.Get()->GetOperationType());
  }
  EXPECT_THAT(scales, ElementsAre(1, 1, 0.75, 0.5, 0.5, 0.25));
  EXPECT_THAT(operations, ElementsAre(3, 128, 0, 0, 0, 0));
  EXPECT_THAT(full.GetNotes(), testing::IsEmpty());
  // Metal only where the picture says so.
  EXPECT_EQ(full.At("diffuse.r"), 1.0);

  json const unlit = {{"KHR_materials_unlit", json::object()}};
  EXPECT_THAT(
      Made({{"pbrMetallicRoughness", {{"baseColorTexture", kPicture}}}, {"extensions", unlit}})
          .GetUses(),
      ElementsAre(NTU_EMISSIVE));
}

// A quarter turn counter-clockwise of coordinates whose v grows downwards, after the scale and
// before the offset.
TEST(GltfMaterialTest, TextureTransformsMoveTheCoordinatesOfTheirTexture) {
  json const moved = {
      {"index", 0},
      {"extensions",
       {{"KHR_texture_transform",
         {{"offset", {0.25, 0.5}}, {"rotation", std::numbers::pi / 2}, {"scale", {2, 3}}}}}}};
  Made const made(
      {{"pbrMetallicRoughness", {{"baseColorTexture", moved}}}, {"emissiveTexture", kPicture}});
  // A metal reflects its colour.
  ASSERT_THAT(made.GetUses(), ElementsAre(NTU_COLOR, NTU_SPECULAR, NTU_EMISSIVE));
  auto const color = made.GetCoords(0), emissive = made.GetCoords(2);
  // The file's (0, 0), (1, 0), (0, 1) become (0.25, 0.5), (0.25, -1.5), (3.25, 0.5).
  double const expected[3][2] = {{0.25, 0.5}, {0.25, 2.5}, {3.25, 0.5}};
  double const plain[3][2] = {{0, 1}, {1, 1}, {0, 0}};
  for (std::size_t i = 0; i != 3; ++i) {
    EXPECT_NEAR(color[i].u, expected[i][0], 1e-6) << i;
    EXPECT_NEAR(color[i].v, expected[i][1], 1e-6) << i;
    EXPECT_NEAR(emissive[i].u, plain[i][0], 1e-6) << i;
    EXPECT_NEAR(emissive[i].v, plain[i][1], 1e-6) << i;
  }
}

// Two shoes, one of which looks the same in every variant.
json MakeShoes() {
  Mesh mesh = Textured();
  auto const colored = [](char const* name, json const& color) {
    return json{{"name", name},
                {"pbrMetallicRoughness", {{"baseColorFactor", color}, {"metallicFactor", 0}}}};
  };
  json file = json::parse(MakeGltf(
      {mesh, mesh},
      {{{"children", {1, 2}}}, {{"name", "left"}, {"mesh", 0}}, {{"name", "right"}, {"mesh", 1}}},
      {{"materials",
        {colored("plain", {1, 1, 1, 1}), colored("red", {1, 0, 0, 1}),
         colored("blue", {0, 0, 1, 1})}},
       {"extensionsUsed", {"KHR_materials_variants"}},
       {"extensions",
        {{"KHR_materials_variants",
          {{"variants", {{{"name", "street"}}, {{"name", "beach"}}, {{"name", "moon"}}}}}}}}}));
  file["meshes"][0]["primitives"][0]["extensions"] = {
      {"KHR_materials_variants",
       {{"mappings",
         {{{"material", 1}, {"variants", {0, 2}}},
          {{"material", 2}, {"variants", {1, 77, -1}}}}}}}};
  return file;
}

TEST(GltfVariantTest, AVariantIsAChoiceOfASwitch) {
  support::TemporaryFiles files;
  files.Write("shoes.gltf", MakeShoes().dump());
  data::document::NDocument document;
  auto const model = importer::ImportModel(document, (files.GetFolder() / "shoes.gltf").string());
  EXPECT_THAT(model.variants, ElementsAre("street", "beach", "moon"));
  EXPECT_THAT(model.notes, testing::IsEmpty());
  ASSERT_EQ(model.switches.size(), 1u);
  EXPECT_EQ(model.switches[0]->GetName(), L"mesh0");
  EXPECT_EQ(model.switches[0]->GetMaterials().size(), 3u);
  auto const getMaterial = [&](std::size_t child) {
    auto const& items = model.tree->GetRoot()->GetChildren();
    auto const& item = **std::next(items.begin(), static_cast<std::ptrdiff_t>(child));
    return dynamic_cast<domain::scenegraph::item::NSceneGraphModelNode const&>(item)
        .GetMaterialNode()
        ->GetName();
  };
  for (auto const& [variant, left] : {std::pair("", L"plain"), std::pair("beach", L"blue"),
                                      std::pair("moon", L"red"), std::pair("sea", L"red")}) {
    EXPECT_EQ(importer::ChooseVariant(model, variant),
              std::string(variant) == "beach" || std::string(variant) == "moon");
    EXPECT_EQ(getMaterial(0), left) << variant;
    EXPECT_EQ(getMaterial(1), L"plain") << variant;
  }
}

TEST(GltfVariantTest, TheProgramListsAndTakesThem) {
  support::TemporaryFiles files;
  json const shoes = MakeShoes();
  files.Write("shoes.gltf", shoes.dump());
  files.Write("plain.gltf", MakeGltf({Triangle()}, {{{"mesh", 0}}}));
  EXPECT_THAT(RunProgram(files, {"info", "shoes.gltf"}).out, HasSubstr("  variant \"beach\"\n"));
  Result const beach = RunProgram(files, {"info", "shoes.gltf", "--variant", "beach", "--json"});
  EXPECT_EQ(Named(beach.Json()["trees"][0]["items"], "left")["material"]["name"], "blue");
  EXPECT_EQ(beach.Json()["files"][0]["variants"][2], "moon");
  Result const sea =
      RunProgram(files, {"render", "shoes.gltf", "--clip-report", "--variant", "sea"});
  EXPECT_EQ(sea.status, 1);
  EXPECT_TRUE(sea.HasOneError("shoes.gltf", "no variant \"sea\"")) << sea.err;
  Result const plain = RunProgram(files, {"info", "plain.gltf", "--variant", "sea"});
  EXPECT_EQ(plain.status, 0);
  EXPECT_TRUE(plain.HasOneError("plain.gltf", "there are no variants")) << plain.err;

  json idle = shoes;
  idle["extensions"]["KHR_materials_variants"]["variants"].push_back({{"name", "idle"}});
  files.Write("idle.gltf", idle.dump());
  EXPECT_TRUE(RunProgram(files, {"info", "idle.gltf"})
                  .HasOneError("idle.gltf", "1 variant changes no material"));
  json many = shoes;
  for (int i = 0; i != 300; ++i) {
    many["extensions"]["KHR_materials_variants"]["variants"].push_back({{"name", "v"}});
  }
  files.Write("many.gltf", many.dump());
  EXPECT_TRUE(RunProgram(files, {"info", "many.gltf"}).HasOneError("many.gltf", "256 variants"));
  json lost = shoes;
  lost["meshes"][0]["primitives"][0]["extensions"]["KHR_materials_variants"]["mappings"][0]
      ["material"] = 9;
  files.Write("lost.gltf", lost.dump());
  EXPECT_TRUE(RunProgram(files, {"info", "lost.gltf"})
                  .HasOneError("lost.gltf", "material that isn't there"));
}

}  // namespace
}  // namespace corvanta::app_tests
