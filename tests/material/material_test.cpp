#include "corvanta/data/domain/material/detail/usage.h"
#include "tests/support/world.h"

namespace corvanta::data::domain::material {
namespace {

using environment_map::NEnvironmentMap;
using texture_mapping::NUVWMappingType;

class OtherMapping final : public NTextureMapping {
  texture_mapping::NTextureMappingType GetTypeImpl() const override {
    return texture_mapping::NTMT_PROJECTION;
  }
};

class Material : public testing::Test, protected World {
 protected:
  Pointer<NMaterialNode> node = materials->CreateNode();
  Pointer<NUVWMapping> mappings[3];
  Pointer<NTextureNode> layers[4];
  Pointer<support::EventLog> log = Listen();
  // What was told: signals with what they say, the last one's node, and what was removed last.
  std::vector<std::string> heard;
  NMaterialNode const* told = nullptr;
  core::name::NNamedObject const* removedTexture = nullptr;
  Pointer<NTextureMapping const> removedMapping;
  std::function<void()> react;

  void SetUp() override {
    for (auto& layer : layers) layer = textures->CreateNode();
    for (auto& made : mappings) made = New<NUVWMapping>(NUVWMappingType{1});
    log->react = [this](NSignal const& signal) { Hear(signal); };
  }
  void Hear(NSignal const& signal) {
    told = dynamic_cast<NMaterialNode const*>(signal.node);
    ASSERT_TRUE(told);
    std::string text = signal.name;
    std::string const count = std::to_string(told->GetTextures().size());
    if (signal.kind == events::NSK_ADD_TEXTURE) {
      text += " " + std::to_string(signal.index) + " of " + count;
    } else if (signal.kind == events::NSK_REMOVE_TEXTURE) {
      text += ", left " + count;
      removedTexture = signal.other;
      removedMapping = signal.mapping;
    } else if (signal.kind == events::NSK_SET_BRDF_TEXTURE_LOCATOR) {
      EXPECT_EQ(told->GetBrdfTextureLocator(), *signal.locator);
    } else if (signal.kind == events::NSK_ENVIRONMENT_MAP_IMAGE_TYPE_CHANGE) {
      text += " " + std::to_string(told->GetEnvironmentMap().GetImageType());
    }
    heard.push_back(text);
    if (auto const call = react) call();
  }
  std::vector<std::string> Heard() { return std::exchange(heard, {}); }
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
  EXPECT_THAT(Heard(), ElementsAre("addTexture 0 of 1", "addTexture 0 of 2", "addTexture 1 of 3"));
  EXPECT_EQ(told, node.get());

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
  EXPECT_THAT(Heard(), ElementsAre("removeTexture, left 2"));
  EXPECT_EQ(removedTexture, layers[3]);
  EXPECT_EQ(removedMapping, mappings[1]);
  textures->RemoveNode(*layers[2]);
  layers[2].reset();
  EXPECT_TRUE(node->RemoveTexture(0));
  EXPECT_EQ(removedTexture, nullptr);
  EXPECT_EQ(removedMapping, mappings[2]);

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
  auto* removed = new NUVWMapping(NUVWMappingType{7});
  node->AddTexture(layers[0], *removed, 0);
  react = [&] {
    materials->RemoveNode(*node);
    node.reset();
    EXPECT_EQ(removedMapping.get(), removed);
    removedMapping.reset();
    EXPECT_EQ(removed->GetUVWMappingType(), 7u);
  };
  NMaterialNode* dying = node.get();
  EXPECT_TRUE(dying->RemoveTexture(0));

  node = materials->CreateNode();
  Pointer<NEnvironmentMap> const map(&node->GetEnvironmentMap());
  react = [&] {
    if (node) materials->RemoveNode(*std::exchange(node, nullptr));
  };
  Heard();
  dying = node.get();
  dying->SetEnvironmentMap({}, environment_map::NEMIT_SQUARE);
  EXPECT_THAT(Heard(), ElementsAre("environmentMapImageChange", "environmentMapImageTypeChange 2"));
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
  node->QueryAttribute(AN_ENVIRONMENT_MAP_ROTATION_X)->SetValue(NVariant(90.0), false);
  EXPECT_NEAR(turned({0, 1, 0}).x, 1.0f, 1e-6f);  // x turns first
  EXPECT_THAT(Heard(), IsEmpty());

  auto const image = images->CreateNode();
  react = [&] { EXPECT_EQ(map->GetImage(), image); };
  node->SetEnvironmentMap(image, environment_map::NEMIT_RECTANGULAR);
  EXPECT_THAT(Heard(), ElementsAre("environmentMapImageChange", "environmentMapImageTypeChange 1"));
  EXPECT_EQ(told, node.get());
  map->SetImageType(environment_map::NEMIT_RECTANGULAR);
  EXPECT_THAT(Heard(), ElementsAre("environmentMapImageTypeChange 1"));

