#pragma once

#include <boost/intrusive_ptr.hpp>
#include <memory>

#include "corvanta/core/node/NNodeReference.h"
#include "corvanta/core/observer/NObservable.h"
#include "corvanta/data/domain/NNode.h"
#include "corvanta/data/domain/scenegraph/tree/NSceneGraphTreeHost.h"
#include "corvanta/data/events/scene/NListener.h"

namespace corvanta::data::domain::scene {

#define CORVANTA_ROWS_CONSTANTS
#include "corvanta/data/domain/scene/scene_attributes.def"

/// What a view shows: a tree, and the environment that it is in. Keeps neither alive.
class CORVANTA_API NSceneNode
    : public NNode,
      public scenegraph::tree::NSceneGraphTreeHost,
      public core::observer::NObservable<NSceneNode, events::scene::NListener> {
 public:
  NSceneNode(core::node::NNodeID const& id, core::domain::NDomainBase* domain,
             events::attribute_change::NMultiplexer const* multiplexer);
  ~NSceneNode() override;

  using TreeEvents = core::observer::NObservable<scenegraph::tree::NSceneGraphTreeHost,
                                                 events::scene_graph_tree_host::NListener>;
  using SceneEvents = core::observer::NObservable<NSceneNode, events::scene::NListener>;
  using SceneEvents::AddObserver;
  using SceneEvents::RemoveObserver;
  using TreeEvents::AddObserver;
  using TreeEvents::RemoveObserver;

#define CORVANTA_ROWS_ACCESSORS
#include "corvanta/data/domain/scene/scene_attributes.def"

  /// Fails: null if no environment is set, or it has gone.
  boost::intrusive_ptr<environment::NEnvironmentNode> GetEnvironment() const;
  core::node::NNodeReference<environment::NEnvironmentNode> const& GetEnvironmentRef()
      const noexcept;
  /// Raises: SignalEnvironmentChange with the old one, also for the same environment.
  void SetEnvironment(core::node::NNodeReference<environment::NEnvironmentNode> const& environment);

 private:
  struct Block;

  void AcceptImpl(NNodeWatcher& visitor) const override { visitor.Visit(*this); }
  void AcceptImpl(NNodeModifier& visitor) override { visitor.Visit(*this); }

  std::unique_ptr<Block> const m_block;
};

}  // namespace corvanta::data::domain::scene
