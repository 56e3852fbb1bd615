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

namespace corvanta::app {

class NTemporaryArchive;

/// A scene in memory: a domain of each kind, the event system behind them all, and the archives
/// that its pictures lie in.
class NDocument {
 public:
  using Domains = std::vector<boost::intrusive_ptr<core::domain::NDomainBase>>;

  NDocument();
  NDocument(NDocument const&) = delete;
  NDocument& operator=(NDocument const&) = delete;
  ~NDocument();

  core::domain::NDomainManager& GetManager() { return m_manager; }
  core::domain::NDomainManager const& GetManager() const { return m_manager; }
  data::events::NEventMultiplexer& GetEvents() const { return *m_events; }
  /// In the order in which names are looked up: items, trees, and then what they show.
  Domains const& GetDomains() const { return m_domains; }

  data::domain::scenegraph::item::NSceneGraphItemDomain& GetItems() const { return *m_items; }
  data::domain::scenegraph::tree::NSceneGraphTreeDomain& GetTrees() const { return *m_trees; }
  data::domain::light::NLightDomain& GetLights() const { return *m_lights; }
  data::domain::camera::NCameraDomain& GetCameras() const { return *m_cameras; }
  data::domain::geometry::NGeometryDomain& GetGeometries() const { return *m_geometries; }
  data::domain::material::NMaterialDomain& GetMaterials() const { return *m_materials; }
  data::domain::texture::NTextureDomain& GetTextures() const { return *m_textures; }
  data::domain::image::NImageDomain& GetImages() const { return *m_images; }
  data::domain::scene::NSceneDomain& GetScenes() const { return *m_scenes; }
  data::domain::projection::NProjectionDomain& GetProjections() const { return *m_projections; }
  data::domain::environment::NEnvironmentDomain& GetEnvironments() const { return *m_environments; }
  data::domain::light_env::NLightEnvDomain& GetLightEnvs() const { return *m_lightEnvs; }
  data::domain::animation::NAnimationDomain& GetAnimations() const { return *m_animations; }

  /// The nodes of that name, one a domain at most, in the order of GetDomains.
  std::vector<boost::intrusive_ptr<core::node::NNode>> QueryNodes(std::wstring const& name) const;

  /// Keeps an archive on disk as long as this document lives.
  void KeepArchive(std::unique_ptr<NTemporaryArchive> archive);

 private:
  template <class Domain>
  void Register(boost::intrusive_ptr<Domain> const& domain);

  std::vector<std::unique_ptr<NTemporaryArchive>> m_archives;
  core::domain::NDomainManager m_manager;
  boost::intrusive_ptr<data::events::NEventMultiplexer> const m_events;
  boost::intrusive_ptr<data::domain::scenegraph::item::NSceneGraphItemDomain> const m_items;
  boost::intrusive_ptr<data::domain::scenegraph::tree::NSceneGraphTreeDomain> const m_trees;
  boost::intrusive_ptr<data::domain::light::NLightDomain> const m_lights;
  boost::intrusive_ptr<data::domain::camera::NCameraDomain> const m_cameras;
  boost::intrusive_ptr<data::domain::geometry::NGeometryDomain> const m_geometries;
  boost::intrusive_ptr<data::domain::material::NMaterialDomain> const m_materials;
  boost::intrusive_ptr<data::domain::texture::NTextureDomain> const m_textures;
  boost::intrusive_ptr<data::domain::image::NImageDomain> const m_images;
  boost::intrusive_ptr<data::domain::scene::NSceneDomain> const m_scenes;
  boost::intrusive_ptr<data::domain::projection::NProjectionDomain> const m_projections;
  boost::intrusive_ptr<data::domain::environment::NEnvironmentDomain> const m_environments;
  boost::intrusive_ptr<data::domain::light_env::NLightEnvDomain> const m_lightEnvs;
  boost::intrusive_ptr<data::domain::animation::NAnimationDomain> const m_animations;
  Domains m_domains;
};

}  // namespace corvanta::app
