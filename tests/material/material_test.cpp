#include "tests/support/test.h"

namespace corvanta::data::domain::material {
namespace {

using core::locator::NLocator;
using core::uri::NUri;
using environment_map::NEnvironmentMap;
using texture_mapping::NTextureMapping;
using texture_mapping::NUVWMapping;
using texture_mapping::NUVWMappingType;

/// Hears both sides of a material, in one list.
class Recorder final : public events::material::NListener,
                       public events::environment_map_change::NListener {
 public:
  std::vector<std::string> heard;
  NMaterialNode const* material = nullptr;
  Pointer<texture::NTextureNode> texture;
  Pointer<NTextureMapping> mapping;
  std::function<void(std::string const&)> react;

 private:
  void Hear(NMaterialNode const& node, std::string const& text) {
    material = &node;
    heard.push_back(text);
    if (react) react(text);
  }
  void OnAddTexture(NMaterialNode const& node, unsigned int index) override {
    Hear(node, "add " + std::to_string(index) + " of " + std::to_string(node.GetTextures().size()));
  }
  void OnRemoveTexture(NMaterialNode const& node, Pointer<texture::NTextureNode> const& oldTexture,
                       Pointer<NTextureMapping> const& oldMapping) override {
    texture = oldTexture;
    mapping = oldMapping;
    Hear(node, "remove, left " + std::to_string(node.GetTextures().size()));
  }
  void OnSetBrdfTextureLocator(NMaterialNode const& node, NLocator const& locator) override {
    EXPECT_EQ(node.GetBrdfTextureLocator(), locator);
    Hear(node, "brdf");
  }
  void OnImageChange(NMaterialNode const& node) override { Hear(node, "image"); }
  void OnImageTypeChange(NMaterialNode const& node) override {
    Hear(node, "type " + std::to_string(node.GetEnvironmentMap().GetImageType()));
  }
  void OnImageChange(environment::NEnvironmentNode const&) override { FAIL(); }
  void OnImageTypeChange(environment::NEnvironmentNode const&) override { FAIL(); }
};

class OtherMapping final : public NTextureMapping {
  texture_mapping::NTextureMappingType GetTypeImpl() const override {
    return texture_mapping::NTMT_PROJECTION;
  }
};

class Material : public testing::Test {
 protected:
  using MapMultiplexer = events::environment_map_change::NMultiplexer;
  using MaterialMultiplexer = events::material::NMultiplexer;
  using TexturePointer = Pointer<texture::NTextureNode>;

  Pointer<MapMultiplexer> mapMultiplexer{new MapMultiplexer};
  Pointer<MaterialMultiplexer> materialMultiplexer{new MaterialMultiplexer};
  Pointer<NMaterialDomain> domain{
      new NMaterialDomain(nullptr, nullptr, mapMultiplexer.get(), materialMultiplexer.get())};
  Pointer<texture::NTextureDomain> textures{new texture::NTextureDomain(nullptr, nullptr, nullptr)};
  Pointer<image::NImageDomain> images{new image::NImageDomain(nullptr, nullptr)};
  Pointer<NMaterialNode> node = domain->CreateNode(NNodeID());
  Pointer<NUVWMapping> mappings[3];
  TexturePointer layers[4];
  Pointer<Recorder> recorder{new Recorder};

