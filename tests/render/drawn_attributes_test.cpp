#include <algorithm>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <typeinfo>

#include "corvanta/core/text/convert.h"
#include "corvanta/data/domain/environment/NEnvironmentNode.h"
#include "corvanta/data/domain/light_env/NLamp.h"
#include "corvanta/data/domain/light_env/NLightEnvNode.h"
#include "corvanta/data/domain/material/texture_mapping/NProjectionMapping.h"
#include "corvanta/data/domain/material/texture_mapping/NUVWMapping.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphLightNode.h"
#include "corvanta/data/domain/texture/NTextureUse.h"
#include "corvanta/data/internal/internal_data.h"
#include "corvanta/data/operators/convert_to_light_env.h"
#include "corvanta/data/preset/preset.h"
#include "corvanta/data/view/NView.h"
#include "corvanta/renderer/drawn_attributes.h"
#include "tests/render/world.h"
#include "tests/support/temporary_files.h"

namespace corvanta::render_tests {
namespace {

namespace domain = data::domain;
namespace texture_mapping = domain::material::texture_mapping;
using core::attribute::NAttribute;
using core::attribute::NAttributeHost;
using core::variant::NVariant;

/// A scene in which each attribute that is drawn changes some pixel: balls above a floor in the
/// built-in environment, with a material that has everything, textures, a projection, lamps of all
/// kinds, lights that become lamps, and a tree that a reference shows.
class DrawnAttributesTest : public World {
 protected:
  using Environment = domain::environment::NEnvironmentNode;
  using Material = boost::intrusive_ptr<domain::material::NMaterialNode>;
  using Image = boost::intrusive_ptr<domain::image::NImageNode>;

  void SetUp() override {
#ifndef CORVANTA_WITH_FREEIMAGE
    GTEST_SKIP() << "pictures aren't decoded here";
#endif
    World::SetUp();
    if (IsSkipped()) return;
    data::internal::Initialize(m_document.GetManager(), m_document.GetEvents());
    m_camera->SetTranslationY(3);
    m_camera->SetTranslationX(2);
    m_image = CreateImage();
    AddEnvironment();
    AddLamps();
    AddLights();
    AddModels();
  }

  Image CreateImage() {
    std::string pixels;
    for (int i = 0; i != 64; ++i) {
      for (int const factor : {37, 91, 53}) pixels += static_cast<char>(60 + i * factor % 190);
    }
    auto const path = m_files.Write("picture.ppm", "P6 8 8 255\n" + pixels);
    auto const image = m_document.GetImages().CreateNode(NNodeID());
    image->SetImageLocator(core::locator::NLocator(core::uri::NUri::CreateFileUri(path)));
    return image;
  }

  void AddEnvironment() {
    m_environment = m_document.GetEnvironments().CreateNode(NNodeID());
    m_scene->SetEnvironment(m_environment);
    boost::intrusive_ptr<data::view::NView> const view(new data::view::NView);
    view->SetScene(*m_scene);
    data::preset::PresetEnvironment(m_environment, view, &m_document.GetItems(),
                                    &m_document.GetImages());
    m_environment->SetFloorIsVisibleFlag(true);
    m_environment->SetFloorHeight(-1.5);
    m_environment->SetHdrBloom(100);
    m_environment->QueryAttribute(L"toneMapping.whiteBrightness")->SetValue(4.0, true);
    m_hosts.push_back(m_environment.get());
  }

  void AddLamps() {
    m_lamps = m_document.GetLightEnvs().CreateNode(NNodeID());
    for (auto const& type :
         {domain::light_env::LAMP_TYPE_SPOT, domain::light_env::LAMP_TYPE_DIRECTIONAL}) {
      auto const lamp = m_lamps->CreateLamp(type);
      lamp->SetType(type);
      lamp->SetPositionX(2);
      lamp->SetPositionY(4);
      lamp->SetPositionZ(6);
      lamp->SetDirectionX(-0.4);
      lamp->SetDirectionY(-0.6);
      lamp->SetDirectionZ(-0.7);
      lamp->SetColorR(0.3);
      lamp->SetColorG(0.3);
      lamp->SetColorB(0.3);
      lamp->SetAttenuationRange(20);
      lamp->QueryAttribute(L"makesShadow")->SetValue(true, true);
      lamp->QueryAttribute(L"spreadAngle")->SetValue(20.0, true);
      lamp->QueryAttribute(L"falloffAngle")->SetValue(40.0, true);
      m_hosts.push_back(lamp.get());
    }
    m_hosts.push_back(m_lamps.get());
  }

