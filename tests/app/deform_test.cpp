#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <functional>
#include <string>
#include <vector>

#include "corvanta/core/text/convert.h"
#include "corvanta/data/domain/geometry/NGeometryNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"
#include "corvanta/data/domain/scenegraph/transform.h"
#include "corvanta/data/domain/scenegraph/tree/bounding_box.h"
#include "corvanta/importer/import.h"
#include "tests/app/program.h"

namespace corvanta::app_tests {
namespace {

using data::domain::geometry::NSurface;
using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Points = std::vector<std::array<float, 3>>;

// Adds arrays to a file under construction.
class Arrays {
 public:
  explicit Arrays(json& file) : m_file(file) {}

  template <class Number>
  std::size_t Add(std::vector<Number> const& numbers, char const* type, std::size_t width,
                  int component = 5126) {
    std::string const bytes = ToBytes(numbers);
    m_file["buffers"].push_back(
        {{"byteLength", bytes.size()},
         {"uri", "data:application/octet-stream;base64," + ToBase64(bytes)}});
    m_file["bufferViews"].push_back(
        {{"buffer", m_file["buffers"].size() - 1}, {"byteLength", bytes.size()}});
    m_file["accessors"].push_back({{"bufferView", m_file["bufferViews"].size() - 1},
                                   {"componentType", component},
                                   {"count", numbers.size() / width},
                                   {"type", type}});
    return m_file["accessors"].size() - 1;
  }

 private:
  json& m_file;
};

// A model of a file, and where its vertices are.
class Deformed {
 public:
  explicit Deformed(json const& file) {
    m_files.Write("model.gltf", file.dump());
    m_model = importer::ImportModel(m_document, (m_files.GetFolder() / "model.gltf").string());
  }

  importer::NImportedModel& Get() { return m_model; }
  std::vector<std::string> const& GetNotes() const { return m_model.notes; }

  void PlayTo(double seconds) {
    auto const& node = *m_model.animations.at(0);
    node.SetFrame(seconds * node.GetFps());
    m_model.deformer->Update();
  }

  data::domain::geometry::NGeometryNode& GetGeometry(std::wstring const& model = L"mesh") const {
    return *GetModel(model).GetGeometryNode();
  }
  NSurface& GetSurface(std::wstring const& model = L"mesh") const {
    return **GetGeometry(model).GetSurfaces().begin();
  }
  Points GetLocal(std::wstring const& model = L"mesh") const {
    Points points;
    for (auto const& v : GetSurface(model).GetCoords()) points.push_back({v.x, v.y, v.z});
    return points;
  }
  Points GetGlobal(std::wstring const& model = L"mesh") const {
    auto const global =
        data::domain::scenegraph::GetGlobalTransform(GetModel(model), *m_model.tree, {});
    Points points;
    for (auto const& v : GetSurface(model).GetCoords()) {
      VX_Math::Vec3 point(v.x, v.y, v.z);
      global.MultVecMatrix(point, point);
      points.push_back({point.x, point.y, point.z});
    }
    return points;
  }
  VX_Math::Box3 GetBox() const {
    return data::domain::scenegraph::tree::GetBoundingBox(*m_model.tree);
  }

 private:
  data::domain::scenegraph::item::NSceneGraphModelNode& GetModel(std::wstring const& name) const {
    return dynamic_cast<data::domain::scenegraph::item::NSceneGraphModelNode&>(
        *m_document.QueryNodes(name).at(0));
  }

