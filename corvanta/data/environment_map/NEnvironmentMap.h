#pragma once

#include <boost/intrusive_ptr.hpp>
#include <memory>

#include "corvanta/core/node/NNodeReference.h"
#include "corvanta/core/observer/NObservable.h"
#include "corvanta/core/reference_countable/NReferenceCountable.h"
#include "corvanta/data/domain/image/NImageNode.h"
#include "corvanta/data/environment_map/NEnvironmentMapImageType.h"
#include "corvanta/data/environment_map/NEnvironmentMapListener.h"
#include "corvanta/data/environment_map/NEnvironmentMapTransform.h"

namespace corvanta::data::environment_map {

/// The picture of the surroundings that a material or an environment reflects: an image, its layout
/// and a transform that turns it. Its owner observes it.
class CORVANTA_API NEnvironmentMap
    : public core::reference_countable::NReferenceCountable,
      public core::observer::NObservable<NEnvironmentMap, NEnvironmentMapListener> {
 public:
  /// A cube map without an image or a transform.
  NEnvironmentMap();
  ~NEnvironmentMap() override;

  NEnvironmentMapImageType GetImageType() const;
  /// While listeners are notified of another type: that from before. Outside the type itself.
  NEnvironmentMapImageType GetPreviousImageType() const noexcept;
  /// Raises: SignalImageTypeChange, also for the same type.
  void SetImageType(NEnvironmentMapImageType type);

  /// Fails: null while none is set, and when the image node has gone.
  boost::intrusive_ptr<domain::image::NImageNode> GetImage() const;
  core::node::NNodeReference<domain::image::NImageNode> const& GetImageRef() const;
  /// While listeners are notified of another image: that from before. Outside the image itself.
  core::node::NNodeReference<domain::image::NImageNode> const& GetPreviousImageRef() const noexcept;
  /// Raises: SignalImageChange, also for the same image.
  void SetImage(core::node::NNodeReference<domain::image::NImageNode> const& image);

  /// Fails: null while none is set.
  boost::intrusive_ptr<NEnvironmentMapTransform const> GetTransform() const;
  /// Raises: nothing.
  void SetTransform(NEnvironmentMapTransform const& transform);

 private:
  struct Block;

  std::unique_ptr<Block> const m_block;
};

}  // namespace corvanta::data::environment_map