  materials->RemoveNode(*node);
  node.reset();
  EXPECT_EQ(transform->GetTransform(), Matrix());
  map->SetImageType(environment_map::NEMIT_CUBE);
  EXPECT_THAT(Heard(), IsEmpty());
}

TEST_F(Material, CopiesShareMappingsAndNothingElse) {
  auto const image = images->CreateNode();
  auto const target = materials->CreateNode();
  NLocator const brdf(NUri::CreateFileUri(NPath(L"/brdf.dds")));
  node->AddTexture(layers[0], *mappings[0], 0);
  node->AddTexture(layers[1], *mappings[0], 1);
  node->SetEnvironmentMap(image, environment_map::NEMIT_SQUARE);
  node->SetBrdfTextureLocator(brdf);
  node->SetEnvironmentMapRotationY(90.0);
  target->AddTexture(layers[3], *mappings[2], 0);
  Heard();
  auto const transform = target->GetEnvironmentMap().GetTransform();
  node->CopyTo(*target);
  EXPECT_THAT(Heard(), ElementsAre("environmentMapImageTypeChange 2", "environmentMapImageChange",
                                   "setBrdfTextureLocator"));
  EXPECT_EQ(told, target.get());
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
  target->SetBrdfTextureLocator(target->GetBrdfTextureLocator());
  EXPECT_EQ(target->GetBrdfTextureLocator(), brdf);
}

TEST_F(Material, DomainsAttachBothMultiplexersOrNone) {
  auto const withoutMap =
      New<NMaterialDomain>(nullptr, nullptr, nullptr, &events->GetMaterialEventMultiplexer());
  auto const mapOnly = New<NMaterialDomain>(
      nullptr, nullptr, &events->GetEnvironmentMapChangeEventMultiplexer(), nullptr);
  for (auto const& [made, expected] :
       {std::pair(materials,
                  "addTexture 0 of 1 environmentMapImageChange environmentMapImageTypeChange 2 "),
        std::pair(withoutMap, ""),
        std::pair(mapOnly, "environmentMapImageChange environmentMapImageTypeChange 2 ")}) {
    auto const material = made->CreateNode();
    ASSERT_TRUE(material);
    material->AddTexture(layers[0], *mappings[0], 0);
    material->SetEnvironmentMap({}, environment_map::NEMIT_SQUARE);
    std::string all;
    for (std::string const& text : Heard()) all += text + " ";
    EXPECT_EQ(all, expected);
  }
}

Pointer<NMaterialDomain> MakeDomain(NDomainManager const* manager) {
  return new NMaterialDomain(manager, nullptr, nullptr, nullptr);
}

TEST(MaterialUsage, CountsLikeAPlainTable) {
  Random random;
  Pointer<NDomainManager> const managers[3] = {new NDomainManager, new NDomainManager,
                                               new NDomainManager};
  std::vector<Pointer<NMaterialDomain>> domains;
  std::vector<Pointer<NMaterialNode>> materials;
  for (auto const& manager : managers) {
    domains.push_back(MakeDomain(manager.get()));
    for (int i = 0; i != 3; ++i) materials.push_back(domains.back()->CreateNode());
  }
  // By manager and material. A model may show a material of another manager.
  unsigned int counts[3][9] = {};
  for (int step = 0; step != 2000; ++step) {
    unsigned const manager = random() % 4;
    unsigned const material = random() % 9;
    if (manager < 3 && random() % 2 == 0) {
      detail::AddUse(*managers[manager], *materials[material]);
      ++counts[manager][material];
    } else {
      detail::RemoveUse(manager < 3 ? managers[manager].get() : nullptr, *materials[material]);
      for (unsigned i = 0; i != 3; ++i) {
        if ((manager == i || manager == 3) && counts[i][material] > 0) --counts[i][material];
      }
    }
    for (unsigned i = 0; i != 9; ++i) {
      ASSERT_EQ(IsUsed(*materials[i]), counts[i / 3][i] != 0) << "step " << step;
      ASSERT_EQ(detail::HasUse(*managers[step % 3], *materials[i]), counts[step % 3][i] != 0);
    }
  }
}

TEST(MaterialUsage, DiesWithItsManagerAndOutlivesItsMaterial) {
  // The second manager stands where the first one stood.
  alignas(NDomainManager) unsigned char place[sizeof(NDomainManager)];
  auto* manager = new (place) NDomainManager;
  auto domain = MakeDomain(manager);
  auto const material = domain->CreateNode();
  detail::MaterialReference const reference(*material);
  detail::AddUse(*manager, reference);
  EXPECT_TRUE(IsUsed(*material));
  std::destroy_at(manager);
  EXPECT_FALSE(IsUsed(*material));
  manager = new (place) NDomainManager;
  EXPECT_FALSE(detail::HasUse(*manager, reference));
  detail::RemoveUse(nullptr, reference);

  domain = MakeDomain(manager);
  auto other = domain->CreateNode();
  detail::MaterialReference const gone(*other);
  detail::AddUse(*manager, gone);
  domain->RemoveNode(*other);
  EXPECT_FALSE(IsUsed(*other));  // it has no manager any more
  other.reset();
  EXPECT_TRUE(detail::HasUse(*manager, gone));
  detail::RemoveUse(manager, gone);
  EXPECT_FALSE(detail::HasUse(*manager, gone));
  std::destroy_at(manager);

  auto const lone = MakeDomain(nullptr)->CreateNode();
  EXPECT_FALSE(IsUsed(*lone));
}

}  // namespace
}  // namespace corvanta::data::domain::material
