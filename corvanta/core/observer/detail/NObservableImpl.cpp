#include "corvanta/core/observer/detail/NObservableImpl.h"

#include <algorithm>

namespace corvanta::core::observer::detail {

namespace {
constexpr std::size_t kIndexFrom = 16;
constexpr std::size_t kNotFound = static_cast<std::size_t>(-1);
}  // namespace

NObservableImpl::~NObservableImpl() {
  if (m_state == nullptr) return;
  if (m_state->deliveries == 0) {
    delete m_state;
  } else {
    m_state->isOrphan = true;
  }
}

bool NObservableImpl::AddObserver(
    reference_countable::NReferenceCountableWithWeakReference const& observer, void* listener) {
  auto weak = observer.GetWeakReference();
  if (m_state == nullptr) m_state = new State;
  if (m_state->Find(weak.get()) != kNotFound) return false;
  m_state->MakeRoom();
  if (m_state->index) m_state->index->emplace(weak.get(), m_state->entries.size());
  m_state->entries.push_back({std::move(weak), listener});
  return true;
}

bool NObservableImpl::RemoveObserver(
    reference_countable::NReferenceCountableWithWeakReference const& observer) {
  if (m_state == nullptr) return false;
  std::size_t const position = m_state->Find(observer.GetWeakReference().get());
  if (position == kNotFound) return false;
  m_state->Blank(position);
  if (m_state->deliveries == 0) m_state->Sweep();
  return true;
}

NObservableImpl::Iterator NObservableImpl::GetBegin() const noexcept {
  return m_state == nullptr ? Iterator() : m_state->entries.cbegin();
}

NObservableImpl::Iterator NObservableImpl::GetEnd() const noexcept {
  return m_state == nullptr ? Iterator() : m_state->entries.cend();
}

std::size_t NObservableImpl::State::Find(
    reference_countable::NWeakReferenceImpl const* observer) const noexcept {
  if (index) {
    auto const found = index->find(observer);
    return found == index->end() ? kNotFound : found->second;
  }
  auto const found = std::find_if(entries.begin(), entries.end(), [observer](Entry const& entry) {
    return entry.observer.get() == observer;
  });
  return found == entries.end() ? kNotFound : static_cast<std::size_t>(found - entries.begin());
}

void NObservableImpl::State::Blank(std::size_t position) noexcept {
  if (index) index->erase(entries[position].observer.get());
  entries[position].observer.reset();
  ++blankCount;
}

/// Makes the next push_back one that can't throw, dropping the dead before anything grows.
void NObservableImpl::State::MakeRoom() {
  if (entries.size() == entries.capacity()) {
    if (deliveries == 0) {
      for (std::size_t i = 0; i != entries.size(); ++i) {
        if (entries[i].observer && entries[i].observer->IsExpired()) Blank(i);
      }
      Sweep();
    }
    if (entries.size() == entries.capacity()) {
      entries.reserve(entries.empty() ? 1 : 2 * entries.size());
    }
  }
  if (!index && entries.size() >= kIndexFrom) {
    auto made = std::make_unique<
        std::unordered_map<reference_countable::NWeakReferenceImpl const*, std::size_t>>();
    for (std::size_t i = 0; i != entries.size(); ++i) {
      if (entries[i].observer) made->emplace(entries[i].observer.get(), i);
    }
    index = std::move(made);
  }
}

/// Closes the gaps once half of the entries are blank.
void NObservableImpl::State::Sweep() noexcept {
  if (2 * blankCount < entries.size() || blankCount == 0) return;
  std::erase_if(entries, [](Entry const& entry) { return !entry.observer; });
  blankCount = 0;
  if (!index) return;
  if (entries.size() < kIndexFrom / 2) {
    index.reset();
    return;
  }
  for (std::size_t i = 0; i != entries.size(); ++i) {
    index->find(entries[i].observer.get())->second = i;
  }
}

void NObservableImpl::Delivery::Finish() noexcept {
  if (state.isOrphan) {
    delete &state;
  } else {
    state.Sweep();
  }
}

}  // namespace corvanta::core::observer::detail
