#pragma once

#include "tests/support/test.h"

namespace corvanta::support {

/// A document, its parts at hand.
struct World {
  data::document::NDocument document;
  core::domain::NDomainManager& manager = document.GetManager();
  Pointer<data::events::NEventMultiplexer> events{&document.GetEvents()};
  data::events::attribute_change::NMultiplexer* attributes =
      &events->GetAttributeChangeEventMultiplexer();
  Pointer<data::domain::scenegraph::item::NSceneGraphItemDomain> items{&document.GetItems()};
  Pointer<data::domain::scenegraph::tree::NSceneGraphTreeDomain> trees{&document.GetTrees()};
  Pointer<data::domain::light::NLightDomain> lights{&document.GetLights()};
  Pointer<data::domain::camera::NCameraDomain> cameras{&document.GetCameras()};
  Pointer<data::domain::material::NMaterialDomain> materials{&document.GetMaterials()};
  Pointer<data::domain::texture::NTextureDomain> textures{&document.GetTextures()};
  Pointer<data::domain::image::NImageDomain> images{&document.GetImages()};
  Pointer<data::domain::geometry::NGeometryDomain> geometries{&document.GetGeometries()};
  Pointer<data::domain::scene::NSceneDomain> scenes{&document.GetScenes()};
  Pointer<data::domain::projection::NProjectionDomain> projections{&document.GetProjections()};
  Pointer<data::domain::environment::NEnvironmentDomain> environments{&document.GetEnvironments()};
  Pointer<data::domain::light_env::NLightEnvDomain> lightEnvs{&document.GetLightEnvs()};
  Pointer<data::domain::animation::NAnimationDomain> animations{&document.GetAnimations()};
};

/// Writes down every attribute change; `react` runs after that.
class AttributeLog final : public data::events::attribute_change::NListener {
 public:
  using Writes = std::vector<std::pair<std::wstring, double>>;

  Writes writes;
  std::function<void(core::attribute::NAttribute const&)> react;

  Writes Take() { return std::exchange(writes, {}); }
  std::vector<std::wstring> TakeNames() {
    std::vector<std::wstring> names;
    for (auto const& [name, value] : Take()) names.push_back(name);
    return names;
  }

 private:
  void OnAttributeChangeImpl(core::attribute::NAttributeHost&,
                             core::attribute::NAttribute const& attribute) override {
    writes.emplace_back(attribute.GetName(), attribute.GetDouble());
    if (auto const call = react) call(attribute);  // a copy, which may replace itself
  }
};

}  // namespace corvanta::support
