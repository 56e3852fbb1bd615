#pragma once

#include <boost/intrusive_ptr.hpp>
#include <cstdint>
#include <memory>

#include "corvanta/core/attribute/NAttributeHost.h"
#include "corvanta/core/node/NNodeReference.h"
#include "corvanta/data/domain/animation/NAnimationNode.h"
#include "corvanta/export.h"

namespace corvanta::data::timeline {

#define CORVANTA_ROWS_CONSTANTS
#include "corvanta/data/timeline/timeline_attributes.def"

/// Plays an animation node: holds the current frame, as an attribute that moves the scene whenever
/// it is written with notification.
///
/// Refers to the node and doesn't keep it alive. Hold it by `boost::intrusive_ptr`.
class CORVANTA_API NTimeLine : public core::attribute::NAttributeHost {
 public:
  /// Plays nothing yet.
  explicit NTimeLine(
      core::node::NNodeReference<domain::animation::NAnimationNode> const& animation);
  ~NTimeLine() override;

#define CORVANTA_ROWS_ACCESSORS
#include "corvanta/data/timeline/timeline_attributes.def"

  /// Fails: null when the node has gone.
  boost::intrusive_ptr<domain::animation::NAnimationNode> GetAnimation() const;
  core::node::NNodeReference<domain::animation::NAnimationNode> const& GetAnimationRef() const;

  bool IsReverse() const noexcept;
  void SetIsReverseFlag(bool isReverse) noexcept;

  /// Grows with every timeline that the process makes; the order of timelines in sets.
  std::uint64_t GetCreationNumber() const noexcept { return m_creationNumber; }

 protected:
  /// Plays the frame that was written to "currentFrame".
  void OnAttributeChangeImpl(core::attribute::NAttribute const& attribute) override;

 private:
  struct Block;

  std::uint64_t const m_creationNumber;
  std::unique_ptr<Block> const m_block;
};

/// Orders timelines by creation, null first, so that two runs of one program sort alike.
inline bool operator<(boost::intrusive_ptr<NTimeLine> const& a,
                      boost::intrusive_ptr<NTimeLine> const& b) noexcept {
  return b && (!a || a->GetCreationNumber() < b->GetCreationNumber());
}

/// Advances `timeline` by elapsed time, in its direction, and plays the frame it comes to. An end
/// reached exactly counts as reached: without "repeats" the run stops there; with it one length of
/// the range is taken off, once, so that a step beyond the range wraps again next time.
/// Units: seconds.
/// Raises: the attribute changes of the frame.
/// Fails: false, and no change, when the animation has gone; false when the run is at its end,
/// which is played again with every call. Throws what NAnimationNode::SetFrame throws.
CORVANTA_API bool Update(NTimeLine& timeline, double seconds);

}  // namespace corvanta::data::timeline
