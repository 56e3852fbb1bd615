#include "corvanta/core/name/NNamespace.h"

#include <array>
#include <boost/intrusive_ptr.hpp>
#include <charconv>
#include <limits>
#include <utility>

namespace corvanta::core::name {

namespace {

/// "light (2)" from "light" and 2, in one allocation.
std::wstring AppendNumber(std::wstring const& name, unsigned long number) {
  std::array<char, std::numeric_limits<unsigned long>::digits10 + 1> digits;
  char const* const begin = digits.data();
  char const* const end = std::to_chars(digits.begin(), digits.end(), number).ptr;
  std::wstring numbered;
  numbered.reserve(name.size() + static_cast<std::size_t>(end - begin) + 3);
  numbered.append(name).append(L" (").append(begin, end).push_back(L')');
  return numbered;
}

}  // namespace

NNamespace::~NNamespace() {
  for (NNamedObject* const object : m_objects) object->m_namespace = nullptr;
}

bool NNamespace::AreNamesUniqueImpl() const noexcept { return false; }

bool NNamespace::AddNamedObject(NNamedObject& object) {
  if (object.m_namespace != nullptr) return false;
  if (AreNamesUniqueImpl() && QueryNamedObject(object.m_name) != nullptr) return false;
  m_objects.insert(&object);
  object.m_namespace = this;
  return true;
}

bool NNamespace::AddUnderFreeName(NNamedObject& object) {
  if (object.m_namespace != nullptr) return false;
  std::wstring before;
  bool const isTaken = AreNamesUniqueImpl() && QueryNamedObject(object.m_name) != nullptr;
  if (isTaken) before = std::exchange(object.m_name, MakeNumberedName(object.m_name));
  try {
    m_objects.insert(&object);
  } catch (...) {
    if (isTaken) object.m_name.swap(before);
    throw;
  }
  object.m_namespace = this;
  return true;
}

bool NNamespace::RemoveNamedObject(NNamedObject& object) noexcept {
  if (object.m_namespace != this || !Erase(object)) return false;
  object.m_namespace = nullptr;
  return true;
}

NNamedObject* NNamespace::QueryNamedObject(std::wstring const& name) const noexcept {
  auto const found = m_objects.find(std::wstring_view(name));
  return found == m_objects.end() ? nullptr : *found;
}

std::wstring NNamespace::MakeFreeName(std::wstring const& name) {
  return QueryNamedObject(name) == nullptr ? name : MakeNumberedName(name);
}

std::wstring NNamespace::MakeNumberedName(std::wstring const& name) {
  unsigned long& number = m_lastNumbers.try_emplace(name, 1).first->second;
  while (true) {
    std::wstring numbered = AppendNumber(name, number + 1);
    ++number;
    if (QueryNamedObject(numbered) == nullptr) return numbered;
  }
}

void NNamespace::Rename(NNamedObject& object, std::wstring const& name) {
  boost::intrusive_ptr<NNamespace const> const held(TryAddRef() ? this : nullptr, false);
  boost::intrusive_ptr<NNamedObject const> const heldObject(object.TryAddRef() ? &object : nullptr,
                                                            false);
  bool const isFree =
      !AreNamesUniqueImpl() || name == object.m_name || QueryNamedObject(name) == nullptr;
  std::wstring given = isFree ? name : MakeNumberedName(name);
  if (given != object.m_name) {
    // The hash node is moved over, so that nothing can fail once the object has left its old place.
    auto range = m_objects.equal_range(&object);
    while (*range.first != &object) ++range.first;
    auto node = m_objects.extract(range.first);
    object.m_name = std::move(given);
    m_objects.insert(std::move(node));
  }
  m_listeners.Deliver<NNameListener>(
      [&](NNameListener& listener) { listener.SignalSetName(*this, object); });
}

bool NNamespace::Erase(NNamedObject& object) noexcept {
  auto const range = m_objects.equal_range(&object);
  for (auto i = range.first; i != range.second; ++i) {
    if (*i == &object) {
      m_objects.erase(i);
      return true;
    }
  }
  return false;
}

bool NNamespace::AddNameListener(NNameListener& listener) {
  return m_listeners.AddObserver(listener, &listener);
}

bool NNamespace::RemoveNameListener(NNameListener& listener) {
  return m_listeners.RemoveObserver(listener);
}

}  // namespace corvanta::core::name
