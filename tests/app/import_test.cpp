#include "corvanta/importer/import.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <cmath>
#include <limits>
#include <numbers>
#include <sstream>

#include "app/scene/walk.h"
#include "corvanta/data/domain/material/texture_mapping/NUVWMapping.h"
#include "corvanta/data/domain/scenegraph/NSceneGraphPath.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphCameraNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphLightNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"
#include "corvanta/data/domain/scenegraph/item/view.h"
#include "corvanta/data/domain/scenegraph/transform.h"
#include "corvanta/data/domain/scenegraph/tree/bounding_box.h"
#include "corvanta/data/resource/image/NImage.h"
#include "corvanta/importer/mesh.h"
#include "tests/app/neutral_scene.h"
#include "tests/app/program.h"

namespace corvanta::app_tests {
namespace {

namespace domain = data::domain;
namespace item = data::domain::scenegraph::item;
using data::document::NDocument;
using importer::ImportModel;
using importer::NImportedModel;
using nlohmann::json;
using support::TemporaryFiles;
using testing::ElementsAre;
using testing::HasSubstr;

// A document with one model in it.
class ImportTest : public testing::Test {
 protected:
  NImportedModel Import(std::string const& name, std::string const& content) {
    m_files.Write(name, content);
    return ImportModel(m_document, (m_files.GetFolder() / name).string());
  }

  template <class T = core::node::NNode>
  boost::intrusive_ptr<T> Find(std::wstring const& name) const {
    for (auto const& node : m_document.QueryNodes(name)) {
      if (auto* const typed = dynamic_cast<T*>(node.get())) return typed;
    }
    return nullptr;
  }

  boost::intrusive_ptr<domain::geometry::NSurface> GetSurface(std::wstring const& model) const {
    return *Find<item::NSceneGraphModelNode>(model)->GetGeometryNode()->GetSurfaces().begin();
  }

