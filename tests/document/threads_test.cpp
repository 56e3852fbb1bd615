#include <barrier>
#include <sstream>
#include <thread>

#include "corvanta/names.h"
#include "tests/image/picture_files.h"
#include "tests/support/temporary_files.h"
#include "tests/support/view_world.h"
#include "tests/support/zip_archive.h"

namespace corvanta {
namespace {

using core::locator::NLocator;
using core::uri::NUri;
namespace texts = core::string_table;

// Documents share what the process keeps for all of them: interned names, texts, built-in surfaces
// and their registry, the table of material use, image loading, the decoding program, the temporary
// folder, and the counters of boxes and of creation. Make uses all of it and describes what it then
// has, without what is unique to it, such as ids.
class Maker {
 public:
  explicit Maker(support::TemporaryFiles const& files)
      : m_raw(NUri::CreateFileUri(files.Write("raw.png", "passed through"))),
        m_decoded(NUri::CreateFileUri(files.Write("decoded.gif", pictures::Gif(2, 2)))),
        m_broken(NUri::CreateFileUri(files.Write("broken.tif", "II"))),
        m_zipped(NUri::CreateFileUri(files.At("a.zip")), L"b.jpg") {
    support::WriteZip(files.At("a.zip"), {{"b.jpg", pictures::Jpeg()}});
  }

  std::string Make(int round) const {
    support::ViewWorld world;
    std::ostringstream out;
    data::events::NEventMultiplexer& events = world.document.GetEvents();
    EXPECT_TRUE(data::internal::Initialize(world.manager, events));
    MakeNodes(world, round);
    ShowBuiltIn(world, out);
    for (NLocator const& locator : {m_raw, m_decoded, m_broken, m_zipped}) {
      auto const image = world.images->CreateNode(NNodeID());
      image->SetImageLocator(locator);
      auto const picture = image->GetImage();
      out << std::string(static_cast<char const*>(picture->GetData()),
                         picture->GetDataByteLength());
      out << core::text::ToNarrow(image->GetImageError()) << '\n';
    }
    for (auto const& [locator, entry] : world.manager) Write(*entry.domain, out);
    EXPECT_TRUE(data::internal::Uninitialize(world.manager));
    return out.str();
  }

 private:
  static void MakeNodes(support::ViewWorld& world, int round) {
    // The texts stay as they are, and whoever keeps what was made of them makes it again.
    for (auto const key : {texts::DATA_LIGHT, texts::DATA_SCENEGRAPH})
      texts::SetString(key, texts::GetString(key));
    for (int i = 0; i < 3; ++i) {
      for (Item const& item : std::initializer_list<Item>{
               world.Make(), world.Make<NSceneGraphReferenceNode>(),
               world.Make<NSceneGraphLightNode>(), world.Make<NSceneGraphCameraNode>()})
        world.root->AddChild(*item);
      world.projections->CreateNode(NNodeID());
      world.animations->CreateNode(NNodeID());
      world.document.GetSounds().CreateNode(NNodeID());
      world.document.GetMovies().CreateNode(NNodeID());
      world.lightEnvs->CreateNode(NNodeID())->CreateLamp(L"lamp");
      auto const light = world.lights->CreateNode(NNodeID());
      // A name that no thread has used before this round.
      std::wstring const name = L"thread." + std::to_wstring(round) + L"." + std::to_wstring(i);
      light->AddAttribute(name, true)->SetValue(static_cast<double>(i), true);
      EXPECT_EQ(light->QueryAttribute(name)->GetName(), name);
      light->SetName(L"twice");
      auto const item = world.Make<NSceneGraphLightNode>();
      item->SetLightNode(light);
      world.root->AddChild(*item);
      data::preset::PresetSceneGraphLight({item}, world.view, world.shown, true);
    }
    data::preset::PresetEnvironment(world.environment, world.view, world.items, world.images);
    data::preset::PresetSceneGraphCamera(world.camera, world.view, world.shown, true);
  }

  // Models of the built-in surfaces: their boxes, picks and materials.
  static void ShowBuiltIn(support::ViewWorld& world, std::ostream& out) {
    namespace internal = data::internal;
    namespace material = data::domain::material;
    float y = 0;
    for (auto const get : {&internal::GetSphere, &internal::GetCube, &internal::GetInwardDome}) {
      auto const shown = world.materials->CreateNode();
      auto const model = world.Make<NSceneGraphModelNode>();
      model->SetGeometryNode(get(world.manager));
      model->SetTranslationY(y);
      world.root->AddChild(*model);
      model->SetMaterial(*shown);
      Pointer<NUVWMapping> const mapping(
          new NUVWMapping(material::texture_mapping::NUVWMT_INTERNAL));
      shown->AddTexture(world.textures->CreateNode(NNodeID()), *mapping, 0);
      out << material::IsUsed(*shown);
      model->SetMaterial(*internal::GetRGBMaterialNode(world.manager, 1));
      out << material::IsUsed(*shown);
      Box3 const& box = world.root->GetBoundingBox({}, {});
      out << ' ' << box.min.x << ' ' << box.max.y << ' ' << box.max.z;
      VX_Math::Line const ray(Vec3(0.1f, y + 0.1f, 9), Vec3(0.1f, y + 0.1f, 0));
      // The last ones ask the index of triangles.
      for (int i = 0; i < 12; ++i) {
        std::vector<NSceneGraphModelNode const*> hits;
        data::operators::ray_picker::PickModel(*world.root, &ray, hits);
        out << ' ' << hits.size();
      }
      out << '\n';
      y += 3;
    }
  }

  static void Write(core::domain::NDomainBase const& domain, std::ostream& out) {
    for (auto node = domain.GetNodeBegin(); node != domain.GetNodeEnd(); ++node) {
      out << core::text::ToNarrow(node->GetName());
      for (auto at = node->GetAttributeBegin(); at != node->GetAttributeEnd(); ++at)
        out << ' ' << core::text::ToNarrow(at->GetName() + L'=' + at->GetString())
            << at->GetDouble();
      out << '\n';
    }
  }

  NLocator const m_raw;
  NLocator const m_decoded;
  NLocator const m_broken;
  NLocator const m_zipped;
};

TEST(Threads, EightMakeDocumentsOfTheirOwnAtOnceAsOneDoesAlone) {
  constexpr int kThreads = 8, kRounds = 3;
  support::TemporaryFiles const files;
  Maker const maker(files);
  std::string made[kThreads][kRounds];
  std::barrier start(kThreads);
  std::vector<std::jthread> threads;
  for (auto& rounds : made)
    threads.emplace_back([&rounds, &start, &maker] {
      for (int round = 0; round < kRounds; ++round) {
        start.arrive_and_wait();
        rounds[round] = maker.Make(round);
      }
    });
  threads.clear();
  for (int round = 0; round < kRounds; ++round) {
    std::string const alone = maker.Make(round);
    EXPECT_GT(alone.size(), 10000U);
    for (auto const& rounds : made) EXPECT_TRUE(rounds[round] == alone) << round;
  }
  EXPECT_THAT(files.GetLeftovers(), testing::SizeIs(testing::Le(3U)));
}

}  // namespace
}  // namespace corvanta
