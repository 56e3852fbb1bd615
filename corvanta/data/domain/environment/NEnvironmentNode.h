#pragma once

#include <boost/intrusive_ptr.hpp>
#include <memory>
#include <set>
#include <vector>

#include "corvanta/core/node/NNodeReference.h"
#include "corvanta/core/observer/NObservable.h"
#include "corvanta/data/domain/NNode.h"
#include "corvanta/data/domain/scenegraph/NSceneGraphPath.h"
#include "corvanta/data/domain/scenegraph/tree/NSceneGraphTreeHost.h"
#include "corvanta/data/environment_map/NEnvironmentMapListener.h"
#include "corvanta/data/events/NReferenceKind.h"
#include "corvanta/data/events/environment/NListener.h"
#include "corvanta/data/events/environment_map_change/NListener.h"

namespace corvanta::data::environment_map {
class NEnvironmentMap;
}

namespace corvanta::data::history::detail {
class NChangeAccess;
}

namespace corvanta::data::domain::environment {

/// How the floor is shaded; for the renderer.
enum NFloorShadingMode : long { NFSM_DEFAULT = 0 };

#define CORVANTA_ROWS_CONSTANTS
#include "corvanta/data/domain/environment/environment_attributes.def"

/// The surroundings of a scene: background, HDR and exposure, reflection map, backdrop, floor,
/// ambient occlusion and lights. As a tree host it shows a tree of its own.
///
/// What it refers to may go; a reference that resolves to nothing reads as null, and stays listed.
class CORVANTA_API NEnvironmentNode
    : public NNode,
      public scenegraph::tree::NSceneGraphTreeHost,
      public environment_map::NEnvironmentMapListener,
      public core::observer::NObservable<NEnvironmentNode,
                                         events::environment_map_change::NListener>,
      public core::observer::NObservable<NEnvironmentNode, events::environment::NListener> {
 public:
  NEnvironmentNode(core::node::NNodeID const& id, core::domain::NDomainBase* domain,
                   events::attribute_change::NMultiplexer const* multiplexer);
  ~NEnvironmentNode() override;

  using TreeEvents = core::observer::NObservable<scenegraph::tree::NSceneGraphTreeHost,
                                                 events::scene_graph_tree_host::NListener>;
  using EnvironmentMapEvents =
      core::observer::NObservable<NEnvironmentNode, events::environment_map_change::NListener>;
  using EnvironmentEvents =
      core::observer::NObservable<NEnvironmentNode, events::environment::NListener>;
  using EnvironmentEvents::AddObserver;
  using EnvironmentEvents::RemoveObserver;
  using EnvironmentMapEvents::AddObserver;
  using EnvironmentMapEvents::RemoveObserver;
  using TreeEvents::AddObserver;
  using TreeEvents::RemoveObserver;

#define CORVANTA_ROWS_ACCESSORS
#include "corvanta/data/domain/environment/environment_attributes.def"

  std::set<scenegraph::NSceneGraphPath<scenegraph::item::NSceneGraphLightNode>> const& GetLights()
      const noexcept;
  /// Raises: nothing.
  /// Fails: false if the path is in the set already.
  bool AddLight(scenegraph::NSceneGraphPath<scenegraph::item::NSceneGraphLightNode> const& light);
  /// Raises: nothing.
  /// Fails: false if the path isn't in the set.
  bool RemoveLight(
      scenegraph::NSceneGraphPath<scenegraph::item::NSceneGraphLightNode> const& light);

  /// In order of adding.
  std::vector<core::node::NNodeReference<light_env::NLightEnvNode>> const& GetLightEnvs()
      const noexcept;
  /// Raises: SignalAddLightEnv.
  /// Fails: false if the reference is listed already, or resolves to nothing.
  bool AddLightEnv(core::node::NNodeReference<light_env::NLightEnvNode> const& lightEnv);
  /// The same, before the one now at `index`.
  /// Fails: false also for an index beyond the size.
  bool AddLightEnv(core::node::NNodeReference<light_env::NLightEnvNode> const& lightEnv,
                   unsigned int index);
  /// Raises: SignalRemoveLightEnv, if the node is still there.
  /// Fails: false if it isn't listed.
  bool RemoveLightEnv(core::node::NNodeReference<light_env::NLightEnvNode> const& lightEnv);

  /// The backdrop.
  boost::intrusive_ptr<image::NImageNode> Get2DImage() const;
  core::node::NNodeReference<image::NImageNode> const& Get2DImageRef() const noexcept;
  /// Raises: nothing.
  void Set2DImage(core::node::NNodeReference<image::NImageNode> const& image);

  /// The map that surfaces reflect, turned by the "environmentMap.rotation" attributes. Its changes
  /// are signalled by this node too.
  environment_map::NEnvironmentMap& GetEnvironmentMap() const noexcept;

  boost::intrusive_ptr<scenegraph::item::NSceneGraphModelNode> GetEnvironmentMapModel() const;
  core::node::NNodeReference<scenegraph::item::NSceneGraphModelNode> const&
  GetEnvironmentMapModelRef() const noexcept;
  /// Raises: nothing.
  void SetEnvironmentMapModel(
      core::node::NNodeReference<scenegraph::item::NSceneGraphModelNode> const& model);

  boost::intrusive_ptr<geometry::NGeometryNode> GetFloorGeometry() const;
  core::node::NNodeReference<geometry::NGeometryNode> const& GetFloorGeometryRef() const noexcept;
  /// Raises: SignalFloorGeometryChange, also for the same geometry.
  void SetFloorGeometry(core::node::NNodeReference<geometry::NGeometryNode> const& geometry);

  boost::intrusive_ptr<image::NImageNode> GetFloorImage() const;
  core::node::NNodeReference<image::NImageNode> const& GetFloorImageRef() const noexcept;
  /// Raises: SignalFloorImageChange, also for the same image.
  void SetFloorImage(core::node::NNodeReference<image::NImageNode> const& image);

  /// Gives `target` all that this node has; its id and domain stay.
  /// Raises: on the target, those of its name, attributes, tree, and environment map; nothing for
  /// light environments and floor.
  void CopyTo(NEnvironmentNode& target) const;

 private:
  friend class history::detail::NChangeAccess;
  struct Block;

  void InsertLightEnv(core::node::NNodeReference<light_env::NLightEnvNode> const& lightEnv,
                      unsigned int index);
  void Record(events::NReferenceKind kind, core::node::detail::NNodeReferenceImpl const& previous,
              core::node::detail::NNodeReferenceImpl const& now);
  template <class Edit>
  void EditContents(Edit const& edit);
  static void ApplyContents(core::reference_countable::NReferenceCountable& environment,
                            std::shared_ptr<void const> const& contents);

  void AcceptImpl(NNodeWatcher& visitor) const override { visitor.Visit(*this); }
  void AcceptImpl(NNodeModifier& visitor) override { visitor.Visit(*this); }
  void OnImageChange(environment_map::NEnvironmentMap const& map) override;
  void OnImageTypeChange(environment_map::NEnvironmentMap const& map) override;

  std::unique_ptr<Block> const m_block;
};

}  // namespace corvanta::data::domain::environment