  TemporaryFiles const m_files;
  NDocument m_document;
};

// A square of two triangles that don't share their vertices, with the last corner lifted.
Mesh Square() {
  return {{0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 0, 0, 1, 1, 0, 0, 1, 1}, {0, 1, 2, 3, 4, 5}, {}, {}, -1};
}

// An OBJ file of such meshes; each of their vertices has a line of its own.
std::string MakeObj(std::vector<std::pair<std::string, Mesh>> const& meshes) {
  std::ostringstream text;
  unsigned first = 1;
  auto const write = [&text](char const* key, std::vector<float> const& values, unsigned width) {
    for (std::size_t i = 0; i != values.size(); ++i) {
      text << (i % width == 0 ? key : "") << ' ' << values[i]
           << (i % width + 1 == width ? "\n" : "");
    }
  };
  for (auto const& [name, mesh] : meshes) {
    auto const count = static_cast<unsigned>(mesh.coords.size() / 3);
    text << "o " << name << '\n';
    write("v", mesh.coords, 3);
    auto const& uvs = mesh.uvs.empty() ? std::vector<float>(2 * count) : mesh.uvs[0];
    write("vt", uvs, 2);
    write("vn", mesh.normals, 3);
    for (std::size_t i = 0; i != mesh.indices.size(); ++i) {
      unsigned const at = first + mesh.indices[i];
      text << (i % 3 == 0 ? "f " : " ") << at << '/' << at;
      if (!mesh.normals.empty()) text << '/' << at;
      if (i % 3 == 2) text << '\n';
    }
    first += count;
  }
  return text.str();
}

TEST_F(ImportTest, JoinsVerticesThatAreAlikeAndWorksOutNormals) {
  Mesh const plain = Square();
  Mesh seamed = plain;
  seamed.uvs = {{0, 0, 1, 0, 1, 1, 0.5f, 0, 1, 1, 0, 1}};
  Mesh lit = plain;
  for (int i = 0; i != 6; ++i) {
    lit.normals.insert(lit.normals.end(), {0, i < 3 ? 0.0f : -0.6f, i < 3 ? 1.0f : 0.8f});
  }
  Import("square.obj", MakeObj({{"plain", plain}, {"seamed", seamed}}));
  Import("lit.gltf", MakeGltf({lit, plain}, {{{"children", {1, 2}}},
                                             {{"name", "lit"}, {"mesh", 0}},
                                             {{"name", "flat"}, {"mesh", 1}}}));
  EXPECT_EQ(GetSurface(L"plain")->GetCoords().size(), 4u);
  EXPECT_EQ(GetSurface(L"seamed")->GetCoords().size(), 5u);
  EXPECT_EQ(GetSurface(L"lit")->GetCoords().size(), 6u);
  EXPECT_EQ(GetSurface(L"lit")->GetNormals()[5].y, -0.6f);
  // In glTF a mesh without normals has flat faces.
  ASSERT_EQ(GetSurface(L"flat")->GetCoords().size(), 6u);
  EXPECT_EQ(GetSurface(L"flat")->GetNormals()[0].z, 1.0f);
  EXPECT_NEAR(GetSurface(L"flat")->GetNormals()[5].z, std::sqrt(1.0f / 3), 1e-6);

  // Twice the areas are (0, 0, 1) and (1, -1, 1); where both meet their sum counts, on both sides
  // of a seam.
  float const root6 = std::sqrt(6.0f);
  float const root3 = std::sqrt(3.0f);
  struct Row {
    data::structs::XYZ coord;
    data::structs::XYZ normal;
  };
  Row const rows[] = {{{0, 0, 0}, {1 / root6, -1 / root6, 2 / root6}},
                      {{1, 0, 0}, {0, 0, 1}},
                      {{1, 1, 0}, {1 / root6, -1 / root6, 2 / root6}},
                      {{0, 1, 1}, {1 / root3, -1 / root3, 1 / root3}}};
  for (std::wstring const name : {L"plain", L"seamed"}) {
    auto const surface = GetSurface(name);
    for (std::size_t i = 0; i != surface->GetCoords().size(); ++i) {
      auto const& coord = surface->GetCoords()[i];
      auto const row = std::find_if(std::begin(rows), std::end(rows), [&](Row const& each) {
        return each.coord.x == coord.x && each.coord.y == coord.y;
      });
      ASSERT_NE(row, std::end(rows));
      EXPECT_NEAR(surface->GetNormals()[i].x, row->normal.x, 1e-6);
      EXPECT_NEAR(surface->GetNormals()[i].y, row->normal.y, 1e-6);
      EXPECT_NEAR(surface->GetNormals()[i].z, row->normal.z, 1e-6);
    }
  }
}

// A cube of shared corners, and one whose facets all claim to look up.
TEST_F(ImportTest, BoxesHaveEdges) {
  std::string obj, stl = "solid box\n";
  for (int i = 0; i != 8; ++i) {
    obj += "v " + std::to_string(i & 1) + ' ' + std::to_string(i >> 1 & 1) + ' ' +
           std::to_string(i >> 2) + '\n';
  }
  for (auto const& [a, b, c, d] : std::vector<std::array<int, 4>>{
           {0, 2, 3, 1}, {4, 5, 7, 6}, {0, 1, 5, 4}, {2, 6, 7, 3}, {0, 4, 6, 2}, {1, 3, 7, 5}}) {
    for (auto const& corners : {std::array{a, b, c}, std::array{a, c, d}}) {
      obj += 'f', stl += "facet normal 0 0 1\nouter loop\n";
      for (int const i : corners) {
        obj += ' ' + std::to_string(i + 1);
        stl += "vertex " + std::to_string(i & 1) + ' ' + std::to_string(i >> 1 & 1) + ' ' +
               std::to_string(i >> 2) + '\n';
      }
      obj += '\n', stl += "endloop\nendfacet\n";
    }
  }
  struct Row {
    char const* file;
    std::string content;
    std::optional<double> crease;
    std::size_t vertexCount;
  };
  for (Row const& row :
       {Row{"box.obj", obj, {}, 24}, Row{"box.obj", obj, 89.0, 24}, Row{"box.obj", obj, 91.0, 8},
        Row{"box.obj", obj, 0.0, 24}, Row{"box.stl", stl + "endsolid box\n", {}, 24}}) {
    m_files.Write(row.file, row.content);
    NDocument document;
    importer::NImportOptions options;
    options.crease = row.crease;
    ImportModel(document, (m_files.GetFolder() / row.file).string(), options);
    auto const& surface = **(*document.GetGeometries().GetTypedNodeBegin()).GetSurfaces().begin();
    EXPECT_EQ(surface.GetCoords().size(), row.vertexCount) << row.file;
    for (std::size_t i = 0; i != surface.GetNormals().size(); ++i) {
      auto const &normal = surface.GetNormals()[i], &coord = surface.GetCoords()[i];
      float const outward =
          normal.x * (coord.x - 0.5f) + normal.y * (coord.y - 0.5f) + normal.z * (coord.z - 0.5f);
      EXPECT_GT(outward, 0.49f) << row.file;
      if (row.vertexCount == 24) {
        EXPECT_NEAR(std::max({std::abs(normal.x), std::abs(normal.y), std::abs(normal.z)}), 1,
                    1e-6);
      }
    }
  }
}

// Units: centimetres.
std::string MakeFbx(int up, double unit = 1.0) {
  return R"(; FBX 7.4.0 project file
FBXHeaderExtension:  {
	FBXVersion: 7400
}
GlobalSettings:  {
	Properties70:  {
		P: "UpAxis", "int", "Integer", "",)" +
         std::to_string(up) + "\n\t\tP: \"UnitScaleFactor\", \"double\", \"Number\", \"\"," +
         std::to_string(unit) + R"(
	}
}
Objects:  {
	Geometry: 1001, "Geometry::part", "Mesh" {
		Vertices: *9 {
			a: 0,0,0,2,0,0,0,0,5
		}
		PolygonVertexIndex: *3 {
			a: 0,1,-3
		}
	}
	Model: 2001, "Model::part", "Mesh" {
	}
}
Connections:  {
	C: "OO",2001,0
	C: "OO",1001,2001
}
)";
}

