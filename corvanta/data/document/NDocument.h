#pragma once

#include <boost/intrusive_ptr.hpp>
#include <memory>
#include <string>
#include <vector>

#include "corvanta/core/domain/NDomainManager.h"
#include "corvanta/core/node/NNode.h"
#include "corvanta/data/domain/animation/NAnimationDomain.h"
#include "corvanta/data/domain/camera/NCameraDomain.h"
#include "corvanta/data/domain/environment/NEnvironmentDomain.h"
#include "corvanta/data/domain/geometry/NGeometryDomain.h"
#include "corvanta/data/domain/image/NImageDomain.h"
#include "corvanta/data/domain/light/NLightDomain.h"
#include "corvanta/data/domain/light_env/NLightEnvDomain.h"
#include "corvanta/data/domain/material/NMaterialDomain.h"
#include "corvanta/data/domain/movie/NMovieDomain.h"
#include "corvanta/data/domain/projection/NProjectionDomain.h"
#include "corvanta/data/domain/scene/NSceneDomain.h"
#include "corvanta/data/domain/scenegraph/item/NSceneGraphItemDomain.h"
#include "corvanta/data/domain/scenegraph/tree/NSceneGraphTreeDomain.h"
#include "corvanta/data/domain/sound/NSoundDomain.h"
#include "corvanta/data/domain/texture/NTextureDomain.h"
#include "corvanta/data/events/NEventMultiplexer.h"
#include "corvanta/export.h"

namespace corvanta::data::events::detail {
class NModelRecorder;
}
namespace corvanta::data::history::detail {
class NRecorder;
}

namespace corvanta::data::document {

/// The nodes of a scene in one object: a domain manager, an event system, and a domain of each of
/// the fifteen kinds, registered with the manager and joined to the multiplexers of its events.
///
/// A domain is registered at the internal locator "/document/TYPE", TYPE being its DT_ string. The
/// nodes end with the document, except for those that somebody else still refers to: they live on
/// without a domain. Domains and the event system may be held beyond the document's end, and nodes
/// and listeners may end before or after it, also within an event.
class CORVANTA_API NDocument {
 public:
  using Domains = std::vector<boost::intrusive_ptr<core::domain::NDomainBase>>;
  using Nodes = std::vector<boost::intrusive_ptr<core::node::NNode>>;

  NDocument();
  NDocument(NDocument const&) = delete;
  NDocument& operator=(NDocument const&) = delete;
  /// Takes back what `internal::Initialize` made for the manager, if it did.
  ~NDocument();

  core::domain::NDomainManager& GetManager() noexcept { return m_manager; }
  core::domain::NDomainManager const& GetManager() const noexcept { return m_manager; }
  events::NEventMultiplexer& GetEvents() const noexcept { return *m_events; }

  domain::scenegraph::item::NSceneGraphItemDomain& GetItems() const noexcept { return *m_items; }
  domain::scenegraph::tree::NSceneGraphTreeDomain& GetTrees() const noexcept { return *m_trees; }
  domain::light::NLightDomain& GetLights() const noexcept { return *m_lights; }
  domain::camera::NCameraDomain& GetCameras() const noexcept { return *m_cameras; }
  domain::material::NMaterialDomain& GetMaterials() const noexcept { return *m_materials; }
  domain::texture::NTextureDomain& GetTextures() const noexcept { return *m_textures; }
  domain::image::NImageDomain& GetImages() const noexcept { return *m_images; }
  domain::geometry::NGeometryDomain& GetGeometries() const noexcept { return *m_geometries; }
  domain::scene::NSceneDomain& GetScenes() const noexcept { return *m_scenes; }
  domain::projection::NProjectionDomain& GetProjections() const noexcept { return *m_projections; }
  domain::environment::NEnvironmentDomain& GetEnvironments() const noexcept {
    return *m_environments;
  }
  domain::light_env::NLightEnvDomain& GetLightEnvs() const noexcept { return *m_lightEnvs; }
  domain::animation::NAnimationDomain& GetAnimations() const noexcept { return *m_animations; }
  domain::sound::NSoundDomain& GetSounds() const noexcept { return *m_sounds; }
  domain::movie::NMovieDomain& GetMovies() const noexcept { return *m_movies; }

  /// The fifteen domains, in the order in which names are looked up: items, trees, and then what
  /// they show.
  Domains const& GetDomains() const noexcept { return m_domains; }
  Domains::const_iterator begin() const noexcept { return m_domains.begin(); }
  Domains::const_iterator end() const noexcept { return m_domains.end(); }

  /// The nodes of that name, one of each domain at most, in the order of GetDomains.
  Nodes QueryNodes(std::wstring const& name) const;

  /// Keeps `object` as long as this document lives: what its nodes rely on outside of it, such as a
  /// temporary file that an image node names.
  void Keep(std::shared_ptr<void const> object);

 private:
  friend class history::detail::NRecorder;

  template <class Domain, class... Multiplexers>
  boost::intrusive_ptr<Domain> Make(Multiplexers&... multiplexers);

  std::vector<std::shared_ptr<void const>> m_kept;  // beyond the nodes
  // Made when somebody asks for the changes as data.
  boost::intrusive_ptr<events::detail::NModelRecorder> m_recorder;
  core::domain::NDomainManager m_manager;
  boost::intrusive_ptr<events::NEventMultiplexer> const m_events;
  Domains m_domains;
  boost::intrusive_ptr<domain::scenegraph::item::NSceneGraphItemDomain> const m_items;
  boost::intrusive_ptr<domain::scenegraph::tree::NSceneGraphTreeDomain> const m_trees;
  boost::intrusive_ptr<domain::light::NLightDomain> const m_lights;
  boost::intrusive_ptr<domain::camera::NCameraDomain> const m_cameras;
  boost::intrusive_ptr<domain::material::NMaterialDomain> const m_materials;
  boost::intrusive_ptr<domain::texture::NTextureDomain> const m_textures;
  boost::intrusive_ptr<domain::image::NImageDomain> const m_images;
  boost::intrusive_ptr<domain::geometry::NGeometryDomain> const m_geometries;
  boost::intrusive_ptr<domain::scene::NSceneDomain> const m_scenes;
  boost::intrusive_ptr<domain::projection::NProjectionDomain> const m_projections;
  boost::intrusive_ptr<domain::environment::NEnvironmentDomain> const m_environments;
  boost::intrusive_ptr<domain::light_env::NLightEnvDomain> const m_lightEnvs;
  boost::intrusive_ptr<domain::animation::NAnimationDomain> const m_animations;
  boost::intrusive_ptr<domain::sound::NSoundDomain> const m_sounds;
  boost::intrusive_ptr<domain::movie::NMovieDomain> const m_movies;
};

}  // namespace corvanta::data::document
