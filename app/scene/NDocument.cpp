#include "app/scene/NDocument.h"

#include <utility>

#include "app/scene/NTemporaryArchive.h"
#include "corvanta/core/name/NNamespace.h"
#include "corvanta/data/events/attribute_change/NMultiplexer.h"
#include "corvanta/data/events/environment/NMultiplexer.h"
#include "corvanta/data/events/environment_map_change/NMultiplexer.h"
#include "corvanta/data/events/geometry_change/NMultiplexer.h"
#include "corvanta/data/events/light_env/NMultiplexer.h"
#include "corvanta/data/events/material/NMultiplexer.h"
#include "corvanta/data/events/scene/NMultiplexer.h"
#include "corvanta/data/events/scene_graph_hierarchy/NMultiplexer.h"
#include "corvanta/data/events/scene_graph_model/NMultiplexer.h"
#include "corvanta/data/events/scene_graph_tree/NMultiplexer.h"
#include "corvanta/data/events/scene_graph_tree_host/NMultiplexer.h"
#include "corvanta/data/events/texture/NMultiplexer.h"

namespace corvanta::app {

namespace domain = data::domain;

NDocument::NDocument()
    : m_events(new data::events::NEventMultiplexer),
      m_items(new domain::scenegraph::item::NSceneGraphItemDomain(
          &m_manager, &m_events->GetAttributeChangeEventMultiplexer(),
          &m_events->GetSceneGraphModelEventMultiplexer(),
          &m_events->GetSceneGraphHierarchyEventMultiplexer(),
          &m_events->GetSceneGraphTreeHostEventMultiplexer())),
      m_trees(new domain::scenegraph::tree::NSceneGraphTreeDomain(
          &m_manager, &m_events->GetAttributeChangeEventMultiplexer(),
          &m_events->GetSceneGraphTreeEventMultiplexer())),
      m_lights(new domain::light::NLightDomain(&m_manager,
                                               &m_events->GetAttributeChangeEventMultiplexer())),
      m_cameras(new domain::camera::NCameraDomain(&m_manager,
                                                  &m_events->GetAttributeChangeEventMultiplexer())),
      m_geometries(new domain::geometry::NGeometryDomain(
          &m_manager, &m_events->GetAttributeChangeEventMultiplexer(),
          &m_events->GetGeometryChangeEventMultiplexer())),
      m_materials(new domain::material::NMaterialDomain(
          &m_manager, &m_events->GetAttributeChangeEventMultiplexer(),
          &m_events->GetEnvironmentMapChangeEventMultiplexer(),
          &m_events->GetMaterialEventMultiplexer())),
      m_textures(new domain::texture::NTextureDomain(
          &m_manager, &m_events->GetAttributeChangeEventMultiplexer(),
          &m_events->GetTextureEventMultiplexer())),
      m_images(new domain::image::NImageDomain(&m_manager,
                                               &m_events->GetAttributeChangeEventMultiplexer())),
      m_scenes(new domain::scene::NSceneDomain(&m_manager,
                                               &m_events->GetAttributeChangeEventMultiplexer(),
                                               &m_events->GetSceneGraphTreeHostEventMultiplexer(),
                                               &m_events->GetSceneEventMultiplexer())),
      m_projections(new domain::projection::NProjectionDomain(
          &m_manager, &m_events->GetAttributeChangeEventMultiplexer())),
      m_environments(new domain::environment::NEnvironmentDomain(
          &m_manager, &m_events->GetAttributeChangeEventMultiplexer(),
          &m_events->GetEnvironmentMapChangeEventMultiplexer(),
          &m_events->GetEnvironmentEventMultiplexer())),
      m_lightEnvs(new domain::light_env::NLightEnvDomain(
          &m_manager, &m_events->GetAttributeChangeEventMultiplexer(),
          &m_events->GetLightEnvEventMultiplexer())),
      m_animations(new domain::animation::NAnimationDomain(
          &m_manager, &m_events->GetAttributeChangeEventMultiplexer())) {
  auto const& attributes = m_events->GetAttributeChangeEventMultiplexer();
  Register(m_items);
  Register(m_trees);
  Register(m_lights);
  Register(m_cameras);
  Register(m_materials);
  Register(m_textures);
  Register(m_images);
  Register(m_geometries);
  Register(m_scenes);
  Register(m_projections);
  Register(m_environments);
  Register(m_lightEnvs);
  Register(m_animations);
  Register(boost::intrusive_ptr<domain::sound::NSoundDomain>(
      new domain::sound::NSoundDomain(&m_manager, &attributes)));
  Register(boost::intrusive_ptr<domain::movie::NMovieDomain>(
      new domain::movie::NMovieDomain(&m_manager, &attributes)));
}

NDocument::~NDocument() = default;

template <class Domain>
void NDocument::Register(boost::intrusive_ptr<Domain> const& domain) {
  core::uri::NPath const path = core::uri::NPath(L"/document") / domain->GetType();
  m_manager.RegisterDomain(
      *domain, core::locator::NLocator(core::uri::NUri::CreateInternalUri(path)), L"Document");
  m_domains.emplace_back(domain);
}

std::vector<boost::intrusive_ptr<core::node::NNode>> NDocument::QueryNodes(
    std::wstring const& name) const {
  std::vector<boost::intrusive_ptr<core::node::NNode>> nodes;
  for (auto const& domain : m_domains) {
    auto const* const names = dynamic_cast<core::name::NNamespace const*>(domain.get());
    auto* const node = dynamic_cast<core::node::NNode*>(names->QueryNamedObject(name));
    if (node != nullptr) nodes.emplace_back(node);
  }
  return nodes;
}

void NDocument::KeepArchive(std::unique_ptr<NTemporaryArchive> archive) {
  m_archives.push_back(std::move(archive));
}

}  // namespace corvanta::app