// A triangle of the extents 2, 0 and 5, by what its format says and by what an option does.
TEST_F(ImportTest, WhatPointsUpInAFileDoesInTheScene) {
  std::string const obj = "v 0 0 0\nv 2 0 0\nv 0 0 5\nf 1 2 3\n";
  std::string const stl =
      "solid a\nfacet normal 0 -1 0\nouter loop\nvertex 0 0 0\nvertex 2 0 0\nvertex 0 0 5\n"
      "endloop\nendfacet\nendsolid a\n";
  using Up = std::optional<importer::NUpAxis>;
  struct Row {
    char const* file;
    std::string content;
    Up up;
    std::optional<double> unit;
    double x, y, z;
  };
  for (Row const& row :
       {Row{"a.obj", obj, Up(), 1, 2, 0, 5}, Row{"a.stl", stl, Up(), 1, 2, 5, 0},
        Row{"a.stl", stl, importer::NUA_Y, 1, 2, 0, 5},
        Row{"a.obj", obj, importer::NUA_Z, 0.5, 1, 2.5, 0},
        Row{"a.obj", obj, importer::NUA_X, 1, 0, 2, 5}, Row{"a.fbx", MakeFbx(2), Up(), 1, 2, 5, 0},
        Row{"a.fbx", MakeFbx(1), Up(), 1, 2, 0, 5}, Row{"a.fbx", MakeFbx(0), Up(), 1, 0, 2, 5},
        Row{"a.fbx", MakeFbx(1, 254), Up(), 1, 2, 0, 5},
        Row{"a.fbx", MakeFbx(1, 254), Up(), std::nullopt, 5.08, 0, 12.7},
        Row{"a.fbx", MakeFbx(1, 1), Up(), std::nullopt, 0.02, 0, 0.05},
        Row{"a.obj", obj, Up(), std::nullopt, 2, 0, 5},
        // Numbers that begin with their point, and a spare vertex that would take the place of one.
        Row{"a.obj", "v -.5 .25 .5\nv 1 1\t.75\nv +.5 1 0\nv 9 9 9\nf 1 2 3\n", Up(), 1, 1.5, 0.75,
            0.75}}) {
    m_files.Write(row.file, row.content);
    NDocument document;
    importer::NImportOptions options;
    options.up = row.up;
    options.unit = row.unit;
    auto const model = ImportModel(document, (m_files.GetFolder() / row.file).string(), options);
    VX_Math::Box3 const box = domain::scenegraph::tree::GetBoundingBox(*model.tree);
    EXPECT_NEAR(box.max.x - box.min.x, row.x, 1e-5) << row.file;
    EXPECT_NEAR(box.max.y - box.min.y, row.y, 1e-5) << row.file;
    EXPECT_NEAR(box.max.z - box.min.z, row.z, 1e-5) << row.file;
    EXPECT_GT(box.max.y + 1e-5, 0) << row.file;
    EXPECT_NEAR(std::max(box.max.y, -box.min.y), box.max.y, 1e-5) << row.file << ": up, not down";
  }
}

