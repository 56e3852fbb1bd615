#pragma once

#include <boost/intrusive_ptr.hpp>
#include <memory>
#include <string>
#include <vector>

#include "corvanta/core/name/NNameListener.h"
#include "corvanta/core/name/NStrictNamespace.h"
#include "corvanta/core/observer/NObservable.h"
#include "corvanta/data/domain/NNode.h"
#include "corvanta/data/domain/light_env/NLamp.h"
#include "corvanta/data/events/light_env/NListener.h"
#include "corvanta/vx_math/Matrix.h"

namespace corvanta::data::history::detail {
class NChangeAccess;
}

namespace corvanta::data::domain::light_env {

#define CORVANTA_ROWS_CONSTANTS
#include "corvanta/data/domain/light_env/light_env_attributes.def"

/// A rig of lamps that belongs to no model: owns them, in order of creation, and turns and scales
/// them as a whole. The namespace of its lamps' names.
class CORVANTA_API NLightEnvNode
    : public NNode,
      public core::name::NStrictNamespace,
      public core::name::NNameListener,
      public core::observer::NObservable<NLightEnvNode, events::light_env::NListener> {
 public:
  NLightEnvNode(core::node::NNodeID const& id, core::domain::NDomainBase* domain,
                events::attribute_change::NMultiplexer const* multiplexer);
  ~NLightEnvNode() override;

#define CORVANTA_ROWS_ACCESSORS
#include "corvanta/data/domain/light_env/light_env_attributes.def"

  /// Makes a lamp at the end of the list. Where `name` is another lamp's, it gets a number behind
  /// it.
  /// Raises: the lamp's renaming, then its creation; not the latter if a listener of the former
  /// deleted the lamp.
  boost::intrusive_ptr<NLamp> CreateLamp(std::wstring const& name);
  /// Takes `lamp` out of the list, also when a listener throws. It loses its owner.
  /// Raises: the deletion, while the lamp is still in its place.
  /// Fails: false for a lamp that isn't in the list.
  bool DeleteLamp(boost::intrusive_ptr<NLamp> const& lamp);
  std::vector<boost::intrusive_ptr<NLamp>> const& GetLamps() const noexcept;

  /// The rotation about y, then the scale.
  VX_Math::Matrix GetTransform() const;

  /// Gives `target` this node's name and attribute values, and a copy of each lamp behind those it
  /// has. Onto itself it doubles the lamps.
  /// Raises: the target's signals for each.
  void CopyTo(NLightEnvNode& target) const;

 private:
  friend class history::detail::NChangeAccess;
  friend class NLamp;
  struct Block;

  void AcceptImpl(NNodeWatcher& visitor) const override { visitor.Visit(*this); }
  void AcceptImpl(NNodeModifier& visitor) override { visitor.Visit(*this); }
  void OnSetName(core::name::NNamespace const& space,
                 core::name::NNamedObject const& object) override;

  void LampNameChanged(NLamp const* lamp);
  void LampAttributeChanged(NLamp const* lamp, core::attribute::NAttribute const& attribute);
  void SignalLampChange(NLamp const& lamp, events::light_env::NLampEventType type);
  boost::intrusive_ptr<NLamp> PrepareLamp(std::wstring const& name, std::size_t others);
  void Enter(boost::intrusive_ptr<NLamp> const& lamp);
  void PutBack(NLamp& lamp, unsigned int index);
  void Record(bool isAdded, NLamp& lamp);
  void TakeOut(NLamp& lamp) noexcept;

  std::unique_ptr<Block> const m_block;
};

}  // namespace corvanta::data::domain::light_env
