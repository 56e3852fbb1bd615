#pragma once

#include <boost/intrusive_ptr.hpp>
#include <memory>

#include "corvanta/core/node/NNodeReference.h"
#include "corvanta/core/observer/NObservable.h"
#include "corvanta/data/domain/NNode.h"
#include "corvanta/data/domain/image/NImageNode.h"
#include "corvanta/data/events/texture/NListener.h"

namespace corvanta::data::domain::texture {

/// What a texture changes on a surface; for the renderer.
enum NTextureType : long { NTT_DEFAULT = 0 };
/// How a texture is combined with those below it; for the renderer.
enum NTextureOperationType : long { NTOT_DEFAULT = 0 };

#define CORVANTA_ROWS_CONSTANTS
#include "corvanta/data/domain/texture/texture_attributes.def"

/// An image and the way it is used on a surface. Many textures can share an image node.
class CORVANTA_API NTextureNode
    : public NNode,
      public core::observer::NObservable<NTextureNode, events::texture::NListener> {
 public:
  NTextureNode(core::node::NNodeID const& id, core::domain::NDomainBase* domain,
               events::attribute_change::NMultiplexer const* multiplexer);
  ~NTextureNode() override;

#define CORVANTA_ROWS_ACCESSORS
#include "corvanta/data/domain/texture/texture_attributes.def"

  /// Fails: null while none is set, and when the image node has gone, which no signal tells.
  boost::intrusive_ptr<image::NImageNode> GetImage() const;
  core::node::NNodeReference<image::NImageNode> const& GetImageRef() const;
  /// Raises: SignalTextureImageChange, also for the same image.
  void SetImage(core::node::NNodeReference<image::NImageNode> const& image);

  /// Gives `target` this node's name, attribute values and image; its id and domain stay.
  /// Raises: no more than the attributes do, before the image is there.
  void CopyTo(NTextureNode& target) const;

 private:
  struct Block;

  void AcceptImpl(NNodeWatcher& visitor) const override { visitor.Visit(*this); }
  void AcceptImpl(NNodeModifier& visitor) override { visitor.Visit(*this); }

  std::unique_ptr<Block> const m_block;
};

}  // namespace corvanta::data::domain::texture