  void AddLights() {
    for (auto const& type : {domain::light::LT_SPOT, domain::light::LT_DIRECTIONAL}) {
      auto const light = m_document.GetLights().CreateNode(NNodeID());
      light->SetType(type);
      light->SetColorR(0.3);
      light->SetColorG(0.3);
      light->SetColorB(0.3);
      light->QueryAttribute(L"attenuation.range")->SetValue(20.0, true);
      light->QueryAttribute(L"makesShadow")->SetValue(true, true);
      light->QueryAttribute(L"spreadAngle")->SetValue(20.0, true);
      light->QueryAttribute(L"falloffAngle")->SetValue(40.0, true);
      auto const placed = Add<item::NSceneGraphLightNode>(m_root.get());
      placed->SetLightNode(light);
      placed->SetTranslationZ(7);
      placed->SetTranslationY(4);
      placed->SetRotationX(-30);
      m_environment->AddLight({*placed, *m_tree});
      m_hosts.push_back(light.get());
      m_hosts.push_back(placed.get());
    }
  }

  void SetAll(NAttributeHost& host, std::initializer_list<std::pair<wchar_t const*, double>> rows) {
    for (auto const& [name, value] : rows) host.QueryAttribute(name)->SetValue(value, true);
  }

  Material CreateMaterial() {
    auto const material = m_document.GetMaterials().CreateNode(NNodeID());
    SetAll(*material, {{L"diffuse.r", 0.4},
                       {L"diffuse.g", 0.3},
                       {L"diffuse.b", 0.2},
                       {L"ambient.r", 0.5},
                       {L"ambient.g", 0.5},
                       {L"ambient.b", 0.5},
                       {L"specular.r", 0.4},
                       {L"specular.g", 0.4},
                       {L"specular.b", 0.4},
                       {L"fleck.specular.r", 0.4},
                       {L"fleck.specular.g", 0.4},
                       {L"fleck.specular.b", 0.4},
                       {L"ibl.coeff.diffuse", 0.3},
                       {L"ibl.coeff.specular", 0.5},
                       {L"clearcoatIndex", 1.4},
                       {L"roughness", 0.3},
                       {L"fleck.size", 8},
                       {L"transparency", 0.9}});
    material->SetEnvironmentMapIsEnabledFlag(true);
    m_hosts.push_back(material.get());
    return material;
  }

  void AddTexture(Material const& material, domain::texture::NTextureUse use,
                  texture_mapping::NTextureMapping& mapping) {
    auto const texture = m_document.GetTextures().CreateNode(NNodeID());
    texture->SetType(static_cast<domain::texture::NTextureType>(use));
    texture->SetImage(m_image);
    material->AddTexture(texture, mapping, 0);
    m_hosts.push_back(texture.get());
  }

  /// A ball that a reference shows, and a tilted square, seen from behind, below a group.
  void AddModels() {
    auto const group = AddGroup(*m_root);
    group->SetTranslationX(-2);
    Mesh square;
    auto const wall = Add<item::NSceneGraphModelNode>(group.get());
    wall->SetGeometryNode(square.Create(m_document));
    wall->SetRotationY(150);
    wall->SetTranslationY(1);
    auto const painted = CreateMaterial();
    boost::intrusive_ptr<texture_mapping::NUVWMapping> const uvs(
        new texture_mapping::NUVWMapping(texture_mapping::NUVWMappingType(1)));
    AddTexture(painted, domain::texture::NTU_COLOR, *uvs);
    AddTexture(painted, domain::texture::NTU_HEIGHT, *uvs);
    wall->SetMaterial(painted);

    auto const root = AddGroup(*m_root);
    auto const tree = CreateTree(*root);
    m_root->RemoveChild(*root);
    auto const ball = AddBall(*root, 0, 0, 0, 1.3);
    auto const full = CreateMaterial();
    full->GetEnvironmentMap().SetImage(m_environment->GetEnvironmentMap().GetImageRef());
    ball->SetMaterial(full);
    auto const reference = Show(tree, *m_root);
    reference->SetTranslationX(1);

    auto const projected = AddBall(*m_root, 3, 0, 1);
    m_projection = m_document.GetProjections().CreateNode(NNodeID());
    NDrawItem::Path const path(*projected, *m_tree);
    m_projection->AddModel(path);
    boost::intrusive_ptr<texture_mapping::NProjectionMapping> const mapping(
        new texture_mapping::NProjectionMapping);
    mapping->AddProjectionData(path, *m_projection);
    auto const logo = CreateMaterial();
    AddTexture(logo, domain::texture::NTU_COLOR, *mapping);
    projected->SetMaterial(logo);

    for (NAttributeHost* const host : std::initializer_list<NAttributeHost*>{
             group.get(), wall.get(), ball.get(), tree.get(), reference.get(), m_projection.get(),
             m_camera.get(), m_lens.get(), m_image.get(), m_scene.get()}) {
      m_hosts.push_back(host);
    }
  }

  struct Mesh {
    Geometry Create(data::document::NDocument& document) const {
      auto const geometry = document.GetGeometries().CreateNode(NNodeID());
      boost::intrusive_ptr<domain::geometry::NSurface> const surface(
          new domain::geometry::NPolygonSurface);
      float const coords[] = {-1, -1, 0, 1, -1, 0, 1, 1, 0, -1, 1, 0};
      float const normals[] = {0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1};
      float const uvs[] = {0, 0, 1, 0, 1, 1, 0, 1};
      unsigned long const indices[] = {0, 1, 2, 0, 2, 3};
      surface->Assign(coords, normals, 4, indices, 6, uvs);
      geometry->AddSurface(*surface);
      return geometry;
    }
  };

