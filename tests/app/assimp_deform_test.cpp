#include <assimp/scene.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "corvanta/data/domain/geometry/NGeometryNode.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphModelNode.h"
#include "corvanta/importer/NImportError.h"
#include "corvanta/importer/animation/NAnimations.h"
#include "corvanta/importer/import.h"
#include "corvanta/importer/reader/NAssimpConverter.h"
#include "corvanta/importer/reader/check.h"
#include "tests/app/neutral_scene.h"
#include "tests/app/program.h"

namespace corvanta::app_tests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using Points = std::vector<std::array<float, 3>>;

Points GetPoints(data::document::NDocument const& document, std::wstring const& name) {
  auto& model = dynamic_cast<data::domain::scenegraph::item::NSceneGraphModelNode&>(
      *document.QueryNodes(name).at(0));
  Points points;
  for (auto const& v : (*model.GetGeometryNode()->GetSurfaces().begin())->GetCoords()) {
    points.push_back({v.x, v.y, v.z});
  }
  return points;
}

// The triangle's third corner hangs on "upper", which stands at 0, 1 and is turned by 90 degrees.
constexpr char kCollada[] = R"(<?xml version="1.0"?>
<COLLADA xmlns="http://www.collada.org/2005/11/COLLADASchema" version="1.4.1">
<library_geometries><geometry id="g"><mesh>
<source id="p"><float_array id="pa" count="9">0 0 0 1 0 0 0 3 0</float_array><technique_common>
<accessor source="#pa" count="3" stride="3"><param name="X" type="float"/><param name="Y" type="float"/><param name="Z" type="float"/></accessor></technique_common></source>
<vertices id="v"><input semantic="POSITION" source="#p"/></vertices>
<triangles count="1"><input semantic="VERTEX" source="#v" offset="0"/><p>0 1 2</p></triangles>
</mesh></geometry></library_geometries>
<library_controllers><controller id="c"><skin source="#g">
<bind_shape_matrix>1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1</bind_shape_matrix>
<source id="j"><Name_array id="ja" count="2">lower upper</Name_array><technique_common>
<accessor source="#ja" count="2" stride="1"><param name="JOINT" type="name"/></accessor></technique_common></source>
<source id="b"><float_array id="ba" count="32">1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1 1 0 0 0 0 1 0 -1 0 0 1 0 0 0 0 1</float_array><technique_common>
<accessor source="#ba" count="2" stride="16"><param name="TRANSFORM" type="float4x4"/></accessor></technique_common></source>
<source id="w"><float_array id="wa" count="1">1</float_array><technique_common>
<accessor source="#wa" count="1" stride="1"><param name="WEIGHT" type="float"/></accessor></technique_common></source>
<joints><input semantic="JOINT" source="#j"/><input semantic="INV_BIND_MATRIX" source="#b"/></joints>
<vertex_weights count="3"><input semantic="JOINT" source="#j" offset="0"/><input semantic="WEIGHT" source="#w" offset="1"/>
<vcount>1 1 1</vcount><v>0 0 0 0 1 0</v></vertex_weights>
</skin></controller></library_controllers>
<library_visual_scenes><visual_scene id="s">
<node id="lower" name="lower" sid="lower" type="JOINT">
<node id="upper" name="upper" sid="upper" type="JOINT"><matrix>0 -1 0 0 1 0 0 1 0 0 1 0 0 0 0 1</matrix></node></node>
<node id="skinned" name="skinned"><translate>5 6 7</translate><instance_controller url="#c"><skeleton>#lower</skeleton></instance_controller></node>
</visual_scene></library_visual_scenes>
<scene><instance_visual_scene url="#s"/></scene></COLLADA>)";

TEST(AssimpDeformTest, BonesOfAColladaFileHoldTheirVertices) {
  support::TemporaryFiles const files;
  files.Write("skin.dae", kCollada);
  data::document::NDocument document;
  auto const model = importer::ImportModel(document, (files.GetFolder() / "skin.dae").string());
  ASSERT_NE(model.deformer, nullptr);
  auto const upper =
      dynamic_cast<importer::NDeformer::Item*>(document.QueryNodes(L"upper")[0].get());
  // In the frame of a node that stands at 5, 6, 7.
  auto const near = [](float x, float y) {
    return ElementsAre(testing::FloatNear(x - 5, 1e-5f), testing::FloatNear(y - 6, 1e-5f),
                       testing::FloatNear(-7, 1e-5f));
  };
  EXPECT_THAT(GetPoints(document, L"skinned"), ElementsAre(near(0, 0), near(1, 0), near(-2, 1)));
  upper->SetRotationZ(180);
  model.deformer->Update();
  EXPECT_THAT(GetPoints(document, L"skinned"), ElementsAre(near(0, 0), near(1, 0), near(0, -1)));
}

