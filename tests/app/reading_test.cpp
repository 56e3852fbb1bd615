#include <assimp/scene.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <cerrno>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>

#include "corvanta/data/domain/scenegraph/item/NSceneGraphGroupNode.h"
#include "corvanta/importer/NImportError.h"
#include "corvanta/importer/animation/NAnimations.h"
#include "corvanta/importer/animation/NEffort.h"
#include "corvanta/importer/animation/angles.h"
#include "corvanta/importer/animation/camera_curves.h"
#include "corvanta/importer/import.h"
#include "corvanta/importer/limits.h"
#include "corvanta/importer/process/NModelFolder.h"
#include "corvanta/importer/reader/check.h"
#include "tests/app/neutral_scene.h"
#include "tests/app/program.h"
#include "tests/support/zip_archive.h"

namespace corvanta::app_tests {
namespace {

namespace fs = std::filesystem;
using data::document::NDocument;
using importer::NImportError;
using nlohmann::json;
using support::TemporaryFiles;
using testing::HasSubstr;

std::string const kGood = MakeGltf({Triangle()}, {{{"name", "only"}, {"mesh", 0}}});

// A node that `levels` times lists the next one twice, and the last of them a triangle.
std::string Doubled(int levels) {
  json nodes = json::array();
  for (int i = 0; i != levels; ++i) nodes.push_back({{"children", {i + 1, i + 1}}});
  nodes.push_back({{"mesh", 0}});
  return MakeGltf({Triangle()}, nodes);
}

std::string GetReason(std::function<void()> const& work) {
  try {
    work();
  } catch (NImportError const& error) {
    return error.what();
  }
  return "";
}

// Files of tests/hostile that took readers down, kept them for ever or made them take gigabytes.
TEST(ReadingTest, AHostileFileCostsOneLine) {
  TemporaryFiles const files;
  files.Write("good.gltf", kGood);
  files.Write("doubled.gltf", Doubled(60));
  ASSERT_EQ(mkfifo((files.GetFolder() / "ff").c_str(), 0600), 0);  // which two of them name
  for (auto const& [name, reason] :
       std::vector<std::pair<std::string, std::string>>{{"check72.raw", ""},
                                                        {"two_objects.raw", ""},
                                                        {"mesh36.gltf", ""},
                                                        {"dag.gltf", "items"},
                                                        {"doubled.gltf", "items"},
                                                        {"claims_vertices.off", ""},
                                                        {"fifo.gltf", ""}}) {
    SCOPED_TRACE(name);
    if (name != "doubled.gltf")
      fs::copy_file(fs::path(CORVANTA_HOSTILE) / name, files.GetFolder() / name);
    Result const result = RunProgram(files, {"info", name, "good.gltf", "--json"});
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(result.HasOneError(name + ": ", reason)) << result.err;
    EXPECT_FALSE(Named(result.Json()["trees"][1]["items"], "only").is_null());
  }
  for (fs::path const& left : files.GetLeftovers()) {
    EXPECT_THAT(left.filename(), testing::AnyOf("ywefe", "ewasd")) << "only built-in pictures stay";
  }
  for (char const* const name : {"mtlf.obj", "min_skin.gltf"}) {
    fs::copy_file(fs::path(CORVANTA_HOSTILE) / name, files.GetFolder() / name);
    EXPECT_EQ(RunProgram(files, {"info", name}).status, 0) << name;
  }
}

TEST(ReadingTest, AModelMayNameRegularFilesInItsFolderBelowItAndInItsParents) {
  TemporaryFiles const files;
  fs::path const top = files.GetFolder();
  fs::create_directories(top / "model" / "below");
  fs::create_directories(top / "beside");
  for (char const* const name :
       {"up.bin", "model/a.gltf", "model/own.bin", "model/below/low.bin", "beside/other.bin"}) {
    files.Write(name, name);
  }
  ASSERT_EQ(mkfifo((top / "model/pipe.bin").c_str(), 0600), 0);
  fs::create_symlink("own.bin", top / "model/link.bin");
  fs::create_symlink("../beside/other.bin", top / "model/away.bin");
  fs::create_symlink("/dev/zero", top / "model/zero.bin");
  fs::create_symlink("../model/a.gltf", top / "beside/a.gltf");
  importer::NModelFolder folder((top / "model/a.gltf").string());
  for (auto const& [name, isOpened] :
       std::vector<std::pair<std::string, bool>>{{"a.gltf", true},
                                                 {"own.bin", true},
                                                 {"link.bin", true},
                                                 {"below/low.bin", true},
                                                 {"below/../../up.bin", true},
                                                 {"", false},
                                                 {"none.bin", false},
                                                 {"pipe.bin", false},
                                                 {"zero.bin", false},
                                                 {"away.bin", false},
                                                 {"../beside/other.bin", false},
                                                 {"../../../../../../../../etc/passwd", false}}) {
    EXPECT_EQ(static_cast<bool>(folder.Open((top / "model" / name).string())), isOpened) << name;
  }
  for (char const* const name : {"/dev/null", "/etc/passwd", "/proc/self/mem", "own.bin"}) {
    EXPECT_FALSE(folder.Open(name)) << name;
  }
  // By a link, what lies beside the link and beside the model.
  importer::NModelFolder linked((top / "beside/a.gltf").string());
  for (char const* const name : {"beside/a.gltf", "beside/other.bin", "model/own.bin"}) {
    EXPECT_TRUE(linked.Open((top / name).string())) << name;
  }
}

TEST(ReadingTest, WhatTakesTooMuchEndsAndTheOthersGoOn) {
  TemporaryFiles const files;
  files.Write("good.gltf", kGood);
  files.Write("many.gltf", Doubled(19));
  Result const memory =
      RunProgram(files, {"info", "many.gltf", "good.gltf", "--memory", "60", "--json"});
  EXPECT_EQ(memory.status, 1);
#ifdef __SANITIZE_ADDRESS__
  char const* const reason = "ended with status 3";  // what a sanitized reader does then
#else
  char const* const reason = "more than 60 MB";
#endif
  EXPECT_TRUE(memory.HasOneError("many.gltf: ", reason)) << memory.err;
  EXPECT_FALSE(Named(memory.Json()["trees"][1]["items"], "only").is_null());

  Result const time = RunProgram(files, {"info", "many.gltf", "--timeout", "0.001"});
  EXPECT_EQ(time.status, 1);
  EXPECT_TRUE(time.HasOneError("many.gltf: ", "longer than 0.001 s")) << time.err;

#ifndef __SANITIZE_ADDRESS__
  // The stack on which the file is recursed through is part of its memory.
  std::string const opened(5'000'000, '['), closed(5'000'000, ']');
  files.Write("deep.gltf", R"({"asset": {"version": "2.0"}, "x": )" + opened + closed + '}');
  rusage usage{};
  int status = 0;
  pid_t const program = StartProgram(files, {"info", "deep.gltf", "--memory", "200"});
  ASSERT_EQ(wait4(program, &status, 0, &usage), program);
  EXPECT_EQ(WEXITSTATUS(status), 1);
  EXPECT_LT(usage.ru_maxrss, 250 * 1024) << "the larger one of host and reader";
#endif
  EXPECT_EQ(RunProgram(files, {"info", "good.gltf", "--memory", "16"}).status, 0);

  for (char const* const option : {"--memory", "--timeout"}) {
    for (char const* const value : {"0", "-1", "nan", "x", "1e10"}) {
      EXPECT_EQ(RunProgram(files, {"info", "good.gltf", option, value}).status, 2) << value;
    }
  }
}

// The parser of this format takes its memory with malloc, and gives what it has when there is none.
TEST(ReadingTest, TooLittleMemoryIsNeverTakenForADamagedFile) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizer ends the reader itself";
#endif
  constexpr int kCount = 20'000;
  std::ostringstream model;
  model << "<model unit='millimeter' xmlns='http://schemas.microsoft.com/3dmanufacturing/core/"
           "2015/02'><resources><object id='1' type='model'><mesh><vertices>";
  for (int i = 0; i != kCount; ++i) {
    model << "<vertex x='" << i % 100 << "' y='" << i / 100 << "' z='0'/>";
  }
  model << "</vertices><triangles>";
  for (int i = 2; i != kCount; ++i) {
    model << "<triangle v1='" << i - 2 << "' v2='" << i - 1 << "' v3='" << i << "'/>";
  }
  model << "</triangles></mesh></object></resources><build><item objectid='1'/></build></model>";
  TemporaryFiles const files;
  support::WriteZip(
      files.At("model.3mf"),
      {{"3D/3dmodel.model", model.str()},
       {"_rels/.rels",
        "<Relationships xmlns='http://schemas.openxmlformats.org/package/2006/relationships'>"
        "<Relationship Target='/3D/3dmodel.model' Id='a' "
        "Type='http://schemas.microsoft.com/3dmanufacturing/2013/01/3dmodel'/></Relationships>"}});
  int readCount = 0;
  for (int megabytes = 2; megabytes <= 64; megabytes += megabytes < 24 ? 1 : 20) {
    Result const result = RunProgram(
        files, {"info", "model.3mf", "--summary", "--memory", std::to_string(megabytes)});
    readCount += result.status == 0;
    EXPECT_TRUE(result.status == 0 || result.err.find("MB to read\n") != std::string::npos)
        << megabytes << ": " << result.err;
  }
  EXPECT_GT(readCount, 0);
#ifndef __SANITIZE_ADDRESS__
  // A stack that ends isn't a damaged file either.
  std::string nodes = "<node id='n'>", ends;
  for (int i = 0; i != 200'000; ++i) {
    nodes += "<node>";
    ends += "</node>";
  }
  files.Write("deep.dae",
              "<COLLADA xmlns='http://www.collada.org/2005/11/COLLADASchema' version='1.4.1'>"
              "<library_visual_scenes><visual_scene id='s'>" +
                  nodes + ends +
                  "</node></visual_scene></library_visual_scenes><scene>"
                  "<instance_visual_scene url='#s'/></scene></COLLADA>");
  Result const deep = RunProgram(files, {"info", "deep.dae", "--summary", "--memory", "300"});
  EXPECT_EQ(deep.status, 1);
  EXPECT_TRUE(deep.HasOneError("deep.dae", "nested too deeply")) << deep.err;
#endif
}

TEST(ReadingTest, ALimitOnTheSizeOfFilesDoesNotEndTheProgram) {
  TemporaryFiles const files;
  files.Write("good.gltf", kGood);
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  rlimit const small{8 * 1024, before.rlim_max};  // less than a built-in picture
  setrlimit(RLIMIT_FSIZE, &small);
  Result const result = RunProgram(files, {"info", "good.gltf", "--json"});
  setrlimit(RLIMIT_FSIZE, &before);
  EXPECT_NE(result.status, -1) << result.err;
}

// Programs that aren't readers, in the place of one.
TEST(ReadingTest, AReaderThatFailsIsToldAndLeavesNothing) {
  TemporaryFiles const files;
  std::string const good = (files.GetFolder() / "good.gltf").string();
  files.Write("good.gltf", kGood);
  auto const script = [&](std::string const& text) {
    std::string const name = text.substr(0, text.find(' '));
    auto const path = files.Write(name, "#!/bin/sh\n" + text + "\n");
    fs::permissions(files.GetFolder() / name, fs::perms::owner_all);
    return path.ToString();
  };
  importer::NImportLimits const limits = importer::GetImportLimits();
  struct Row {
    std::wstring program;
    char const* reason;
  };
  for (Row const& row :
       {Row{L"/nowhere/reader", "can't start"},
        Row{files.At("good.gltf").ToString(), "can't start"}, Row{L"/bin/true", "status 0"},
        Row{script("exec sleep 1000"), "longer than 0.3 s"}, Row{script("exit 3"), "status 3"},
        Row{script("kill -SEGV $$"), "signal 11"}, Row{script("echo done >&3"), "gave no scene"}}) {
    SCOPED_TRACE(row.reason);
    importer::SetReaderProgram(row.program);
    importer::SetImportLimits({limits.memory, std::chrono::milliseconds(300)});
    NDocument document;
    EXPECT_THAT(GetReason([&] { importer::ImportModel(document, good); }), HasSubstr(row.reason));
    EXPECT_EQ(document.GetTrees().GetNodeCount(), 0u);
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
  }
  importer::SetReaderProgram(L"");
  importer::SetImportLimits(limits);
  NDocument document;
  importer::ImportModel(document, good);
  EXPECT_EQ(document.GetTrees().GetNodeCount(), 1u);
}

// More cameras than a file may have at their depth, which shows while its items are made.
TEST(ReadingTest, AModelThatIsRefusedLateLeavesNothing) {
  constexpr int kCount = 7'200;
  json nodes = json::array({{{"mesh", 0}, {"children", {1}}}});
  for (int i = 1; i != kCount; ++i) nodes.push_back({{"children", {i + 1}}});
  json cameras = json::array();
  for (int i = 1; i <= kCount; ++i) cameras.push_back(kCount + i);
  nodes.push_back({{"children", cameras}});
  for (int i = 1; i <= kCount; ++i) nodes.push_back({{"camera", 0}});
  TemporaryFiles const files;
  files.Write(
      "deep.gltf",
      MakeGltf({Triangle()}, nodes,
               {{"cameras",
                 {{{"type", "perspective"}, {"perspective", {{"yfov", 1}, {"znear", 1}}}}}}}));
  NDocument document;
  auto const kept =
      document.GetItems().CreateNode<data::domain::scenegraph::item::NSceneGraphGroupNode>();
  EXPECT_THAT(GetReason([&] {
                importer::ImportModel(document, (files.GetFolder() / "deep.gltf").string());
              }),
              HasSubstr("transforms"));
  for (auto const& domain : document) {
    EXPECT_EQ(domain->GetNodeCount(), domain.get() == &document.GetItems() ? 1u : 0u)
        << domain->GetType();
  }
}

// A triangle with all that it can have, below a root.
std::unique_ptr<aiScene> MakeScene() {
  auto scene = std::make_unique<aiScene>();
  auto* const mesh = new aiMesh;
  mesh->mNumVertices = 3;
  mesh->mVertices = new aiVector3D[3]{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
  mesh->mNormals = new aiVector3D[3];
  mesh->mTextureCoords[0] = new aiVector3D[3];
  mesh->mNumFaces = 1;
  mesh->mFaces = new aiFace[1];
  mesh->mFaces[0].mNumIndices = 3;
  mesh->mFaces[0].mIndices = new unsigned[3]{0, 1, 2};
  scene->mNumMeshes = scene->mNumMaterials = 1;
  scene->mMeshes = new aiMesh* [1] { mesh };
  scene->mMaterials = new aiMaterial* [1] { new aiMaterial };
  auto* const child = new aiNode("child");
  child->mNumMeshes = 1;
  child->mMeshes = new unsigned[1]{0};
  scene->mRootNode = new aiNode("root");
  scene->mRootNode->addChildren(1, const_cast<aiNode**>(&child));
  return scene;
}

// What is wrong is put right again before the scene is taken down.
TEST(ReadingTest, NothingOfAReadersSceneIsTrusted) {
  EXPECT_EQ(GetReason([] { importer::reader::CheckScene(*MakeScene()); }), "");
  auto const refused = [](auto aiMesh::*member, auto value, char const* reason) {
    auto const scene = MakeScene();
    auto& place = (*scene->mMeshes[0]).*member;
    auto const before = std::exchange(place, value);
    EXPECT_THAT(GetReason([&] { importer::reader::CheckScene(*scene); }), HasSubstr(reason));
    place = before;
  };
  refused(&aiMesh::mVertices, nullptr, "vertices");
  refused(&aiMesh::mFaces, nullptr, "faces");
  refused(&aiMesh::mNumVertices, 900u, "vertices");
  refused(&aiMesh::mNumFaces, 900u, "faces");
  refused(&aiMesh::mMaterialIndex, 1u, "material");
  std::unique_ptr<aiVector3D[]> const few(new aiVector3D[1]);
  refused(&aiMesh::mNormals, few.get(), "normals");

  auto const spoilt = [](auto const& spoil, auto const& mend, char const* reason) {
    auto const scene = MakeScene();
    spoil(*scene);
    EXPECT_THAT(GetReason([&] { importer::reader::CheckScene(*scene); }), HasSubstr(reason));
    mend(*scene);
  };
  aiNode* child = nullptr;
  spoilt([&](aiScene& s) { child = std::exchange(s.mRootNode->mChildren[0], nullptr); },
         [&](aiScene& s) { s.mRootNode->mChildren[0] = child; }, "a child that isn't there");
  spoilt([](aiScene& s) { s.mRootNode->mNumChildren = 90; },
         [](aiScene& s) { s.mRootNode->mNumChildren = 1; }, "a child that isn't there");
  spoilt([&](aiScene& s) { child = std::exchange(s.mRootNode->mChildren[0], s.mRootNode); },
         [&](aiScene& s) { s.mRootNode->mChildren[0] = child; }, "items");
  spoilt([](aiScene& s) { s.mRootNode->mChildren[0]->mMeshes[0] = 1; }, [](aiScene&) {}, "mesh");
  aiMesh* mesh = nullptr;
  spoilt([&](aiScene& s) { mesh = std::exchange(s.mMeshes[0], nullptr); },
         [&](aiScene& s) { s.mMeshes[0] = mesh; }, "shorter");
  spoilt(
      [](aiScene& s) {
        aiFace& face = s.mMeshes[0]->mFaces[0];
        delete[] face.mIndices;
        face.mIndices = new unsigned[900'000]{};
        face.mNumIndices = 900'000;
      },
      [](aiScene&) {}, "900000 corners");
}

// A scene with one of each.
neutral::NSceneWriter MakeWhole() {
  neutral::NSceneWriter writer;
  AddNode(writer, "root", 1);
  AddNode(writer, "child");
  auto& child = writer.Get<neutral::NNode>().back();
  std::vector<std::uint32_t> const first{0};
  child.meshes = writer.Add(first);
  child.lights = writer.Add(first);
  child.cameras = writer.Add(first);
  neutral::NMesh mesh{};
  mesh.positions = writer.Add(std::vector<neutral::NTriple>{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}});
  mesh.normals = writer.Add(std::vector<neutral::NTriple>(3));
  mesh.uvs[0] = writer.Add(std::vector<neutral::NTriple>(3));
  mesh.uvSetCount = 1;
  mesh.triangles = writer.Add(std::vector<neutral::NTriangle>{{0, 1, 2}});
  mesh.influences = writer.Add(std::vector<neutral::NInfluence>{{0, 0, 0.5f}, {2, 1, 1.0f}});
  auto const offsets = writer.Add(std::vector<neutral::NOffset>{{1, {0, 0, 1}, {}}});
  mesh.targets = writer.Add(std::vector<neutral::NMorphTarget>{{offsets}});
  auto const joints = writer.Add(std::vector<neutral::NJoint>{{0, {}}, {1, {}}});
  writer.Get<neutral::NSkin>().push_back({joints});
  child.skins = writer.Add(first);
  child.weights = writer.Add(std::vector<float>{0.25f});
  writer.Get<neutral::NMesh>().push_back(mesh);
  neutral::NMaterial material{};
  material.textures =
      writer.Add(std::vector<neutral::NTexture>{{0, 0, 0, 0, 1.0f}, {1, 1, 0, 0, 1.0f}});
  writer.Get<neutral::NMaterial>().push_back(material);
  neutral::NBytes const bytes = writer.Add(std::vector<std::uint8_t>(5));
  neutral::NText const own = writer.AddText("own");
  writer.Get<neutral::NPicture>() = {{own, 1, writer.AddText("png"), bytes},
                                     {writer.AddText("beside.png"), 0, {}, {}}};
  writer.Get<neutral::NLight>().push_back({{}, neutral::NLK_SPOT, {}, {0, 1, 0}, {}, 1, 2});
  writer.Get<neutral::NCamera>().push_back({{}, {}, {0, 0, -1}, {0, 1, 0}, 1, 1, 0});
  auto const moves = writer.Add(std::vector<neutral::NTripleKey>{{0, {}}, {1, {1, 0, 0}}});
  auto const turns =
      writer.Add(std::vector<neutral::NTurnKey>{{0, {0, 0, 0, 1}}, {1, {0, 1, 0, 0}}});
  auto const grows = writer.Add(std::vector<neutral::NWeightKey>{{0, 0}, {1, 1}});
  auto const weights = writer.Add(std::vector<neutral::NWeightChannel>{{{}, 1, 0, grows}});
  auto const channels = writer.Add(std::vector<neutral::NChannel>{{{}, 1, moves, turns, {}}});
  writer.Get<neutral::NAnimation>().push_back({{}, 25, 2, channels, 0, {}, weights});
  writer.Get<neutral::NText>().push_back(writer.AddText("note"));
  return writer;
}

// Each word is spoilt in turn, in several ways: the block is refused or can be built of.
TEST(ReadingTest, ADamagedBlockIsRefusedOrHarmless) {
  TemporaryFiles const files;
  auto const whole = MakeBlock(MakeWhole());
  int refusedCount = 0;
  int builtCount = 0;
  for (std::size_t at = 0; at != whole.size(); ++at) {
    for (std::uint64_t const mask :
         {~std::uint64_t{0}, std::uint64_t{1}, std::uint64_t{8}, std::uint64_t{1} << 32,
          std::uint64_t{1} << 63, std::uint64_t{0x7F80'0000}}) {
      auto block = whole;
      block[at] ^= mask;
      try {
        neutral::NSceneView const scene(std::as_bytes(std::span(block)));
        NDocument document;
        importer::NImportTarget target(document);
        importer::NEffort effort;
        importer::NVertexColors const colors(scene);
        importer::NPictures pictures(target, scene, colors, files.GetFolder());
        importer::NMaterials materials(target, scene, pictures);
        importer::NHierarchy hierarchy(target, scene, materials, colors);
        auto const tree = document.GetTrees().CreateNode(core::node::NNodeID());
        hierarchy.Build(*tree, effort);
        importer::NAnimations const animations(target, scene, hierarchy, *tree, effort);
        ++builtCount;
      } catch (NImportError const&) {
        ++refusedCount;
      }
    }
  }
  EXPECT_GT(refusedCount, 300);
  EXPECT_GT(builtCount, 300);
  for (std::size_t size = 0; size != whole.size(); ++size) {
    EXPECT_THROW(neutral::NSceneView(std::as_bytes(std::span(whole).first(size))), NImportError);
  }
}

// A few bytes that name the same keys and cameras many times keep the host neither busy nor large.
TEST(ReadingTest, WhatAFileMakesOfCamerasAndKeysIsLimited) {
  constexpr std::uint32_t kDepth = 10'000;
  neutral::NSceneWriter deep;
  for (std::uint32_t i = 0; i != kDepth; ++i) AddNode(deep, "", i + 1 != kDepth);
  deep.Get<neutral::NCamera>().push_back({{}, {}, {0, 0, -1}, {0, 1, 0}, 1, 1, 0});
  deep.Get<neutral::NNode>().back().cameras = deep.Add(std::vector<std::uint32_t>(kDepth));
  Built built(deep);
  EXPECT_THAT(GetReason([&] { built.hierarchy.Build(*built.tree, built.effort); }),
              HasSubstr("transforms"));

  importer::NTurnKeys const turns{{0, {0, 0, 0, 1}}, {9, {0.6, 0.48, 0.64, 0}}};
  importer::NEffort effort(10, 100);
  EXPECT_THAT(GetReason([&] { importer::ToAngles(turns, {}, effort); }),
              HasSubstr("more than 10 keys"));
  NDocument document;
  auto const camera =
      document.GetItems().CreateNode<data::domain::scenegraph::item::NSceneGraphCameraNode>(
          core::node::NNodeID());
  auto const tree = document.GetTrees().CreateNode(core::node::NNodeID());
  tree->SetRoot(
      core::node::NNodeReference<data::domain::scenegraph::item::NSceneGraphItemNode>(*camera));
  camera->SetInterestZ(-1);
  auto const animation = document.GetAnimations().CreateNode(core::node::NNodeID());
  for (auto const& [limited, reason] : std::vector<std::pair<importer::NEffort, char const*>>{
           {importer::NEffort(100, 1'000'000), "keys"},
           {importer::NEffort(1'000, 100), "transforms"}}) {
    importer::NEffort own = limited;
    importer::NCurvesByItem curves;
    auto& entry = *curves.Add(*camera);
    entry.curves[1] =
        importer::AddCurves(*animation, entry.target, {L"rotation.x", L"rotation.y", L"rotation.z"},
                            {{0, {0, 0, 0}}, {9, {170, 0, 0}}});
    EXPECT_THAT(GetReason([&] {
                  importer::AddCameraCurves(*animation, *tree, {camera, {0, 0, -1}, {0, 1, 0}},
                                            curves, own);
                }),
                HasSubstr(reason));
  }
}

}  // namespace
}  // namespace corvanta::app_tests
