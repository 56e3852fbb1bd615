#pragma once

#include <boost/intrusive_ptr.hpp>
#include <vector>

#include "corvanta/core/domain/NDomainManager.h"
#include "corvanta/data/domain/camera/NCameraDomain.h"
#include "corvanta/data/domain/environment/NEnvironmentDomain.h"
#include "corvanta/data/domain/geometry/NGeometryDomain.h"
#include "corvanta/data/domain/image/NImageDomain.h"
#include "corvanta/data/domain/light_env/NLightEnvDomain.h"
#include "corvanta/data/domain/material/NMaterialDomain.h"
#include "corvanta/data/domain/scene/NSceneDomain.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphItemDomain.h"
#include "corvanta/data/domain/scenegraph/tree/NSceneGraphTreeDomain.h"
#include "corvanta/data/domain/texture/NTextureDomain.h"
#include "corvanta/data/events/NEventMultiplexer.h"

namespace corvanta::data::internal::detail {

/// Registers domains under their internal locators, and takes that back at its end unless it was
/// kept.
class NRegistration {
 public:
  struct Entry {
    boost::intrusive_ptr<core::domain::NDomainBase> domain;
    core::locator::NLocator locator;
    core::domain::NDomainManager::Entry before;  // what stood at the locator
  };

  /// Holds in `entries` the domains that come and those that go, so that none ends in here.
  NRegistration(core::domain::NDomainManager& manager, std::vector<Entry>& entries)
      : m_manager(manager), m_entries(entries) {}
  ~NRegistration();
  NRegistration(NRegistration const&) = delete;
  NRegistration& operator=(NRegistration const&) = delete;

  /// Names `domain` after its type, registers it and makes it read-only.
  void Register(core::domain::NDomainBase& domain);
  /// Seals the nodes that the domains have now.
  void Keep();

 private:
  void TakeBack(Entry& entry) noexcept;

  core::domain::NDomainManager& m_manager;
  std::vector<Entry>& m_entries;
  bool m_isKept = false;
};

/// The ten domains of the internal data.
struct NInternalDomains {
  NInternalDomains(NRegistration& registration, core::domain::NDomainManager const& manager,
                   events::NEventMultiplexer const& events);

  boost::intrusive_ptr<domain::geometry::NGeometryDomain> geometries;
  boost::intrusive_ptr<domain::scene::NSceneDomain> scenes;
  boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphItemDomain> items;
  boost::intrusive_ptr<domain::scenegraph::tree::NSceneGraphTreeDomain> trees;
  boost::intrusive_ptr<domain::camera::NCameraDomain> cameras;
  boost::intrusive_ptr<domain::material::NMaterialDomain> materials;
  boost::intrusive_ptr<domain::texture::NTextureDomain> textures;
  boost::intrusive_ptr<domain::image::NImageDomain> images;
  boost::intrusive_ptr<domain::light_env::NLightEnvDomain> lightEnvs;
  boost::intrusive_ptr<domain::environment::NEnvironmentDomain> environments;
};

}  // namespace corvanta::data::internal::detail
