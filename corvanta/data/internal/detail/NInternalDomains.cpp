#include "corvanta/data/internal/detail/NInternalDomains.h"

#include <utility>

#include "corvanta/data/internal/detail/NInternalDataManager.h"

namespace corvanta::data::internal::detail {

using core::domain::NDomainBase;
using core::domain::NDomainManager;
using core::locator::NLocator;
using core::uri::NPath;
using core::uri::NUri;

namespace {

constexpr wchar_t const* kText = L"Internal";

template <class Domain, class... Multiplexers>
boost::intrusive_ptr<Domain> Make(NRegistration& registration, NDomainManager const& manager,
                                  events::NEventMultiplexer const& events,
                                  Multiplexers&... multiplexers) {
  boost::intrusive_ptr<Domain> domain(
      new Domain(&manager, &events.GetAttributeChangeEventMultiplexer(), &multiplexers...));
  registration.Register(*domain);
  return domain;
}

}  // namespace

NRegistration::~NRegistration() {
  if (m_isKept) return;
  for (auto entry = m_entries.rbegin(); entry != m_entries.rend(); ++entry) TakeBack(*entry);
}

void NRegistration::Register(NDomainBase& domain) {
  domain.SetName(domain.GetType());
  NLocator const locator(NUri::CreateInternalUri(NPath(L"/" + domain.GetName())), NPath());
  Entry entry{&domain, locator, {}};
  for (auto const& [at, before] : m_manager) {
    if (at == locator) entry.before = before;
  }
  m_entries.push_back(entry);
  m_manager.RegisterDomain(domain, locator, kText);
  domain.SetIsReadOnlyFlag(true);
}

void NRegistration::TakeBack(Entry& entry) noexcept {
  try {
    if (entry.before.domain) {
      m_manager.RegisterDomain(*entry.before.domain, entry.locator, std::move(entry.before.text));
      return;
    }
  } catch (...) {
    // Replacing needs no memory; only if a listener has emptied the locator, it may stay so.
  }
  m_manager.UnregisterDomain(entry.locator);
}

void NRegistration::Keep() {
  for (Entry const& entry : m_entries) entry.domain->SetIsReadOnlyFlag(true);
  m_isKept = true;
}

NInternalDomains::NInternalDomains(NRegistration& registration, NDomainManager const& manager,
                                   events::NEventMultiplexer const& events)
    : geometries(Make<domain::geometry::NGeometryDomain>(
          registration, manager, events, events.GetGeometryChangeEventMultiplexer())),
      scenes(Make<domain::scene::NSceneDomain>(registration, manager, events,
                                               events.GetSceneGraphTreeHostEventMultiplexer(),
                                               events.GetSceneEventMultiplexer())),
      items(Make<domain::scenegraph::item::NSceneGraphItemDomain>(
          registration, manager, events, events.GetSceneGraphModelEventMultiplexer(),
          events.GetSceneGraphHierarchyEventMultiplexer(),
          events.GetSceneGraphTreeHostEventMultiplexer())),
      trees(Make<domain::scenegraph::tree::NSceneGraphTreeDomain>(
          registration, manager, events, events.GetSceneGraphTreeEventMultiplexer())),
      cameras(Make<domain::camera::NCameraDomain>(registration, manager, events)),
      materials(Make<domain::material::NMaterialDomain>(
          registration, manager, events, events.GetEnvironmentMapChangeEventMultiplexer(),
          events.GetMaterialEventMultiplexer())),
      textures(Make<domain::texture::NTextureDomain>(registration, manager, events,
                                                     events.GetTextureEventMultiplexer())),
      images(Make<domain::image::NImageDomain>(registration, manager, events)),
      lightEnvs(Make<domain::light_env::NLightEnvDomain>(registration, manager, events,
                                                         events.GetLightEnvEventMultiplexer())),
      environments(Make<domain::environment::NEnvironmentDomain>(
          registration, manager, events, events.GetEnvironmentMapChangeEventMultiplexer(),
          events.GetEnvironmentEventMultiplexer())) {}

NInternalDataManager::NInternalDataManager(NInternalDomains const& domains)
    : geometry(*domains.geometries),
      material(*domains.materials, *domains.textures, *domains.images),
      scene(*domains.scenes, *domains.trees, *domains.items, *domains.cameras),
      environment(*domains.environments, *domains.images, *domains.lightEnvs, *domains.trees,
                  *domains.items, geometry) {
  scene.model->SetGeometryNode(*geometry.nodes[NP_SPHERE]);
}

}  // namespace corvanta::data::internal::detail
