#include "corvanta/data/document/NDocument.h"

#include "corvanta/core/name/NNamespace.h"
#include "corvanta/data/events/attribute_change/NMultiplexer.h"
#include "corvanta/data/events/detail/NModelRecorder.h"
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
#include "corvanta/data/internal/internal_data.h"

namespace corvanta::data::document {

/// A domain of the document, with the multiplexers of its kind behind that of attributes.
template <class Domain, class... Multiplexers>
boost::intrusive_ptr<Domain> NDocument::Make(Multiplexers&... multiplexers) {
  boost::intrusive_ptr<Domain> domain(
      new Domain(&m_manager, &m_events->GetAttributeChangeEventMultiplexer(), &multiplexers...));
  core::uri::NPath const path = core::uri::NPath(L"/document") / domain->GetType();
  m_manager.RegisterDomain(
      *domain, core::locator::NLocator(core::uri::NUri::CreateInternalUri(path)), L"Document");
  m_domains.emplace_back(domain);
  return domain;
}

NDocument::NDocument()
    : m_events(new events::NEventMultiplexer),
      m_items(Make<domain::scenegraph::item::NSceneGraphItemDomain>(
          m_events->GetSceneGraphModelEventMultiplexer(),
          m_events->GetSceneGraphHierarchyEventMultiplexer(),
          m_events->GetSceneGraphTreeHostEventMultiplexer())),
      m_trees(Make<domain::scenegraph::tree::NSceneGraphTreeDomain>(
          m_events->GetSceneGraphTreeEventMultiplexer())),
      m_lights(Make<domain::light::NLightDomain>()),
      m_cameras(Make<domain::camera::NCameraDomain>()),
      m_materials(Make<domain::material::NMaterialDomain>(
          m_events->GetEnvironmentMapChangeEventMultiplexer(),
          m_events->GetMaterialEventMultiplexer())),
      m_textures(Make<domain::texture::NTextureDomain>(m_events->GetTextureEventMultiplexer())),
      m_images(Make<domain::image::NImageDomain>()),
      m_geometries(
          Make<domain::geometry::NGeometryDomain>(m_events->GetGeometryChangeEventMultiplexer())),
      m_scenes(Make<domain::scene::NSceneDomain>(m_events->GetSceneGraphTreeHostEventMultiplexer(),
                                                 m_events->GetSceneEventMultiplexer())),
      m_projections(Make<domain::projection::NProjectionDomain>()),
      m_environments(Make<domain::environment::NEnvironmentDomain>(
          m_events->GetEnvironmentMapChangeEventMultiplexer(),
          m_events->GetEnvironmentEventMultiplexer())),
      m_lightEnvs(
          Make<domain::light_env::NLightEnvDomain>(m_events->GetLightEnvEventMultiplexer())),
      m_animations(Make<domain::animation::NAnimationDomain>()),
      m_sounds(Make<domain::sound::NSoundDomain>()),
      m_movies(Make<domain::movie::NMovieDomain>()) {}

NDocument::~NDocument() {
  if (m_recorder) m_recorder->OnDocumentEnd();
  internal::Uninitialize(m_manager);
}

void NDocument::Keep(std::shared_ptr<void const> object) { m_kept.push_back(std::move(object)); }

NDocument::Nodes NDocument::QueryNodes(std::wstring const& name) const {
  Nodes nodes;
  for (auto const& domain : m_domains) {
    auto const& names = dynamic_cast<core::name::NNamespace const&>(*domain);
    auto* const node = dynamic_cast<core::node::NNode*>(names.QueryNamedObject(name));
    if (node != nullptr) nodes.emplace_back(node);
  }
  return nodes;
}

}  // namespace corvanta::data::document