// A sphere's own normals stay where its triangles run the other way round.
TEST_F(ImportTest, GoodNormalsOutliveTurnedTriangles) {
  Mesh mesh{{1, 0, 0, 0, 1, 0, 0, 0, 1, -1, 0, 0, 0, -1, 0, 0, 0, -1},
            {0, 2, 1, 1, 2, 3, 3, 2, 4, 4, 2, 0, 0, 1, 5, 1, 3, 5, 3, 4, 5, 4, 0, 5},
            {},
            {},
            -1};
  mesh.normals = mesh.coords;
  for (bool const isOneRight : {false, true}) {
    // One of eight faces alone is a fault of the file.
    if (isOneRight) {
      for (std::size_t i = 3; i != mesh.indices.size(); i += 3) {
        std::swap(mesh.indices[i], mesh.indices[i + 1]);
      }
    }
    std::string const name = isOneRight ? "mostly" : "turned";
    Import(name + ".gltf", MakeGltf({mesh}, {{{"name", name}, {"mesh", 0}}}));
    auto const surface = GetSurface(std::wstring(name.begin(), name.end()));
    std::size_t inward = 0;
    for (std::size_t i = 0; i != surface->GetNormals().size(); ++i) {
      auto const &n = surface->GetNormals()[i], &c = surface->GetCoords()[i];
      inward += n.x * c.x + n.y * c.y + n.z * c.z < 0;
    }
    EXPECT_EQ(inward, isOneRight ? 3u : 0u);
    EXPECT_EQ(surface->GetCoords().size(), isOneRight ? 9u : 6u);
  }
}

TEST_F(ImportTest, EveryNormalHasLengthOne) {
  float const kInf = std::numeric_limits<float>::infinity();
  float const kLong = std::numeric_limits<float>::max();
  float const kRoot2 = std::sqrt(0.5f);
  struct Row {
    std::array<float, 3> given, expected;
  };
  Row const rows[] = {{{0, 0, 0}, {0, 0, 1}},       {{-0.0f, 0, 1e-45f}, {0, 0, 1}},
                      {{kInf, 0, 0}, {0, 0, 1}},    {{0, std::nanf(""), 0}, {0, 0, 1}},
                      {{0, 3, 4}, {0, 0.6f, 0.8f}}, {{kLong, -kLong, 0}, {kRoot2, -kRoot2, 0}},
                      {{1e-30f, 0, 0}, {1, 0, 0}},  {{0.6f, 0, 0.8f}, {0.6f, 0, 0.8f}}};
  for (Row const& row : rows) {
    neutral::NSceneWriter writer;
    AddNode(writer, "n");
    writer.Get<neutral::NMaterial>().push_back({});
    neutral::NMesh mesh{};
    mesh.positions = writer.Add(std::vector<neutral::NTriple>{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}});
    mesh.normals =
        writer.Add(std::vector<neutral::NTriple>{row.given, {0.6f, 0, 0.8f}, {0, -0.6f, 0.8f}});
    mesh.triangles = writer.Add(std::vector<neutral::NTriangle>{{0, 1, 2}});
    writer.Get<neutral::NMesh>().push_back(mesh);
    auto const block = MakeBlock(writer);
    auto const surface =
        importer::CreateSurface(neutral::NSceneView(std::as_bytes(std::span(block))), mesh);
    auto const& normals = surface->GetNormals();
    EXPECT_THAT((std::array{normals[0].x, normals[0].y, normals[0].z}),
                testing::Pointwise(testing::FloatEq(), row.expected));
    EXPECT_EQ(normals[1].x, 0.6f) << "of another vertex";
    EXPECT_EQ(normals[2].y, -0.6f) << "of another vertex";
  }
}

