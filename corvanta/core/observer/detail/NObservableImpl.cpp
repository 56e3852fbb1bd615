#include "corvanta/core/observer/detail/NObservableImpl.h"

#include <algorithm>
#include <atomic>
#include <limits>
#include <new>

#include "corvanta/core/observer/detail/removal_count.h"

namespace corvanta::core::observer::detail {

namespace {
constexpr std::size_t kIndexFrom = 16;
constexpr std::size_t kNotFound = static_cast<std::size_t>(-1);

std::atomic<std::uint64_t> g_removalCount{0};
}  // namespace

std::uint64_t GetRemovalCount() noexcept { return g_removalCount.load(std::memory_order_relaxed); }

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
  if (std::size_t const position = m_state->Find(weak.get()); position != kNotFound) {
    Entry& entry = m_state->At(position);
    if (entry.listener != nullptr) return false;
    entry.listener = listener;
    --m_state->blankCount;
    return true;
  }
  m_state->MakeRoom();
  if (m_state->index) m_state->index->emplace(weak.get(), m_state->size);
  m_state->At(m_state->size++) = {std::move(weak), listener};
  return true;
}

bool NObservableImpl::RemoveObserver(
    reference_countable::NReferenceCountableWithWeakReference const& observer) noexcept {
  reference_countable::NWeakReferenceImpl const* const weak = observer.FindWeakReference();
  if (m_state == nullptr || weak == nullptr) return false;
  std::size_t const position = m_state->Find(weak);
  if (position == kNotFound || m_state->At(position).listener == nullptr) return false;
  g_removalCount.fetch_add(1, std::memory_order_relaxed);
  if (m_state->deliveries == 0) {
    m_state->Blank(position);
    m_state->Sweep();
  } else {
    m_state->At(position).listener = nullptr;
    ++m_state->blankCount;
    m_state->isKeepingPlaces = true;
  }
  return true;
}

NObservableImpl::Iterator NObservableImpl::GetBegin() const noexcept {
  return m_state == nullptr ? nullptr : &m_state->At(0);
}

NObservableImpl::Iterator NObservableImpl::GetEnd() const noexcept {
  return m_state == nullptr ? nullptr : &m_state->At(0) + m_state->size;
}

std::size_t NObservableImpl::State::Find(
    reference_countable::NWeakReferenceImpl const* observer) noexcept {
  if (index) {
    auto const found = index->find(observer);
    return found == index->end() ? kNotFound : found->second;
  }
  for (std::size_t i = 0; i != size; ++i) {
    if (At(i).observer.get() == observer) return i;
  }
  return kNotFound;
}

void NObservableImpl::State::Blank(std::size_t position) noexcept {
  Entry& entry = At(position);
  if (index) index->erase(entry.observer.get());
  entry = Entry();
  ++blankCount;
}

/// At the end of the outermost delivery, whose walk was no shorter than this one.
void NObservableImpl::State::GivePlacesUp() noexcept {
  for (std::size_t i = 0; i != size; ++i) {
    Entry& entry = At(i);
    if (entry.listener != nullptr || !entry.observer) continue;
    if (index) index->erase(entry.observer.get());
    entry.observer.reset();
  }
  isKeepingPlaces = false;
}

/// Makes sure that one more entry fits, dropping the dead before anything grows.
void NObservableImpl::State::MakeRoom() {
  if (size == capacity && deliveries == 0) {
    for (std::size_t i = 0; i != size; ++i) {
      if (At(i).observer && At(i).observer->IsExpired()) Blank(i);
    }
    Sweep();
  }
  if (size == capacity) Grow();
  if (!index && size >= kIndexFrom) {
    auto made = std::make_unique<
        std::unordered_map<reference_countable::NWeakReferenceImpl const*, std::size_t>>();
    for (std::size_t i = 0; i != size; ++i) {
      if (At(i).observer) made->emplace(At(i).observer.get(), i);
    }
    index = std::move(made);
  }
}

void NObservableImpl::State::Grow() {
  if (capacity > std::numeric_limits<std::uint32_t>::max() / 2) throw std::bad_alloc();
  auto grown = std::make_unique<Entry[]>(2 * capacity);
  std::move(&At(0), &At(0) + size, grown.get());
  many = std::move(grown);
  capacity *= 2;
}

/// Closes the gaps once half of the entries are blank.
void NObservableImpl::State::Sweep() noexcept {
  if (blankCount < size - blankCount || blankCount == 0) return;
  auto const isBlank = [](Entry const& entry) { return !entry.observer; };
  Entry* const end = std::remove_if(&At(0), &At(0) + size, isBlank);
  size = static_cast<std::uint32_t>(end - &At(0));
  blankCount = 0;
  if (size < kIndexFrom / 2) index.reset();
  if (size == 0) {
    many.reset();
    capacity = 1;
  }
  if (!index) return;
  for (std::size_t i = 0; i != size; ++i) index->find(At(i).observer.get())->second = i;
}

void NObservableImpl::Delivery::Finish() noexcept {
  if (state.isOrphan) {
    delete &state;
  } else {
    if (state.isKeepingPlaces) state.GivePlacesUp();
    state.Sweep();
  }
}

}  // namespace corvanta::core::observer::detail
