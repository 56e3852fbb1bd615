#pragma once

#include <boost/intrusive_ptr.hpp>

#include "corvanta/core/reference_countable/NReferenceCountableWithWeakReference.h"
#include "corvanta/data/domain/fwd.h"
#include "corvanta/export.h"

namespace corvanta::data::domain::scenegraph::tree {

/// What a host is towards the tree that it shows. The change is in place when a signal comes.
/// Rules: docs/events.md.
class CORVANTA_API NSceneGraphTreeListener
    : public virtual core::reference_countable::NReferenceCountableWithWeakReference {
 public:
  void OnRootChange(boost::intrusive_ptr<item::NSceneGraphItemNode> const& oldRoot) {
    OnRootChangeImpl(oldRoot);
  }
  void OnControlTransformChange() { OnControlTransformChangeImpl(); }

 protected:
  NSceneGraphTreeListener() noexcept = default;
  NSceneGraphTreeListener(NSceneGraphTreeListener const&) noexcept = default;
  ~NSceneGraphTreeListener() override;

 private:
  virtual void OnRootChangeImpl(boost::intrusive_ptr<item::NSceneGraphItemNode> const& oldRoot) = 0;
  virtual void OnControlTransformChangeImpl() = 0;
};

}  // namespace corvanta::data::domain::scenegraph::tree