  /// The bytes of a picture, with the lights turned into lamps as they are now.
  std::string Draw() {
    m_environment->RemoveLightEnv(m_lamps);
    if (m_converted) {
      m_environment->RemoveLightEnv(m_converted);
      m_document.GetLightEnvs().RemoveNode(*m_converted);
    }
    data::operators::ConvertToLightEnv(*m_environment, m_document.GetLightEnvs());
    m_converted = m_environment->GetLightEnvs().front().Get();
    m_environment->AddLightEnv(m_lamps);
    auto const picture = DrawPicture();
    auto const* const bytes = reinterpret_cast<char const*>(picture.GetRow(0));
    return {bytes, std::size_t{3} * kWidth * kHeight};
  }

  static std::vector<NVariant> GetOthers(NAttribute const& attribute) {
    switch (attribute.GetKind()) {
      case core::variant::NVK_BOOL:
        return {!attribute.GetBool()};
      case core::variant::NVK_LONG:
        return {attribute.GetLong() + 1, 2L, 4L};
      case core::variant::NVK_DOUBLE:
        return {attribute.GetDouble() + 0.37, attribute.GetDouble() * 3 + 7, 0.0};
      case core::variant::NVK_STRING:
        return {std::wstring(L"cylinder"), std::wstring(L"point"), std::wstring(L"zup2yup")};
      default:
        return {};
    }
  }

  bool ChangesPicture(NAttribute& attribute, std::string const& before) {
    NVariant const value = attribute.GetValue();
    auto const others = GetOthers(attribute);
    bool const changes = std::any_of(others.begin(), others.end(), [&](NVariant const& other) {
      attribute.SetValue(other, true);
      return Draw() != before;
    });
    attribute.SetValue(value, true);
    return changes;
  }

  /// Under which other conditions attributes may change the picture.
  void Change(int condition) {
    if (condition == 1) {
      m_environment->SetToneMappingIsEnabledFlag(true);
      m_environment->SetAutoExposureIsEnabledFlag(true);
      m_environment->Set2DImage(m_image);
      m_lens->QueryAttribute(L"viewAngle.usesVertical")->SetValue(false, true);
    } else if (condition == 2) {
      m_lens->QueryAttribute(L"viewAngle.usesVertical")->SetValue(true, true);
      m_environment->Set2DImage({});
      m_environment->SetToneMappingIsEnabledFlag(false);
      m_environment->SetAutoExposureIsEnabledFlag(false);
      m_environment->SetSSAOEnabled(true);
      m_environment->GetEnvironmentMapModel()->SetIsVisibleFlag(false);
      m_projection->SetProjectionMethod(L"cylinder");
    } else if (condition == 3) {
      m_environment->SetHdrExposure(4);
    }
  }

  support::TemporaryFiles m_files;
  std::vector<NAttributeHost*> m_hosts;
  boost::intrusive_ptr<Environment> m_environment;
  boost::intrusive_ptr<domain::light_env::NLightEnvNode> m_lamps, m_converted;
  boost::intrusive_ptr<domain::projection::NProjectionNode> m_projection;
  Image m_image;
};

TEST_F(DrawnAttributesTest, AreThoseThatChangeAPicture) {
  Group const plain = m_document.GetItems().CreateNode<item::NSceneGraphGroupNode>();
  // What every item has counts as one class.
  auto const getKey = [&](NAttributeHost& host, NAttribute const& attribute) {
    std::wstring const& name = attribute.GetName();
    bool const isOfItems = dynamic_cast<item::NSceneGraphItemNode*>(&host) != nullptr &&
                           plain->QueryAttribute(name) != nullptr;
    return std::string(isOfItems ? "item" : typeid(host).name()) + ' ' + core::text::ToNarrow(name);
  };
  std::map<std::string, bool> expected;
  std::set<std::string> changed;
  for (int const condition : {0, 1, 2, 3}) {
    Change(condition);
    std::string const before = Draw();
    for (NAttributeHost* const host : m_hosts) {
      for (auto at = host->GetAttributeBegin(); at != host->GetAttributeEnd(); ++at) {
        std::string const key = getKey(*host, *at);
        bool const isDrawn = renderer::IsDrawn(*host, at->GetName());
        expected[key] = isDrawn;
        // Of what shouldn't be seen a model stands for all items, and one condition for all.
        bool const isModel = dynamic_cast<item::NSceneGraphModelNode*>(host) != nullptr;
        bool const isOpen = isDrawn || (condition == 0 && (isModel || key.rfind("item ", 0) != 0));
        if (isOpen && changed.count(key) == 0 && ChangesPicture(*at, before)) changed.insert(key);
      }
    }
  }
  for (auto const& [key, isDrawn] : expected) EXPECT_EQ(isDrawn, changed.count(key) != 0) << key;
  EXPECT_GT(changed.size(), 100u);
}

}  // namespace
}  // namespace corvanta::render_tests
