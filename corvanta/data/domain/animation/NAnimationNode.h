#pragma once

#include <boost/intrusive_ptr.hpp>
#include <map>
#include <memory>

#include "corvanta/data/domain/NNode.h"
#include "corvanta/data/domain/animation/NAnimationContext.h"
#include "corvanta/data/operators/animation/NKeyFrameAnimation.h"

namespace corvanta::data::domain::animation {

/// What an animation is for; the library only stores it.
enum NAnimationCategory : long { NAC_DEFAULT = 0 };

#define CORVANTA_ROWS_CONSTANTS
#include "corvanta/data/domain/animation/animation_attributes.def"

/// A timed change of attributes: a range of frames, a rate, and curves, each bound to an attribute
/// of a target.
///
/// Knows nothing of playing: a timeline supplies the frames.
class CORVANTA_API NAnimationNode : public NNode {
 public:
  using Animations =
      std::map<NAnimationContext, boost::intrusive_ptr<operators::animation::NKeyFrameAnimation>>;

  NAnimationNode(core::node::NNodeID const& id, core::domain::NDomainBase* domain,
                 events::attribute_change::NMultiplexer const* multiplexer);
  ~NAnimationNode() override;

#define CORVANTA_ROWS_ACCESSORS
#include "corvanta/data/domain/animation/animation_attributes.def"

  /// Gives `target` this node's name, attribute values and curves; id and domain stay. Curves and
  /// targets are shared, not copied.
  void CopyTo(NAnimationNode& target) const;

  /// Writes every bound attribute, as a double, with the value of its curve at `frame`, in the
  /// map's order. What has no target or no such attribute now is skipped. A change of the map made
  /// meanwhile counts from the next call.
  /// Raises: the attribute change of every write.
  /// Fails: throws what NKeyFrameAnimation::CalculateValue and the listeners throw; the writes
  /// behind it aren't made.
  void SetFrame(double frame) const;

  /// Fails: false, and no change, if `context` has a curve.
  bool AddAnimation(NAnimationContext const& context,
                    operators::animation::NKeyFrameAnimation& curve);
  void ClearAnimations();
  Animations const& GetAnimations() const noexcept;

 private:
  struct Block;

  void SetAnimations(Animations& animations);
  static void ApplyAnimations(core::reference_countable::NReferenceCountable& node,
                              std::shared_ptr<void const> const& animations);

  void AcceptImpl(NNodeWatcher& visitor) const override { visitor.Visit(*this); }
  void AcceptImpl(NNodeModifier& visitor) override { visitor.Visit(*this); }

  std::unique_ptr<Block> const m_block;
};

}  // namespace corvanta::data::domain::animation
