#include "corvanta/data/view/NViewManager.h"

#include <iterator>

#include "corvanta/core/attribute/NTypedAttribute.h"
#include "corvanta/data/events/attribute_change/NMultiplexer.h"
#include "corvanta/data/view/NViewManagerListener.h"

namespace corvanta::data::view {

struct NViewManager::Block {
  core::attribute::NAttributeHost& host;
  boost::intrusive_ptr<events::attribute_change::NMultiplexer const> const multiplexer;
#define CORVANTA_ROWS_SLOTS
#include "corvanta/data/view/view_manager_attributes.def"
  std::list<boost::intrusive_ptr<NView>> views{};
};

#define CORVANTA_ROWS_BODIES NViewManager
#include "corvanta/data/view/view_manager_attributes.def"

NViewManager::NViewManager(events::attribute_change::NMultiplexer const* multiplexer)
    : m_block(new Block{*this, multiplexer}) {}

NViewManager::~NViewManager() = default;

bool NViewManager::AddView(NView& view, unsigned int index) {
  auto& views = m_block->views;
  if (index > views.size()) return false;
  std::list<boost::intrusive_ptr<NView>> entry(1);  // not counted before nothing can fail any more
  entry.front().reset(&view);
  views.splice(std::next(views.begin(), index), entry);
  boost::intrusive_ptr<NView> const held(&view);
  NotifyObservers(
      [&](NViewManagerListener& listener) { listener.SignalAddView(*this, view, index); });
  return true;
}

std::list<boost::intrusive_ptr<NView>> const& NViewManager::GetViews() const noexcept {
  return m_block->views;
}

void NViewManager::RemoveAllViews() {
  m_block->views.clear();
  NotifyObservers([&](NViewManagerListener& listener) { listener.SignalRemoveAllViews(*this); });
}

void NViewManager::OnAttributeChangeImpl(core::attribute::NAttribute const& attribute) {
  if (m_block->multiplexer) m_block->multiplexer->OnAttributeChange(*this, attribute);
}

NViewManagerListener::~NViewManagerListener() = default;

}  // namespace corvanta::data::view
