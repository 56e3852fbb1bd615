#pragma once

#include <boost/intrusive_ptr.hpp>
#include <list>
#include <memory>

#include "corvanta/core/attribute/NAttributeHost.h"
#include "corvanta/core/observer/NObservable.h"
#include "corvanta/data/view/NView.h"
#include "corvanta/data/view/NViewManagerListener.h"

namespace corvanta::data::events::attribute_change {
class NMultiplexer;
}

namespace corvanta::data::view {

#define CORVANTA_ROWS_CONSTANTS
#include "corvanta/data/view/view_manager_attributes.def"

/// The views of an application, in order, with the aspect that they share. Hold it by
/// `boost::intrusive_ptr`.
class CORVANTA_API NViewManager final
    : public core::attribute::NAttributeHost,
      public core::observer::NObservable<NViewManager, NViewManagerListener> {
 public:
  /// `multiplexer` is notified of attribute changes, with this as host; null: nobody is.
  explicit NViewManager(events::attribute_change::NMultiplexer const* multiplexer);

#define CORVANTA_ROWS_ACCESSORS
#include "corvanta/data/view/view_manager_attributes.def"

  /// Inserts `view` before the one now at `index`; the same view may be in the list twice.
  /// Raises: SignalAddView.
  /// Fails: false if `index` is greater than the number of views.
  bool AddView(NView& view, unsigned int index);
  std::list<boost::intrusive_ptr<NView>> const& GetViews() const noexcept;
  /// Raises: SignalRemoveAllViews, also if there was none.
  void RemoveAllViews();
  /// The same as RemoveAllViews.
  void ClearAll() { RemoveAllViews(); }

 private:
  struct Block;

  ~NViewManager() override;

  /// Passes the change on to the attribute multiplexer.
  void OnAttributeChangeImpl(core::attribute::NAttribute const& attribute) override;

  std::unique_ptr<Block> const m_block;
};

}  // namespace corvanta::data::view