// A triangle "face" with two morph targets, and a third of another length, which a channel moves.
std::unique_ptr<aiScene> MakeMorphed(std::string const& channelName) {
  auto scene = std::make_unique<aiScene>();
  auto* const mesh = new aiMesh;
  mesh->mName = "face";
  mesh->mNumVertices = 3;
  mesh->mVertices = new aiVector3D[3]{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
  mesh->mNumFaces = 1;
  mesh->mFaces = new aiFace[1];
  mesh->mFaces[0].mNumIndices = 3;
  mesh->mFaces[0].mIndices = new unsigned[3]{0, 1, 2};
  mesh->mNumAnimMeshes = 3;
  mesh->mAnimMeshes = new aiAnimMesh* [3] { new aiAnimMesh, new aiAnimMesh, new aiAnimMesh };
  auto const put = [&](unsigned i, std::vector<aiVector3D> const& vertices, float weight) {
    aiAnimMesh& target = *mesh->mAnimMeshes[i];
    target.mNumVertices = static_cast<unsigned>(vertices.size());
    target.mVertices = new aiVector3D[vertices.size()];
    std::copy(vertices.begin(), vertices.end(), target.mVertices);
    target.mWeight = weight;
  };
  put(0, {{0, 0, 2}, {1, 0, 0}, {0, 1, 0}}, 0.5f);
  put(1, {{0, 0, 0}, {5, 0, 0}, {0, 1, 0}}, 0.0f);
  put(2, {{9, 9, 9}, {9, 9, 9}}, 1.0f);
  scene->mNumMeshes = scene->mNumMaterials = scene->mNumAnimations = 1;
  scene->mMeshes = new aiMesh* [1] { mesh };
  scene->mMaterials = new aiMaterial* [1] { new aiMaterial };
  scene->mRootNode = new aiNode("head");
  scene->mRootNode->mNumMeshes = 1;
  scene->mRootNode->mMeshes = new unsigned[1]{0};

  auto* const channel = new aiMeshMorphAnim;
  channel->mName = channelName;
  channel->mNumKeys = 2;
  channel->mKeys = new aiMeshMorphKey[2];
  for (unsigned i = 0; i != 2; ++i) {
    aiMeshMorphKey& key = channel->mKeys[i];
    key.mTime = 10 * i;
    key.mNumValuesAndWeights = 1;
    key.mValues = new unsigned[1]{i};  // each key names one target, and the others are 0 there
    key.mWeights = new double[1]{1};
  }
  auto* const animation = new aiAnimation;
  animation->mDuration = animation->mTicksPerSecond = 10;
  animation->mNumMorphMeshChannels = 1;
  animation->mMorphMeshChannels = new aiMeshMorphAnim* [1] { channel };
  scene->mAnimations = new aiAnimation* [1] { animation };
  return scene;
}

TEST(AssimpDeformTest, MorphTargetsAreMovedByTheNameOfNodeOrMesh) {
  for (char const* const name : {"head", "face", "head*0", "nobody"}) {
    SCOPED_TRACE(name);
    auto const scene = MakeMorphed(name);
    importer::reader::CheckScene(*scene);
    neutral::NSceneWriter writer;
    importer::reader::NAssimpConverter converter(*scene, false, writer);
    converter.Convert();
    EXPECT_THAT(converter.GetNotes(), ElementsAre(HasSubstr("1 morph target has another length")));
    Built built(writer);
    built.hierarchy.Build(*built.tree, built.effort);
    importer::NAnimations const animations(built.target, built.scene, built.hierarchy, *built.tree,
                                           built.effort);
    EXPECT_EQ(GetPoints(built.document, L"head"), (Points{{0, 0, 1}, {1, 0, 0}, {0, 1, 0}}));
    auto const& node = *animations.GetNodes().at(0);
    bool const isFound = std::string(name) != "nobody";
    node.SetFrame(0.75 * node.GetFps());
    built.hierarchy.GetDeformations().GetDeformer()->Update();
    EXPECT_EQ(GetPoints(built.document, L"head"), isFound
                                                      ? (Points{{0, 0, 0.5f}, {4, 0, 0}, {0, 1, 0}})
                                                      : (Points{{0, 0, 1}, {1, 0, 0}, {0, 1, 0}}));
    EXPECT_EQ(animations.GetNotes().size(), isFound ? 0u : 2u);
    if (isFound) continue;
    EXPECT_THAT(animations.GetNotes().at(0), HasSubstr("that of \"nobody\": no node"));
  }
}

// Where the targets hold ways, and where the weights mean nothing.
TEST(AssimpDeformTest, TargetsAreReadAsTheirFormatMeansThem) {
  for (auto const& [isRelative, hasWeights, expected] :
       {std::tuple(true, true, Points{{0, 0, 1}, {1.5f, 0, 0}, {0, 1.5f, 0}}),
        std::tuple(false, false, Points{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}})}) {
    auto const scene = MakeMorphed("head");
    if (isRelative) scene->mMeshes[0]->mMethod = aiMorphingMethod_MORPH_RELATIVE;
    neutral::NSceneWriter writer;
    importer::reader::NAssimpConverter(*scene, false, writer, hasWeights).Convert();
    Built built(writer);
    built.hierarchy.Build(*built.tree, built.effort);
    EXPECT_EQ(GetPoints(built.document, L"head"), expected);
  }
}

