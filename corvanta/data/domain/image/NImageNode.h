#pragma once

#include <boost/intrusive_ptr.hpp>
#include <memory>
#include <string>

#include "corvanta/core/locator/NLocator.h"
#include "corvanta/data/domain/NNode.h"
#include "corvanta/data/resource/image/NImage.h"
#include "corvanta/data/resource/image/NImageFormat.h"

namespace corvanta::data::history::detail {
class NChangeAccess;
}

namespace corvanta::data::domain::image {

#define CORVANTA_ROWS_CONSTANTS
#include "corvanta/data/domain/image/image_attributes.def"
/// An attribute without a value, which isn't saved: the locator stands beside it.
extern CORVANTA_API wchar_t const* const AN_LOCATOR;

/// Where a picture is and how it is loaded. Holds no pixels.
class CORVANTA_API NImageNode : public NNode {
 public:
  NImageNode(core::node::NNodeID const& id, core::domain::NDomainBase* domain,
             events::attribute_change::NMultiplexer const* multiplexer);
  ~NImageNode() override;

  core::locator::NLocator const& GetImageLocator() const;
  /// Sets the locator, and "formatHint" to what its file asks for.
  /// Raises: the attribute change of "formatHint", also where neither is new.
  /// Fails: as resource::image::LocatorToFormat for an entry of an archive; the locator is in place
  /// then, "formatHint" as it was, and nothing is raised.
  void SetImageLocator(core::locator::NLocator const& locator);
  /// The same for a file that LocatorToFormat has judged.
  /// Cost: no memory.
  void SetImageLocator(core::locator::NLocator&& locator, resource::image::NImageFormat format);

  /// Loads the picture; never null, and a new object at every call.
  /// Fails: see resource::image::CreateImage.
  boost::intrusive_ptr<resource::image::NImage> GetImage() const;

  /// Why this node's last GetImage gave the not-found picture, in a few words; empty if it gave the
  /// picture, and before the first. May be called from any thread, as GetImage may.
  std::wstring GetImageError() const;

  /// Gives `target` this node's name, attribute values and locator; its id and domain stay.
  /// Raises: no more than the attributes do, before the locator is there.
  void CopyTo(NImageNode& target) const;

 private:
  friend class history::detail::NChangeAccess;
  struct Block;

  void ExchangeLocator(core::locator::NLocator&& locator);

  void AcceptImpl(NNodeWatcher& visitor) const override { visitor.Visit(*this); }
  void AcceptImpl(NNodeModifier& visitor) override { visitor.Visit(*this); }

  std::unique_ptr<Block> const m_block;
};

}  // namespace corvanta::data::domain::image