TEST_F(ImportTest, AMeshUsedTwiceIsOneGeometryAndANodeOfTwoMeshesAGroup) {
  json gltf =
      json::parse(MakeGltf({Triangle(), Square()}, {{{"name", "root"}, {"children", {1, 2, 3}}},
                                                    {{"name", "a"}, {"mesh", 0}},
                                                    {{"name", "b"}, {"mesh", 0}},
                                                    {{"name", "both"}, {"mesh", 1}}}));
  gltf["meshes"][1]["primitives"].push_back(gltf["meshes"][0]["primitives"][0]);
  Import("two.gltf", gltf.dump());
  EXPECT_EQ(Find<item::NSceneGraphModelNode>(L"a")->GetGeometryNode(),
            Find<item::NSceneGraphModelNode>(L"b")->GetGeometryNode());
  auto const both = Find<item::NSceneGraphItemNode>(L"both");
  EXPECT_EQ(both->GetSceneGraphItemType(), item::SGIT_GROUP);
  ASSERT_EQ(both->GetChildren().size(), 2u);
  for (auto const& child : both->GetChildren()) {
    auto const& geometry = *static_cast<item::NSceneGraphModelNode&>(*child).GetGeometryNode();
    EXPECT_EQ(geometry.GetSurfaces().size(), 1u);
  }
}

TEST_F(ImportTest, EachTextureFindsItsOwnUvSet) {
  Mesh mesh = Triangle();
  mesh.uvs = {{0, 0, 1, 0, 0, 1}, {0.5f, 0, 0.75f, 0, 0.5f, 0.25f}};
  mesh.material = 0;
  Mesh single = Triangle();
  single.uvs = {{0.25f, 0, 1, 0, 0, 1}};
  single.material = 0;
  m_files.Write("color.png", MakePng());
  m_files.Write("my light.png", MakePng());
  Import("uv.gltf", MakeGltf({mesh, single},
                             {{{"children", {1, 2}}},
                              {{"name", "two"}, {"mesh", 0}},
                              {{"name", "one"}, {"mesh", 1}}},
                             {{"images", {{{"uri", "color.png"}}, {{"uri", "my%20light.png"}}}},
                              {"textures", {{{"source", 0}}, {{"source", 1}}}},
                              {"materials",
                               {{{"pbrMetallicRoughness",
                                  {{"baseColorTexture", {{"index", 0}}}, {"metallicFactor", 0}}},
                                 {"emissiveTexture", {{"index", 1}, {"texCoord", 1}}}}}}}));
  auto const material = Find<item::NSceneGraphModelNode>(L"two")->GetMaterialNode();
  ASSERT_EQ(material->GetTextures().size(), 2u);
  std::vector<float> firstU;
  std::vector<std::wstring> pictures;
  for (auto const& [texture, mapping] : material->GetTextures()) {
    pictures.push_back(texture.Get()->GetImage()->GetName());
    EXPECT_EQ(texture.Get()->GetImage()->GetImage()->GetDataByteLength(), MakePng().size());
    auto const& uvw = dynamic_cast<domain::material::texture_mapping::NUVWMapping const&>(*mapping);
    for (std::wstring const model : {L"two", L"one"}) {
      std::vector<data::structs::UVW> coords;
      uvw.ComputeTextureCoords(*GetSurface(model), coords);
      firstU.push_back(coords[0].u);
    }
  }
  EXPECT_THAT(pictures, ElementsAre(L"color", L"my light"));
  EXPECT_THAT(firstU, ElementsAre(0.0f, 0.25f, 0.5f, 0.25f));
}

TEST_F(ImportTest, MaterialsKeepTheirColours) {
  m_files.Write("m.mtl",
                "newmtl m\nKa .1 .2 .3\nKd .4 .5 .6\nKs .7 .8 .9\nKe .15 .25 .35\nNs 40\nd 0.5\n"
                "map_Kd nowhere\\gone.png\n");
  auto const model =
      Import("m.obj", "mtllib m.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\nusemtl m\nf 1 2 3\n");
  auto const material = Find<domain::material::NMaterialNode>(L"m");
  EXPECT_FLOAT_EQ(static_cast<float>(material->GetAmbientB()), 0.3f);
  EXPECT_FLOAT_EQ(static_cast<float>(material->GetDiffuseR()), 0.4f);
  EXPECT_FLOAT_EQ(static_cast<float>(material->GetSpecularG()), 0.8f);
  EXPECT_FLOAT_EQ(static_cast<float>(material->GetEmissiveB()), 0.35f);
  EXPECT_EQ(material->GetPower(), 40.0);
  EXPECT_EQ(material->GetTransparency(), 0.5);
  EXPECT_EQ(m_document.GetMaterials().GetNodeCount(), 1u);
  EXPECT_THAT(model.notes, ElementsAre(HasSubstr("no such picture")));
}

