#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <map>
#include <numbers>

#include "app/play/NPlayback.h"
#include "app/play/NTimeLinePlayer.h"
#include "corvanta/core/text/convert.h"
#include "corvanta/importer/NImportError.h"
#include "corvanta/importer/animation/angles.h"
#include "corvanta/importer/import.h"
#include "corvanta/importer/reader/NGltfAccessors.h"
#include "corvanta/importer/reader/NGltfFile.h"
#include "tests/app/neutral_scene.h"
#include "tests/app/program.h"

namespace corvanta::app_tests {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;

std::string ToGlb(json const& file, std::string const& bytes) {
  std::string text = file.dump();
  text.resize((text.size() + 3) / 4 * 4, ' ');
  auto const word = [](std::size_t value) {
    return ToBytes<std::uint32_t>({static_cast<std::uint32_t>(value)});
  };
  return "glTF" + word(2) + word(28 + text.size() + bytes.size()) + word(text.size()) + "JSON" +
         text + word(bytes.size()) + std::string("BIN\0", 4) + bytes;
}

// A file whose first animation can be looked at.
class Played {
 public:
  explicit Played(std::string const& gltf) {
    m_files.Write("model.gltf", gltf);
    m_model = importer::ImportModel(m_document, (m_files.GetFolder() / "model.gltf").string());
    for (auto const& [context, curve] : GetNode().GetAnimations()) {
      auto const host = context.target->GetTarget();
      auto const name = core::text::ToNarrow(dynamic_cast<data::domain::NNode&>(*host).GetName());
      m_hosts[name] = host;
    }
  }

  data::domain::animation::NAnimationNode& GetNode() const { return *m_model.animations.at(0); }
  std::vector<std::string> const& GetNotes() const { return m_model.notes; }
  std::size_t GetItemCount() const { return m_hosts.size(); }

  double At(double seconds, std::string const& item, wchar_t const* attribute) const {
    GetNode().SetFrame(seconds * GetNode().GetFps());
    return m_hosts.at(item)->QueryAttribute(attribute)->GetValue().GetDouble();
  }

