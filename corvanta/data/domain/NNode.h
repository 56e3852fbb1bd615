#pragma once

#include <boost/intrusive_ptr.hpp>
#include <boost/shared_ptr.hpp>
#include <string>

#include "corvanta/core/node/NNode.h"
#include "corvanta/core/resource/NResource.h"
#include "corvanta/data/domain/NNodeModifier.h"
#include "corvanta/data/domain/NNodeWatcher.h"
#include "corvanta/export.h"

namespace corvanta::data::events::attribute_change {
class NMultiplexer;
}
namespace corvanta::data::events::detail {
class NModelRecorder;
}

namespace corvanta::data::domain {

/// The base of every node kind: tells a multiplexer of its attributes' changes, can be visited, and
/// has an opaque slot for whoever renders or loads it.
///
/// Nodes are made by their domain's CreateNode and held by `boost::intrusive_ptr`.
class CORVANTA_API NNode : public core::node::NNode {
 public:
  void Accept(NNodeWatcher& visitor) const { AcceptImpl(visitor); }
  void Accept(NNodeModifier& visitor) { AcceptImpl(visitor); }

  boost::shared_ptr<core::resource::NResource> GetResource() { return m_resource; }
  boost::shared_ptr<core::resource::NResource const> GetResource() const { return m_resource; }
  /// Raises: nothing.
  void SetResource(boost::shared_ptr<core::resource::NResource> const& resource) {
    m_resource = resource;
  }

  /// Whoever records this node's changes: that of its attribute multiplexer. Null without one.
  events::detail::NModelRecorder* GetRecorder() const noexcept;

 protected:
  NNode(core::node::NNodeID const& id, core::domain::NDomainBase* domain,
        events::attribute_change::NMultiplexer const* multiplexer, std::wstring const& name);
  ~NNode() override;

  /// The beginning of every CopyTo: gives `target` this node's name, then its attribute values.
  /// Both nodes are held meanwhile; who goes on with them holds them too.
  void CopyNodeTo(NNode& target) const;

  /// Passes the change on to the attribute multiplexer.
  void OnAttributeChangeImpl(core::attribute::NAttribute const& attribute) override;

 private:
  virtual void AcceptImpl(NNodeWatcher& visitor) const = 0;
  virtual void AcceptImpl(NNodeModifier& visitor) = 0;

  boost::intrusive_ptr<events::attribute_change::NMultiplexer const> const m_multiplexer;
  boost::shared_ptr<core::resource::NResource> m_resource;
};

}  // namespace corvanta::data::domain