TEST_F(ImportTest, WhatIsNeverSeenIsShownAndTold) {
  m_files.Write("m.mtl", "newmtl gone\nd 0\nnewmtl faint\nd 0.01\n");
  auto const model = Import("m.obj",
                            "mtllib m.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\nusemtl gone\nf 1 2 3\n"
                            "usemtl faint\nf 1 2 3\n");
  EXPECT_EQ(Find<domain::material::NMaterialNode>(L"gone")->GetTransparency(), 1.0);
  EXPECT_NEAR(Find<domain::material::NMaterialNode>(L"faint")->GetTransparency(), 0.01, 1e-6);
  EXPECT_THAT(model.notes, testing::Contains(HasSubstr("1 material is transparent as a whole")));
}

// A colour that a file leaves open is white, not the attribute's black; only OBJ multiplies.
TEST_F(ImportTest, NobodyMeansBlackByAPicture) {
  m_files.Write("dot.png", MakePng());
  m_files.Write("m.mtl",
                "newmtl open\nmap_Kd dot.png\nnewmtl dark\nKd .2 .2 .2\nmap_Kd dot.png\n"
                "newmtl black\nKd 0 0 0\n");
  Import("m.obj",
         "mtllib m.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\nusemtl open\nf 1 2 3\nusemtl dark\nf 1 2 3\n"
         "usemtl black\nf 1 2 3\n");
  Import("box.dae", R"(<?xml version="1.0"?>
<COLLADA xmlns="http://www.collada.org/2005/11/COLLADASchema" version="1.4.1">
<asset><up_axis>Y_UP</up_axis></asset>
<library_images><image id="i"><init_from>dot.png</init_from></image></library_images>
<library_effects><effect id="e"><profile_COMMON>
<newparam sid="s"><surface type="2D"><init_from>i</init_from></surface></newparam>
<newparam sid="t"><sampler2D><source>s</source></sampler2D></newparam>
<technique sid="c"><phong><diffuse><texture texture="t" texcoord="UV"/></diffuse></phong></technique>
</profile_COMMON></effect></library_effects>
<library_materials><material id="m" name="collada"><instance_effect url="#e"/></material></library_materials>
<library_geometries><geometry id="g"><mesh>
<source id="p"><float_array id="pa" count="9">0 0 0 1 0 0 0 1 0</float_array><technique_common>
<accessor source="#pa" count="3" stride="3"><param name="X" type="float"/><param name="Y" type="float"/>
<param name="Z" type="float"/></accessor></technique_common></source>
<vertices id="v"><input semantic="POSITION" source="#p"/></vertices>
<triangles count="1" material="m"><input semantic="VERTEX" source="#v" offset="0"/><p>0 1 2</p></triangles>
</mesh></geometry></library_geometries>
<library_visual_scenes><visual_scene id="w"><node id="n"><instance_geometry url="#g"><bind_material>
<technique_common><instance_material symbol="m" target="#m"/></technique_common></bind_material>
</instance_geometry></node></visual_scene></library_visual_scenes>
<scene><instance_visual_scene url="#w"/></scene></COLLADA>)");
  for (auto const& [name, diffuse] : {std::pair(L"open", 1.0), std::pair(L"dark", 0.2),
                                      std::pair(L"black", 0.0), std::pair(L"collada", 1.0)}) {
    auto const material = Find<domain::material::NMaterialNode>(name);
    ASSERT_TRUE(material);
    EXPECT_NEAR(material->GetDiffuseR(), diffuse, 1e-6);
    EXPECT_NEAR(material->GetDiffuseB(), diffuse, 1e-6);
  }
}