 private:
  support::TemporaryFiles const m_files;
  data::document::NDocument m_document;
  importer::NImportedModel m_model;
  std::map<std::string, boost::intrusive_ptr<core::attribute::NAttributeHost>> m_hosts;
};

std::string PartGltf() { return MakeGltf({Triangle()}, {{{"name", "part"}, {"mesh", 0}}}); }

TEST(GltfAnimationTest, StepsStay) {
  float const half = std::sqrt(0.5f);
  Played const played(
      AddAnimation(PartGltf(), "steps",
                   {{0, "translation", {0, 1, 2}, {1, 0, 0, 5, 0, 0, 3, 0, 0}, "STEP"},
                    {0, "rotation", {0.5, 2}, {0, 0, 0, 1, 0, half, 0, half}, "STEP"}}));
  for (auto const& [seconds, x, turn] : std::vector<std::array<double, 3>>{
           {0, 1, 0}, {0.999, 1, 0}, {1, 5, 0}, {1.999, 5, 0}, {2, 3, 90}}) {
    EXPECT_NEAR(played.At(seconds, "part", L"translation.x"), x, 1e-9) << seconds;
    EXPECT_NEAR(played.At(seconds, "part", L"rotation.y"), turn, 1e-3) << seconds;
  }
}

// At any rate, either way, and at times that no float holds exactly: the value is that of the
// last key at or before the moment.
TEST(GltfAnimationTest, AStepFiresInTheFrameOfItsTime) {
  for (auto const& [length, tenths] : {std::pair(10, 5), {7, 1}, {90, 3}, {3, 10}}) {
    Channel channel{0, "translation", {}, {}, "STEP"};
    for (int i = 0; i * tenths <= length * 10; ++i) {
      channel.times.push_back(static_cast<float>(i * tenths) / 10);
      channel.values.insert(channel.values.end(), {static_cast<float>(i), 0, 0});
    }
    support::TemporaryFiles const files;
    files.Write("model.gltf", AddAnimation(PartGltf(), "steps", {channel}));
    for (int const rate : {10, 24, 25, 30, 50, 60}) {
      for (bool const isReverse : {false, true}) {
        data::document::NDocument document;
        auto const model =
            importer::ImportModel(document, (files.GetFolder() / "model.gltf").string());
        app::NTimeLinePlayer player(*model.animations.at(0), isReverse, false);
        app::NPlayback playback(document, player, {static_cast<double>(rate), {}, false});
        int lateCount = 0;
        playback.Run([&, tenths = tenths](app::NFrame const& frame) {
          double const keys = frame.moment * 10 / tenths;
          double const expected = std::floor(keys + 1e-5);
          lateCount += std::abs(model.tree->GetRoot()->GetTranslationX() - expected) > 1e-9;
          return true;
        });
        EXPECT_EQ(lateCount, 0) << length << ' ' << tenths << ' ' << rate << ' ' << isReverse;
      }
    }
  }
}

// Tangents are given a second, and the span takes two.
TEST(GltfAnimationTest, SplinesBendAsTheirTangentsSay) {
  float const half = std::sqrt(0.5f);
  Played const played(
      AddAnimation(PartGltf(), "splines",
                   {{0,
                     "translation",
                     {1, 3},
                     {9, 9, 9, 0, 0, 0, 1, 4, 0, 0, -2, 0, 8, 0, 0, 9, 9, 9},
                     "CUBICSPLINE"},
                    {0,
                     "rotation",
                     {1, 3},
                     {0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, half, 0, half, 0, 0, 0, 0},
                     "CUBICSPLINE"}}));
  for (int i = 0; i <= 40; ++i) {
    double const u = i / 40.0, seconds = 1 + 2 * u;
    double const toB = u * u * (3 - 2 * u);
    double const out = 2 * u * (1 - u) * (1 - u), in = 2 * u * u * (u - 1);
    EXPECT_NEAR(played.At(seconds, "part", L"translation.x"), 8 * toB + out, 3e-3);
    EXPECT_NEAR(played.At(seconds, "part", L"translation.y"), 4 * out - 2 * in, 3e-3);
    // Half the angle has the tangent of the quaternion's parts.
    double const turn = 2 * std::atan2(half * toB, 1 - toB + half * toB) * 180 / std::numbers::pi;
    EXPECT_NEAR(played.At(seconds, "part", L"rotation.y"), turn, 2 * importer::kTurnTolerance);
  }
}

TEST(GltfAnimationTest, NodesOfOneNameMoveEachForItself) {
  Played const played(
      AddAnimation(MakeGltf({Triangle()}, {{{"name", "top"}, {"children", {2, 1}}},
                                           {{"name", "twin"}, {"mesh", 0}, {"scale", {1, -2, 1}}},
                                           {{"name", "twin"}, {"mesh", 0}}}),
                   "both",
                   {{1, "translation", {0, 1}, {0, 0, 0, 1, 0, 0}},
                    {2, "translation", {0, 1}, {0, 0, 0, 2, 0, 0}}}));
  EXPECT_THAT(played.GetNotes(), testing::IsEmpty());
  ASSERT_EQ(played.GetItemCount(), 2u);
  // The items are named in the order in which they stand.
  for (auto const& [name, x, scale] :
       {std::tuple("twin", 2.0, 1.0), std::tuple("twin (2)", 1.0, -2.0)}) {
    EXPECT_NEAR(played.At(1, name, L"translation.x"), x, 1e-9) << name;
    EXPECT_NEAR(played.At(1, name, L"scale.y"), scale, 1e-9) << name;
  }
}

TEST(GltfAnimationTest, LeavesOutWhatCannotBeRead) {
  json file =
      json::parse(AddAnimation(PartGltf(), "some",
                               {{0, "translation", {0, 1}, {0, 0, 0, 4, 0, 0}, "CUBICSPLINE"},
                                {0, "scale", {0, 1}, {1, 1, 1, 3, 1, 1}}}));
  // Without a node a channel means nothing.
  json channel = file["animations"][0]["channels"][1];
  channel["target"] = {{"path", "scale"}};
  file["animations"][0]["channels"].push_back(channel);
  Played const played(file.dump());
  EXPECT_THAT(
      played.GetNotes(),
      ElementsAre(HasSubstr("1 animation channel can't be played and was left out: \"some\"")));
  EXPECT_EQ(played.GetItemCount(), 1u);
  EXPECT_EQ(played.At(1, "part", L"translation.x"), 0);
  EXPECT_NEAR(played.At(1, "part", L"scale.x"), 3, 1e-9);
}

// In a file of its own, whose name the URI escapes, and in a binary file.
TEST(GltfAnimationTest, ReadsIntegersAsFractions) {
  std::string const bytes =
      ToBytes<float>({0, 1}) + ToBytes<std::int16_t>({0, 0, 0, 32767, 0, 23170, 0, 23170});
  json file = json::parse(PartGltf());
  std::size_t const buffer = file["buffers"].size(), view = file["bufferViews"].size();
  std::size_t const times = file["accessors"].size();
  file["buffers"].push_back({{"uri", "its%20turns.bin"}, {"byteLength", bytes.size()}});
  file["bufferViews"].push_back({{"buffer", buffer}, {"byteLength", bytes.size()}});
  file["accessors"].push_back({{"bufferView", view},
                               {"componentType", 5126},
                               {"count", 2},
                               {"type", "SCALAR"},
                               {"min", {0}},
                               {"max", {1}}});
  file["accessors"].push_back({{"bufferView", view},
                               {"byteOffset", 8},
                               {"componentType", 5122},
                               {"normalized", true},
                               {"count", 2},
                               {"type", "VEC4"}});
  file["animations"] = {
      {{"samplers", {{{"input", times}, {"output", times + 1}}}},
       {"channels", {{{"sampler", 0}, {"target", {{"node", 0}, {"path", "rotation"}}}}}}}};

  support::TemporaryFiles const files;
  files.Write("its turns.bin", bytes);
  files.Write("model.gltf", file.dump());
  data::document::NDocument document;
  auto const model = importer::ImportModel(document, (files.GetFolder() / "model.gltf").string());
  auto& node = *model.animations.at(0);
  node.SetFrame(node.GetFps() / 2);
  EXPECT_NEAR(model.tree->GetRoot()->GetRotationY(), 45, 0.01);

  file["buffers"][buffer].erase("uri");
  files.Write("model.glb", ToGlb(file, bytes));
  PlainOpener opener;
  importer::reader::NGltfFile const binary(opener, files.GetFolder() / "model.glb");
  importer::reader::NGltfAccessors const accessors(binary.GetModel());
  auto const read = [&](std::size_t accessor, std::size_t width) {
    return accessors
        .GetNumbers(static_cast<int>(accessor), width, importer::reader::NGltfAccessors::kFractions)
        .GetAll();
  };
  EXPECT_THAT(read(times, 1), ElementsAre(0, 1));
  EXPECT_NEAR(read(times + 1, 4)[5], 0.7071, 1e-4);
  EXPECT_THROW(read(times + 1, 3), importer::NImportError);
  EXPECT_THROW(read(times + 2, 3), importer::NImportError);
}

// Times and values that no buffer view holds, or only in part; of meshes too. Also as binary.
TEST(GltfAnimationTest, ReadsSparseAndBufferlessAccessors) {
  Mesh lit = Triangle();
  lit.normals = {0, 0, 5, 0, 0, 5, 0, 0, 5};
  Channel const moved{0, "translation", {0, 1, 2}, {1, 2, 3, 4, 5, 6, 7, 8, 9}, "LINEAR"};
  json file = json::parse(AddAnimation(
      MakeGltf({lit, Triangle()}, {{{"name", "part"}, {"mesh", 0}, {"children", {1}}},
                                   {{"name", "other"}, {"mesh", 1}}}),
      "thin", {moved, {1, "translation", {0, 1, 2}, {1, 2, 3, 4, 5, 6, 7, 8, 9}, "LINEAR"}}));
  auto& accessors = file["accessors"];
  std::string const bytes = ToBytes<std::uint16_t>({1, 2}) + ToBytes<float>({-4, -5, -6, -7, 0, 0});
  json const view = file["bufferViews"].size();
  file["bufferViews"].push_back({{"buffer", file["buffers"].size()}, {"byteLength", bytes.size()}});
  file["buffers"].push_back({{"byteLength", bytes.size()},
                             {"uri", "data:application/octet-stream;base64," + ToBase64(bytes)}});
  json const sparse = {{"count", 2},
                       {"indices", {{"bufferView", view}, {"componentType", 5123}}},
                       {"values", {{"bufferView", view}, {"byteOffset", 4}}}};
  auto const& samplers = file["animations"][0]["samplers"];
  auto const of = [&](int sampler) -> json& {
    return accessors[samplers[sampler]["output"].get<std::size_t>()];
  };
  of(0)["sparse"] = sparse;
  of(1)["sparse"] = sparse;
  of(1).erase("bufferView");
  accessors[file["meshes"][0]["primitives"][0]["attributes"]["NORMAL"].get<std::size_t>()].erase(
      "bufferView");
  {
    Played const played(file.dump());
    EXPECT_THAT(played.GetNotes(), testing::IsEmpty());
    for (auto const& [seconds, part, other] :
         std::vector<std::array<double, 3>>{{0, 1, 0}, {0.5, -1.5, -2}, {1, -4, -4}, {2, -7, -7}}) {
      EXPECT_NEAR(played.At(seconds, "part", L"translation.x"), part, 1e-6) << seconds;
      EXPECT_NEAR(played.At(seconds, "other", L"translation.x"), other, 1e-6) << seconds;
    }
  }
  json binary = file;
  binary["buffers"].back().erase("uri");
  std::swap(binary["buffers"].front(),
            binary["buffers"].back());  // a binary file's own is the first
  for (json& each : binary["bufferViews"]) {
    std::size_t const buffer = each["buffer"], last = binary["buffers"].size() - 1;
    each["buffer"] = buffer == 0 ? last : buffer == last ? 0 : buffer;
  }
  support::TemporaryFiles const glb;
  glb.Write("model.glb", ToGlb(binary, bytes));
  data::document::NDocument document;
  auto const model = importer::ImportModel(document, (glb.GetFolder() / "model.glb").string());
  EXPECT_THAT(model.notes, testing::IsEmpty());
  EXPECT_EQ(model.animations.at(0)->GetAnimations().size(), 18u);

  of(1).erase("sparse");
  EXPECT_EQ(Played(file.dump()).At(1, "other", L"translation.x"), 0);

  json const good = of(0)["sparse"];
  for (auto const& [key, value] :
       std::vector<std::pair<char const*, json>>{{"/count", 7},
                                                 {"/indices/componentType", 5126},
                                                 {"/values/byteOffset", 9},
                                                 {"/values", json::object()}}) {
    of(0)["sparse"][json::json_pointer(key)] = value;
    EXPECT_THROW(Played(file.dump()), importer::NImportError) << key;
    of(0)["sparse"] = good;
  }
  of(1)["count"] = 1'000'000'000'000;
  EXPECT_THROW(Played(file.dump()), std::exception);
}

}  // namespace
}  // namespace corvanta::app_tests