  void SetUp() override {
    for (auto& layer : layers) layer = textures->CreateNode(NNodeID());
    for (auto& mapping : mappings) mapping.reset(new NUVWMapping(NUVWMappingType{1}));
    mapMultiplexer->AddObserver(*recorder);
    materialMultiplexer->AddObserver(*recorder);
  }
  std::vector<std::string> Heard() { return std::exchange(recorder->heard, {}); }
  /// The textures and their mappings, by number.
  std::vector<std::pair<int, int>> List(NMaterialNode const& material) const {
    std::vector<std::pair<int, int>> list;
    for (auto const& [texture, mapping] : material.GetTextures()) {
      list.emplace_back(std::find(layers, layers + 4, texture.Get()) - layers,
                        std::find(mappings, mappings + 3, mapping) - mappings);
    }
    return list;
  }
};

using Entry = std::pair<int, int>;

TEST_F(Material, KeepsTexturesInLayerOrder) {
  EXPECT_FALSE(node->AddTexture(layers[0], *mappings[0], 1));
  EXPECT_FALSE(node->RemoveTexture(0));
  EXPECT_FALSE(HasTexture(*node));
  EXPECT_THAT(Heard(), IsEmpty());
  EXPECT_TRUE(node->AddTexture(layers[2], *mappings[2], 0));
  EXPECT_TRUE(node->AddTexture(layers[0], *mappings[0], 0));
  EXPECT_TRUE(node->AddTexture(layers[1], *mappings[1], 1));
  EXPECT_FALSE(node->AddTexture(layers[1], *mappings[1], 4));
  EXPECT_THAT(List(*node), ElementsAre(Entry(0, 0), Entry(1, 1), Entry(2, 2)));
  EXPECT_THAT(Heard(), ElementsAre("add 0 of 1", "add 0 of 2", "add 1 of 3"));
  EXPECT_EQ(recorder->material, node.get());

  // A replacement goes to the end, and nobody hears of it; the arguments may be the list's own.
  node->ReplaceTexture(layers[0], layers[3]);
  EXPECT_THAT(List(*node), ElementsAre(Entry(1, 1), Entry(2, 2), Entry(3, 0)));
  node->ReplaceTexture(layers[0], layers[1]);
  node->ReplaceTexture(node->GetTextures().front().first, node->GetTextures().back().first);
  EXPECT_THAT(List(*node), ElementsAre(Entry(2, 2), Entry(3, 0), Entry(3, 1)));
  node->ReplaceTexture(layers[3], layers[0]);
  EXPECT_THAT(List(*node), ElementsAre(Entry(2, 2), Entry(3, 1), Entry(0, 0)));
  EXPECT_THAT(Heard(), IsEmpty());

  EXPECT_FALSE(node->RemoveTexture(3));
  EXPECT_TRUE(node->RemoveTexture(1));
  EXPECT_THAT(Heard(), ElementsAre("remove, left 2"));
  EXPECT_EQ(recorder->texture, layers[3]);
  EXPECT_EQ(recorder->mapping, mappings[1]);
  textures->RemoveNode(*layers[2]);
  layers[2].reset();
  EXPECT_TRUE(node->RemoveTexture(0));
  EXPECT_EQ(recorder->texture, nullptr);
  EXPECT_EQ(recorder->mapping, mappings[2]);

  Heard();
  EXPECT_TRUE(HasTexture(*node, texture_mapping::NTMT_UVW));
  EXPECT_FALSE(HasTexture(*node, texture_mapping::NTMT_PROJECTION));
  node->AddTexture(layers[1], *new OtherMapping, 1);
  EXPECT_TRUE(HasTexture(*node, texture_mapping::NTMT_PROJECTION));
  Heard();
  node->RemoveAllTextures();
  EXPECT_FALSE(HasTexture(*node));
  EXPECT_FALSE(HasTexture(*node, texture_mapping::NTMT_UVW));
  EXPECT_THAT(Heard(), IsEmpty());
}

TEST_F(Material, SurvivesWhatListenersDo) {
  // The last reference to the node and to the mapping go in the handler.
  auto* mapping = new NUVWMapping(NUVWMappingType{7});
  node->AddTexture(layers[0], *mapping, 0);
  recorder->react = [&](std::string const&) {
    domain->RemoveNode(*node);
    node.reset();
    EXPECT_EQ(recorder->mapping.get(), mapping);
    recorder->mapping.reset();
    EXPECT_EQ(mapping->GetUVWMappingType(), 7u);
  };
  NMaterialNode* dying = node.get();
  EXPECT_TRUE(dying->RemoveTexture(0));

  node = domain->CreateNode(NNodeID());
  Pointer<NEnvironmentMap> const map(&node->GetEnvironmentMap());
  recorder->react = [&](std::string const&) {
    if (node) domain->RemoveNode(*std::exchange(node, nullptr));
  };
  Heard();
  dying = node.get();
  dying->SetEnvironmentMap({}, environment_map::NEMIT_SQUARE);
  EXPECT_THAT(Heard(), ElementsAre("image", "type 2"));
  EXPECT_EQ(map->GetImageType(), environment_map::NEMIT_SQUARE);
}

TEST_F(Material, TheEnvironmentMapTurnsByTheAttributes) {
  Pointer<NEnvironmentMap> const map(&node->GetEnvironmentMap());
  auto const transform = map->GetTransform();
  ASSERT_TRUE(transform);
  EXPECT_EQ(transform->GetTransform(), Matrix());
  auto const turned = [&](Vec3 v) {
    transform->GetTransform().MultDirMatrix(v, v);
    return v;
  };
  node->SetEnvironmentMapRotationY(90.0);
  EXPECT_NEAR(turned({0, 0, 1}).x, 1.0f, 1e-6f);
  node->QueryAttribute(AN_ENVIRONMENT_MAP_ROTATION_X)
      ->SetValue(core::variant::NVariant(90.0), false);
  EXPECT_NEAR(turned({0, 1, 0}).x, 1.0f, 1e-6f);  // x turns first
  EXPECT_THAT(Heard(), IsEmpty());

  auto const image = images->CreateNode(NNodeID());
  recorder->react = [&](std::string const& text) { EXPECT_EQ(map->GetImage(), image) << text; };
  node->SetEnvironmentMap(image, environment_map::NEMIT_RECTANGULAR);
  EXPECT_THAT(Heard(), ElementsAre("image", "type 1"));
  EXPECT_EQ(recorder->material, node.get());
  map->SetImageType(environment_map::NEMIT_RECTANGULAR);
  EXPECT_THAT(Heard(), ElementsAre("type 1"));

  domain->RemoveNode(*node);
  node.reset();
  EXPECT_EQ(transform->GetTransform(), Matrix());
  map->SetImageType(environment_map::NEMIT_CUBE);
  EXPECT_THAT(Heard(), IsEmpty());
}

TEST_F(Material, CopiesShareMappingsAndNothingElse) {
  auto const image = images->CreateNode(NNodeID());
  auto const target = domain->CreateNode(NNodeID());
  NLocator const brdf(NUri::CreateFileUri(core::uri::NPath(L"/brdf.dds")));
  node->SetName(L"paint");
  node->AddTexture(layers[0], *mappings[0], 0);
  node->AddTexture(layers[1], *mappings[0], 1);
  node->SetEnvironmentMap(image, environment_map::NEMIT_SQUARE);
  node->SetBrdfTextureLocator(brdf);
  node->SetEnvironmentMapRotationY(90.0);
  target->AddTexture(layers[3], *mappings[2], 0);
  Heard();
  auto const transform = target->GetEnvironmentMap().GetTransform();
  node->CopyTo(*target);
  EXPECT_THAT(Heard(), ElementsAre("type 2", "image", "brdf"));
  EXPECT_EQ(recorder->material, target.get());
  EXPECT_EQ(target->GetName(), L"paint (2)");
  EXPECT_THAT(List(*target), ElementsAre(Entry(0, 0), Entry(1, 0)));
  EXPECT_EQ(target->GetEnvironmentMap().GetImage(), image);
  EXPECT_EQ(target->GetBrdfTextureLocator(), brdf);
  EXPECT_EQ(target->GetEnvironmentMap().GetTransform(), transform);
  node->SetEnvironmentMapRotationY(0.0);
  EXPECT_NE(transform->GetTransform(), Matrix());
  node->RemoveAllTextures();
  EXPECT_THAT(List(*target), ElementsAre(Entry(0, 0), Entry(1, 0)));

  target->CopyTo(*target);
  EXPECT_THAT(List(*target), ElementsAre(Entry(0, 0), Entry(1, 0)));
  EXPECT_EQ(target->GetName(), L"paint (2)");
  target->SetBrdfTextureLocator(target->GetBrdfTextureLocator());
  EXPECT_EQ(target->GetBrdfTextureLocator(), brdf);
}

TEST_F(Material, DomainsAttachBothMultiplexersOrNone) {
  Pointer<NMaterialDomain> const withoutMap(
      new NMaterialDomain(nullptr, nullptr, nullptr, materialMultiplexer.get()));
  Pointer<NMaterialDomain> const mapOnly(
      new NMaterialDomain(nullptr, nullptr, mapMultiplexer.get(), nullptr));
  for (auto const& [made, heard] :
       {std::pair(domain, "add 0 of 1 image type 2 "), std::pair(withoutMap, ""),
        std::pair(mapOnly, "image type 2 ")}) {
    auto const material = made->CreateNode(NNodeID());
    ASSERT_TRUE(material);
    material->AddTexture(layers[0], *mappings[0], 0);
    material->SetEnvironmentMap({}, environment_map::NEMIT_SQUARE);
    std::string all;
    for (std::string const& text : Heard()) all += text + " ";
    EXPECT_EQ(all, heard);
  }
}

}  // namespace
}  // namespace corvanta::data::domain::material