TEST_F(ImportTest, EmbeddedPicturesComeThroughAnArchiveThatGoesWithTheDocument) {
  std::string const png = MakePng();
  Mesh mesh = Triangle();
  mesh.uvs = {{0, 0, 1, 0, 0, 1}};
  mesh.material = 0;
  std::string const content = MakeGltf(
      {mesh}, {{{"name", "a"}, {"mesh", 0}}},
      {{"images", {{{"name", "dot"}, {"uri", "data:image/png;base64," + ToBase64(png)}}}},
       {"textures", {{{"source", 0}}}},
       {"materials", {{{"pbrMetallicRoughness", {{"baseColorTexture", {{"index", 0}}}}}}}}});
  m_files.Write("embedded.gltf", content);
  {
    NDocument document;
    ImportModel(document, (m_files.GetFolder() / "embedded.gltf").string());
    ASSERT_EQ(document.GetImages().GetNodeCount(), 1u);
    auto const& image = *document.GetImages().GetTypedNodeBegin();
    EXPECT_TRUE(image.GetImageLocator().IsZipped());
    EXPECT_EQ(m_files.GetLeftovers().size(), 1u);
    auto const picture = image.GetImage();
    EXPECT_EQ(
        std::string(static_cast<char const*>(picture->GetData()), picture->GetDataByteLength()),
        png);
  }
  EXPECT_TRUE(m_files.GetLeftovers().empty());
}

TEST_F(ImportTest, ALightOrCameraThatNodesShareStandsAtEach) {
  nlohmann::json const lamp = {{"KHR_lights_punctual", {{"light", 0}}}};
  auto const model =
      Import("shared.gltf",
             MakeGltf({Triangle()},
                      {{{"name", "top"}, {"children", {1, 2, 3, 4, 5}}},
                       {{"name", "front"}, {"camera", 0}, {"translation", {0, 0, 5}}},
                       {{"name", "back"}, {"camera", 0}, {"translation", {0, 1, -5}}},
                       {{"name", "left"}, {"extensions", lamp}, {"translation", {-1, 0, 0}}},
                       {{"name", "right"}, {"extensions", lamp}, {"translation", {1, 0, 0}}},
                       {{"name", "shape"}, {"mesh", 0}}},
                      {{"cameras",
                        {{{"type", "perspective"},
                          {"perspective", {{"yfov", 1.0}, {"aspectRatio", 1.0}, {"znear", 1}}}}}},
                       {"extensionsUsed", {"KHR_lights_punctual"}},
                       {"extensions",
                        {{"KHR_lights_punctual",
                          {{"lights", {{{"type", "point"}, {"color", {1.0, 0.5, 0.25}}}}}}}}}}));
  EXPECT_EQ(model.cameras.size(), 2u);
  for (auto const& [name, y, z] :
       {std::tuple(L"front", 0.0, 5.0), std::tuple(L"back", 1.0, -5.0)}) {
    auto const camera = Find<item::NSceneGraphCameraNode>(name);
    ASSERT_TRUE(camera);
    EXPECT_EQ(camera->GetTranslationY(), y);
    EXPECT_EQ(camera->GetTranslationZ(), z);
    EXPECT_EQ(camera->GetParent()->GetName(), L"top");
    EXPECT_TRUE(camera->GetCameraNode());
  }
  for (wchar_t const* const name : {L"left", L"right"}) {
    auto const light = Find<item::NSceneGraphLightNode>(name);
    ASSERT_TRUE(light);
    EXPECT_EQ(light->GetLightNode()->GetColorG(), 0.5);
  }
}