TEST(AssimpDeformTest, AWeightOfNoTargetIsNamed) {
  auto const scene = MakeMorphed("head");
  scene->mAnimations[0]->mMorphMeshChannels[0]->mKeys[1].mValues[0] = 7;
  neutral::NSceneWriter writer;
  importer::reader::NAssimpConverter(*scene, false, writer).Convert();
  Built built(writer);
  built.hierarchy.Build(*built.tree, built.effort);
  importer::NAnimations const animations(built.target, built.scene, built.hierarchy, *built.tree,
                                         built.effort);
  EXPECT_THAT(animations.GetNotes(),
              ElementsAre("1 animation channel can't be played and was left out: the weight of "
                          "morph target 7 of \"head\", which has none"));
}

// A few bytes that name one mesh many times make neither the host large nor its frames long.
TEST(AssimpDeformTest, ModelsOfAMovedMeshAreLimited) {
  auto const scene = MakeMorphed("head");
  neutral::NSceneWriter writer;
  importer::reader::NAssimpConverter(*scene, false, writer).Convert();
  Built built(writer);
  importer::NDeformations deformations(built.target, built.scene, {}, 20);
  std::size_t movedCount = 0;
  for (int i = 0; i != 5; ++i) {
    auto const model = built.document.GetItems()
                           .CreateNode<data::domain::scenegraph::item::NSceneGraphModelNode>();
    movedCount += deformations.AddModel(*model, 0, neutral::kNone, 0, {}) != nullptr;
  }
  // Three targets, and beyond the first model also three vertices and a triangle.
  EXPECT_EQ(movedCount, 3u);
  EXPECT_THAT(deformations.GetNotes(),
              ElementsAre("2 models are moved by bones or morph targets beyond the most, and stand "
                          "still"));
}

TEST(AssimpDeformTest, NothingOfBonesAndTargetsIsTrusted) {
  struct Row {
    char const* reason;
    std::function<void(aiScene&)> spoil, mend;
  };
  for (Row const& row : std::vector<Row>{
           {"bones", [](aiScene& s) { s.mMeshes[0]->mNumBones = 3; },
            [](aiScene& s) { s.mMeshes[0]->mNumBones = 0; }},
           {"fewer morph targets", [](aiScene& s) { s.mMeshes[0]->mNumAnimMeshes = 90; },
            [](aiScene& s) { s.mMeshes[0]->mNumAnimMeshes = 3; }},
           {"without its vertices",
            [](aiScene& s) { s.mMeshes[0]->mAnimMeshes[1]->mNumVertices = 90; }, [](aiScene&) {}},
           {"fewer keys",
            [](aiScene& s) { s.mAnimations[0]->mMorphMeshChannels[0]->mNumKeys = 90; },
            [](aiScene& s) { s.mAnimations[0]->mMorphMeshChannels[0]->mNumKeys = 2; }},
           {"fewer keys",
            [](aiScene& s) {
              s.mAnimations[0]->mMorphMeshChannels[0]->mKeys[1].mNumValuesAndWeights = 90;
            },
            [](aiScene&) {}}}) {
    auto const scene = MakeMorphed("head");
    row.spoil(*scene);
    try {
      importer::reader::CheckScene(*scene);
      ADD_FAILURE() << row.reason;
    } catch (importer::NImportError const& error) {
      EXPECT_THAT(error.what(), HasSubstr(row.reason));
    }
    row.mend(*scene);
  }
}

}  // namespace
}  // namespace corvanta::app_tests