  support::TemporaryFiles const m_files;
  data::document::NDocument m_document;
  importer::NImportedModel m_model;
};

void ExpectNear(Points const& points, Points const& expected, float tolerance = 2e-5f) {
  ASSERT_EQ(points.size(), expected.size());
  for (std::size_t i = 0; i != points.size(); ++i) {
    for (std::size_t k = 0; k != 3; ++k) {
      EXPECT_NEAR(points[i][k], expected[i][k], tolerance) << i << ' ' << k;
    }
  }
}

// A strip from y = 0 to 2, of three pairs of vertices at x = -0.5 and 0.5, which look along z.
Mesh Strip() {
  return {{-.5f, 0, 0, .5f, 0, 0, -.5f, 1, 0, .5f, 1, 0, -.5f, 2, 0, .5f, 2, 0},
          {0, 1, 2, 2, 1, 3, 2, 3, 4, 4, 3, 5},
          {0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1},
          {}};
}
Points const kStrip{{-.5f, 0, 0}, {.5f, 0, 0},  {-.5f, 1, 0},
                    {.5f, 1, 0},  {-.5f, 2, 0}, {.5f, 2, 0}};

// The strip is held by "lower", which stands at 10, 0, 0, below the middle, and by "upper" above
// it. The upper one turns about z, by 90 degrees in a second. The mesh's own node stands anywhere.
json Bar() {
  float const half = std::sqrt(0.5f);
  json file = json::parse(AddAnimation(
      MakeGltf({Strip()}, {{{"name", "top"}, {"children", {1, 2}}},
                           {{"name", "mesh"},
                            {"mesh", 0},
                            {"skin", 0},
                            {"translation", {7, -8, 9}},
                            {"rotation", {half, 0, 0, half}},
                            {"scale", {2, 3, -4}}},
                           {{"name", "lower"}, {"translation", {10, 0, 0}}, {"children", {3}}},
                           {{"name", "upper"}, {"translation", {0, 1, 0}}}}),
      "bend", {{3, "rotation", {0, 1}, {0, 0, 0, 1, 0, 0, half, half}}}));
  Arrays arrays(file);
  auto& attributes = file["meshes"][0]["primitives"][0]["attributes"];
  attributes["JOINTS_0"] = arrays.Add<std::uint8_t>(
      {0, 1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0}, "VEC4", 4, 5121);
  attributes["WEIGHTS_0"] = arrays.Add<float>(
      {1, 0, 0, 0, 1, 0, 0, 0, .5f, .5f, 0, 0, .5f, .5f, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0}, "VEC4", 4);
  auto const bind = arrays.Add<float>({1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0,  0, 1,
                                       1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, -1, 0, 1},
                                      "MAT4", 16);
  file["skins"] = {{{"joints", {2, 3}}, {"inverseBindMatrices", bind}}};
  file["materials"] = {{{"doubleSided", true}}};
  file["meshes"][0]["primitives"][0]["material"] = 0;
  return file;
}

// About the point 10, 1 where the upper bone turns, by t of the way.
Points Bent(double degrees) {
  double const c = std::cos(degrees * M_PI / 180), s = std::sin(degrees * M_PI / 180);
  Points points = kStrip;
  for (std::size_t i = 0; i != points.size(); ++i) {
    double const x = points[i][0], y = points[i][1] - 1.0;
    double const weight = i < 2 ? 0 : i < 4 ? 0.5 : 1;
    points[i] = {static_cast<float>(10 + (1 - weight) * x + weight * (c * x - s * y)),
                 static_cast<float>(1 + (1 - weight) * y + weight * (s * x + c * y)), 0};
  }
  return points;
}

TEST(DeformTest, AMeshFollowsItsBonesWhereverItsNodeStands) {
  Deformed bar(Bar());
  EXPECT_THAT(bar.GetNotes(), IsEmpty());
  ExpectNear(bar.GetGlobal(), Bent(0));
  EXPECT_NEAR(bar.GetBox().min.x, 9.5f, 1e-4f);
  // Any order, as by a slider.
  for (double const seconds : {1.0, 0.25, 0.5, 1.0}) {
    bar.PlayTo(seconds);
    ExpectNear(bar.GetGlobal(), Bent(90 * seconds));
  }
  EXPECT_NEAR(bar.GetBox().min.x, 9.0f, 1e-4f) << "the box follows";
  EXPECT_NEAR(bar.GetBox().max.y, 1.5f, 1e-4f);
}

// Every write is one change of the geometry, and there is none where all stands still.
TEST(DeformTest, OnlyWhatMovesIsWritten) {
  class Counter : public data::domain::geometry::NGeometryChangeListener {
   public:
    int count = 0;

   private:
    void OnGeometryChangeImpl(data::domain::geometry::NGeometryNode const&, NSurface const&,
                              data::domain::geometry::NGeometryChangeType) override {
      ++count;
    }
  };
  Deformed bar(Bar());
  boost::intrusive_ptr const counter(new Counter);
  bar.GetGeometry().AddObserver(*counter);
  bar.Get().deformer->Update();
  EXPECT_EQ(counter->count, 0);
  bar.PlayTo(0.5);
  EXPECT_EQ(counter->count, 1);
  bar.PlayTo(0.5);
  EXPECT_EQ(counter->count, 1);
  // The whole moves as one, with no vertex.
  auto const top = bar.Get().tree->GetRoot();
  top->SetTranslationX(4);
  bar.Get().deformer->Update();
  Points expected = Bent(45);
  for (auto& point : expected) point[0] += 4;
  ExpectNear(bar.GetGlobal(), expected);
}

// Of a mesh without normals the faces stay flat; one that has them turns them with its bones.
TEST(DeformTest, NormalsFollow) {
  for (bool const hasNormals : {true, false}) {
    json file = Bar();
    if (!hasNormals) file["meshes"][0]["primitives"][0]["attributes"].erase("NORMAL");
    // The bones turn about x by 90 degrees, so that the upper face looks down.
    file["nodes"][3]["rotation"] = {std::sqrt(0.5), 0, 0, std::sqrt(0.5)};
    file.erase("animations");
    file["nodes"][1] = {{"name", "mesh"}, {"mesh", 0}, {"skin", 0}};
    Deformed const bar(file);
    auto const& surface = bar.GetSurface();
    auto const &coords = surface.GetCoords(), &normals = surface.GetNormals();
    auto const& indices = surface.GetIndices();
    for (std::size_t i = 0; i != indices.size(); ++i) {
      auto const& normal = normals[indices[i]];
      double const y = kStrip[Strip().indices[i]][1];
      EXPECT_NEAR(std::hypot(normal.x, normal.y, normal.z), 1, 1e-5);
      if (hasNormals) {
        double const angle = y * M_PI / 4;
        EXPECT_NEAR(normal.y, -std::sin(angle), 1e-5) << i;
        EXPECT_NEAR(normal.z, std::cos(angle), 1e-5) << i;
      } else {
        auto const& a = coords[indices[i / 3 * 3]];
        EXPECT_NEAR((coords[indices[i]].x - a.x) * normal.x +
                        (coords[indices[i]].y - a.y) * normal.y +
                        (coords[indices[i]].z - a.z) * normal.z,
                    0, 1e-5)
            << i;
        EXPECT_LT(i < 6 ? -normal.z : normal.y, 0) << i;
      }
    }
  }
}

// Two targets: one lifts the first corner by 4 and tips its normal, one moves the last along x.
json Morphed() {
  Mesh mesh = Triangle();
  mesh.normals = {0, 0, 1, 0, 0, 1, 0, 0, 1};
  json file = json::parse(MakeGltf({mesh}, {{{"name", "mesh"}, {"mesh", 0}}}));
  Arrays arrays(file);
  file["meshes"][0]["primitives"][0]["targets"] = {
      {{"POSITION", arrays.Add<float>({0, 0, 4, 0, 0, 0, 0, 0, 0}, "VEC3", 3)},
       {"NORMAL", arrays.Add<float>({1, 0, -1, 0, 0, 0, 0, 0, 0}, "VEC3", 3)}},
      {{"POSITION", arrays.Add<float>({0, 0, 0, 0, 0, 0, 8, 0, 0}, "VEC3", 3)}}};
  file["meshes"][0]["weights"] = {0.5, 0.25};
  return file;
}

json Animated(json file, std::vector<float> const& times, std::vector<float> const& weights,
              std::string const& interpolation) {
  Arrays arrays(file);
  auto const input = arrays.Add(times, "SCALAR", 1);
  auto const output = arrays.Add(weights, "SCALAR", 1);
  file["animations"] = {
      {{"samplers", {{{"input", input}, {"output", output}, {"interpolation", interpolation}}}},
       {"channels", {{{"sampler", 0}, {"target", {{"node", 0}, {"path", "weights"}}}}}}}};
  return file;
}

Points Lifted(float first, float second) {
  return {{0, 0, 4 * first}, {1, 0, 0}, {8 * second, 1, 0}};
}

TEST(DeformTest, MorphTargetsAddUpByTheirWeights) {
  json file = Morphed();
  EXPECT_EQ(Deformed(file).GetLocal(), Lifted(0.5f, 0.25f));
  file["nodes"][0]["weights"] = {1, 0};
  Deformed morphed(file);
  EXPECT_EQ(morphed.GetLocal(), Lifted(1, 0));
  EXPECT_EQ(morphed.GetSurface().GetNormals()[0].x, 1);
  // They are attributes like all others.
  auto const item = morphed.Get().tree->GetRoot();
  item->QueryAttribute(L"morph.1")->SetValue(-0.5, true);
  morphed.Get().deformer->Update();
  EXPECT_EQ(morphed.GetLocal(), Lifted(1, -0.5f));

  struct Row {
    char const* interpolation;
    std::vector<float> weights;
    std::vector<std::array<float, 3>> at;  // seconds and weights
  };
  for (Row const& row :
       std::vector<Row>{{"LINEAR", {0, 1, 1, 0}, {{0, 0, 1}, {0.25f, 0.25f, 0.75f}, {1, 1, 0}}},
                        {"STEP", {0, 1, 1, 0}, {{0, 0, 1}, {0.75f, 0, 1}, {1, 1, 0}}},
                        {"CUBICSPLINE",
                         {9, 9, 0, 1, 0, 4, 0, -4, 1, 0, 9, 9},
                         {{0, 0, 1}, {0.5f, 0.5f, 1.5f}, {1, 1, 0}}}}) {
    Deformed played(Animated(Morphed(), {0, 1}, row.weights, row.interpolation));
    EXPECT_THAT(played.GetNotes(), IsEmpty());
    for (auto const& [seconds, first, second] : row.at) {
      played.PlayTo(seconds);
      SCOPED_TRACE(row.interpolation + std::to_string(seconds));
      ExpectNear(played.GetLocal(), Lifted(first, second), 1e-2f);
    }
  }
}

// Vertices that are alike at rest stay apart if they are two in the file.
TEST(DeformTest, VerticesInOnePlacePart) {
  Mesh mesh = Triangle();
  for (std::size_t i = 0; i != 9; ++i) mesh.coords.push_back(mesh.coords[i]);
  mesh.indices = {0, 1, 2, 3, 4, 5};
  for (std::size_t i = 0; i != 6; ++i) mesh.normals.insert(mesh.normals.end(), {0, 0, 1});
  json file = json::parse(MakeGltf({mesh}, {{{"name", "mesh"}, {"mesh", 0}, {"weights", {1}}}}));
  Arrays arrays(file);
  file["meshes"][0]["primitives"][0]["targets"] = {
      {{"POSITION",
        arrays.Add<float>({0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 1, 0, 0, 1}, "VEC3", 3)}}};
  EXPECT_EQ(Deformed(file).GetLocal(),
            (Points{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {1, 0, 1}, {0, 1, 1}}));
}

// Models of one mesh move each for itself, and what doesn't move stays one geometry.
TEST(DeformTest, ModelsOfOneMeshMoveEachForItself) {
  json file = Bar();
  file["nodes"][0]["children"] = {1, 2, 4, 5, 6};
  file["nodes"].push_back({{"name", "other"}, {"mesh", 0}, {"skin", 1}});
  file["nodes"].push_back({{"name", "still"}, {"mesh", 0}});
  file["nodes"].push_back({{"name", "still too"}, {"mesh", 0}});
  file["skins"].push_back(file["skins"][0]);
  file["skins"][1]["joints"] = {2, 2};
  Deformed bar(file);
  EXPECT_THAT(bar.GetNotes(), IsEmpty());
  bar.PlayTo(1);
  ExpectNear(bar.GetGlobal(), Bent(90));
  Points lowered = Bent(0);
  for (std::size_t i = 2; i != 6; ++i) lowered[i][1] -= i < 4 ? 0.5f : 1.0f;
  ExpectNear(bar.GetGlobal(L"other"), lowered);
  ExpectNear(bar.GetGlobal(L"still"), kStrip);
  EXPECT_EQ(&bar.GetGeometry(L"still"), &bar.GetGeometry(L"still too"));
}

// What is bad is drawn as far as it goes, with a line.
TEST(DeformTest, BadSkinsAndTargetsCostALine) {
  json bar = Bar();
  bar.erase("animations");
  json const morphed = Animated(Morphed(), {0, 1}, {0, 1, 1, 0}, "LINEAR");
  struct Row {
    char const* note;
    json const& file;
    std::function<void(json&, Arrays&)> spoil;
    Points expected;  // at rest, global
  };
  auto const attributes = [](json& file) -> json& {
    return file["meshes"][0]["primitives"][0]["attributes"];
  };
  Points const moved = [] {
    Points points = kStrip;
    for (auto& point : points) {
      point = {7 + 2 * point[0], -8.0f, 9 + 3 * point[1]};  // by the mesh's own node
    }
    return points;
  }();
  Points half = Bent(0);
  for (std::size_t i = 4; i != 6; ++i) half[i] = moved[i];
  for (
      Row const &row : std::vector<Row>{
          {"1 mesh has bone weights that don't sum to one, and were scaled", bar,
           [&](json&file, Arrays&arrays) {
             attributes(file)["WEIGHTS_0"] = arrays.Add<float>(
                 {3, 0, 0, 0, 1, 0, 0, 0, 2, 2, 0, 0, 2, 2, 0, 0, 0, .25f, 0, 0, -1, 1, NAN, 0},
                 "VEC4", 4);
           },
           Bent(0)},
          {"1 skin has bones that aren't there", bar,
           [](json&file, Arrays&) { file["nodes"][2].erase("children"); }, half},
          {"1 skin has bones that aren't there", bar,
           [](json&file, Arrays&) {
             file["skins"][0]["joints"] = {2, 77};
           },
           half},
          {"1 skin has bones that aren't there", bar,
           [](json&file, Arrays&) { file["skins"][0]["joints"] = {2}; }, half},
          {"1 node has a skin that isn't there", bar,
           [](json&file, Arrays&) { file["nodes"][1]["skin"] = 5; }, moved},
          {"1 skin lacks inverse bind matrices",
           bar,
           [](json&file, Arrays&) { file["skins"][0]["inverseBindMatrices"] = 1; },
           {}},
          {"1 mesh has joints and weights that can't be read", bar,
           [&](json&file, Arrays&) { attributes(file).erase("WEIGHTS_0"); }, moved},
          {"1 mesh has joints and weights that can't be read", bar,
           [&](json&file, Arrays&arrays) {
             attributes(file)["JOINTS_0"] = arrays.Add<std::uint8_t>({0, 0, 0, 0}, "VEC4", 4, 5121);
           },
           moved},
          {"1 node stands below itself", bar,
           [](json&file, Arrays&) { file["nodes"][3]["children"] = {2}; }, Bent(0)},
          {"1 morph target can't be read or has another length", morphed,
           [](json&file, Arrays&arrays) {
             file["meshes"][0]["primitives"][0]["targets"][0]["POSITION"] =
                 arrays.Add<float>({1, 1, 1}, "VEC3", 3);
           },
           Lifted(0, 0.25f)},
          {"1 morph target can't be read or has another length", morphed,
           [](json&file, Arrays&) {
             file["meshes"][0]["primitives"][0]["targets"][1]["POSITION"] = 99;
           },
           Lifted(0.5f, 0)},
          {"1 animation channel can't be played and was left out: \"animations[0]\", channel 0: a "
           "sampler whose times and values don't match",
           morphed,
           [](json&file, Arrays&) { file["meshes"][0]["primitives"][0]["targets"].erase(1); },
           Lifted(0.5f, 0)},
      }) {
    json file = row.file;
    Arrays arrays(file);
    row.spoil(file, arrays);
    Deformed const deformed(file);
    EXPECT_THAT(deformed.GetNotes(), testing::Contains(HasSubstr(row.note)));
    EXPECT_EQ(deformed.GetNotes().size(),
              std::string(row.note).find("can't be played") != std::string::npos ? 2u : 1u)
        << testing::PrintToString(deformed.GetNotes());
    SCOPED_TRACE(row.note);
    if (!row.expected.empty()) ExpectNear(deformed.GetGlobal(), row.expected, 1e-4f);
  }
}

// Pointers to parts of nodes are as good as their channels; others are named.
TEST(DeformTest, PointersMoveNodesAndWeights) {
  json file = Animated(Morphed(), {0, 1}, {0, 1, 1, 0}, "LINEAR");
  auto const point = [](std::string const& pointer) {
    return json{{"path", "pointer"},
                {"extensions", {{"KHR_animation_pointer", {{"pointer", pointer}}}}}};
  };
  file["animations"][0]["channels"][0]["target"] = point("/nodes/0/weights");
  file["extensionsUsed"] = {"KHR_animation_pointer"};
  json const good = file;
  file["animations"][0]["channels"].push_back(
      {{"sampler", 0}, {"target", point("/materials/0/emissiveFactor")}});
  for (json const& one : {good, file}) {
    Deformed played(one);
    played.PlayTo(0.25);
    ExpectNear(played.GetLocal(), Lifted(0.25f, 0.75f), 1e-6f);
    if (one != good) {
      EXPECT_THAT(played.GetNotes(),
                  ElementsAre("1 animation channel can't be played and was left out: "
                              "\"animations[0]\", channel 1: a pointer to "
                              "\"/materials/0/emissiveFactor\""));
    } else {
      EXPECT_THAT(played.GetNotes(), IsEmpty());
    }
  }
}

class DeformedProgramTest : public ProgramTest {};

TEST_F(DeformedProgramTest, PicturesAndPlaysShowTheDeformedMesh) {
  m_files.Write("bar.gltf", Bar().dump());
  std::array<std::string, 3> pictures;
  for (std::size_t i = 0; i != 3; ++i) {
    RunWell("render bar.gltf --size 64x64 --ids out.png --time " + std::to_string(i / 2.0));
    pictures[i] = Read("out.png");
  }
  EXPECT_NE(pictures[0], pictures[1]);
  EXPECT_NE(pictures[1], pictures[2]);
  RunWell("play bar.gltf --fps 2 --size 64x64 -o frame%d.png");
  RunWell("render bar.gltf --size 64x64 -o still.png --time 0.5");
  EXPECT_EQ(Read("frame1.png"), Read("still.png"));
  EXPECT_NE(Read("frame0.png"), Read("frame2.png"));
}

}  // namespace
}  // namespace corvanta::app_tests