TEST_F(ImportTest, LightsAndCamerasStandAtTheirNodes) {
  double const quarter = std::sqrt(0.5);
  auto const model = Import(
      "lights.gltf",
      MakeGltf({Triangle()},
               {{{"children", {1, 2, 3, 4}}, {"translation", {3, 0, 0}}},
                {{"name", "eye"},
                 {"camera", 0},
                 {"translation", {7, 0, 0}},
                 {"rotation", {0, quarter, 0, quarter}}},
                {{"name", "lamp"},
                 {"rotation", {quarter, 0, 0, quarter}},
                 {"extensions", {{"KHR_lights_punctual", {{"light", 0}}}}}},
                {{"name", "cone"}, {"extensions", {{"KHR_lights_punctual", {{"light", 1}}}}}},
                {{"name", "shape"}, {"mesh", 0}}},
               {{"cameras",
                 {{{"type", "perspective"},
                   {"perspective", {{"yfov", 1.0}, {"aspectRatio", 1.0}, {"znear", 1}}}}}},
                {"extensionsUsed", {"KHR_lights_punctual"}},
                {"extensions",
                 {{"KHR_lights_punctual",
                   {{"lights",
                     {{{"type", "directional"}, {"color", {1.0, 0.5, 0.25}}},
                      {{"type", "spot"},
                       {"spot", {{"innerConeAngle", 0.25}, {"outerConeAngle", 0.5}}}}}}}}}}}));
  auto const eye = Find<item::NSceneGraphCameraNode>(L"eye");
  ASSERT_TRUE(eye);
  // Turned from -z to -x, and so past the triangle.
  domain::scenegraph::NSceneGraphPath<item::NSceneGraphCameraNode> const path(*eye, *model.tree);
  VX_Math::Vec3 ahead;
  item::GetViewMatrix(path).MultVecMatrix({5, 0, 0}, ahead);
  EXPECT_NEAR(ahead.x, 0.0, 1e-5);
  EXPECT_NEAR(ahead.y, 0.0, 1e-5);
  EXPECT_NEAR(ahead.z, -5.0, 1e-5);
  EXPECT_NEAR(eye->GetUpY(), 1.0, 1e-6);
  EXPECT_NEAR(eye->GetCameraNode()->GetHorizontalViewAngle(), 180.0 / std::numbers::pi, 1e-4);

  auto const lamp = Find<item::NSceneGraphLightNode>(L"lamp");
  ASSERT_TRUE(lamp);
  EXPECT_EQ(lamp->GetLightNode()->GetType(), domain::light::LT_DIRECTIONAL);
  EXPECT_EQ(lamp->GetLightNode()->GetColorG(), 0.5);
  VX_Math::Vec3 direction;
  domain::scenegraph::GetGlobalTransform(*lamp, *model.tree, {})
      .MultDirMatrix({0, 0, -1}, direction);
  EXPECT_NEAR(direction.y, 1.0, 1e-6);
  auto const cone = Find<item::NSceneGraphLightNode>(L"cone")->GetLightNode();
  EXPECT_EQ(cone->GetType(), domain::light::LT_SPOT);
  EXPECT_LT(cone->GetSpreadAngle(), cone->GetFallOffAngle());
}

TEST_F(ImportTest, ShearIsToldOnce) {
  json const sheared = {1, 0, 0, 0, 1, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
  json const mirrored = {-2, 0, 0, 0, 0, 0, 3, 0, 0, 1, 0, 0, 5, 6, 7, 1};
  auto const model = Import(
      "shear.gltf", MakeGltf({Triangle()}, {{{"name", "top"}, {"children", {1, 2, 3}}},
                                            {{"name", "x"}, {"mesh", 0}, {"matrix", sheared}},
                                            {{"name", "y"}, {"matrix", sheared}},
                                            {{"name", "z"}, {"matrix", mirrored}}}));
  EXPECT_THAT(model.notes,
              ElementsAre(testing::AllOf(HasSubstr("2 transforms hold"), HasSubstr("\"x\""))));
  auto const& exact = Find<item::NSceneGraphItemNode>(L"z")->GetTransform();
  for (int i = 0; i != 16; ++i) {
    EXPECT_NEAR(exact(i / 4, i % 4), mirrored[static_cast<std::size_t>(i)].get<float>(), 1e-5);
  }
}

double BuildWide(unsigned count) {
  neutral::NSceneWriter writer;
  AddNode(writer, "top", count);
  for (unsigned i = 0; i != count; ++i) AddNode(writer, "child");
  Built built(writer);
  auto const start = std::chrono::steady_clock::now();
  built.hierarchy.Build(*built.tree, built.effort);
  unsigned visits = 0;
  app::WalkTree(*built.tree, [&](app::NVisit const&) { ++visits; });
  EXPECT_EQ(visits, count + 1);
  std::wstring const last = L"child (" + std::to_wstring(count) + L")";
  EXPECT_EQ(built.document.QueryNodes(last).size(), 1u);
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

TEST(WideTest, ManyChildrenOfOneNameAreBuiltInLinearTime) {
#ifdef __SANITIZE_ADDRESS__
  constexpr unsigned kMany = 50000;
#else
  constexpr unsigned kMany = 300000;
#endif
  double const few = BuildWide(kMany / 10);
  double const many = BuildWide(kMany);
  EXPECT_LT(many, 40.0 * few);
}

}  // namespace
}  // namespace corvanta::app_tests
